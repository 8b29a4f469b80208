#!/usr/bin/env node
// The program on the files of the machine: npx applydic.

import { readFileSync } from 'node:fs';

import { NodeSystem } from './node_system.js';
import { runProgram } from './program.js';

const compiled = await WebAssembly.compile(readFileSync(new URL('applydic.wasm', import.meta.url)));
const status = await runProgram(compiled, new NodeSystem(), process.argv.slice(2));
// A signal that waited is told to node in between.
setImmediate(() => setImmediate(() => process.exit(status)));
