#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "standalone/Codebook/Labels.h"
#include "standalone/Dictionary/Changes.h"
#include "standalone/Dictionary/Variable.h"
#include "standalone/Text/Text.h"
#include "standalone/Xml/Document.h"
#include "standalone/Xml/Editor.h"
#include "standalone/Xml/NewElement.h"

// Value labels: the catgry elements of a var. Which category carries a label, how labels are
// written onto categories, and the order that they have in the document then (InDocumentOrder in
// CodebookFile.h) are decided here alone.

namespace velahost {

// One catgry: its label's element, and its value as the variable has it.
struct CategoryReading {
  Element element;
  Element label;           // null: it has none
  bool hasValue = false;   // there is a catValu
  bool fits = false;       // and the variable can have it: then it is in number or string
  bool isFlagged = false;  // missing="Y"
  double number = 0;
  Text string;  // of a numeric variable the spelling, as in a ValueLabel

  ValueLabel Value() const { return {number, string, {}}; }
};
std::vector<CategoryReading> ReadCategories(Element var, int type, const Languages& languages,
                                            TextArena& texts);

// The bytes of the longest value that a category of a var has.
std::size_t LongestCategory(Element var);

// Takes the labels of the categories as the variable's value labels, and the categories where these
// are more.
void TakeValueLabels(const std::vector<CategoryReading>& categories, Variable& variable,
                     LabelReader& labels, TextArena& texts);

// Edits the categories of a var so that their labels and their missing flags read as the
// variable's, as far as they have changed.
void WriteCategories(Element var, const Variable& now, PropertySet changed,
                     const Languages& languages, Editor& editor);

// Adds the categories of a variable to a new var.
void AddCategories(const Variable& variable, const Languages& languages, NewElement& var);

// A value as it is written.
std::string ValueText(const ValueLabel& value, bool isNumeric);

// The single missing values of a variable of the type, for look-ups: pairs without labels.
ValueLabels SinglesOf(const MissingValues& missing, int type);
// The missing values that these are the single ones of, with that range.
MissingValues MissingOf(const std::optional<std::pair<double, double>>& range,
                        const ValueLabels& singles);

}  // namespace velahost
