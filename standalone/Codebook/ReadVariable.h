#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Codebook/XmlTree.h"
#include "standalone/Data/Variable.h"

namespace velahost {

// A variable as its element describes it.
struct VariableReading {
  std::unique_ptr<VELA_Variable::Impl> variable;
  std::string id;
  std::string files;                   // @files: IDs
  std::vector<std::string> locations;  // each location/@fileid: one ID
  bool weights = false;
  bool missingNotRead = false;         // more or other missing values than the dictionary can hold
  bool longCategoriesNotRead = false;  // labels of values that are longer than the string
};

// Reads a var element. A variable without a name and an ID has an empty name.
VariableReading ReadVariable(const XmlTree& tree, XmlTree::Node var);

// The pieces of that, as the writer needs them.

// One catgry: its node, the label's node if it has one, and its value as the variable has it.
struct CategoryReading {
  XmlTree::Node node = XmlTree::kNone;
  XmlTree::Node label = XmlTree::kNone;
  bool hasValue = false;  // there is a catValu
  bool fits = false;      // and the variable can have it: then it is in number or text
  double number = 0;
  std::string text;  // of a string variable, of its width
  bool flaggedMissing = false;
};
std::vector<CategoryReading> ReadCategories(const XmlTree& tree, XmlTree::Node var, int type);

// The text of a label, a name or a value.
std::string LineOfText(const XmlTree& tree, XmlTree::Node node);

// The width that location/@width or varFormat/@formatname says for a string.
std::optional<int> StatedStringWidth(const XmlTree& tree, XmlTree::Node var);

// The bytes of the longest value among the items of invalrng.
std::size_t LongestMissing(const XmlTree& tree, XmlTree::Node var);

// The alignment of a variable of the type that has none stated.
Alignment DefaultAlignment(int type);

// The first notes child of that type, or kNone.
XmlTree::Node FindNote(const XmlTree& tree, XmlTree::Node parent, std::string_view type);

// The tokens of a list separated by white space, and the list of such tokens.
std::vector<std::string> SplitTokens(std::string_view text);
std::string JoinTokens(const std::vector<std::string>& tokens);

// The custom attributes in the notes of an element.
DatasourceAttributes ReadAttributes(const XmlTree& tree, XmlTree::Node parent);

// The types of the notes that hold what the standard has no place for.
inline constexpr std::string_view kWriteFormatNote = "VELA:writeFormat";
inline constexpr std::string_view kColumnWidthNote = "VELA:columnWidth";
inline constexpr std::string_view kRoleNote = "VELA:role";
inline constexpr std::string_view kAlignmentNote = "VELA:alignment";
inline constexpr std::string_view kAttributeNote = "VELA:attribute";
inline constexpr std::string_view kWeightNote = "VELA:weight";

}  // namespace velahost
