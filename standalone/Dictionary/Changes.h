#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Dictionary/SetOf.h"

namespace velahost {

// What a command can change of a variable, in the order of an account.
enum class Property : std::uint8_t {
  Label,
  ValueLabels,
  Missing,
  Print,
  Write,
  ColumnWidth,
  Level,
  Role,
  Alignment,
  Attributes,
  Documentation
};

// What a command can change of a file besides its variables, in the order of an account.
enum class FileItem : std::uint8_t { Label, Documents, Weight, Attributes, MrSets, VarSets };

template <>
inline constexpr std::size_t kItemCount<Property> = 11;
template <>
inline constexpr std::size_t kItemCount<FileItem> = 6;

// The name of a property or an item in an account.
const char* NameOf(Property property);
const char* NameOf(FileItem item);

using PropertySet = SetOf<Property>;
using FileItemSet = SetOf<FileItem>;

// The properties, or items, in which the two differ.
PropertySet Differing(const Variable& a, const Variable& b);
FileItemSet Differing(const FileItems& a, const FileItems& b);

// What differs between a dictionary and the same dictionary later, with variables added at its end.
struct Changes {
  struct OfVariable {
    std::size_t column;
    PropertySet properties;
  };

  std::vector<OfVariable> changed;  // by column; only variables that both have
  std::size_t firstAdded = 0;       // the columns from here on have been added
  FileItemSet file;
};

// REQUIRES: the variables of `now` begin with those of `before`.
Changes ChangesBetween(const Dictionary& before, const Dictionary& now);

}  // namespace velahost
