#include "standalone/Dictionary/ValueLabels.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <utility>

#include "standalone/Text/Hash.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

// Up to this many pairs are searched one by one.
constexpr std::size_t kFew = 16;

bool HasValue(const ValueLabel& pair, double number) { return pair.number == number; }
bool HasValue(const ValueLabel& pair, std::string_view string) { return pair.string == string; }

// The slot where the search for a value ends: that of its pair, or a free one.
template <class Value>
std::size_t SlotOf(const std::vector<unsigned>& slots, const std::vector<ValueLabel>& pairs,
                   Value value) {
  const std::size_t mask = slots.size() - 1;
  std::size_t slot = HashOf(value) & mask;
  while (slots[slot] != 0 && !HasValue(pairs[slots[slot] - 1], value)) slot = (slot + 1) & mask;
  return slot;
}

template <class Value>
const ValueLabel* FindIn(const std::vector<unsigned>& slots, const std::vector<ValueLabel>& pairs,
                         Value value) {
  if (!slots.empty()) {
    const unsigned place = slots[SlotOf(slots, pairs, value)];
    return place == 0 ? nullptr : &pairs[place - 1];
  }
  const auto found = std::find_if(pairs.begin(), pairs.end(), [value](const ValueLabel& pair) {
    return HasValue(pair, value);
  });
  return found == pairs.end() ? nullptr : &*found;
}

}  // namespace

const ValueLabel* ValueLabels::Find(double number) const { return FindIn(slots_, pairs_, number); }

const ValueLabel* ValueLabels::Find(std::string_view string) const {
  return FindIn(slots_, pairs_, TrimTrailingBlanks(string));
}

// Everything that can fail comes before the first change.
void ValueLabels::Add(ValueLabel pair) {
  const std::size_t size = pairs_.size() + 1;
  const bool grows = size > kFew && slots_.size() < 2 * size;
  std::vector<unsigned> slots(grows ? std::bit_ceil(4 * size) : 0, 0);
  pairs_.push_back(std::move(pair));
  if (size <= kFew) return;
  if (grows) slots_.swap(slots);
  for (std::size_t i = grows ? 0 : size - 1; i < size; ++i) {
    const std::size_t slot = IsNumeric() ? SlotOf(slots_, pairs_, pairs_[i].number)
                                         : SlotOf(slots_, pairs_, pairs_[i].string.View());
    slots_[slot] = static_cast<unsigned>(i + 1);
  }
}

bool ValueLabels::operator==(const ValueLabels& other) const {
  const auto isSame = [this](const ValueLabel& a, const ValueLabel& b) {
    return (IsNumeric() ? a.number == b.number : a.string == b.string) && a.label == b.label;
  };
  return type_ == other.type_ && std::equal(begin(), end(), other.begin(), other.end(), isSame);
}

SharedValueLabels AtWidth(const SharedValueLabels& set, int width) {
  auto converted = std::make_shared<ValueLabels>(width);
  converted->Reserve(set->Size());
  const auto most = static_cast<std::size_t>(width);
  for (const ValueLabel& pair : *set) {
    if (pair.string.Size() <= most) {
      if (converted->Find(pair.string.View()) == nullptr) converted->Add(pair);
      continue;
    }
    Text cut(TrimTrailingBlanks(pair.string.View().substr(0, most)));
    if (converted->Find(cut.View()) == nullptr) {
      converted->Add({pair.number, std::move(cut), pair.label, pair.languages});
    }
  }
  return converted;
}

}  // namespace velahost
