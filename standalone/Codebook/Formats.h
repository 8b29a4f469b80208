#pragma once

#include <cstddef>
#include <optional>

#include "standalone/Dictionary/Changes.h"
#include "standalone/Dictionary/Variable.h"
#include "standalone/Text/Text.h"
#include "standalone/Xml/Document.h"
#include "standalone/Xml/Editor.h"
#include "standalone/Xml/NewElement.h"

// The type of a variable, the width of a string, and the print and write formats: varFormat,
// location/@width, @dcml, and the note of the write format.

namespace velahost {

// The type of a var: 0 for a number; for a string its width in bytes, which is the length of its
// longest value where none is stated.
int ReadType(Element var);

// Reads the print and the write format of a var into a variable whose type has been read.
void ReadFormats(Element var, Variable& variable, TextArena& texts);

// Edits a var so that its formats read as the variable's. longestCategory is the longest value of
// its categories as they will be, if these are written: where it would change a width that is not
// stated, the format is written too.
void WriteFormats(Element var, const Variable& now, PropertySet changed,
                  std::optional<std::size_t> longestCategory, Editor& editor);

// Adds the formats of a variable to a new var.
void AddFormats(const Variable& variable, NewElement& var);

}  // namespace velahost
