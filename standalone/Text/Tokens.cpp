#include "standalone/Text/Tokens.h"

#include <algorithm>

#include "standalone/Text/Utf8.h"

namespace velahost {

std::vector<std::string> SplitTokens(std::string_view text) {
  std::vector<std::string> tokens;
  while (!(text = Trim(text)).empty()) {
    const auto* const end = std::find_if(text.begin(), text.end(), IsSpace);
    tokens.emplace_back(text.begin(), end);
    text.remove_prefix(tokens.back().size());
  }
  return tokens;
}

std::string JoinTokens(const std::vector<std::string>& tokens) {
  std::string text;
  for (const std::string& token : tokens) {
    if (!text.empty()) text += ' ';
    text += token;
  }
  return text;
}

}  // namespace velahost
