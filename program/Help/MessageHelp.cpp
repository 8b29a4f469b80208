#include "program/Help/MessageHelp.h"

#include <cstddef>

namespace applydic {
namespace {

// The pieces of a message's text between the places for what differs. There is always one more than
// there are places; the first and the last may be empty.
std::vector<std::string> PiecesOf(std::string_view text) {
  std::vector<std::string> pieces(1);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isPlace = text[i] == '^' && i + 1 < text.size();
    if (isPlace) {
      pieces.emplace_back();
      ++i;
    } else {
      pieces.back() += text[i];
    }
  }
  return pieces;
}

// Whether a message as shown may have this text.
bool Matches(const std::vector<std::string>& pieces, std::string_view message) {
  if (pieces.size() == 1) return message == pieces.front();
  if (!message.starts_with(pieces.front()) || !message.ends_with(pieces.back())) return false;
  if (message.size() < pieces.front().size() + pieces.back().size()) return false;
  message.remove_suffix(pieces.back().size());
  std::size_t at = pieces.front().size();
  for (std::size_t i = 1; i + 1 < pieces.size(); ++i) {
    at = message.find(pieces[i], at);
    if (at == std::string_view::npos) return false;
    at += pieces[i].size();
  }
  return true;
}

// A text as issued has backslashes before some characters.
std::string WithoutBackslashes(std::string_view text) {
  std::string shown;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    shown += text[i];
  }
  return shown;
}

std::size_t LengthOf(const std::vector<std::string>& pieces) {
  std::size_t length = 0;
  for (const std::string& piece : pieces) length += piece.size();
  return length;
}

}  // namespace

const MessageHelp* HelpFor(std::string_view message) {
  const std::string shown = WithoutBackslashes(message);
  const MessageHelp* best = nullptr;
  std::size_t most = 0;
  for (const MessageSection& section : MessageSections()) {
    for (const MessageHelp& help : section.messages) {
      if (help.text == shown) return &help;
      const std::vector<std::string> pieces = PiecesOf(help.text);
      const std::size_t length = LengthOf(pieces);
      if (length <= most || !Matches(pieces, shown)) continue;
      most = length;
      best = &help;
    }
  }
  return best;
}

std::string ShownText(const MessageHelp& help) {
  const std::vector<std::string> pieces = PiecesOf(help.text);
  std::string text = pieces.front();
  for (std::size_t i = 1; i < pieces.size(); ++i) text += "\xE2\x80\xA6" + pieces[i];
  return text;
}

}  // namespace applydic
