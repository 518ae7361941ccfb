// SPDX-License-Identifier: Apache-2.0
// A text field with suggestions, for one end of the trip.
import { ask } from './exchanges.js';

const delay = 150; // Milliseconds without a key until suggestions are requested.

/** Reads "LAT,LON". */
export function parseCoordinate(text) {
  const match = /^\s*(-?\d+(?:\.\d+)?)\s*,\s*(-?\d+(?:\.\d+)?)\s*$/.exec(text);
  if (!match) return null;
  const [lat, lng] = [Number(match[1]), Number(match[2])];
  return Math.abs(lat) <= 90 && Math.abs(lng) <= 180 ? { lat, lng } : null;
}

export const coordinateText = ({ lat, lng }) => `${lat.toFixed(5)},${lng.toFixed(5)}`;

export class PlaceField {
  /** `near()` returns where to search, `chosen()` is called when the place has changed. */
  constructor(id, near, chosen) {
    this.input = document.getElementById(id);
    this.list = document.getElementById(`${id}-list`);
    Object.assign(this, { near, chosen, place: null, active: -1, generation: 0, edits: 0, shown: [] });
    this.input.addEventListener('input', () => this.typed());
    this.input.addEventListener('keydown', (event) => this.key(event));
    this.input.addEventListener('blur', () => this.close());
    // A press would move the focus, which closes the list before the click.
    this.list.addEventListener('pointerdown', (event) => event.preventDefault());
  }

  setPlace(place, text = place ? coordinateText(place) : '') {
    this.place = place;
    this.input.value = text;
    ++this.edits;
    this.close();
  }

  /** Finds the place of a text that was typed, if no suggestion was chosen. */
  async resolve() {
    const text = this.input.value.trim();
    if (this.place || text === '') return this.place;
    const coordinate = parseCoordinate(text);
    if (coordinate) this.setPlace(coordinate, text);
    else await this.find(text, '');
    return this.place;
  }

  async find(text, key) {
    const { edits } = this;
    const { candidates } = await ask('candidates', { text, near: this.near(), key });
    if (edits !== this.edits) return;
    // Like `quorvel route`, refuses a place that only resembles the text.
    if (!candidates.length || (!key && candidates[0].score < 80))
      throw new Error(`There is no place “${text}” on this map.`);
    const { location, Address } = candidates[0];
    this.setPlace({ lat: location.y, lng: location.x }, Address);
  }

  typed() {
    this.place = null;
    ++this.edits;
    const generation = ++this.generation;
    setTimeout(() => generation === this.generation && this.suggest(generation), delay);
  }

  async suggest(generation) {
    const text = this.input.value;
    if (text.trim() === '' || parseCoordinate(text)) return this.close();
    try {
      const { suggestions } = await ask('suggest', { text, near: this.near() });
      if (generation === this.generation) this.show(suggestions);
    } catch {
      this.close();
    }
  }

  show(suggestions) {
    this.shown = suggestions;
    this.active = -1;
    this.list.replaceChildren(...suggestions.map((suggestion, index) => {
      const item = document.createElement('li');
      item.id = `${this.list.id}-${index}`;
      item.setAttribute('role', 'option');
      item.setAttribute('aria-selected', 'false');
      item.textContent = suggestion.text;
      item.addEventListener('click', () => this.choose(index));
      return item;
    }));
    this.list.hidden = suggestions.length === 0;
    this.input.setAttribute('aria-expanded', String(!this.list.hidden));
    this.input.removeAttribute('aria-activedescendant');
  }

  close() {
    ++this.generation;
    this.show([]);
  }

  key(event) {
    if (event.key === 'Escape') return this.close();
    if (this.list.hidden) return undefined;
    if (event.key === 'Enter' && this.active >= 0) {
      event.preventDefault();
      return this.choose(this.active);
    }
    const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
    if (!step) return undefined;
    event.preventDefault();
    const items = [...this.list.children];
    this.active = (this.active + step + items.length + (this.active < 0 && step < 0 ? 1 : 0)) % items.length;
    items.forEach((item, index) => item.setAttribute('aria-selected', String(index === this.active)));
    this.input.setAttribute('aria-activedescendant', items[this.active].id);
    return items[this.active].scrollIntoView({ block: 'nearest' });
  }

  async choose(index) {
    const { text, magicKey } = this.shown[index];
    this.setPlace(null, text);
    await this.chosen(() => this.find(text, magicKey));
  }
}
