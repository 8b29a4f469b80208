#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "standalone/Dictionary/Attributes.h"
#include "standalone/Dictionary/Documentation.h"
#include "standalone/Dictionary/Format.h"
#include "standalone/Dictionary/LabelLanguages.h"
#include "standalone/Dictionary/MissingValues.h"
#include "standalone/Dictionary/ValueLabels.h"
#include "standalone/Text/Text.h"

namespace velahost {

enum class Level : std::uint8_t { None, Nominal, Ordinal, Scale };
enum class Role : std::uint8_t { Input, Target, Both, None, Partition, Split };
enum class Alignment : std::uint8_t { Left, Right, Center };

// The names in files and output; the level's is null for Level::None.
const char* NameOf(Level level);
const char* NameOf(Role role);
const char* NameOf(Alignment alignment);
std::optional<Role> RoleNamed(std::string_view name);
std::optional<Alignment> AlignmentNamed(std::string_view name);

// The alignment of a variable of the type that states none.
constexpr Alignment DefaultAlignment(int type) {
  return type > 0 ? Alignment::Left : Alignment::Right;
}

// A category of a variable's document, with a value that the variable can have.
struct Category {
  double number = 0;  // of a numeric variable
  Text string;        // of a string variable, without the blanks at its end
  bool hasLabel = false;
};

// A variable of a dictionary: a plain value. Where it stands in a document is the document's to
// know.
struct Variable {
  Text name;  // at most kNameBytes
  Text upperCaseName;
  int type = 0;  // 0: a number; else a string of that width in bytes
  // Whether the document says the width of a string, rather than that it counts as so wide.
  bool hasStatedWidth = false;

  std::optional<Text> label;
  LabelLanguages labelLanguages;
  SharedValueLabels valueLabels;  // of the variable's type; null rather than empty
  MissingValues missing;
  std::optional<Format> print;  // nothing where none is stated
  std::optional<Format> write;
  short columnWidth = 0;
  Level level = Level::None;
  Role role = Role::Input;
  Alignment alignment = Alignment::Left;
  // The kinds of what documents the variable, in its document or brought from another one.
  DocumentationSet documented;
  CustomAttributes attributes;

  // The categories of the document that the variable was read from, where they are more than its
  // value labels (categories without a label, values that stand twice); null otherwise.
  std::shared_ptr<const std::vector<Category>> categories;
  std::shared_ptr<const Brought> brought;  // from another document; null for most

  // Names the variable: the whole characters of the name that fit into kNameBytes.
  void SetName(std::string_view newName);
  bool IsNumeric() const { return type == 0; }
};

}  // namespace velahost
