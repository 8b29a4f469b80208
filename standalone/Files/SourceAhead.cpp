#include "standalone/Files/SourceAhead.h"

#include <algorithm>
#include <iterator>

#include "standalone/Syntax/Keywords.h"

namespace velahost {

SourceAhead::SourceAhead(const Command& command) {
  const auto& tokens = command.tokens;
  const auto from =
      std::adjacent_find(tokens.begin(), tokens.end(), [](const Token& name, const Token& file) {
        return name.kind == Token::Name && Abbreviates(name.typed, "FROM") &&
               file.kind == Token::String && !file.Text().empty();
      });
  if (from == tokens.end()) return;
  file_ = std::next(from)->Text();
  opened_ = std::async(OpenCodebook, file_, OpenFor::Reading);
}

std::optional<OpenedCodebook> SourceAhead::Take(const std::string& file) {
  if (!opened_.valid() || file != file_) return std::nullopt;
  return opened_.get();
}

}  // namespace velahost
