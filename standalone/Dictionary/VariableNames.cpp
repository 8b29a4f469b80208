#include "standalone/Dictionary/VariableNames.h"

#include <bit>
#include <functional>

#include "standalone/Text/Hash.h"
#include "standalone/Text/Utf8.h"

namespace velahost {

void VariableNames::Reserve(std::size_t names) {
  names_.reserve(names);
  MakeSlots(names);
}

void VariableNames::Add(const Variable& variable) {
  names_.push_back({variable.name, variable.upperCaseName});
  if (slots_.size() < 2 * names_.size()) {
    MakeSlots(names_.size());
  } else {
    slots_[SlotOf(variable.upperCaseName)] = static_cast<unsigned>(names_.size());
  }
}

int VariableNames::Find(std::string_view name) const {
  char key[kNameBytes + 1];
  const std::string_view cut = CutToBytes(name, kNameBytes);
  key[cut.copy(key, cut.size())] = '\0';
  UpperCaseInPlace(key);
  return FindUpperCase(key);
}

int VariableNames::FindUpperCase(std::string_view name) const {
  return slots_.empty() ? -1 : static_cast<int>(slots_[SlotOf(name)]) - 1;
}

std::size_t VariableNames::SlotOf(std::string_view upperCaseName) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = HashOf(upperCaseName) & mask;
  while (slots_[slot] != 0 && names_[slots_[slot] - 1].upperCase != upperCaseName) {
    slot = (slot + 1) & mask;
  }
  return slot;
}

void VariableNames::MakeSlots(std::size_t names) {
  slots_.assign(std::bit_ceil(4 * (names + 1)), 0);
  for (std::size_t i = 0; i < names_.size(); ++i) {
    slots_[SlotOf(names_[i].upperCase)] = static_cast<unsigned>(i + 1);
  }
}

}  // namespace velahost
