#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "standalone/Dictionary/Dictionary.h"

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
  Attributes
};

// What a command can change of a file besides its variables, in the order of an account.
enum class FileItem : std::uint8_t { Label, Documents, Weight, Attributes, MrSets, VarSets };

template <class Item>
inline constexpr std::size_t kItemCount = 0;
template <>
inline constexpr std::size_t kItemCount<Property> = 10;
template <>
inline constexpr std::size_t kItemCount<FileItem> = 6;

// The name of a property or an item in an account.
const char* NameOf(Property property);
const char* NameOf(FileItem item);

// A set of properties, or of items of a file.
template <class Item>
class SetOf {
 public:
  bool Has(Item item) const { return (bits_ & BitOf(item)) != 0; }
  bool Empty() const { return bits_ == 0; }
  void Add(Item item) { bits_ = static_cast<std::uint16_t>(bits_ | BitOf(item)); }
  bool operator==(const SetOf&) const = default;

  // Those of the set, in the order of their enumeration.
  std::vector<Item> Items() const {
    std::vector<Item> items;
    for (std::size_t i = 0; i < kItemCount<Item>; ++i) {
      if (Has(static_cast<Item>(i))) items.push_back(static_cast<Item>(i));
    }
    return items;
  }
  std::vector<const char*> Names() const {
    std::vector<const char*> names;
    for (const Item item : Items()) names.push_back(NameOf(item));
    return names;
  }

 private:
  static std::uint16_t BitOf(Item item) {
    return static_cast<std::uint16_t>(1U << static_cast<unsigned>(item));
  }
  std::uint16_t bits_ = 0;
};

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
