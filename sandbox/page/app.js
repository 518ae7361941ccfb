// SPDX-License-Identifier: Apache-2.0
// The page of the sandbox: a map, a trip with its directions, and the exchanges of the servers.
import { fillDirections, distanceText } from './directions.js';
import { ask, refresh } from './exchanges.js';
import { coordinateText, PlaceField } from './place-field.js';
import { StyleLayer } from './style-layer.js';

const statusLine = document.getElementById('status');
const directions = document.getElementById('directions');
// The layer draws one picture for each zoom level, so zooming has no animation.
const map = L.map('map', { zoomAnimation: false, zoomSnap: 0.5, minZoom: 3, maxZoom: 20 });
map.attributionControl.setPrefix('Leaflet');
map.setView([0, 0], 3);
const trip = L.layerGroup().addTo(map);

const near = () => coordinateText(map.getCenter());
const from = new PlaceField('from', near, (find) => act(find));
const to = new PlaceField('to', near, (find) => act(find));

function say(text, isError = false) {
  statusLine.textContent = text;
  statusLine.className = isError ? 'error' : '';
}

function marker(place, kind, letter) {
  const icon = L.divIcon({ className: '', iconSize: [26, 26], iconAnchor: [13, 31], html: `<div class="end ${kind}"><b>${letter}</b></div>` });
  return L.marker(place, { icon, keyboard: false, interactive: false });
}

function showEnds() {
  trip.clearLayers();
  directions.replaceChildren();
  if (from.place) trip.addLayer(marker(from.place, 'from', 'A'));
  if (to.place) trip.addLayer(marker(to.place, 'to', 'B'));
}

let generation = 0;

/** Runs a step that may change the ends, then shows the route between them. */
async function act(step = () => {}) {
  const own = ++generation;
  try {
    await step();
    if (own !== generation) return;
    showEnds();
    if (!from.place || !to.place) {
      say(from.place ? 'Now choose the destination.' : 'Now choose the start.');
      return;
    }
    say('Searching for a route …');
    const route = await ask('route', { from: coordinateText(from.place), to: coordinateText(to.place) });
    if (own === generation) showRoute(route);
  } catch (error) {
    if (own !== generation) return;
    showEnds();
    say(error.message, true);
  }
}

function showRoute({ distance, duration, points }) {
  const line = points.map(({ lat, lon }) => [lat, lon]);
  trip.addLayer(L.polyline(line, { color: '#123f8c', weight: 9, interactive: false }));
  trip.addLayer(L.polyline(line, { color: '#3d86ff', weight: 5, interactive: false }));
  map.fitBounds(L.latLngBounds([...line, from.place, to.place]), { padding: [40, 50], maxZoom: 17 });
  fillDirections(directions, points, (place) => map.setView(place, Math.max(map.getZoom(), 16)));
  say(`${distanceText(distance)}, ${Math.max(1, Math.round(duration))} min`);
}

/** Makes a point the start, or the destination if there is a start without one. */
function addPoint(place) {
  if (!from.place || to.place) {
    from.setPlace(place);
    to.setPlace(null);
  } else {
    to.setPlace(place);
  }
  act();
}

function connectControls() {
  map.on('click', ({ latlng }) => addPoint(latlng));
  map.getContainer().addEventListener('keydown', (event) => {
    if (event.key === 'Enter' && event.target === map.getContainer()) addPoint(map.getCenter());
  });
  const form = document.getElementById('form');
  form.addEventListener('submit', (event) => {
    event.preventDefault();
    act(async () => {
      await from.resolve();
      await to.resolve();
    });
  });
  form.addEventListener('reset', () => {
    ++generation;
    for (const field of [from, to]) field.setPlace(null);
    showEnds();
    say('Click two points on the map, or enter two places.');
  });
  document.getElementById('swap').addEventListener('click', () => {
    const [start, text] = [from.place, from.input.value];
    from.setPlace(to.place, to.input.value);
    to.setPlace(start, text);
    act();
  });
}

const layer = new StyleLayer();
try {
  await layer.load('/style.json');
  layer.addTo(map);
  const bounds = layer.bounds();
  if (bounds) map.fitBounds(bounds);
  connectControls();
} catch (error) {
  say(`The map was not loaded: ${error.message}`, true);
}
refresh();
