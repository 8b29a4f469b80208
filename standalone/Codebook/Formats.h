#pragma once

#include "standalone/Dictionary/Changes.h"
#include "standalone/Dictionary/Variable.h"
#include "standalone/Text/Text.h"
#include "standalone/Xml/Document.h"
#include "standalone/Xml/Editor.h"
#include "standalone/Xml/NewElement.h"

// The type of a variable, the width of a string, and the print and write formats: varFormat,
// location/@width, and the notes of the formats.

namespace velahost {

// Reads the type of a var, with the width of a string, and its formats. A string whose width is not
// stated counts as kDefaultWidth, or as long as its longest category or missing value.
void ReadFormats(Element var, Variable& variable, TextArena& texts);

// Edits a var so that its formats read as the variable's.
void WriteFormats(Element var, const Variable& now, PropertySet changed, Editor& editor);

// Adds the type and the formats of a variable to a new var.
void AddFormats(const Variable& variable, NewElement& var);

}  // namespace velahost
