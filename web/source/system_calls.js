// The system calls of the program, for emscripten to link: each asks the object that the program runs
// on, Module.system (see package/system.js), and gives back what it says or, where it throws an error
// with the code of the system's error, that error's number.

mergeInto(LibraryManager.library, {
  $calls__deps: ['$ERRNO_CODES'],
  $calls: {
    // What is open without the system: the folders, by their numbers, the source of random bytes, and
    // second numbers of files, which node does not make.
    folders: {},
    nextFolder: 1e6,
    kRandom: 1e6 - 1,
    kSecond: 1e6 - 2,       // every second number of a file
    kTemporary: 0o20200000, // O_TMPFILE

    // Calls a function and returns what it returns, or the negative number of the error.
    number: (call) => {
      try {
        return call();
      } catch (error) {
        // An error of the system that has no number here says what it was trying.
        const number = ERRNO_CODES[error.code] || (error.syscall ? {{{ cDefine('EIO') }}} : undefined);
        if (number === undefined) throw error;
        return -number;
      }
    },

    pathAt: (folder, path) => {
      const name = UTF8ToString(path);
      if (folder === {{{ cDefine('AT_FDCWD') }}} || name.startsWith('/')) return name;
      return calls.folders[folder] + '/' + name;
    },

    open: (path, flags, mode) => {
      // A file without a name; node cannot give it one later.
      if ((flags & calls.kTemporary) === calls.kTemporary) return -{{{ cDefine('EOPNOTSUPP') }}};
      if (flags & {{{ cDefine('O_DIRECTORY') }}}) return calls.openFolder(path);
      if (path === '/dev/urandom') return calls.kRandom;
      return Module.system.open(path, {
        writes: (flags & {{{ cDefine('O_ACCMODE') }}}) !== {{{ cDefine('O_RDONLY') }}},
        isNew: (flags & {{{ cDefine('O_EXCL') }}}) !== 0,
        waits: (flags & {{{ cDefine('O_NONBLOCK') }}}) === 0,
        mode,
      });
    },

    // A folder is opened only to name files in it and to flush it.
    openFolder: (path) => {
      const kind = Number(Module.system.status(path).mode) & {{{ cDefine('S_IFMT') }}};
      if (kind !== {{{ cDefine('S_IFDIR') }}}) return -{{{ cDefine('ENOTDIR') }}};
      calls.folders[calls.nextFolder] = path;
      return calls.nextFolder++;
    },

    read: (file, into) => {
      if (file !== calls.kRandom) return Module.system.read(file, into);
      Module.system.fillRandom(into);
      return into.length;
    },

    fillStatus: (into, status) => {
      {{{ makeSetValue('into', C_STRUCTS.stat.st_dev, 'Number(BigInt.asUintN(32, status.dev))', 'i32') }}};
      {{{ makeSetValue('into', C_STRUCTS.stat.__st_dev_padding, '0', 'i32') }}};
      {{{ makeSetValue('into', C_STRUCTS.stat.__st_ino_truncated, 'Number(BigInt.asUintN(32, status.ino))', 'i32') }}};
      {{{ makeSetValue('into', C_STRUCTS.stat.st_mode, 'Number(status.mode)', 'i32') }}};
      {{{ makeSetValue('into', C_STRUCTS.stat.st_nlink, 'Number(status.nlink)', 'i32') }}};
      {{{ makeSetValue('into', C_STRUCTS.stat.st_uid, 'Number(status.uid)', 'i32') }}};
      {{{ makeSetValue('into', C_STRUCTS.stat.st_gid, 'Number(status.gid)', 'i32') }}};
      {{{ makeSetValue('into', C_STRUCTS.stat.st_rdev, '0', 'i32') }}};
      {{{ makeSetValue('into', C_STRUCTS.stat.__st_rdev_padding, '0', 'i32') }}};
      {{{ makeSetValue('into', C_STRUCTS.stat.st_blksize, '4096', 'i32') }}};
      {{{ makeSetValue('into', C_STRUCTS.stat.st_blocks, '0', 'i32') }}};
      calls.fillLong(into + {{{ C_STRUCTS.stat.st_size }}}, status.size);
      calls.fillLong(into + {{{ C_STRUCTS.stat.st_ino }}}, status.ino);
      return 0;
    },

    fillLong: (into, bigint) => {
      HEAPU32[into >> 2] = Number(BigInt.asUintN(32, bigint));
      HEAPU32[(into >> 2) + 1] = Number(bigint >> BigInt(32));
    },

    // Reads or writes the pieces of memory of a list, one after the other, and adds up what was done.
    eachPiece: (list, count, done, call) => {
      const error = calls.number(() => {
        let sum = 0;
        for (let i = 0; i < count; ++i) {
          const begin = HEAPU32[(list >> 2) + 2 * i];
          const size = HEAPU32[(list >> 2) + 2 * i + 1];
          const once = size > 0 ? call(HEAPU8.subarray(begin, begin + size)) : 0;
          sum += once;
          if (once < size) break;
        }
        HEAPU32[done >> 2] = sum;
        return 0;
      });
      return -error;
    },
  },

  __syscall_open__deps: ['$calls'],
  __syscall_open: function(path, flags, extra) {
    const mode = extra ? HEAP32[extra >> 2] : 0;
    return calls.number(() => calls.open(UTF8ToString(path), flags, mode));
  },
  __syscall_openat__deps: ['$calls'],
  __syscall_openat: function(folder, path, flags, extra) {
    const mode = extra ? HEAP32[extra >> 2] : 0;
    return calls.number(() => calls.open(calls.pathAt(folder, path), flags, mode));
  },
  fd_close__deps: ['$calls'],
  fd_close: function(file) {
    if (file === calls.kRandom || file === calls.kSecond || calls.folders[file] !== undefined) return 0;
    return -calls.number(() => Module.system.close(file));
  },
  fd_read__deps: ['$calls'],
  fd_read: function(file, list, count, done) {
    return calls.eachPiece(list, count, done, (bytes) => calls.read(file, bytes));
  },
  fd_write__deps: ['$calls'],
  fd_write: function(file, list, count, done) {
    return calls.eachPiece(list, count, done, (bytes) => Module.system.write(file, bytes));
  },
  // Files are read and written from end to end.
  fd_seek: function() { return {{{ cDefine('ESPIPE') }}}; },
  fd_sync__deps: ['$calls'],
  fd_sync: function(file) {
    const folder = calls.folders[file];
    return -calls.number(() => folder === undefined ? Module.system.flush(file)
                                                    : Module.system.flushFolder(folder));
  },
  fd_fdstat_get: function() { return {{{ cDefine('ENOSYS') }}}; },

  __syscall_stat64__deps: ['$calls'],
  __syscall_stat64: function(path, into) {
    return calls.number(() => calls.fillStatus(into, Module.system.status(UTF8ToString(path))));
  },
  __syscall_lstat64__deps: ['$calls'],
  __syscall_lstat64: function(path, into) {
    return calls.number(
        () => calls.fillStatus(into, Module.system.statusOfLink(UTF8ToString(path))));
  },
  __syscall_getcwd: function(into, size) {
    const folder = Module.system.currentFolder();
    stringToUTF8(folder, into, size);
    return lengthBytesUTF8(folder) + 1;
  },
  __syscall_fstat64__deps: ['$calls'],
  __syscall_fstat64: function(file, into) {
    return calls.number(() => calls.fillStatus(into, Module.system.statusOf(file)));
  },
  __syscall_fcntl64__deps: ['$calls'],
  // Asked is whether a file is open, or for a second number of it (1030, F_DUPFD_CLOEXEC).
  __syscall_fcntl64: function(file, operation) {
    const isSecond = operation === 1030;
    return calls.number(() => (Module.system.statusOf(file), isSecond ? calls.kSecond : 0));
  },
  // What is asked is the size of a terminal.
  __syscall_ioctl__deps: ['$calls'],
  __syscall_ioctl: function(file, operation, extra) {
    const columns = operation === {{{ cDefine('TIOCGWINSZ') }}} ? Module.system.columns(file) : undefined;
    if (columns === undefined) return -{{{ cDefine('ENOTTY') }}};
    const size = HEAP32[extra >> 2];  // four numbers of 16 bits: rows, columns, and sizes in pixels
    HEAPU16.set([0, columns, 0, 0], size >> 1);
    return 0;
  },
  // What is asked is whether a file is a terminal (2, in the first byte).
  fd_fdstat_get__deps: ['$calls'],
  fd_fdstat_get: function(file, into) {
    HEAPU8.fill(0, into, into + 24);
    HEAPU8[into] = Module.system.columns(file) === undefined ? 0 : 2;
    return 0;
  },
  __syscall_faccessat__deps: ['$calls'],
  __syscall_faccessat: function(folder, path, how) {
    return calls.number(() => Module.system.checkAccess(calls.pathAt(folder, path), how));
  },
  __syscall_readlink__deps: ['$calls'],
  __syscall_readlink: function(path, into, size) {
    return calls.number(() => {
      const bytes = new TextEncoder().encode(Module.system.readLink(UTF8ToString(path)));
      HEAPU8.set(bytes.subarray(0, size), into);
      return Math.min(bytes.length, size);
    });
  },
  __syscall_renameat__deps: ['$calls'],
  __syscall_renameat: function(fromFolder, from, toFolder, to) {
    return calls.number(
        () => Module.system.rename(calls.pathAt(fromFolder, from), calls.pathAt(toFolder, to)));
  },
  __syscall_linkat__deps: ['$calls'],
  __syscall_linkat: function(fromFolder, from, toFolder, to) {
    return calls.number(
        () => Module.system.link(calls.pathAt(fromFolder, from), calls.pathAt(toFolder, to)));
  },
  __syscall_unlinkat__deps: ['$calls'],
  __syscall_unlinkat: function(folder, path) {
    return calls.number(() => Module.system.remove(calls.pathAt(folder, path)));
  },
  __syscall_fchmod__deps: ['$calls'],
  __syscall_fchmod: function(file, mode) { return calls.number(() => Module.system.setMode(file, mode)); },
  __syscall_fchown32__deps: ['$calls'],
  __syscall_fchown32: function(file, user, group) {
    return calls.number(() => Module.system.setOwner(file, user, group));
  },
  // Node has no attributes and access lists of files.
  getxattr: function() { return -1; },
  fgetxattr: function() { return -1; },
  listxattr: function() { return -1; },
  fsetxattr: function() { return -1; },

  getentropy: function(into, size) {
    Module.system.fillRandom(HEAPU8.subarray(into, into + size));
    return 0;
  },
  TellStage: function(name) { Module.system.tellStage(UTF8ToString(name)); },
  $getEnvStrings: function() { return Module.system.environment; },
});
