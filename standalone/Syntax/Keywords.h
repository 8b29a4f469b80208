#pragma once

#include <string>
#include <string_view>
#include <vector>

// Keywords and their abbreviations. A table of keywords is an array of upper-case texts that an
// empty one ends. Keywords have no letters but A to Z: a letter that only looks like one of these,
// or has one of them as its capital (a long s), stands for none of them.

namespace velahost {

// The word with the letters a to z as capitals.
std::string Capitals(std::string_view word);

// Whether the word is the keyword, or its beginning of three letters or more, in any case.
// REQUIRES: a keyword of upper-case letters.
bool Abbreviates(std::string_view word, std::string_view keyword);

// The table's keyword that the word is or, when it is none, the first that it abbreviates; null
// when there is none. It lives as long as the table.
const std::string* FindKeyword(const std::string* table, std::string_view word);

// The table's keywords.
std::vector<std::string_view> KeywordsOf(const std::string* table);
// The same for a message: "FROM, SOURCE or TARGET".
std::string Alternatives(const std::string* table);

}  // namespace velahost
