// The codebooks that the user gives: a place to drop files on, or to choose them.

import { button, element, shown, sizeText } from '../../report/elements.js';

/**
 * A codebook that was given. Its bytes are read when they are needed, so that the file on the disk may
 * change until then. Each reading gives a buffer of its own.
 * @typedef {object} Given
 * @property {string} name
 * @property {number} size
 * @property {string} [dataFile] the ID of one of several data files in it; the first without
 * @property {() => Promise<Uint8Array>} read
 */

export class FileChooser {
  /** @type {Given[]} */
  #given = [];

  /**
   * @param {object} how
   * @param {string} how.id
   * @param {string} how.title
   * @param {string} how.hint
   * @param {boolean} how.takesSeveral
   * @param {() => void} how.onChange
   */
  constructor({ id, title, hint, takesSeveral, onChange }) {
    this.takesSeveral = takesSeveral;
    this.onChange = onChange;
    this.input = /** @type {HTMLInputElement} */ (element('input', {
      type: 'file', id, class: 'aside', multiple: takesSeveral, accept: '.xml,.ddi,text/xml,application/xml',
    }));
    this.input.addEventListener('change', () => {
      this.take([...(this.input.files ?? [])].map(givenOf));
      this.input.value = '';
    });
    this.list = element('ul', { class: 'given', role: 'list' });
    this.element = element(
      'div', { class: 'drop' },
      element('label', { for: id },
        element('strong', {}, title),
        element('span', {}, hint),
        element('span', { class: 'choose', 'aria-hidden': 'true' }, takesSeveral ? 'Choose files' : 'Choose a file')),
      this.input, this.list);
    this.#listen();
  }

  get given() {
    return this.#given;
  }

  /** @param {Given[]} files */
  take(files) {
    if (files.length === 0) return;
    if (!this.takesSeveral) this.#given = files.slice(0, 1);
    for (const file of this.takesSeveral ? files : []) {
      this.#given = [...this.#given.filter(({ name }) => name !== file.name), file];
    }
    this.#show();
  }

  #listen() {
    let inside = 0;
    const mark = (/** @type {number} */ by) => {
      inside = by === 0 ? 0 : inside + by;
      this.element.classList.toggle('over', inside > 0);
    };
    this.element.addEventListener('dragenter', () => mark(1));
    this.element.addEventListener('dragleave', () => mark(-1));
    this.element.addEventListener('dragover', (event) => event.preventDefault());
    this.element.addEventListener('drop', (event) => {
      event.preventDefault();
      mark(0);
      this.take([...(event.dataTransfer?.files ?? [])].map(givenOf));
    });
  }

  #show() {
    this.list.replaceChildren(...this.#given.map((file) => element(
      'li', {},
      element('span', { class: 'name' }, shown(file.name)),
      element('span', { class: 'size' }, sizeText(file.size)),
      button({ class: 'quiet', 'aria-label': `Remove ${file.name}` }, () => {
        this.#given = this.#given.filter((other) => other !== file);
        this.#show();
        this.input.focus();
      }, 'Remove'))));
    this.onChange();
  }
}

/**
 * @param {File} file
 * @returns {Given}
 */
function givenOf(file) {
  return { name: file.name, size: file.size, read: async () => new Uint8Array(await file.arrayBuffer()) };
}
