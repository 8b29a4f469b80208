// Does the work on a thread of its own.

import { createCalls } from 'package/api.js';

/**
 * A call, by its name and its arguments.
 * @typedef {{call: 'apply' | 'match', options: any}} Task
 */

/** @typedef {{written: Uint8Array | null, report: Uint8Array | null}} Large */

self.onmessage = async ({ data }) => {
  const { call, options, compiled } = /** @type {Task & {compiled: WebAssembly.Module}} */ (data);
  const calls = createCalls({
    compiled: async () => compiled,
    fillRandom: (bytes) => crypto.getRandomValues(bytes),
    tellStage: (stage) => self.postMessage({ stage }),
  });
  try {
    const result = await calls[call](options);
    // What is large changes its owner, so that it is not copied.
    const { written = null, report = null } = /** @type {Partial<Large>} */ (result);
    const large = [written, report].flatMap((bytes) => (bytes === null ? [] : [bytes.buffer]));
    self.postMessage({ result }, { transfer: /** @type {ArrayBuffer[]} */ (large) });
  } catch (failure) {
    self.postMessage({ failure: reasonOf(failure) });
  }
};

/** @param {unknown} failure */
function reasonOf(failure) {
  if (failure instanceof RangeError || failure instanceof WebAssembly.RuntimeError) {
    return 'There is not enough memory for this codebook in the browser.';
  }
  return failure instanceof Error ? failure.message : String(failure);
}
