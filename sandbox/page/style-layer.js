// SPDX-License-Identifier: Apache-2.0
// Draws a Mapbox style with GeoJSON sources on a canvas above a Leaflet map. It knows the parts of
// styles that the style of the sandbox uses, and needs no WebGL.
import { LabelPainter, valueAt } from './labels.js';

const padding = 0.25; // Part of the map that is drawn outside of each edge.

function matches([operator, key, value], feature) {
  return key === '$type' ? feature.type === value : feature.properties[key] === value;
}

export function isSelected(filter, feature) {
  if (!filter) return true;
  return filter[0] === 'all' ? filter.slice(1).every((one) => matches(one, feature))
    : matches(filter, feature);
}

/** Web Mercator, 0 to 1 from west to east and from north to south. */
function project([longitude, latitude]) {
  const sine = Math.sin((latitude * Math.PI) / 180);
  return [longitude / 360 + 0.5, 0.5 - Math.log((1 + sine) / (1 - sine)) / (4 * Math.PI)];
}

function prepare({ geometry, properties }) {
  const { type, coordinates } = geometry;
  const lines = (type === 'Polygon' ? coordinates : [type === 'Point' ? [coordinates] : coordinates])
    .map((line) => line.map(project));
  const box = [Infinity, Infinity, -Infinity, -Infinity];
  for (const [x, y] of lines.flat()) {
    box[0] = Math.min(box[0], x);
    box[1] = Math.min(box[1], y);
    box[2] = Math.max(box[2], x);
    box[3] = Math.max(box[3], y);
  }
  return { type, properties, lines, box };
}

async function load(url) {
  return (await (await fetch(url)).json()).features.map(prepare);
}

async function loadImage(url) {
  const image = new Image();
  image.src = url;
  await image.decode();
  return image;
}

export const StyleLayer = L.Layer.extend({
  /** Loads the style, its sources and its sprite. Add the layer to a map after that. */
  async load(url) {
    this.style = await (await fetch(url)).json();
    const { sources, sprite } = this.style;
    const names = Object.keys(sources);
    const features = await Promise.all(names.map((name) => load(new URL(sources[name].data).pathname)));
    this.features = Object.fromEntries(names.map((name, index) => [name, features[index]]));
    const path = `${new URL(sprite).pathname}@2x`;
    this.icons = { places: await (await fetch(`${path}.json`)).json(), image: await loadImage(`${path}.png`) };
  },

  /** The box of all streets as [[south, west], [north, east]], or null. */
  bounds() {
    const bounds = L.latLngBounds([]);
    for (const { box } of this.features.streets) {
      for (const [x, y] of [box.slice(0, 2), box.slice(2)]) {
        const latitude = Math.atan(Math.sinh(Math.PI * (1 - 2 * y))) * (180 / Math.PI);
        bounds.extend([latitude, (x - 0.5) * 360]);
      }
    }
    return bounds.isValid() ? bounds : null;
  },

  getAttribution() {
    return [...new Set(Object.values(this.style.sources).map(({ attribution }) => attribution))].join(', ');
  },

  onAdd(map) {
    this.canvas = L.DomUtil.create('canvas', 'leaflet-zoom-hide', map.getPane('tilePane'));
    this.draw();
  },

  onRemove() {
    this.canvas.remove();
  },

  getEvents() {
    return { moveend: this.draw, zoomend: this.draw, resize: this.draw };
  },

  draw() {
    const map = this._map;
    const size = map.getSize();
    const margin = size.multiplyBy(padding).round();
    const whole = size.add(margin.multiplyBy(2));
    const ratio = window.devicePixelRatio || 1;
    const { canvas } = this;
    [canvas.width, canvas.height] = [whole.x * ratio, whole.y * ratio];
    [canvas.style.width, canvas.style.height] = [`${whole.x}px`, `${whole.y}px`];
    L.DomUtil.setPosition(canvas, map.containerPointToLayerPoint(margin.multiplyBy(-1)));

    const context = canvas.getContext('2d');
    context.scale(ratio, ratio);
    // A tile of a style has 512 pixels, one of Leaflet 256.
    const zoom = map.getZoom() - 1;
    const world = 512 * 2 ** zoom;
    const origin = map.getPixelBounds().min.subtract(margin);
    const view = [origin.x / world, origin.y / world, (origin.x + whole.x) / world, (origin.y + whole.y) / world];
    const toPixels = (line) => line.map(([x, y]) => [x * world - origin.x, y * world - origin.y]);
    const labels = new LabelPainter(context, this.icons, zoom);
    const layers = this.style.layers.filter(({ minzoom = 0 }) => zoom >= minzoom);
    for (const layer of layers.filter(({ type }) => type !== 'symbol')) {
      this.drawShapes(context, layer, zoom, view, toPixels, whole);
    }
    // The last symbols have the highest priority.
    for (const layer of layers.filter(({ type }) => type === 'symbol').reverse()) {
      for (const feature of this.visible(layer, view)) labels.place(layer, feature, toPixels(feature.lines[0]));
    }
    labels.draw();
    canvas.dataset.labels = labels.placed.length;
  },

  visible(layer, [west, north, east, south]) {
    return this.features[layer.source].filter((feature) => isSelected(layer.filter, feature) &&
      feature.box[0] <= east && feature.box[2] >= west && feature.box[1] <= south && feature.box[3] >= north);
  },

  drawShapes(context, layer, zoom, view, toPixels, whole) {
    const { type, paint, layout = {} } = layer;
    if (type === 'background') {
      context.fillStyle = paint['background-color'];
      context.fillRect(0, 0, whole.x, whole.y);
      return;
    }
    context.beginPath();
    for (const feature of this.visible(layer, view)) {
      for (const line of feature.lines) {
        toPixels(line).forEach(([x, y], index) => (index ? context.lineTo(x, y) : context.moveTo(x, y)));
      }
    }
    if (type === 'fill') {
      context.fillStyle = paint['fill-color'];
      context.fill('evenodd');
      return;
    }
    const width = valueAt(paint['line-width'], zoom);
    context.strokeStyle = paint['line-color'];
    context.lineWidth = width;
    context.lineCap = paint['line-dasharray'] ? 'butt' : layout['line-cap'];
    context.lineJoin = layout['line-join'];
    context.setLineDash((paint['line-dasharray'] ?? []).map((part) => part * width));
    context.stroke();
  },
});
