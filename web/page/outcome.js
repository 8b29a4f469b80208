// What came of a run: the messages of what could not be done, or the difference, and the downloads.

import { showDifference } from '../../report/difference-view.js';
import { button, counted, element, shown } from '../../report/elements.js';

/**
 * What applying to one working codebook gave.
 * @typedef {object} Applied
 * @property {string} name
 * @property {import('package/api.js').Diagnostic[]} diagnostics
 * @property {number} status
 * @property {Uint8Array | null} written
 * @property {Uint8Array | null} report
 */

/**
 * A codebook of the run, as the report has it.
 * @typedef {{role: string, path: string, dataFiles: string[], dataFile: string}} RunFile
 */

/** @typedef {import('../../report/entries.js').Difference & {files: RunFile[]}} Difference */

/**
 * Offers bytes as a file.
 * @param {string} name
 * @param {Uint8Array} bytes
 * @param {string} type
 */
function download(name, bytes, type) {
  const address = URL.createObjectURL(new Blob([/** @type {Uint8Array<ArrayBuffer>} */ (bytes)], { type }));
  const link = element('a', { href: address, download: name, hidden: true });
  document.body.append(link);
  link.click();
  link.remove();
  setTimeout(() => URL.revokeObjectURL(address), 60_000);
}

/**
 * The data that the report of the run holds: the difference, with labels and explanations.
 * @param {Uint8Array} report
 * @returns {Difference}
 */
function differenceOf(report) {
  const begin = placeOf(report, 'id="data">', 0) + 'id="data">'.length;
  const data = report.subarray(begin, placeOf(report, '</script>', begin));
  return JSON.parse(new TextDecoder().decode(data));
}

/**
 * Where a text of ASCII stands in bytes.
 * @param {Uint8Array} bytes
 * @param {string} text
 * @param {number} from
 */
function placeOf(bytes, text, from) {
  const first = text.charCodeAt(0);
  for (let at = bytes.indexOf(first, from); at >= 0; at = bytes.indexOf(first, at + 1)) {
    if ([...text].every((c, i) => bytes[at + i] === c.charCodeAt(0))) return at;
  }
  throw new Error('The report cannot be read');
}

/** @param {RunFile} file */
function nameOf({ path, dataFile }) {
  const id = `#${dataFile}`;
  return path.endsWith(id) ? path.slice(0, -id.length) : path;
}

/** @param {Difference} difference */
function summary({ changed, added = [], file = [] }) {
  const parts = [
    changed.length > 0 ? counted(changed.length, 'changed variable') : '',
    added.length > 0 ? counted(added.length, 'added variable') : '',
    file.length > 0 ? counted(file.length, 'item of the file', 'items of the file') : '',
  ].filter(Boolean);
  return parts.length === 0 ? 'Nothing to change' : parts.join(', ');
}

/** @param {string} name */
function stemOf(name) {
  return name.replace(/\.[^.]*$/, '');
}

export class OutcomeView {
  /** @type {{close: () => void} | null} */
  #shown = null;
  /** Of the working codebook that is shown. */
  #name = '';

  /**
   * @param {object} asks
   * @param {(working: string) => void} asks.onMatch asks for the pairs of a codebook
   * @param {(file: RunFile, working: string, id: string) => void} asks.onDataFile asks for another
   *     data file of a codebook
   */
  constructor({ onMatch, onDataFile }) {
    this.onMatch = onMatch;
    this.onDataFile = onDataFile;
    this.element = element('div', { class: 'outcome-part', hidden: true, tabindex: -1 });
  }

  hide() {
    this.#shown?.close();
    this.#shown = null;
    this.element.hidden = true;
    this.element.replaceChildren();
  }

  /**
   * @param {Applied[]} all
   * @param {string} commands
   * @param {boolean} hasSource
   */
  show(all, commands, hasSource) {
    this.hide();
    const detail = element('div', { class: 'detail-part' });
    const choose = (/** @type {Applied} */ applied) => {
      this.#shown?.close();
      this.#shown = null;
      this.#showOne(detail, applied, commands, hasSource);
    };
    this.element.append(element('h2', { id: 'outcome-heading' }, 'What changes'));
    const first = Math.max(0, all.findIndex(({ name }) => name === this.#name));
    if (all.length > 1) this.element.append(this.#chooser(all, first, choose));
    this.element.append(detail);
    this.element.hidden = false;
    if (all[first]) choose(all[first]);
    this.element.focus({ preventScroll: true });
    this.element.scrollIntoView({ block: 'start' });
  }

  /**
   * @param {Applied[]} all
   * @param {number} first the place of the one that is shown first
   * @param {(applied: Applied) => void} choose
   */
  #chooser(all, first, choose) {
    const select = /** @type {HTMLSelectElement} */ (element('select', { id: 'which' }, ...all.map((applied, i) =>
      element('option', { value: i }, `${applied.name}${applied.status === 0 ? '' : ' – not done'}`))));
    select.value = String(first);
    select.addEventListener('change', () => {
      const applied = all[Number(select.value)];
      if (applied) choose(applied);
    });
    const done = all.filter(({ written }) => written !== null);
    return element('div', { class: 'row' },
      element('label', { for: 'which' }, 'Codebook'), select,
      element('span', { class: 'note' }, `${done.length} of ${all.length} done`),
      button({}, () => { for (const applied of done) downloadCodebook(applied); }, 'Download all that are done'));
  }

  /**
   * @param {HTMLElement} detail
   * @param {Applied} applied
   * @param {string} commands
   * @param {boolean} hasSource
   */
  #showOne(detail, applied, commands, hasSource) {
    const { name, report, diagnostics, written } = applied;
    this.#name = name;
    if (written === null) {
      const errors = diagnostics.filter(({ severity }) => severity === 'error');
      detail.replaceChildren(element(
        'div', { class: 'refused', role: 'alert' },
        element('h3', {}, 'Nothing is changed in ', shown(name)),
        ...errors.map(({ message, detail: below }) => element('div', {},
          element('p', {}, shown(message)), below === '' ? null : element('pre', {}, shown(below))))));
      if (report === null) return;
    } else {
      detail.replaceChildren();
    }
    const difference = differenceOf(/** @type {Uint8Array} */ (report));
    const view = element('div');
    if (written !== null) detail.append(this.#downloads(applied, difference, commands));
    detail.append(...this.#dataFileChoosers(difference.files, name));
    const lonely = difference.notReached?.length ?? 0;
    if (written !== null && hasSource && lonely > 0) {
      detail.append(element('p', { class: 'row hint' },
        `${counted(lonely, 'variable')} of this year’s file ${lonely === 1 ? 'was' : 'were'} not reached. If names have changed:`,
        button({}, () => this.onMatch(name), 'Find pairs')));
    }
    detail.append(view);
    this.#shown = showDifference(view, difference);
  }

  /**
   * A choice for each codebook of several data files. A data file without an ID cannot be named, except
   * the first.
   * @param {RunFile[]} files
   * @param {string} working
   */
  #dataFileChoosers(files, working) {
    return files.filter(({ dataFiles }) => dataFiles.length > 1).map((file, i) => {
      const choices = file.dataFiles.filter((id, place) => id !== '' || place === 0);
      const select = /** @type {HTMLSelectElement} */ (element('select', { id: `data-file-${i}` },
        ...choices.map((id) => element('option', { value: id }, id === '' ? 'the first' : id))));
      select.value = file.dataFile;
      select.addEventListener('change', () => this.onDataFile(file, working, select.value));
      return element('p', { class: 'row hint' },
        element('label', { for: select.id }, shown(nameOf(file)), ' has several data files. This is about'), select);
    });
  }

  /**
   * @param {Applied} applied
   * @param {Difference} difference
   * @param {string} commands
   */
  #downloads(applied, difference, commands) {
    const { name, report } = applied;
    return element('div', { class: 'row downloads' },
      element('strong', { role: 'status' }, summary(difference)),
      button({ class: 'main' }, () => downloadCodebook(applied), 'Download ', shown(name)),
      button({}, () => download(`${stemOf(name)}-report.html`, /** @type {Uint8Array} */ (report), 'text/html'), 'Download the report'),
      button({}, () => download('commands.txt', new TextEncoder().encode(commands), 'text/plain'), 'Download the commands'));
  }
}

/** @param {Applied} applied */
function downloadCodebook({ name, written }) {
  if (written !== null) download(name, written, 'application/xml');
}
