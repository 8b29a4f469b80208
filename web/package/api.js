// The program's commands on bytes: each call is a run of the program on files in memory.

import { MemorySystem } from './memory_system.js';
import { runProgram } from './program.js';

/**
 * A codebook: its bytes, or these with the name by which messages call it, and with the ID of one of
 * several data files in it.
 * @typedef {Uint8Array | {bytes: Uint8Array, name?: string, id?: string}} Codebook
 */

/**
 * A message of a run, as the program writes it to standard error.
 * @typedef {object} Diagnostic
 * @property {'warning' | 'error'} severity
 * @property {string} message
 * @property {string} detail what stands below it: the line that it is about with a mark, and advice;
 *     empty for none
 */

/**
 * What the program did: its exit status, what it said, and the JSON that it printed, if it did.
 * @typedef {object} Result
 * @property {number} status 0 if all went well; the README has the others
 * @property {Diagnostic[]} diagnostics
 * @property {any} outcome what --json prints; null where the program could not run
 */

/**
 * @typedef {object} ApplyOptions
 * @property {Codebook} working the codebook that is changed; its bytes are not
 * @property {Record<string, Uint8Array>} [sources] the codebooks that commands name after FROM
 * @property {string} [command] the command; this or syntax
 * @property {string} [syntax] one or more commands
 * @property {string} [language] of the labels; else that of the first label of working
 * @property {boolean} [dryRun] nothing is written; the outcome tells what would be
 * @property {boolean | 'alone'} [report] a report is made: a page to hand on. Alone: without the
 *     outcome, which it has in it
 */

/**
 * @typedef {object} DiffOptions
 * @property {Codebook} old
 * @property {Codebook} new
 * @property {string} [language] of the labels; else that of the first label of new
 */

/**
 * @typedef {object} MatchOptions
 * @property {Codebook} old whose variables may have other names
 * @property {Codebook} new
 * @property {string} [language] of the labels; else that of the first label of new
 */

/**
 * @typedef {object} ShowOptions
 * @property {Codebook} file
 * @property {string[]} [variables] only these
 * @property {string} [language] of the labels; else that of the first label of file
 */

/**
 * What the calls need of where they run.
 * @typedef {object} Surroundings
 * @property {() => Promise<WebAssembly.Module>} compiled gives applydic.wasm, compiled
 * @property {(bytes: Uint8Array) => void} fillRandom fills at most 65536 bytes
 * @property {(name: string) => void} [tellStage] is told what a run is at; '' for nothing more
 */

const syntaxPath = '/applydic/commands';
const reportPath = '/applydic/report.html';

/**
 * The calls. No call leaves anything behind: each has a program and files of its own.
 * @param {Surroundings} surroundings
 */
export function createCalls({ compiled, fillRandom, tellStage }) {
  const newSystem = () => new MemorySystem(fillRandom, tellStage);

  /**
   * @param {MemorySystem} system
   * @param {string[]} args
   * @returns {Promise<Result>}
   */
  async function run(system, args) {
    const status = await runProgram(await compiled(), system, args);
    const printed = textOf(system.written(1));
    return {
      status,
      diagnostics: diagnosticsIn(textOf(system.written(2))),
      outcome: printed === '' ? null : JSON.parse(printed),
    };
  }

  return {
    /**
     * Applies dictionaries to a codebook. written is the changed codebook, null if nothing was
     * written; report is there if one was asked for and the program could run.
     * @param {ApplyOptions} options
     * @returns {Promise<Result & {written: Uint8Array | null, report: Uint8Array | null}>}
     */
    async apply({
      working, sources = {}, command, syntax, language, dryRun = false, report = false,
    }) {
      const commands = command ?? syntax;
      if (commands === undefined || (command !== undefined && syntax !== undefined)) {
        throw new TypeError('apply: give exactly one of command and syntax');
      }
      const system = newSystem();
      const name = put(system, working, 'working.xml');
      for (const [path, bytes] of Object.entries(sources)) put(system, { bytes, name: path });
      system.put(syntaxPath, new TextEncoder().encode(commands));
      const result = await run(system, [
        'apply', report === 'alone' ? '--quiet' : '--json', '--syntax', syntaxPath,
        dryRun ? '--dry-run' : '--in-place', ...(report ? ['--report', reportPath] : []),
        ...languageOption(language), '--', name.specification]);
      const isWritten = result.status === 0 && !dryRun;
      return {
        ...result,
        written: isWritten ? system.take(name.path) ?? null : null,
        report: system.take(reportPath) ?? null,
      };
    },

    /**
     * Tells what differs between the dictionaries of two codebooks: status 0 if nothing does, 1 if
     * they differ.
     * @param {DiffOptions} options
     * @returns {Promise<Result>}
     */
    async diff({ old, new: now, language }) {
      const system = newSystem();
      const names = [put(system, old, 'old.xml'), put(system, now, 'new.xml')];
      return run(system, [
        'diff', '--json', ...languageOption(language), '--',
        ...names.map((name) => name.specification)]);
    },

    /**
     * Proposes which variables of an older codebook those of a newer one come from, where names have
     * changed. syntax has the proposals as commands, as the program writes them to a file; null where
     * it could not run.
     * @param {MatchOptions} options
     * @returns {Promise<Result & {syntax: string | null}>}
     */
    async match({ old, new: now, language }) {
      const system = newSystem();
      const names = [put(system, old, 'old.xml'), put(system, now, 'new.xml')];
      system.put(syntaxPath, new Uint8Array());
      const result = await run(system, [
        'match', '--json', '--output', syntaxPath, ...languageOption(language), '--',
        ...names.map((name) => name.specification)]);
      if (result.status !== 0) return { ...result, syntax: null };
      const commands = system.take(syntaxPath) ?? new Uint8Array();
      return { ...result, outcome: { ...result.outcome, written: null }, syntax: textOf(commands) };
    },

    /**
     * Shows the dictionary of a codebook.
     * @param {ShowOptions} options
     * @returns {Promise<Result>}
     */
    async show({ file, variables = [], language }) {
      const system = newSystem();
      const name = put(system, file, 'codebook.xml');
      return run(system, [
        'show', '--json', ...languageOption(language), '--', name.specification, ...variables]);
    },
  };
}

/**
 * Puts a codebook among the files of a run: its path there, and what the program is to be told.
 * @param {MemorySystem} system
 * @param {Codebook} codebook
 * @param {string} [usual] its name, where it has none
 */
function put(system, codebook, usual = '') {
  const { bytes, name = usual, id = undefined } =
    codebook instanceof Uint8Array ? { bytes: codebook } : codebook;
  if (!(bytes instanceof Uint8Array)) throw new TypeError(`${name}: give its bytes as Uint8Array`);
  if (name === '') throw new TypeError('A codebook has an empty name');
  if (system.take(name)) throw new TypeError(`${name}: there are two codebooks of that name`);
  system.put(name, bytes);
  return { path: name, specification: id === undefined ? name : `${name}#${id}` };
}

/** @param {string | undefined} language */
function languageOption(language) {
  return language === undefined ? [] : ['--lang', language];
}

/** @param {Uint8Array} bytes */
function textOf(bytes) {
  return new TextDecoder().decode(bytes);
}

/**
 * The messages in what the program wrote to standard error: a line for each, and below it, indented,
 * what belongs to it.
 * @param {string} text
 * @returns {Diagnostic[]}
 */
function diagnosticsIn(text) {
  const messages = /^applydic: (warning|error): (.*)((?:\n {2}.*)*)$/gm;
  return [...text.matchAll(messages)].map(([, severity, message = '', below = '']) => ({
    severity: severity === 'warning' ? 'warning' : 'error',
    message,
    detail: below.slice(1),
  }));
}
