// System calls that only tests make: those on folders. Linked to them besides source/system_calls.js.

mergeInto(LibraryManager.library, {
  __syscall_mkdir__deps: ['$calls'],
  __syscall_mkdir: function(path, mode) {
    return calls.number(() => Module.system.makeFolder(UTF8ToString(path), mode));
  },
  __syscall_rmdir__deps: ['$calls'],
  __syscall_rmdir: function(path) {
    return calls.number(() => Module.system.removeFolder(UTF8ToString(path)));
  },
  __syscall_chdir__deps: ['$calls'],
  __syscall_chdir: function(path) {
    return calls.number(() => Module.system.changeFolder(UTF8ToString(path)));
  },
  __syscall_unlink__deps: ['$calls'],
  __syscall_unlink: function(path) {
    return calls.number(() => Module.system.remove(UTF8ToString(path)));
  },
  // All names at once, then none.
  __syscall_getdents64__deps: ['$calls'],
  __syscall_getdents64: function(folder, into) {
    const kNameAt = 19;
    const names = Module.system.namesIn(calls.folders[folder], folder);
    let at = into;
    for (const name of names) {
      const size = (kNameAt + lengthBytesUTF8(name) + 8) & ~7;
      HEAPU8.fill(0, at, at + size);
      HEAPU8[at] = 1;
      HEAPU16[(at + 16) >> 1] = size;
      stringToUTF8(name, at + kNameAt, size - kNameAt);
      at += size;
    }
    return at - into;
  },
});
