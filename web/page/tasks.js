// The work, done on a worker so that the page stays alive, one task at a time. Each task has a worker
// of its own: its memory goes back as soon as it is done.

/** @typedef {import('./worker.js').Task} Task */

/**
 * The buffers of all bytes in a task's options.
 * @param {object} options
 * @returns {ArrayBuffer[]}
 */
function buffersIn(options) {
  return Object.values(options).flatMap((value) => {
    if (value instanceof Uint8Array) return [/** @type {ArrayBuffer} */ (value.buffer)];
    return value instanceof Object ? buffersIn(value) : [];
  });
}

export class Cancelled extends Error {}

export class Tasks {
  /** @type {Worker | null} */
  #worker = null;
  /** @type {((reason: Error) => void) | null} */
  #refuse = null;

  /**
   * @param {() => Worker} startWorker
   * @param {Promise<WebAssembly.Module>} compiled
   * @param {(stage: string) => void} tellStage
   */
  constructor(startWorker, compiled, tellStage) {
    this.startWorker = startWorker;
    this.compiled = compiled;
    this.tellStage = tellStage;
  }

  /**
   * Does a task and gives its result. Throws Cancelled. The bytes in its options go over to the worker:
   * nothing is left of them here, and no second copy there.
   * @param {Task} task
   * @returns {Promise<any>}
   */
  async run(task) {
    const compiled = await this.compiled;
    this.cancel();
    const worker = (this.#worker = this.startWorker());
    return new Promise((resolve, reject) => {
      this.#refuse = reject;
      worker.onmessage = ({ data }) => {
        if ('stage' in data) return this.tellStage(data.stage);
        this.#refuse = null;
        this.#end();
        if ('failure' in data) reject(new Error(data.failure));
        else resolve(data.result);
      };
      worker.onerror = (event) => {
        this.#refuse = null;
        this.#end();
        reject(new Error(event.message || 'The work ended without a result.'));
      };
      worker.postMessage({ ...task, compiled }, buffersIn(task.options));
    });
  }

  /** Ends the task that runs, if one does. */
  cancel() {
    if (this.#refuse === null) return;
    const refuse = this.#refuse;
    this.#refuse = null;
    this.#end();
    refuse(new Cancelled());
  }

  #end() {
    this.#worker?.terminate();
    this.#worker = null;
  }
}
