// Files in memory, for a program that is called with bytes and gives back bytes.

/** @typedef {import('./system.js').Opening} Opening */
/** @typedef {import('./system.js').Status} Status */
/** @typedef {import('./system.js').System} System */

const regularFile = 0o100644n;
const folder = 0o040755n;
const character = 0o020644n;

/** An error of the system, with its code. */
class SystemError extends Error {
  /** @param {string} code */
  constructor(code) {
    super(code);
    this.code = code;
  }
}

// The bytes of a file, and its number among the files there ever were.
class File {
  static #count = 0n;
  /** @type {Uint8Array[]} */
  #pieces = [];
  size = 0;
  ino = ++File.#count;

  /** @param {Uint8Array} bytes */
  constructor(bytes = new Uint8Array()) {
    this.#pieces.push(bytes);
    this.size = bytes.length;
  }

  /** @param {Uint8Array} bytes which are copied */
  append(bytes) {
    this.#pieces.push(bytes.slice());
    this.size += bytes.length;
  }

  get bytes() {
    if (this.#pieces.length > 1) {
      const joined = new Uint8Array(this.size);
      let length = 0;
      for (const piece of this.#pieces) {
        joined.set(piece, length);
        length += piece.length;
      }
      this.#pieces = [joined];
    }
    return /** @type {Uint8Array} */ (this.#pieces[0]);
  }
}

/** @implements {System} */
export class MemorySystem {
  /** @type {string[]} */
  environment = [];
  isWindows = false;

  /** @type {Map<string, File>} by path from the root */
  #files = new Map();
  /** @type {Map<number, {file: File, position: number}>} */
  #open = new Map();
  #next = 3;

  /**
   * @param {(bytes: Uint8Array) => void} fillRandom
   * @param {(name: string) => void} [tellStage]
   */
  constructor(fillRandom, tellStage = () => {}) {
    this.fillRandom = fillRandom;
    this.tellStage = tellStage;
    for (const stream of [0, 1, 2]) this.#open.set(stream, { file: new File(), position: 0 });
  }

  /**
   * Puts a file there. The bytes are not copied.
   * @param {string} path
   * @param {Uint8Array} bytes
   */
  put(path, bytes) {
    this.#files.set(pathFromRoot(path), new File(bytes));
  }

  /**
   * The bytes of a file; undefined where there is none.
   * @param {string} path
   */
  take(path) {
    return this.#files.get(pathFromRoot(path))?.bytes;
  }

  /**
   * What was written to a standard stream.
   * @param {1 | 2} stream
   */
  written(stream) {
    return this.#opened(stream).file.bytes;
  }

  /**
   * @param {string} path
   * @param {Opening} opening
   */
  open(path, opening) {
    if (opening.writes) {
      if (opening.isNew && this.#files.has(pathFromRoot(path))) throw new SystemError('EEXIST');
      this.put(path, new Uint8Array());
    }
    this.#open.set(this.#next, { file: this.#at(path), position: 0 });
    return this.#next++;
  }

  /** @param {number} file */
  close(file) {
    this.#open.delete(file);
    return 0;
  }

  /**
   * @param {number} file
   * @param {Uint8Array} into
   */
  read(file, into) {
    const opened = this.#opened(file);
    const bytes = opened.file.bytes.subarray(opened.position, opened.position + into.length);
    into.set(bytes);
    opened.position += bytes.length;
    return bytes.length;
  }

  /**
   * @param {number} file
   * @param {Uint8Array} bytes
   */
  write(file, bytes) {
    this.#opened(file).file.append(bytes);
    return bytes.length;
  }

  flush() {
    return 0;
  }

  flushFolder() {
    return 0;
  }

  /** @param {string} path */
  status(path) {
    if (this.#isFolder(path)) return statusFor(0n, folder, 0);
    const file = this.#at(path);
    return statusFor(file.ino, regularFile, file.size);
  }

  /** @param {string} path */
  statusOfLink(path) {
    return this.status(path);
  }

  currentFolder() {
    return '/';
  }

  /** @param {number} number */
  statusOf(number) {
    const { file } = this.#opened(number);
    return statusFor(file.ino, number < 3 ? character : regularFile, file.size);
  }

  /**
   * @param {string} path
   * @returns {string}
   */
  readLink(path) {
    this.status(path);
    throw new SystemError('EINVAL'); // there are no links
  }

  /** @param {string} path */
  checkAccess(path) {
    this.status(path);
    return 0;
  }

  /**
   * @param {string} from
   * @param {string} to
   */
  rename(from, to) {
    this.#files.set(pathFromRoot(to), this.#at(from));
    return this.remove(from);
  }

  /**
   * @param {string} from
   * @param {string} to
   */
  link(from, to) {
    if (this.#files.has(pathFromRoot(to))) throw new SystemError('EEXIST');
    this.#files.set(pathFromRoot(to), this.#at(from));
    return 0;
  }

  /** @param {string} path */
  remove(path) {
    this.#at(path);
    this.#files.delete(pathFromRoot(path));
    return 0;
  }

  setMode() {
    return 0;
  }

  setOwner() {
    return 0;
  }

  columns() {
    return undefined;
  }

  /** @param {string} path */
  #at(path) {
    const file = this.#files.get(pathFromRoot(path));
    if (!file) throw new SystemError(this.#isFolder(path) ? 'EISDIR' : 'ENOENT');
    return file;
  }

  /** @param {number} number */
  #opened(number) {
    const opened = this.#open.get(number);
    if (!opened) throw new SystemError('EBADF');
    return opened;
  }

  // A folder is there if it is the root, or if a file is in it.
  /** @param {string} path */
  #isFolder(path) {
    const within = pathFromRoot(path);
    if (within === '') return true;
    return [...this.#files.keys()].some((other) => other.startsWith(within + '/'));
  }
}

/**
 * The path without what does not matter; everything is relative to the root.
 * @param {string} path
 */
function pathFromRoot(path) {
  /** @type {string[]} */
  const parts = [];
  for (const part of path.split('/')) {
    if (part === '..') parts.pop();
    else if (part !== '' && part !== '.') parts.push(part);
  }
  return parts.join('/');
}

/**
 * @param {bigint} ino
 * @param {bigint} mode
 * @param {number} size
 * @returns {Status}
 */
function statusFor(ino, mode, size) {
  return { dev: 1n, ino, mode, nlink: 1n, uid: 0n, gid: 0n, size: BigInt(size) };
}
