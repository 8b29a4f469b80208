// The pairs that match proposes, to be ticked.

import { button, counted, element, shown } from '../../report/elements.js';

/**
 * A proposal of match, as its JSON has it.
 * @typedef {object} Proposal
 * @property {string} old
 * @property {string} new
 * @property {number} score
 * @property {boolean} certain
 * @property {string[]} reasons
 * @property {{old?: string, new?: string, score: number}[]} rivals
 */

const pairsAtOnce = 500;

/**
 * A table of proposals; what is certain is ticked. `use` is given the ticked ones.
 * @param {Proposal[]} proposals
 * @param {(pairs: Proposal[]) => void} use
 */
export function pairTable(proposals, use) {
  const boxes = proposals.map(({ certain, old, new: now }) => {
    const box = /** @type {HTMLInputElement} */ (element('input', {
      type: 'checkbox', 'aria-label': `${now} comes from ${old}`,
    }));
    box.checked = certain;
    return box;
  });
  const body = element('tbody');
  const more = button({ class: 'quiet' }, () => showMore(), 'Show more pairs');
  const showMore = () => {
    const from = body.childElementCount;
    for (let i = from; i < Math.min(from + pairsAtOnce, proposals.length); ++i) {
      body.append(rowOf(/** @type {Proposal} */ (proposals[i]), /** @type {HTMLInputElement} */ (boxes[i])));
    }
    more.hidden = body.childElementCount === proposals.length;
  };
  showMore();
  const status = element('p', { class: 'note', role: 'status' });
  const ticked = () => proposals.filter((_, i) => boxes[i]?.checked);
  const count = () => {
    status.textContent = `${counted(ticked().length, 'pair')} of ${proposals.length} ticked. ` +
      'What is uncertain is not ticked: look at its reasons.';
  };
  const all = button({ class: 'quiet' }, () => {
    const isChecked = boxes.some((box) => !box.checked);
    for (const box of boxes) box.checked = isChecked;
    count();
  }, 'All or none');
  body.addEventListener('change', count);
  count();
  return element('div', { class: 'pairs' }, status,
    element('div', { class: 'frame', tabindex: 0, role: 'region', 'aria-label': 'Pairs' },
      element('table', {}, element('thead', {}, element('tr', {},
        ...['', 'This year', 'Last year', 'Score', 'Reasons'].map((head) => element('th', { scope: 'col' }, head)))), body)),
    more, all,
    button({ class: 'main' }, () => use(ticked()), 'Use the ticked pairs'));
}

/**
 * @param {Proposal} proposal
 * @param {HTMLInputElement} box
 */
function rowOf({ old, new: now, score, certain, reasons, rivals }, box) {
  const others = rivals.map((rival) => rival.old ?? rival.new ?? '');
  const why = [...reasons, ...(others.length > 0 ? [`or: ${others.join(', ')}`] : [])].join('; ');
  return element('tr', { class: certain ? null : 'uncertain' },
    element('td', {}, box),
    element('th', { scope: 'row', class: 'name' }, shown(now)),
    element('td', { class: 'name' }, shown(old)),
    element('td', { class: 'number' }, score.toFixed(2)),
    element('td', {}, shown(why)));
}
