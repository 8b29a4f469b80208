#pragma once

#include <cstddef>
#include <vector>

#include "standalone/Matching/LearnedRules.h"
#include "standalone/Matching/Profiles.h"

namespace velahost {

// The variables of two files that have the same name.
struct Namesakes {
  std::vector<ColumnPair> trusted;
  // Those whose labels and value labels say something else: by column of the new file.
  std::vector<ColumnPair> doubted;
  // Whether so many are doubted that the files must use the same names for different variables, as
  // after a renumbering.
  bool namesAreReused = false;

  std::size_t Count() const { return trusted.size() + doubted.size(); }
};

Namesakes FindNamesakes(Profiles& profiles);

// The variables that are to be matched: all that have no namesake to be trusted.
Pools PoolsOf(const Profiles& profiles, const Namesakes& namesakes);

}  // namespace velahost
