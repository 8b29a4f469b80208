#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "standalone/Dictionary/Dictionary.h"

namespace velahost {

// Finds which variables of an older file those of a newer one come from, where names have changed.

// The question that the variable at a column answers, as a text; empty where there is none.
using QuestionLookup = std::function<std::string(std::size_t column)>;

// Of a file what variables are matched by. Both live until MatchVariables returns.
struct MatchedFile {
  const Dictionary& dictionary;
  QuestionLookup question;
};

// That a variable of the new file comes from one of the old file.
struct Proposal {
  std::size_t oldColumn = 0;
  std::size_t newColumn = 0;
  double score = 0;  // from 0 to 1: how likely it is, beside its rivals
  // Whether it may be taken unread: likely, and without a rival.
  bool isCertain = false;
  std::vector<std::string> reasons;  // in plain words, the most telling first

  // A variable that would do nearly as well in the place of one of the two.
  struct Rival {
    bool isOld = true;  // in the place of the old one
    std::size_t column = 0;
    double score = 0;
  };
  std::vector<Rival> rivals;  // the best few
};

// What comes of matching two files.
struct Matches {
  std::vector<Proposal> proposals;  // certain ones first, by score; no variable stands in two
  std::vector<std::size_t> withoutProposal;  // columns of the new file, also without a namesake
  std::size_t namesakes = 0;                 // variables of the new file that the old one has too
};

// Proposes partners for the variables of the new file that have no namesake in the old one, and for
// those whose namesake says something else. No variable of the old file is proposed whose namesake
// in the new one says the same. Equal files give equal results. Time grows with the number of
// variables and the length of their texts, whatever they say.
Matches MatchVariables(const MatchedFile& oldFile, const MatchedFile& newFile);

}  // namespace velahost
