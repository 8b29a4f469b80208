#!/usr/bin/env node
// The program on the files of the machine: npx applydic.

import { readFileSync } from 'node:fs';

import { NodeSystem } from './node_system.js';
import { runProgram } from './program.js';

/**
 * The arguments as the program takes them: it parts paths by slashes, which Windows understands too.
 * A command is left as it is.
 * @param {string[]} args
 */
function withSlashes(args) {
  return args.map((arg, i) => {
    const isCommand = /^(-c|--command)/.test(arg) || ['-c', '--command'].includes(args[i - 1] ?? '');
    return isCommand ? arg : arg.replaceAll('\\', '/');
  });
}

const system = new NodeSystem();
const args = process.argv.slice(2);
const compiled = await WebAssembly.compile(readFileSync(new URL('applydic.wasm', import.meta.url)));
const status = await runProgram(compiled, system, system.isWindows ? withSlashes(args) : args);
// A signal that waited is told to node in between.
setImmediate(() => setImmediate(() => process.exit(status)));
