#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "standalone/Dictionary/Attributes.h"
#include "standalone/Dictionary/Variable.h"
#include "standalone/Text/Text.h"

namespace velahost {

// The kinds of sets of variables.
enum class SetKind : std::uint8_t { Variables, MultipleResponse };
inline constexpr std::array kSetKinds = {SetKind::Variables, SetKind::MultipleResponse};

// A named set of variables.
struct VariableSet {
  Text name;
  std::optional<Text> label;
  Text type;                 // what the set is for, in the document's words; may be empty
  std::vector<int> members;  // columns in the file, in the set's order
};

// Whether two collections hold the same sets in the same order: their names, labels and members.
// The type does not count: a file keeps that of a set that it has already.
bool SameSets(const std::vector<VariableSet>& a, const std::vector<VariableSet>& b);

// What a dictionary says of the file itself.
struct FileItems {
  std::optional<Text> label;
  std::vector<Text> documents;
  int weight = -1;  // a column, or -1
  CustomAttributes attributes;
  std::array<std::vector<VariableSet>, kSetKinds.size()> sets;  // by kind

  const std::vector<VariableSet>& SetsOf(SetKind kind) const {
    return sets[static_cast<std::size_t>(kind)];
  }
  std::vector<VariableSet>& SetsOf(SetKind kind) { return sets[static_cast<std::size_t>(kind)]; }
};

// The dictionary of a data file: a plain value. Copies share the variables, which are not changed
// as long as they are shared: to change one, put a changed copy in its place.
struct Dictionary {
  std::vector<std::shared_ptr<const Variable>> variables;  // by column; none is null
  FileItems file;
};

}  // namespace velahost
