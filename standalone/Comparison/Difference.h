#pragma once

#include <cstddef>
#include <vector>

#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Dictionary/Changes.h"
#include "standalone/Dictionary/Dictionary.h"

namespace velahost {

// One of two dictionaries that are compared: the dictionary itself outlives this object.
struct Side {
  const Dictionary& dictionary;
  DocumentationLookup documentation;  // of its variables
};

// The sides of a file as it was read, and of the same file after a command. The file outlives them.
// REQUIRES: it was not opened as a source.
Side SideOf(const CodebookFile& file);
Side SideAfter(const CodebookFile& file, const Dictionary& now);

// What differs between two dictionaries: which variables, in which properties, and which items of
// the file. The values stand in the dictionaries.
struct Difference {
  struct OfVariable {
    std::size_t oldColumn;
    std::size_t newColumn;
    PropertySet properties;
    // Of two files only: a command changes neither.
    bool isRenamed = false;  // the same name in other letter case
    bool isRetyped = false;
  };

  std::vector<OfVariable> changed;   // in the order of the new dictionary
  std::vector<std::size_t> added;    // columns of the new dictionary
  std::vector<std::size_t> removed;  // columns of the old dictionary
  bool isReordered = false;          // variables of both stand in another order
  FileItemSet file;

  bool Empty() const {
    return changed.empty() && added.empty() && removed.empty() && !isReordered && file.Empty();
  }
};

// Compares two files; their variables are paired by name, without regard to case. What documents a
// variable is compared by its texts, in the languages of the files' labels.
// REQUIRES: neither was opened as a source.
Difference DifferenceBetween(const CodebookFile& before, const CodebookFile& now);

// The same of a dictionary and itself after a command.
Difference DifferenceOf(const Changes& changes, const Dictionary& now);

}  // namespace velahost
