#include "program/MarkedText.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "program/Output.h"
#include "standalone/Text/Utf8.h"

namespace applydic {
namespace {

constexpr const char* kIndent = "  ";
constexpr const char* kLeftOut = "...";
constexpr std::size_t kMostBefore = 60;  // characters that are shown before the place
constexpr std::size_t kMostBehind = 40;

// The line of that number, from 1; lines end as in a command. Empty where there is none.
std::string_view LineAt(std::string_view text, int number) {
  for (int line = 1;; ++line) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    if (line == number) return text.substr(0, end);
    if (end == text.size()) return {};
    const bool isPair = text.substr(end).starts_with("\r\n");
    text.remove_prefix(end + (isPair ? 2 : 1));
  }
}

// The characters of a line, each as it is shown: a tab as a blank.
std::vector<std::string> ShownCharacters(std::string_view line) {
  std::vector<std::string> characters;
  for (std::size_t at = 0; at < line.size();) {
    const std::size_t length = velahost::CharacterAt(line, at).length;
    characters.push_back(line[at] == '\t' ? " " : MakeVisible(line.substr(at, length)));
    at += length;
  }
  return characters;
}

std::string Joined(const std::vector<std::string>& characters, std::size_t from, std::size_t to) {
  std::string text;
  for (std::size_t i = from; i < to; ++i) text += characters[i];
  return text;
}

}  // namespace

std::string MarkedText(std::string_view text, velahost::TextPlace place) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  const std::vector<std::string> characters = ShownCharacters(LineAt(text, place.line));
  const auto at = static_cast<std::size_t>(place.column - 1);
  const bool isBlank = std::all_of(characters.begin(), characters.end(),
                                   [](const std::string& shown) { return shown == " "; });
  if (place.column < 1 || at > characters.size() || isBlank) return {};
  const std::size_t from = at > kMostBefore ? at - kMostBefore : 0;
  const std::size_t to = std::min(characters.size(), at + kMostBehind);
  const std::string before = (from > 0 ? kLeftOut : "") + Joined(characters, from, at);
  const std::string behind = Joined(characters, at, to) + (to < characters.size() ? kLeftOut : "");
  return kIndent + before + behind + "\n" + kIndent + std::string(WidthOf(before), ' ') + "^\n";
}

std::string MarkedText(const velahost::MarkedLine& line) {
  return MarkedText(line.text, {1, line.column});
}

}  // namespace applydic
