// SPDX-License-Identifier: Apache-2.0
// The list of the turns of a route.

const feetPerMile = 5280;

export function distanceText(miles) {
  if (miles < 0.1) return `${Math.max(10, Math.round((miles * feetPerMile) / 10) * 10)} ft`;
  return `${miles.toFixed(miles < 10 ? 1 : 0)} mi`;
}

/** Fills a list with the turns of a route document. `show` is called with the place of a turn. */
export function fillDirections(list, points, show) {
  let before = 0;
  list.replaceChildren(...points.filter(({ turn }) => turn).map((point) => {
    const button = document.createElement('button');
    button.type = 'button';
    const [distance, text] = [document.createElement('span'), document.createElement('span')];
    distance.textContent = point.d > before ? distanceText(point.d - before) : '';
    text.textContent = point.turn.instruct;
    before = point.d;
    button.append(distance, text);
    button.addEventListener('click', () => show({ lat: point.lat, lng: point.lon }));
    const item = document.createElement('li');
    item.append(button);
    return item;
  }));
}
