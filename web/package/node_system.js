// The files, streams and terminal of the machine, by node.

import { randomFillSync } from 'node:crypto';
import fs from 'node:fs';
import { dirname, relative, resolve } from 'node:path';
import tty from 'node:tty';

/** @typedef {import('./system.js').Opening} Opening */
/** @typedef {import('./system.js').System} System */

const mostAtOnce = 2 ** 30; // bytes: node takes less than 2 GB

// What the program looks for in its environment.
const variables = ['COLUMNS', 'NO_COLOR', 'TERM'];

/** @type {NodeJS.Signals[]} */
const heldSignals = ['SIGINT', 'SIGTERM', 'SIGHUP'];

/**
 * Calls a function again as long as a stream cannot take or give anything yet.
 * @param {() => number} call
 */
function whenReady(call) {
  for (;;) {
    try {
      return call();
    } catch (error) {
      if (codeOf(error) !== 'EAGAIN') throw error;
      Atomics.wait(new Int32Array(new SharedArrayBuffer(4)), 0, 0, 5);
    }
  }
}

/** @param {unknown} error */
function codeOf(error) {
  return /** @type {NodeJS.ErrnoException} */ (error).code;
}

/** @implements {System} */
export class NodeSystem {
  environment = variables.flatMap((name) =>
    process.env[name] === undefined ? [] : [`${name}=${process.env[name]}`]);
  isWindows = process.platform === 'win32';

  /**
   * @param {string} path
   * @param {Opening} opening
   */
  open(path, opening) {
    const { O_RDONLY, O_NONBLOCK = 0 } = fs.constants;
    if (!opening.writes) return fs.openSync(path, O_RDONLY | (opening.waits ? 0 : O_NONBLOCK));
    if (opening.isNew) this.#holdSignals();
    return fs.openSync(path, opening.isNew ? 'wx' : 'w', opening.mode);
  }

  /** @param {number} file */
  close(file) {
    fs.closeSync(file);
    return 0;
  }

  /**
   * @param {number} file
   * @param {Uint8Array} into
   */
  read(file, into) {
    try {
      const size = Math.min(into.length, mostAtOnce);
      return whenReady(() => fs.readSync(file, into, 0, size, null));
    } catch (error) {
      if (codeOf(error) === 'EOF') return 0; // so Windows tells the end of a pipe
      throw error;
    }
  }

  /**
   * @param {number} file
   * @param {Uint8Array} bytes
   */
  write(file, bytes) {
    const size = Math.min(bytes.length, mostAtOnce);
    return whenReady(() => fs.writeSync(file, bytes, 0, size));
  }

  /** @param {number} file */
  flush(file) {
    fs.fsyncSync(file);
    return 0;
  }

  /** @param {string} folder */
  flushFolder(folder) {
    if (this.isWindows) return 0; // there a folder cannot be flushed
    const file = fs.openSync(folder, 'r');
    try {
      fs.fsyncSync(file);
    } finally {
      fs.closeSync(file);
    }
    return 0;
  }

  /** @param {string} path */
  status(path) {
    return fs.statSync(path, { bigint: true });
  }

  /** @param {string} path */
  statusOfLink(path) {
    return fs.lstatSync(path, { bigint: true });
  }

  currentFolder() {
    return this.isWindows ? process.cwd().replaceAll('\\', '/') : process.cwd();
  }

  /** @param {number} file */
  statusOf(file) {
    return fs.fstatSync(file, { bigint: true });
  }

  /** @param {string} path */
  readLink(path) {
    const link = fs.readlinkSync(path);
    if (!this.isWindows) return link;
    // A drive in front is no absolute path to the program, so the link is told from where it stands.
    const folder = fs.realpathSync(dirname(path));
    return relative(folder, resolve(folder, link)).replaceAll('\\', '/');
  }

  /**
   * @param {string} path
   * @param {number} how
   */
  checkAccess(path, how) {
    fs.accessSync(path, how);
    return 0;
  }

  /**
   * @param {string} from
   * @param {string} to
   */
  rename(from, to) {
    fs.renameSync(from, to);
    return 0;
  }

  /**
   * @param {string} from
   * @param {string} to
   */
  link(from, to) {
    fs.linkSync(from, to);
    return 0;
  }

  /** @param {string} path */
  remove(path) {
    fs.unlinkSync(path);
    return 0;
  }

  /**
   * @param {number} file
   * @param {number} mode
   */
  setMode(file, mode) {
    fs.fchmodSync(file, mode);
    return 0;
  }

  /**
   * @param {number} file
   * @param {number} user
   * @param {number} group
   */
  setOwner(file, user, group) {
    fs.fchownSync(file, user, group);
    return 0;
  }

  /** @param {number} file */
  columns(file) {
    if (!tty.isatty(file)) return undefined;
    const stream = file === 1 ? process.stdout : process.stderr;
    return stream.columns ?? 0;
  }

  /** @param {Uint8Array} bytes */
  fillRandom(bytes) {
    randomFillSync(bytes);
  }

  tellStage() {}

  // A file that is begun is finished: an interrupt takes effect when the program has ended, which is
  // soon, since what takes long came before.
  #holdSignals() {
    for (const signal of heldSignals) {
      if (process.listenerCount(signal) > 0) continue;
      process.once(signal, () => process.kill(process.pid, signal));
    }
  }
}
