#pragma once

#include <sys/stat.h>

#include <string>

namespace velahost {

// The file that saving replaces or makes: the one that all links of a path lead to.
struct SaveTarget {
  std::string folder;  // "." for a path without one
  std::string name;
  bool isThere = false;
  struct stat status = {};  // of the file that is there

  std::string Path() const { return PathOf(name); }
  // The path of a file beside it.
  std::string PathOf(const std::string& other) const {
    return folder == "/" ? "/" + other : folder + "/" + other;
  }
};

// Follows the links of the path to the target, which can be replaced as far as that can be told.
// Throws SaveError.
SaveTarget FindSaveTarget(const std::string& path);

}  // namespace velahost
