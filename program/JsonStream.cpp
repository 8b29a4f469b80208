#include "program/JsonStream.h"

#include <cstddef>
#include <string>

namespace applydic {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kIndent = 2;

std::string TextOf(const Json& json, int indent) {
  return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

// The text of a value, with each line after the first indented for that depth.
std::string TextAt(std::size_t depth, const Json& json) {
  std::string indented;
  // A line feed in a string is spelled \n, so each that stands here ends a line.
  for (const char c : TextOf(json, kIndent)) {
    indented += c;
    if (c == '\n') indented.append(depth * kIndent, ' ');
  }
  return indented;
}

}  // namespace

void JsonStream::BeginMember(const char* key) {
  sink_(std::string(hasMembers_ ? "," : "{") + IfIndented("\n  ") + "\"" + key +
        "\":" + IfIndented(" "));
  hasMembers_ = true;
}

void JsonStream::Member(const char* key, const Json& value) {
  BeginMember(key);
  sink_(layout_ == Layout::Indented ? TextAt(1, value) : TextOf(value, -1));
}

void JsonStream::BeginArray(const char* key) {
  BeginMember(key);
  sink_("[");
  hasElements_ = false;
}

void JsonStream::Element(const Json& value) {
  sink_(std::string(hasElements_ ? "," : "") + IfIndented("\n    ") +
        (layout_ == Layout::Indented ? TextAt(2, value) : TextOf(value, -1)));
  hasElements_ = true;
}

void JsonStream::EndArray() {
  if (hasElements_) sink_(IfIndented("\n  "));
  sink_("]");
}

void JsonStream::End() {
  if (!hasMembers_) return sink_("{}\n");
  sink_(IfIndented("\n"));
  sink_("}\n");
}

}  // namespace applydic
