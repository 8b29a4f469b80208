#pragma once

#include <nlohmann/json.hpp>
#include <utility>

#include "standalone/Files/File.h"

namespace applydic {

// Writes a JSON object member by member, and the elements of its arrays one by one: so that of a
// large object little is held as text at a time. Bytes that are no character are replaced by
// U+FFFD. What the sink throws passes on.
class JsonStream {
 public:
  enum class Layout { Indented, Compact };

  // Begins the object.
  explicit JsonStream(velahost::ByteSink sink, Layout layout = Layout::Indented)
      : sink_(std::move(sink)), layout_(layout) {}

  void Member(const char* key, const nlohmann::ordered_json& value);
  // The members and elements between the two are elements of the array.
  void BeginArray(const char* key);
  void Element(const nlohmann::ordered_json& value);
  void EndArray();
  // Ends the object, with a line feed behind it.
  void End();

 private:
  void BeginMember(const char* key);

  // A text where the layout is indented, else nothing.
  const char* IfIndented(const char* text) const { return layout_ == Layout::Indented ? text : ""; }

  const velahost::ByteSink sink_;
  const Layout layout_;
  bool hasMembers_ = false;
  bool hasElements_ = false;
};

}  // namespace applydic
