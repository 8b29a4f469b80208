#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "standalone/Dictionary/Attributes.h"
#include "standalone/Dictionary/LabelLanguages.h"
#include "standalone/Dictionary/Variable.h"
#include "standalone/Text/Text.h"

namespace velahost {

// The kinds of sets of variables.
enum class SetKind : std::uint8_t { Variables, MultipleResponse };
inline constexpr std::array kSetKinds = {SetKind::Variables, SetKind::MultipleResponse};

// What a set has from another document besides what a dictionary says of it.
struct BroughtSet {
  std::vector<std::string> documentation;  // elements, as markup in UTF-8 that stands for itself
  std::vector<std::pair<SetKind, Text>> subsets;  // the sets in it, by name
  std::size_t place = 0;                          // among the groups of its document
};

// A named set of variables.
struct VariableSet {
  Text name;
  std::optional<Text> label;
  Text type;                 // what the set is for, in the document's words; may be empty
  std::vector<int> members;  // columns in the file, in the set's order

  // Whether the name is what the document has as a label; there is no label then.
  bool isNamedByLabel = false;
  LabelLanguages languages = {};  // of the label, or of the name that stands in one
  // The place among the document's groups; nothing for a set that came from another document.
  std::optional<std::size_t> place = {};
  std::shared_ptr<const BroughtSet> brought = {};  // of such a set
};

// Whether two collections hold the same sets: their names, labels and members. Nothing else counts:
// a document keeps the places of its sets, and what else it has of them.
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

  // For one who goes through the columns: has the processor fetch what follows soon. Variables that
  // a command changed lie in memory in the order in which it came to them, so that each would be
  // waited for.
  void FetchAfter(std::size_t column) const;
};

}  // namespace velahost
