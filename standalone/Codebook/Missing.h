#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "standalone/Codebook/Categories.h"
#include "standalone/Dictionary/MissingValues.h"
#include "standalone/Dictionary/Variable.h"
#include "standalone/Text/Text.h"
#include "standalone/Xml/Document.h"
#include "standalone/Xml/Editor.h"
#include "standalone/Xml/NewElement.h"

// Missing values: the invalrng elements of a var, or the flags of its categories. The flags are
// written with the categories.

namespace velahost {

// The missing values of a var of that type. What is no value of the variable, such as a code for
// values that the system made missing, is passed over. Nothing if there is what no variable of the
// type can have: two ranges, a range of strings, a bound that is no number or is excluded, a value
// longer than the string.
std::optional<MissingValues> ReadMissing(Element var, int type,
                                         const std::vector<CategoryReading>& categories,
                                         TextArena& texts);

// The bytes of the longest value among the items of invalrng.
std::size_t LongestMissing(Element var);

// Edits the invalrng elements of a var so that they read as the variable's missing values. What is
// passed over stays, and what else is in them.
void WriteMissing(Element var, const Variable& now, Editor& editor);

// Adds the missing values of a variable to a new var.
void AddMissing(const Variable& variable, NewElement& var);

}  // namespace velahost
