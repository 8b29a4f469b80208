#include "standalone/Syntax/Keywords.h"

#include <algorithm>
#include <cstddef>

#include "host/Syntax.h"
#include "standalone/HostCalls.h"

namespace velahost {
namespace {

constexpr std::size_t kShortestAbbreviation = 3;

// Keywords have no other letters, so a letter of another script never stands for one of theirs.
char Capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

bool Abbreviates(std::string_view word, std::string_view keyword) {
  if (word.size() < kShortestAbbreviation || word.size() > keyword.size()) return false;
  return std::equal(word.begin(), word.end(), keyword.begin(),
                    [](char a, char b) { return Capital(a) == b; });
}

const std::string* FindKeyword(const std::string* table, std::string_view word) {
  const std::string* found = nullptr;
  for (const std::string* keyword = table; !keyword->empty(); ++keyword) {
    if (!Abbreviates(word, *keyword)) continue;
    if (word.size() == keyword->size()) return keyword;
    if (found == nullptr) found = keyword;
  }
  return found;
}

std::string Alternatives(const std::string* table) {
  std::string text;
  for (const std::string* keyword = table; !keyword->empty(); ++keyword) {
    if (keyword != table) text += keyword[1].empty() ? " or " : ", ";
    text += *keyword;
  }
  return text;
}

}  // namespace velahost

bool KeywordMatch(const char* token, const char* keyword) {
  velahost::Called("KeywordMatch");
  return velahost::Abbreviates(token, keyword);
}
