#pragma once

#include <optional>
#include <string>
#include <vector>

#include "standalone/Dictionary/Changes.h"
#include "standalone/Dictionary/Dictionary.h"

namespace applydic {

// The values of a dictionary as texts for people, each safe for one line of a terminal.

// What a property is called.
const char* TitleOf(velahost::Property property);
// What documents a variable is called.
const char* TitleOf(velahost::Documentation kind);

// "number", "string of 8", or "string" where the width is not stated.
std::string TypeText(const velahost::Variable& variable);
// A value of a pair: a number, or a string in quotes.
std::string LabelledValueText(const velahost::ValueLabel& pair, bool isNumeric);
// "lowest to 0, 98, 99"; empty for none.
std::string MissingText(const velahost::MissingValues& missing);

// The value of a property that is one text; nothing where it is absent. REQUIRES: a property other
// than value labels, attributes and documentation.
std::optional<std::string> PropertyText(const velahost::Variable& variable,
                                        velahost::Property property);

// "Name: value, value" of each attribute.
std::vector<std::string> AttributeTexts(const velahost::CustomAttributes& attributes);
// The lines of a text.
std::vector<std::string> LineTexts(std::string_view text);
// "Name (label): VARIABLE, VARIABLE" of each set.
std::vector<std::string> SetTexts(const velahost::Dictionary& dictionary, velahost::SetKind kind);
// The name of a column; nothing for a negative one.
std::optional<std::string> NameText(const velahost::Dictionary& dictionary, int column);

}  // namespace applydic
