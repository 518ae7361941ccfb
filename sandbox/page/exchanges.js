// SPDX-License-Identifier: Apache-2.0
// Calls through the library, and the list of exchanges.

const interval = 2000; // Milliseconds between looks at the exchanges of other programs.
const list = document.getElementById('exchange-list');
let last = 0;
let refreshing = Promise.resolve();

async function get(path) {
  const response = await fetch(path);
  const answer = await response.json();
  const problem = answer.error ?? answer.message;
  if (problem) throw new Error(problem);
  return answer;
}

/** Lets the library make a call: "route", "suggest" or "candidates". Returns the body. */
export async function ask(call, parameters) {
  try {
    return await get(`/page/${call}?${new URLSearchParams(parameters)}`);
  } finally {
    await refresh();
  }
}

const block = (lines) => {
  const pre = document.createElement('pre');
  pre.tabIndex = 0;
  pre.textContent = lines.join('\n');
  return pre;
};

function entry({ request, answer }) {
  const details = document.createElement('details');
  const summary = document.createElement('summary');
  const status = document.createElement('b');
  status.textContent = `${answer.status}`;
  status.className = answer.status >= 400 ? 'failed' : '';
  summary.append(`${request.method} ${request.target.split('?')[0]} `, status, ` ${answer.size} bytes`);
  details.append(summary);
  details.addEventListener('toggle', () => {
    if (!details.open || details.childElementCount > 1) return;
    const fields = request.fields.map(([name, value]) => `${name}: ${value}`);
    details.append(
      block([`${request.method} ${request.target} HTTP/1.1`, ...fields, '', request.body]),
      block([`HTTP/1.1 ${answer.status}`, `Content-Type: ${answer.type}`,
        `Content-Length: ${answer.size}`, '', answer.body]));
  });
  const item = document.createElement('li');
  item.append(details);
  return item;
}

async function addNew() {
  const added = await get(`/page/exchanges?after=${last}`);
  last = added.last;
  for (const exchange of added.exchanges) list.prepend(entry(exchange));
  while (list.childElementCount > 100) list.lastChild.remove();
}

/** Shows the exchanges since the last time, the newest first. */
export function refresh() {
  // One after the other, so that no exchange is added twice.
  refreshing = refreshing.then(addNew).catch(() => {});
  return refreshing;
}

setInterval(() => document.hidden || refresh(), interval);
