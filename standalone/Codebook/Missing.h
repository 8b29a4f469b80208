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

// The missing values of a var of that type; nothing if they are more or others than a variable can
// have.
std::optional<MissingValues> ReadMissing(Element var, int type,
                                         const std::vector<CategoryReading>& categories,
                                         TextArena& texts);

// The bytes of the longest value among the items of invalrng.
std::size_t LongestMissing(Element var);

// Edits the invalrng elements of a var so that they read as the variable's missing values.
void WriteMissing(Element var, const Variable& now, Editor& editor);

// Adds the missing values of a variable to a new var.
void AddMissing(const Variable& variable, NewElement& var);

}  // namespace velahost
