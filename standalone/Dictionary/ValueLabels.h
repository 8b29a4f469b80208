#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "standalone/Dictionary/LabelLanguages.h"
#include "standalone/Text/Text.h"

namespace velahost {

// A value and its label.
struct ValueLabel {
  double number = 0;  // of a numeric variable
  // Of a string variable the value, without the blanks at its end; of a numeric one how the
  // document spells the number, empty where that is the shortest way.
  Text string;
  Text label;
  LabelLanguages languages = {};
};

// A set of value labels: pairs in the order in which they were added, no value twice. Once it is
// shared it is not changed.
class ValueLabels {
 public:
  // An empty set for values of the type: 0 numbers, else strings of that width in bytes.
  explicit ValueLabels(int type) : type_(type) {}

  int Type() const { return type_; }
  bool IsNumeric() const { return type_ == 0; }
  std::size_t Size() const { return pairs_.size(); }
  bool Empty() const { return pairs_.empty(); }
  const ValueLabel& operator[](std::size_t position) const { return pairs_[position]; }
  std::vector<ValueLabel>::const_iterator begin() const { return pairs_.begin(); }
  std::vector<ValueLabel>::const_iterator end() const { return pairs_.end(); }

  // The pair of a value; null when there is none. Takes constant time on large sets. A string
  // counts without the blanks at its end. It lives until the next Add.
  const ValueLabel* Find(double number) const;
  const ValueLabel* Find(std::string_view string) const;
  const ValueLabel* FindValueOf(const ValueLabel& pair) const {
    return IsNumeric() ? Find(pair.number) : Find(pair.string.View());
  }
  // The place of a pair that Find gave.
  std::size_t PlaceOf(const ValueLabel* pair) const {
    return static_cast<std::size_t>(pair - pairs_.data());
  }

  // Makes room for so many pairs.
  void Reserve(std::size_t pairs) { pairs_.reserve(pairs); }
  // Adds a pair at the end. REQUIRES: the set does not have the value.
  void Add(ValueLabel pair);

  // The same type, and the same values and labels in the same order. Spellings and languages do not
  // count.
  bool operator==(const ValueLabels& other) const;

 private:
  int type_;
  std::vector<ValueLabel> pairs_;
  // Places by the hash of the value, from 1, 0 where a slot is free; a power of two of slots, at
  // most half of them taken. Empty in a set of a few pairs.
  std::vector<unsigned> slots_;
};

// How a variable holds its set; null rather than empty.
using SharedValueLabels = std::shared_ptr<const ValueLabels>;

// Whether two hold the same pairs in the same order.
inline bool SameValueLabels(const SharedValueLabels& a, const SharedValueLabels& b) {
  return a == b || (a && b && *a == *b);
}

// A set of the same pairs at another width of strings; of values that become equal the first stays.
// REQUIRES: a set of strings, and width > 0.
SharedValueLabels AtWidth(const SharedValueLabels& set, int width);

}  // namespace velahost
