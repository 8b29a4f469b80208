// What the program asks of the system that it runs on. There are two: the machine, by node, and files
// in memory. A call that fails throws an error whose `code` is the name of the system's error, such
// as 'ENOENT'. Open files have numbers; 0, 1 and 2 are the standard streams.

/**
 * @typedef {object} Opening
 * @property {boolean} writes it is opened for writing, and not for reading
 * @property {boolean} isNew the file is made; one that is there is refused
 * @property {boolean} waits to open a pipe waits until somebody writes to it
 * @property {number} mode the permissions of a new file
 */

/**
 * @typedef {object} Status
 * @property {bigint} dev the device; with `ino` it tells one file from every other
 * @property {bigint} ino
 * @property {bigint} mode kind and permissions
 * @property {bigint} nlink
 * @property {bigint} uid
 * @property {bigint} gid
 * @property {bigint} size in bytes
 */

/**
 * What returns a number and has nothing to say returns 0.
 * @typedef {object} System
 * @property {string[]} environment the environment variables, each NAME=VALUE
 * @property {boolean} isWindows paths are those of Windows
 * @property {(path: string, opening: Opening) => number} open
 * @property {(file: number) => number} close
 * @property {(file: number, into: Uint8Array) => number} read returns the bytes read; 0 at the end
 * @property {(file: number, bytes: Uint8Array) => number} write returns the bytes written
 * @property {(file: number) => number} flush writes to the disk what was written
 * @property {(folder: string) => number} flushFolder the same of the names in a folder
 * @property {(path: string) => Status} status links are followed
 * @property {(path: string) => Status} statusOfLink the same where a link is not followed
 * @property {(file: number) => Status} statusOf
 * @property {() => string} currentFolder its path, with slashes
 * @property {(path: string) => string} readLink
 * @property {(path: string, how: number) => number} checkAccess how: 4 to read, 2 to write, 1 to
 *     search a folder, or a sum of these
 * @property {(from: string, to: string) => number} rename
 * @property {(from: string, to: string) => number} link gives a file one name more
 * @property {(path: string) => number} remove
 * @property {(file: number, mode: number) => number} setMode
 * @property {(file: number, user: number, group: number) => number} setOwner
 * @property {(file: number) => number | undefined} columns the width of a terminal, 0 where it is not
 *     known; undefined for what is no terminal
 * @property {(bytes: Uint8Array) => void} fillRandom
 * @property {(name: string) => void} tellStage is told what the program is at; '' for nothing more
 */

export {};
