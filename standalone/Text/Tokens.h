#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velahost {

// The tokens of a list separated by white space, and the list of such tokens.
std::vector<std::string> SplitTokens(std::string_view text);
std::string JoinTokens(const std::vector<std::string>& tokens);

}  // namespace velahost
