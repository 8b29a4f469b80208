#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "standalone/Syntax/Tokenizer.h"

namespace velahost {

// Issues an error of the command: a text with placeholders and what fills them. The token's line
// and column fill the two placeholders behind those.
void ReportSyntaxError(const Token& at, const std::string& text,
                       const std::vector<std::string_view>& arguments);

}  // namespace velahost
