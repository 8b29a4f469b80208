#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "host/Data.h"
#include "standalone/Codebook/OpenCodebook.h"

namespace applydic {

// Writes the dictionary of a data source as the object of `applydic show --json`, no more than one
// variable at a time: others script against it, so its keys, their order and the kinds of their
// values stay as they are. Lines and bytes that are no character are as JsonText has them.
void WriteDictionaryJson(const VELA_DataSource& dataSource, const velahost::ByteSink& sink);

// The object as text, on lines of its own; bytes that are no character are replaced.
std::string JsonText(const nlohmann::ordered_json& json);

}  // namespace applydic
