#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "host/Data.h"

namespace applydic {

// Takes a text piece by piece, in order.
using TextSink = std::function<void(std::string_view text)>;

// Writes the dictionary of a data source as the object of `applydic show --json`, no more than one
// variable at a time: others script against it, so its keys, their order and the kinds of their
// values stay as they are. Lines and bytes that are no character are as JsonText has them.
void WriteDictionaryJson(const VELA_DataSource& dataSource, const TextSink& sink);

// The object as text, on lines of its own; bytes that are no character are replaced.
std::string JsonText(const nlohmann::ordered_json& json);

}  // namespace applydic
