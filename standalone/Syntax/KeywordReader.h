#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "standalone/Syntax/Diagnostics.h"
#include "standalone/Syntax/Subcommands.h"
#include "standalone/Syntax/Tokenizer.h"

namespace velahost {

struct GivenKeyword {
  std::string keyword;  // as in the table
  std::optional<std::string> value;
};

// What a subcommand gives.
struct GivenKeywords {
  std::vector<GivenKeyword> all;  // no keyword twice
  std::span<const Token> list;    // what stands after VARIABLES=
  bool hasErrors = false;

  // The keyword, spelled as in the table; null when it is not given.
  const GivenKeyword* Find(const std::string& keyword) const;
};

// Reads the tokens of a subcommand as "keyword [= value]", again and again, by a table of keywords
// (see Keywords.h). What is wrong is reported and left out. A value is given without its quotes,
// except that a string that reads as one of the reserved texts keeps them.
GivenKeywords ReadKeywords(const Subcommand& subcommand, const std::string* table,
                           std::span<const char* const> reserved, Diagnostics& diagnostics);

}  // namespace velahost
