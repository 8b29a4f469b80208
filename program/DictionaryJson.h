#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "host/Data.h"

namespace applydic {

// The dictionary of a data source as the object of `applydic show --json`: others script against
// it, so its keys, their order and the kinds of their values stay as they are.
nlohmann::ordered_json DictionaryJson(const VELA_DataSource& dataSource);

// The object as text, on lines of its own; bytes that are no character are replaced.
std::string JsonText(const nlohmann::ordered_json& json);

}  // namespace applydic
