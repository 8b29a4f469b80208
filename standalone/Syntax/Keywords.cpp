#include "standalone/Syntax/Keywords.h"

#include <algorithm>
#include <cstddef>

namespace velahost {
namespace {

constexpr std::size_t kShortestAbbreviation = 3;

char Capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

std::string Capitals(std::string_view word) {
  std::string capitals(word);
  std::transform(word.begin(), word.end(), capitals.begin(), Capital);
  return capitals;
}

bool Abbreviates(std::string_view word, std::string_view keyword) {
  const std::size_t least = std::min(kShortestAbbreviation, keyword.size());
  if (word.size() < least || word.size() > keyword.size()) return false;
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

std::vector<std::string_view> KeywordsOf(const std::string* table) {
  std::vector<std::string_view> keywords;
  for (; !table->empty(); ++table) keywords.push_back(*table);
  return keywords;
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
