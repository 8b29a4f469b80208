// The package's calls, in node.

import { randomFillSync } from 'node:crypto';
import { readFile } from 'node:fs/promises';

import { createCalls } from './api.js';

/** @type {Promise<WebAssembly.Module> | undefined} */
let compiled;

export const { apply, diff, match, show } = createCalls({
  compiled: () => (compiled ??= readFile(new URL('applydic.wasm', import.meta.url))
    .then((bytes) => WebAssembly.compile(bytes))),
  fillRandom: (bytes) => randomFillSync(bytes),
});
