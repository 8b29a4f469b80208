#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "standalone/Syntax/Diagnostics.h"
#include "standalone/Syntax/Tokenizer.h"

namespace velahost {

// Reports an error of the command: a text with placeholders and what fills them. The token's line
// and column fill the two placeholders after those.
void ReportSyntaxError(Diagnostics& diagnostics, const Token& at, const std::string& text,
                       const std::vector<std::string_view>& arguments);

}  // namespace velahost
