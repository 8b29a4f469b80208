#include "standalone/Data/ValueLabelSet.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <utility>

#include "standalone/Data/Cells.h"

namespace {

// Up to this many pairs are searched one by one.
constexpr std::size_t kFew = 16;

// Zero and negative zero are the same number, here as in a comparison.
std::size_t HashOf(double number) { return std::hash<double>()(number); }
std::size_t HashOf(std::string_view text) { return std::hash<std::string_view>()(text); }

// The slot where the search for a value ends: that of its position, or a free one.
template <class Values, class Value>
std::size_t SlotOf(const std::vector<int>& slots, const Values& values, const Value& value) {
  const std::size_t mask = slots.size() - 1;
  std::size_t slot = HashOf(value) & mask;
  while (slots[slot] >= 0 && values[static_cast<std::size_t>(slots[slot])] != value) {
    slot = (slot + 1) & mask;
  }
  return slot;
}

// The slots of the values, with room for at least one more.
template <class Values>
std::vector<int> Index(const Values& values) {
  std::vector<int> slots(std::bit_ceil(2 * (values.size() + 1)), -1);
  for (std::size_t i = 0; i < values.size(); ++i) {
    slots[SlotOf(slots, values, values[i])] = static_cast<int>(i);
  }
  return slots;
}

template <class Values, class Value>
int PositionOf(const std::vector<int>& slots, const Values& values, const Value& value) {
  if (slots.empty()) {
    const auto found = std::find(values.begin(), values.end(), value);
    return found == values.end() ? -1 : static_cast<int>(found - values.begin());
  }
  return slots[SlotOf(slots, values, value)];
}

template <class T>
void MakeRoom(std::vector<T>& list) {
  if (list.size() == list.capacity()) list.reserve(std::max<std::size_t>(4, 2 * list.size()));
}

// Adds a pair at the end. Everything that can fail comes before the first change.
template <class Value>
void Append(Value value, std::string label, std::vector<Value>& values,
            std::vector<std::string>& labels, std::vector<int>& slots) {
  MakeRoom(values);
  MakeRoom(labels);
  if (values.size() >= kFew) {
    if (slots.size() < 2 * (values.size() + 1)) slots = Index(values);
    slots[SlotOf(slots, values, value)] = static_cast<int>(values.size());
  }
  values.push_back(std::move(value));
  labels.push_back(std::move(label));
}

}  // namespace

VELA_VLImpl::VELA_VLImpl(int type) : type_(type) {}

const OBS* VELA_VLImpl::ValueAt(int position) const {
  const auto i = static_cast<std::size_t>(position);
  return type_ == 0 ? velahost::CellOf(numbers_[i]) : velahost::CellOf(strings_[i]);
}

int VELA_VLImpl::Find(const OBS* value) const {
  return type_ == 0 ? FindNumber(velahost::NumberIn(value))
                    : FindString(velahost::StringIn(value, type_));
}

int VELA_VLImpl::FindNumber(double number) const { return PositionOf(slots_, numbers_, number); }

int VELA_VLImpl::FindString(std::string_view text) const {
  return PositionOf(slots_, strings_, text);
}

int VELA_VLImpl::FindValueOf(const VELA_VLImpl& other, int position) const {
  return type_ == 0 ? FindNumber(other.NumberAt(position)) : FindString(other.StringAt(position));
}

void VELA_VLImpl::Reserve(std::size_t pairs) {
  labels_.reserve(pairs);
  type_ == 0 ? numbers_.reserve(pairs) : strings_.reserve(pairs);
}

void VELA_VLImpl::AddNumber(double number, std::string label) {
  Append(number, std::move(label), numbers_, labels_, slots_);
}

void VELA_VLImpl::AddString(std::string text, std::string label) {
  Append(std::move(text), std::move(label), strings_, labels_, slots_);
}

void VELA_VLImpl::Add(const OBS* value, std::string label) {
  if (type_ == 0) {
    AddNumber(velahost::NumberIn(value), std::move(label));
  } else {
    AddString(velahost::StringIn(value, type_), std::move(label));
  }
}

std::shared_ptr<VELA_VLImpl> VELA_VLImpl::AtWidth(int width) const {
  auto converted = std::make_shared<VELA_VLImpl>(width);
  converted->Reserve(strings_.size());
  for (std::size_t i = 0; i < strings_.size(); ++i) {
    std::string text = velahost::AtWidth(strings_[i], width);
    if (width < type_ && converted->FindString(text) >= 0) continue;
    converted->AddString(std::move(text), labels_[i]);
  }
  return converted;
}

std::shared_ptr<VELA_VLImpl> VELA_VLImpl::InOrder(const std::vector<int>& order) const {
  auto ordered = std::make_shared<VELA_VLImpl>(type_);
  ordered->Reserve(order.size());
  if (type_ == 0) {
    for (const int position : order) ordered->AddNumber(NumberAt(position), LabelAt(position));
  } else {
    for (const int position : order) ordered->AddString(StringAt(position), LabelAt(position));
  }
  return ordered;
}

std::shared_ptr<VELA_VLImpl> VELA_VLImpl::Copy() const {
  return std::make_shared<VELA_VLImpl>(*this);
}

bool VELA_VLImpl::operator==(const VELA_VLImpl& other) const {
  return type_ == other.type_ && numbers_ == other.numbers_ && strings_ == other.strings_ &&
         labels_ == other.labels_;
}
