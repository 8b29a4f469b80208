// The program, applydic, on a system.

import createRuntime from './applydic.js';

/** @typedef {import('./system.js').System} System */

/**
 * Runs the program once and returns its exit status. Each run has a memory of its own, which is given
 * back when it is over.
 * @param {WebAssembly.Module} compiled applydic.wasm
 * @param {System} system
 * @param {string[]} args what follows the program's name
 */
export function runProgram(compiled, system, args) {
  return runOn(system, createRuntime, compiled, args);
}

/**
 * Runs a program that is linked as this one is.
 * @param {System} system
 * @param {typeof createRuntime} create its loader
 * @param {WebAssembly.Module} compiled
 * @param {string[]} args
 * @returns {Promise<number>}
 */
export async function runOn(system, create, compiled, args) {
  const runtime = await create({
    system,
    thisProgram: 'applydic',
    instantiateWasm(imports, use) {
      WebAssembly.instantiate(compiled, imports).then(use);
      return {};
    },
    quit(_, toThrow) {
      throw toThrow;
    },
  });
  return runtime.callMain(args);
}
