#pragma once

#include <nlohmann/json.hpp>
#include <vector>

#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Dictionary/Changes.h"
#include "standalone/Dictionary/Dictionary.h"

namespace applydic {

// The values of a dictionary as JSON: wherever the program prints one, it has this form. Scripts
// read them, so they stay as they are.

// The value of a property. documentation is what documents the variable.
nlohmann::ordered_json PropertyJson(const velahost::Variable& variable, velahost::Property property,
                                    const std::vector<velahost::DocumentationText>& documentation);

// The value of an item of the dictionary's file.
nlohmann::ordered_json ItemJson(const velahost::Dictionary& dictionary, velahost::FileItem item);

// The value of a pair of a set of value labels.
nlohmann::ordered_json LabelledValueJson(const velahost::ValueLabel& pair, bool isNumeric);

}  // namespace applydic
