#include "program/JsonStream.h"

#include <cstddef>
#include <string>

namespace applydic {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kIndent = 2;

// The text of a value, with each line after the first indented for that depth.
std::string TextAt(std::size_t depth, const Json& json) {
  std::string indented;
  // A line feed in a string is spelled \n, so each that stands here ends a line.
  for (const char c : json.dump(kIndent, ' ', false, Json::error_handler_t::replace)) {
    indented += c;
    if (c == '\n') indented.append(depth * kIndent, ' ');
  }
  return indented;
}

}  // namespace

void JsonStream::BeginMember(const char* key) {
  sink_(std::string(hasMembers_ ? ",\n  \"" : "{\n  \"") + key + "\": ");
  hasMembers_ = true;
}

void JsonStream::Member(const char* key, const Json& value) {
  BeginMember(key);
  sink_(TextAt(1, value));
}

void JsonStream::BeginArray(const char* key) {
  BeginMember(key);
  sink_("[");
  hasElements_ = false;
}

void JsonStream::Element(const Json& value) {
  sink_((hasElements_ ? ",\n    " : "\n    ") + TextAt(2, value));
  hasElements_ = true;
}

void JsonStream::EndArray() { sink_(hasElements_ ? "\n  ]" : "]"); }

void JsonStream::End() { sink_(hasMembers_ ? "\n}\n" : "{}\n"); }

}  // namespace applydic
