#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "standalone/Syntax/Diagnostics.h"
#include "standalone/Syntax/Tokenizer.h"

namespace velahost {

// Reports an error of the command: a text with placeholders and what fills them. The token's line
// and column fill the two placeholders after those, and are its place.
void ReportSyntaxError(Diagnostics& diagnostics, const Token& at, const std::string& text,
                       const std::vector<std::string_view>& arguments, std::string advice = {});

// "Did you mean NAME?" where a word is near to one of the names; else empty.
std::string DidYouMean(std::string_view word, const std::vector<std::string_view>& names);

}  // namespace velahost
