#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "standalone/Matching/Evidence.h"
#include "standalone/Matching/LearnedRules.h"

namespace velahost {

// A pair that may be one, with what speaks for it.
struct CandidatePair {
  ColumnPair columns;
  Evidence evidence;
};

// One that has been chosen. Its rivals are candidates of one of its two variables that are nearly
// as good, even where the other variable has a better partner: what speaks for several alike does
// not tell that there is one among them.
struct ChosenPair {
  std::size_t candidate;            // its place among the candidates
  std::vector<std::size_t> rivals;  // theirs, best first
};

// Chooses pairs, the best first, so that no variable stands in two. What counts against a rival is
// what the variables say and are called: a place in the file alone decides between equals, and they
// stay rivals.
std::vector<ChosenPair> Assign(const std::vector<CandidatePair>& candidates);

}  // namespace velahost
