#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velahost {

// How many items an enumeration has.
template <class Item>
inline constexpr std::size_t kItemCount = 0;

// A set of the items of an enumeration, of which NameOf gives the names.
template <class Item>
class SetOf {
 public:
  static SetOf All() {
    SetOf all;
    for (std::size_t i = 0; i < kItemCount<Item>; ++i) all.Add(static_cast<Item>(i));
    return all;
  }

  bool Has(Item item) const { return (bits_ & BitOf(item)) != 0; }
  bool Empty() const { return bits_ == 0; }
  void Add(Item item) { bits_ = static_cast<std::uint16_t>(bits_ | BitOf(item)); }
  void Add(SetOf items) { bits_ = static_cast<std::uint16_t>(bits_ | items.bits_); }
  // Those that the other set lacks.
  SetOf Without(SetOf others) const {
    SetOf left;
    left.bits_ = static_cast<std::uint16_t>(bits_ & ~others.bits_);
    return left;
  }
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

}  // namespace velahost
