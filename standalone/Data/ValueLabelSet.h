#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/Data.h"

// A set of value labels as the standalone host holds it: pairs of a value and a label in the order
// in which they were added, no value twice. Handles share a set; once it is shared it is not
// changed.
class VELA_VLImpl {
 public:
  // An empty set for values of the type: 0 numbers, else strings of that width.
  explicit VELA_VLImpl(int type);

  int Type() const { return type_; }
  int Size() const { return static_cast<int>(labels_.size()); }

  // The pair at a position from 0. REQUIRES: position < Size(). What is returned lives until the
  // next Add.
  const OBS* ValueAt(int position) const;
  double NumberAt(int position) const { return numbers_[static_cast<std::size_t>(position)]; }
  const std::string& StringAt(int position) const {
    return strings_[static_cast<std::size_t>(position)];
  }
  const std::string& LabelAt(int position) const {
    return labels_[static_cast<std::size_t>(position)];
  }

  // The position of the value's pair, or -1. Takes constant time on large sets.
  int Find(const OBS* value) const;
  int FindNumber(double number) const;
  int FindString(std::string_view text) const;  // REQUIRES: text.size() == Type()
  // The position of the pair of the value that another set of this type has at a position, or -1.
  int FindValueOf(const VELA_VLImpl& other, int position) const;

  // Makes room for so many pairs.
  void Reserve(std::size_t pairs);
  // Adds a pair at the end. REQUIRES: the set does not have the value; text.size() == Type().
  void AddNumber(double number, std::string label);
  void AddString(std::string text, std::string label);
  void Add(const OBS* value, std::string label);

  // A set of the same pairs at another width of strings; of values that become equal the first
  // stays. REQUIRES: Type() > 0 and width > 0.
  std::shared_ptr<VELA_VLImpl> AtWidth(int width) const;
  // A set of the pairs in another order: the pair at order[i] comes i-th.
  std::shared_ptr<VELA_VLImpl> InOrder(const std::vector<int>& order) const;
  std::shared_ptr<VELA_VLImpl> Copy() const;

  // The same pairs in the same order.
  bool operator==(const VELA_VLImpl& other) const;

 private:
  int type_;
  std::vector<double> numbers_;       // of a numeric set
  std::vector<std::string> strings_;  // of a set of strings
  std::vector<std::string> labels_;
  // Positions by the hash of the value, -1 where a slot is free; a power of two of slots, at most
  // half of them taken. Empty in a set of a few pairs.
  std::vector<int> slots_;
};
