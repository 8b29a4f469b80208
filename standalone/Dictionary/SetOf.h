#pragma once

#include <bit>
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
  class Iterator {
   public:
    explicit Iterator(std::uint16_t left) : left_(left) {}
    Item operator*() const { return static_cast<Item>(std::countr_zero(left_)); }
    Iterator& operator++() {
      left_ = static_cast<std::uint16_t>(left_ & (left_ - 1));
      return *this;
    }
    bool operator==(const Iterator&) const = default;

   private:
    std::uint16_t left_;
  };
  Iterator begin() const { return Iterator(bits_); }
  Iterator end() const { return Iterator(0); }
  std::size_t Size() const { return static_cast<std::size_t>(std::popcount(bits_)); }

  std::vector<const char*> Names() const {
    std::vector<const char*> names;
    for (const Item item : *this) names.push_back(NameOf(item));
    return names;
  }

 private:
  static std::uint16_t BitOf(Item item) {
    return static_cast<std::uint16_t>(1U << static_cast<unsigned>(item));
  }
  std::uint16_t bits_ = 0;
};

}  // namespace velahost
