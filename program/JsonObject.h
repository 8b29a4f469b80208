#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <utility>

namespace applydic {

inline void AddMembers(nlohmann::ordered_json::object_t& /*object*/) {}

template <typename Value, typename... Others>
void AddMembers(nlohmann::ordered_json::object_t& object, const char* key, Value&& value,
                Others&&... others) {
  object.emplace_back(key, std::forward<Value>(value));
  AddMembers(object, std::forward<Others>(others)...);
}

// The JSON object of these members, each a key and its value. It is what a braced list of pairs
// makes, without an array for each pair, and values move into it. No key stands there twice.
template <typename... Members>
nlohmann::ordered_json MakeObject(Members&&... members) {
  nlohmann::ordered_json::object_t object;
  object.reserve(sizeof...(members) / 2);
  AddMembers(object, std::forward<Members>(members)...);
  return object;
}

}  // namespace applydic
