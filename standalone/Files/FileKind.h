#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velahost {

// What kind of file begins with these bytes, where it is plainly no XML document: "an empty file",
// "a file compressed by gzip", "a table of values". Nothing where it may be one.
std::optional<std::string> KindOfOther(std::string_view first);

}  // namespace velahost
