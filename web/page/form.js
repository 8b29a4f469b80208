// The form: what to carry over, as choices that make a command, which is shown and may be edited.

import { button, element } from '../../report/elements.js';
import { commandOf, fileItems, properties, quoted } from './command.js';

/** @typedef {import('./command.js').Choices} Choices */
/** @typedef {import('./command.js').Item} Item */
/** @typedef {import('./command.js').Way} Way */

export class CommandForm {
  /** Set: the command was edited, and the form no longer writes it. */
  #isEdited = false;
  #sourceName = '';

  /** @param {() => void} onChange */
  constructor(onChange) {
    this.onChange = onChange;
    this.properties = new ItemList('Of the variables', properties, () => true);
    this.fileItems = new ItemList('Of the file itself', fileItems, () => false);
    this.list = textInput('list', 'Names, or a range such as q1 TO q9');
    this.from = textInput('from', 'One variable');
    this.onto = textInput('onto', 'Those that get its properties, such as q2 TO q9');
    this.adds = checkbox('adds', false);
    this.language = textInput('language', 'such as en');
    this.command = /** @type {HTMLTextAreaElement} */ (element(
      'textarea', { id: 'command', rows: 8, spellcheck: 'false', autocapitalize: 'off', 'aria-describedby': 'command-note' }));
    this.note = element('p', { id: 'command-note', class: 'note', role: 'status' });
    this.again = button({ class: 'quiet' }, () => this.#write(), 'Write it from the form again');
    this.element = this.#arrange();
    this.element.addEventListener('input', (event) => this.#takeInput(event.target));
    this.#write();
  }

  /** @returns {Choices} */
  get choices() {
    const chosen = /** @type {HTMLInputElement} */ (this.element.querySelector('[name=variables]:checked'));
    const variables = /** @type {Choices['variables']} */ (chosen.value);
    return {
      source: this.#sourceName === '' ? null : this.#sourceName,
      variables,
      list: this.list.value,
      from: this.from.value,
      onto: this.onto.value,
      addsVariables: this.adds.checked,
      properties: this.properties.chosen,
      fileItems: this.fileItems.chosen,
    };
  }

  /** Whether the command needs a source that is not there. */
  get lacksSource() {
    return this.#sourceName === '' && !this.#isEdited && this.choices.variables !== 'onto';
  }

  /** @param {string} name of the source; empty for none */
  setSource(name) {
    this.#sourceName = name;
    if (!this.#isEdited) this.#write();
  }

  /**
   * Has another source in the place of one, in an edited command too.
   * @param {string} old its name in the command
   * @param {string} name
   */
  replaceSource(old, name) {
    this.setSource(name);
    if (this.#isEdited) this.setCommand(this.command.value.replaceAll(quoted(old), quoted(name)));
  }

  /**
   * Puts a command there that the form does not make.
   * @param {string} text
   */
  setCommand(text) {
    this.command.value = text;
    this.#isEdited = true;
    this.#tell();
  }

  /** @param {EventTarget | null} target */
  #takeInput(target) {
    if (target === this.command) this.setCommand(this.command.value);
    else if (target !== this.language) this.#write();
    this.onChange();
  }

  #write() {
    this.command.value = commandOf(this.choices);
    this.#isEdited = false;
    this.#tell();
  }

  #tell() {
    this.again.hidden = !this.#isEdited;
    this.note.textContent = this.#isEdited
      ? 'You have edited the command. It is what will be done, whatever the form says.'
      : 'This is what the choices mean. You may edit it.';
  }

  #arrange() {
    return element(
      'div', { class: 'form' },
      element('div', { class: 'choices' },
        fieldset('Which variables',
          radio('all', true, 'All that have the same name in both files'),
          radio('list', false, 'Only these', this.list),
          radio('onto', false, 'One onto others', this.from, this.onto),
          labelled(this.adds, 'Add the variables that this year’s file lacks')),
        fieldset('Language of the labels',
          labelled(this.language, 'Only where a codebook has several. Without it: that of its first label.')),
        this.properties.element,
        this.fileItems.element),
      element('div', { class: 'made' },
        element('label', { for: 'command' }, element('strong', {}, 'The command')),
        this.command, this.note, this.again));
  }
}

// Items to choose from, each with its ways, if it has any.
class ItemList {
  /**
   * @param {string} title
   * @param {Item[]} items
   * @param {(item: Item) => boolean} isChosen
   */
  constructor(title, items, isChosen) {
    this.rows = items.map((item) => {
      const id = `${title}-${item.keyword}`.replaceAll(' ', '-').toLowerCase();
      return { item, box: checkbox(id, isChosen(item)), ways: item.hasWays ? wayChooser(item) : null };
    });
    const all = button({ class: 'quiet' }, () => this.#toggleAll(), 'All or none');
    this.element = fieldset(title, ...this.rows.map(({ item, box, ways }) => element(
      'div', { class: 'item' }, labelled(box, item.title), ways)), all);
  }

  /** @returns {Record<string, Way>} */
  get chosen() {
    return Object.fromEntries(this.rows
      .filter(({ box }) => box.checked)
      .map(({ item, ways }) => [item.keyword, /** @type {Way} */ (ways?.value ?? 'replace')]));
  }

  #toggleAll() {
    const isChecked = this.rows.some(({ box }) => !box.checked);
    for (const { box } of this.rows) box.checked = isChecked;
    this.element.dispatchEvent(new Event('input', { bubbles: true }));
  }
}

/** @param {Item} item */
function wayChooser(item) {
  return /** @type {HTMLSelectElement} */ (element(
    'select', { 'aria-label': `${item.title}: how` },
    element('option', { value: 'replace' }, 'replace'),
    element('option', { value: 'merge' }, 'add missing')));
}

/**
 * @param {string} id
 * @param {boolean} isChecked
 */
function checkbox(id, isChecked) {
  const box = /** @type {HTMLInputElement} */ (element('input', { type: 'checkbox', id }));
  box.checked = isChecked;
  return box;
}

/**
 * @param {string} id
 * @param {string} hint
 */
function textInput(id, hint) {
  return /** @type {HTMLInputElement} */ (element('input', {
    type: 'text', id, placeholder: hint, 'aria-label': hint, spellcheck: 'false', autocapitalize: 'off', autocomplete: 'off',
  }));
}

/**
 * @param {HTMLElement} input
 * @param {string} text
 */
function labelled(input, text) {
  return element('label', {}, input, element('span', {}, text));
}

/**
 * A choice of which variables; to write into its inputs chooses it.
 * @param {Choices['variables']} value
 * @param {boolean} isChosen
 * @param {string} text
 * @param {...HTMLInputElement} inputs
 */
function radio(value, isChosen, text, ...inputs) {
  const input = /** @type {HTMLInputElement} */ (element('input', { type: 'radio', name: 'variables', value }));
  input.checked = isChosen;
  for (const other of inputs) other.addEventListener('input', () => { input.checked = true; });
  return element('div', { class: 'item' }, labelled(input, text), ...inputs);
}

/**
 * @param {string} title
 * @param {...HTMLElement} children
 */
function fieldset(title, ...children) {
  return element('fieldset', {}, element('legend', {}, title), ...children);
}
