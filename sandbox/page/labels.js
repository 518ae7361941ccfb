// SPDX-License-Identifier: Apache-2.0
// Places the names and road numbers of a map so that none covers another one, and draws them.

const straightness = 0.97; // Of the part of a street below its name: chord to length.

/** Returns the value of a property at a zoom level: a constant or {base, stops}. */
export function valueAt(property, zoom) {
  if (!property?.stops) return property;
  const { stops, base = 1 } = property;
  const upper = stops.findIndex(([level]) => level > zoom);
  if (upper === 0) return stops[0][1];
  if (upper < 0) return stops[stops.length - 1][1];
  const [[from, low], [to, high]] = [stops[upper - 1], stops[upper]];
  const part = base === 1 ? (zoom - from) / (to - from)
    : (base ** (zoom - from) - 1) / (base ** (to - from) - 1);
  return low + (high - low) * part;
}

const overlap = (a, b) => a[0] < b[2] && b[0] < a[2] && a[1] < b[3] && b[1] < a[3];

/** Returns the position at a distance along a line, or null. `lengths` are those of its segments. */
function positionAlong(line, lengths, distance) {
  let rest = distance;
  for (let i = 0; i < lengths.length; ++i) {
    if (rest <= lengths[i] && lengths[i] > 0) {
      const [[x, y], [toX, toY]] = [line[i], line[i + 1]];
      const part = rest / lengths[i];
      return [x + (toX - x) * part, y + (toY - y) * part];
    }
    rest -= lengths[i];
  }
  return null;
}

/** Breaks a text into lines of at most `width` characters. */
function wrap(text, width) {
  const lines = [''];
  for (const word of text.split(' ')) {
    const longer = `${lines[lines.length - 1]} ${word}`.trim();
    if (longer.length <= width || lines[lines.length - 1] === '') lines[lines.length - 1] = longer;
    else lines.push(word);
  }
  return lines;
}

export class LabelPainter {
  constructor(context, icons, zoom) {
    Object.assign(this, { context, icons, zoom, placed: [], boxes: [] });
  }

  /** Finds places for the label of a feature, with the pixels of its line. */
  place(layer, feature, line) {
    const { layout, paint } = layer;
    const { properties } = feature;
    const icon = this.icons.places[properties.shield];
    const size = valueAt(layout['text-size'], this.zoom);
    const bold = layout['text-font'][0].endsWith('Bold');
    const font = `${bold ? 'bold ' : ''}${size}px "DejaVu Sans", system-ui, sans-serif`;
    let text = layout['text-field'] === '{ref}' ? properties.ref : properties.name;
    if (layout['text-transform'] === 'uppercase') text = text.toUpperCase();
    const label = { text: [text], font, size, icon, paint, angle: 0, padding: layout['text-padding'] };
    this.context.font = font;
    if (layout['symbol-placement'] === 'line') {
      this.placeAlong(line, layout['symbol-spacing'], label);
    } else {
      label.text = wrap(text, layout['text-max-width'] * 1.8);
      this.add({ ...label, at: line[0] });
    }
  }

  placeAlong(line, spacing, label) {
    const lengths = line.slice(1).map(([x, y], i) => Math.hypot(x - line[i][0], y - line[i][1]));
    const total = lengths.reduce((sum, length) => sum + length, 0);
    const width = label.icon ? 0 : this.context.measureText(label.text[0]).width + 6;
    if (total < Math.max(width, 20)) return;
    const count = Math.max(1, Math.floor(total / spacing));
    for (let i = 0; i < count; ++i) {
      const middle = (total * (i + 0.5)) / count;
      // Looks a little further along if the street bends here.
      const shifts = [0, 0.2, -0.2, 0.4, -0.4].map((part) => middle + (part * total) / count);
      shifts.some((distance) => this.addOnLine(line, lengths, distance, width, label));
    }
  }

  addOnLine(line, lengths, distance, width, label) {
    if (label.icon) {
      const at = positionAlong(line, lengths, distance);
      return at !== null && this.add({ ...label, at });
    }
    const from = positionAlong(line, lengths, distance - width / 2);
    const to = positionAlong(line, lengths, distance + width / 2);
    if (distance < width / 2 || !from || !to) return false;
    const [dx, dy] = [to[0] - from[0], to[1] - from[1]];
    if (Math.hypot(dx, dy) < straightness * width) return false;
    let angle = Math.atan2(dy, dx);
    if (Math.abs(angle) > Math.PI / 2) angle -= Math.sign(angle) * Math.PI;
    const middle = positionAlong(line, lengths, distance);
    const at = [(from[0] + to[0] + 2 * middle[0]) / 4, (from[1] + to[1] + 2 * middle[1]) / 4];
    return this.add({ ...label, at, angle });
  }

  /** Adds a label unless it would cover another one. */
  add(label) {
    const boxes = this.boxesOf(label);
    if (boxes.some((box) => this.boxes.some((other) => overlap(box, other)))) return false;
    this.boxes.push(...boxes);
    this.placed.push(label);
    return true;
  }

  /** A text along a street is a row of small boxes. */
  boxesOf({ text, size, icon, at: [x, y], angle, padding }) {
    if (icon) {
      const [width, height] = [icon.width / 4 + padding, icon.height / 4 + padding];
      return [[x - width, y - height, x + width, y + height]];
    }
    const half = Math.max(...text.map((line) => this.context.measureText(line).width)) / 2;
    const height = (size * text.length * 1.2) / 2 + padding;
    if (angle === 0) return [[x - half - padding, y - height, x + half + padding, y + height]];
    const boxes = [];
    for (let along = -half; along <= half; along += size) {
      const [cx, cy] = [x + along * Math.cos(angle), y + along * Math.sin(angle)];
      boxes.push([cx - height, cy - height, cx + height, cy + height]);
    }
    return boxes;
  }

  draw() {
    for (const label of this.placed) this.drawLabel(label);
  }

  drawLabel({ text, font, size, icon, paint, at: [x, y], angle }) {
    const { context } = this;
    context.save();
    context.translate(x, y);
    context.rotate(angle);
    if (icon) {
      const [width, height] = [icon.width / icon.pixelRatio, icon.height / icon.pixelRatio];
      context.drawImage(this.icons.image, icon.x, icon.y, icon.width, icon.height, -width / 2, -height / 2, width, height);
    }
    Object.assign(context, { font, textAlign: 'center', textBaseline: 'middle', lineJoin: 'round' });
    text.forEach((line, index) => {
      const down = (index - (text.length - 1) / 2) * size * 1.2;
      if (paint['text-halo-width']) {
        context.strokeStyle = paint['text-halo-color'];
        context.lineWidth = 2 * paint['text-halo-width'];
        context.strokeText(line, 0, down);
      }
      context.fillStyle = paint['text-color'];
      context.fillText(line, 0, down);
    });
    context.restore();
  }
}
