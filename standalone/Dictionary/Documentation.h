#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "standalone/Dictionary/SetOf.h"
#include "standalone/Text/Text.h"

namespace velahost {

// What documents a variable besides its dictionary, in the order in which a document has it. It
// goes with the custom attributes, but for the first three: they come with new variables alone.
enum class Documentation : std::uint8_t {
  Imputation,
  Security,
  Embargo,
  ResponseUnit,
  AnalysisUnit,
  Question,
  Universe,
  Description,
  CodingInstructions,
  Concept,
  Notes
};
template <>
inline constexpr std::size_t kItemCount<Documentation> = 11;
using DocumentationSet = SetOf<Documentation>;

// The name of the element that says it.
const char* NameOf(Documentation kind);
// Whether it comes with new variables alone.
constexpr bool IsOfNewVariables(Documentation kind) { return kind < Documentation::ResponseUnit; }

// An element that documents a variable, as markup in UTF-8 that stands for itself: without a
// prefix, without IDs and references, and with the namespaces that it needs.
struct DocumentationElement {
  Documentation kind;
  std::string markup;

  bool operator==(const DocumentationElement&) const = default;
};

// What a variable has from another document besides its dictionary.
struct Brought {
  std::vector<DocumentationElement> documentation;
  // Of a variable that has been added: @intrvl, and the variables by which it is weighted.
  Text interval;
  std::vector<Text> weightNames;
};

}  // namespace velahost
