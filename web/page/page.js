// The page: two codebooks, a form that makes a command, and what comes of it.

import { button, element, shown } from '../../report/elements.js';
import newExample from '../../examples/survey_2026.xml';
import oldExample from '../../examples/survey_2025.xml';
import { commandsOfPairs } from './command.js';
import { FileChooser } from './files.js';
import { CommandForm } from './form.js';
import { OutcomeView } from './outcome.js';
import { pairTable } from './pairs.js';
import { compileProgram, startWorker } from 'page-parts';
import { Cancelled, Tasks } from './tasks.js';

/** @typedef {import('./files.js').Given} Given */
/** @typedef {import('./pairs.js').Proposal} Proposal */

const compiled = compileProgram();
const work = /** @type {HTMLElement} */ (document.getElementById('work'));

const source = new FileChooser({
  id: 'source', title: 'Last year’s codebook', takesSeveral: false, onChange: changed,
  hint: 'DDI Codebook (XML) that has the labels. Drop it here.',
});
const working = new FileChooser({
  id: 'working', title: 'This year’s codebook', takesSeveral: true, onChange: changed,
  hint: 'The one that is to get them; several if you like. Drop it here.',
});
const form = new CommandForm(changed);
const outcome = new OutcomeView({ onMatch: findPairs, onDataFile: useDataFile });
const pairs = element('section', { class: 'pairs-part', hidden: true, 'aria-labelledby': 'pairs-heading', tabindex: -1 });

const go = button({ class: 'main', id: 'go' }, apply, 'Show what would change');
const cancel = button({ id: 'cancel' }, () => tasks.cancel(), 'Cancel');
const stage = element('span', { class: 'stage', role: 'status' });
const failure = element('p', { class: 'refused', role: 'alert', hidden: true });
const tasks = new Tasks(startWorker, compiled, (name) => { stage.textContent = name; });

work.append(
  section('Codebooks', 'codebooks-heading',
    element('div', { class: 'drops' }, source.element, working.element),
    element('p', { class: 'note' }, 'Nothing at hand? ', button({ class: 'quiet', id: 'example' }, takeExample, 'Try it on an example'))),
  section('What to carry over', 'choices-heading', form.element),
  element('div', { class: 'row go' }, go, cancel, stage), failure, pairs, outcome.element);
setBusy(false);
compiled.then(
  () => { document.documentElement.dataset.ready = ''; },
  () => fail('This browser cannot run WebAssembly with exceptions. Take one that is not older than 2022.'));

// A file that misses its place must not take the place of this page.
for (const type of ['dragover', 'drop']) {
  document.addEventListener(type, (event) => event.preventDefault());
}

/**
 * @param {string} title
 * @param {string} id
 * @param {...HTMLElement} children
 */
function section(title, id, ...children) {
  return element('section', { 'aria-labelledby': id }, element('h2', { id }, title), ...children);
}

// The name that commands have for the source: not that of a working codebook, and without what parts
// an ID from a path.
function sourceName() {
  const name = source.given[0]?.name.replaceAll('#', '_') ?? '';
  const isTaken = working.given.some((file) => nameOfWorking(file) === name);
  return isTaken ? `last-year/${name}` : name;
}

// The source as commands name it: with the ID of a data file, where one was chosen.
function sourceInCommands() {
  return specification(sourceName(), source.given[0]?.dataFile);
}

/**
 * @param {string} name
 * @param {string} [dataFile]
 */
function specification(name, dataFile = '') {
  return dataFile === '' ? name : `${name}#${dataFile}`;
}

/**
 * A codebook for the program.
 * @param {Given} file
 * @param {string} name
 */
async function codebookOf(file, name) {
  return { bytes: await file.read(), name, ...(file.dataFile ? { id: file.dataFile } : {}) };
}

/** @param {Given} file */
function nameOfWorking({ name }) {
  return name.replaceAll('#', '_');
}

/** What is shown is of other choices now. */
function changed() {
  form.setSource(sourceInCommands());
  outcome.hide();
  pairs.hidden = true;
  failure.hidden = true;
  tellWhatLacks();
}

function tellWhatLacks() {
  const lacks = working.given.length === 0 || form.lacksSource;
  go.toggleAttribute('disabled', lacks);
  stage.textContent = lacks ? 'Give both codebooks first.' : '';
}

function takeExample() {
  const given = (/** @type {string} */ name, /** @type {string} */ text) => {
    const encode = () => new TextEncoder().encode(text);
    return { name, size: encode().length, read: async () => encode() };
  };
  source.take([given('survey_2025.xml', oldExample)]);
  working.take([given('survey_2026.xml', newExample)]);
  go.focus();
}

/** @param {boolean} isBusy */
function setBusy(isBusy) {
  work.toggleAttribute('aria-busy', isBusy);
  cancel.hidden = !isBusy;
  tellWhatLacks();
  if (isBusy) go.toggleAttribute('disabled', true);
}

/** @param {string} reason */
function fail(reason) {
  failure.replaceChildren(shown(reason));
  failure.hidden = false;
}

/**
 * Does work of several tasks, and shows that it is done.
 * @param {() => Promise<void>} does
 */
async function whileBusy(does) {
  failure.hidden = true;
  setBusy(true);
  try {
    await does();
  } catch (reason) {
    if (!(reason instanceof Cancelled)) fail(reason instanceof Error ? reason.message : String(reason));
  } finally {
    setBusy(false);
  }
}

async function sources() {
  const file = source.given[0];
  return file ? { [sourceName()]: await file.read() } : {};
}

function languageOption() {
  const language = form.language.value.trim();
  return language === '' ? {} : { language };
}

function apply() {
  if (go.hasAttribute('disabled')) return;
  outcome.hide();
  pairs.hidden = true;
  const commands = form.command.value;
  return whileBusy(async () => {
    const all = [];
    for (const file of working.given) {
      const options = {
        working: await codebookOf(file, nameOfWorking(file)),
        sources: await sources(), syntax: commands, report: 'alone', ...languageOption(),
      };
      all.push({ name: file.name, ...(await tasks.run({ call: 'apply', options })) });
    }
    outcome.show(all, commands, source.given.length > 0);
  });
}

/**
 * Takes another data file of a codebook, and does the work with it.
 * @param {import('./outcome.js').RunFile} file the codebook
 * @param {string} name of the working codebook
 * @param {string} id of the data file
 */
function useDataFile(file, name, id) {
  const given = file.role === 'working' ? working.given.find((other) => other.name === name) : source.given[0];
  if (!given) return;
  given.dataFile = id;
  if (file.role !== 'working') form.replaceSource(file.path, sourceInCommands());
  void apply();
}

/** @param {string} name of the working codebook */
function findPairs(name) {
  const now = working.given.find((file) => file.name === name);
  const old = source.given[0];
  if (!now || !old) return;
  void whileBusy(async () => {
    const options = {
      old: await codebookOf(old, sourceName()),
      new: await codebookOf(now, nameOfWorking(now)), ...languageOption(),
    };
    const { outcome: found, diagnostics } = await tasks.run({ call: 'match', options });
    if (found === null) return fail(diagnostics.map((/** @type {any} */ { message }) => message).join(' '));
    showPairs(found.proposals);
  });
}

/** @param {Proposal[]} proposals */
function showPairs(proposals) {
  const use = (/** @type {Proposal[]} */ chosen) => {
    form.setCommand(form.command.value.trimEnd() + '\n' + commandsOfPairs(form.choices, chosen));
    outcome.hide();
    pairs.hidden = true;
    void apply();
  };
  pairs.replaceChildren(
    element('h2', { id: 'pairs-heading' }, 'Pairs whose names have changed'),
    proposals.length === 0
      ? element('p', { class: 'note' }, 'No variable of last year’s file seems to be one of those.')
      : pairTable(proposals, use));
  pairs.hidden = false;
  pairs.focus({ preventScroll: true });
  pairs.scrollIntoView({ block: 'start' });
}
