#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "standalone/Dictionary/Variable.h"

namespace velahost {

// The names of a file's variables by column, and the column of each name, without regard to case.
class VariableNames {
 public:
  VariableNames() = default;

  // Makes room for so many names.
  void Reserve(std::size_t names);
  // Adds the variable at the next column. REQUIRES: Find(variable.name) < 0.
  void Add(const Variable& variable);
  // The column, from 0, of the variable of that name, or -1. A longer name counts with the whole
  // characters that fit into kNameBytes.
  int Find(std::string_view name) const;
  // The same for a name that is cut and in upper case already.
  int FindUpperCase(std::string_view name) const;

  int Count() const { return static_cast<int>(names_.size()); }
  // The name at a column, as it is spelled and in upper case. REQUIRES: 0 <= column < Count().
  const Text& At(int column) const { return names_[static_cast<std::size_t>(column)].spelled; }
  const Text& UpperCaseAt(int column) const {
    return names_[static_cast<std::size_t>(column)].upperCase;
  }

 private:
  struct Name {
    Text spelled;
    Text upperCase;
  };
  std::size_t SlotOf(std::string_view upperCaseName) const;
  void MakeSlots(std::size_t names);

  std::vector<Name> names_;
  // Columns by the hash of the name, from 1, 0 where a slot is free; a power of two of slots, at
  // most half of them taken.
  std::vector<unsigned> slots_;
};

}  // namespace velahost
