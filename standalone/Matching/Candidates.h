#pragma once

#include <cstddef>
#include <vector>

#include "standalone/Matching/LearnedRules.h"
#include "standalone/Matching/Profiles.h"
#include "standalone/Text/Hash.h"

namespace velahost {

// Finds the variables of the old file that one of the new may come from, without a look at all of
// them: by the rarest words of labels and questions, by labels that are the same, by rare sets of
// value labels and by rare parts of names. What many variables share finds only those whose place
// in the file is alike, so that the work grows with the number of variables alone.
class Candidates {
 public:
  // They outlive this object.
  Candidates(const Profiles& profiles, const Pools& pools);

  // Columns of the old file, each once, in no order that matters.
  std::vector<Column> For(Column newColumn);

 private:
  // The columns of the pool that have something, ascending.
  using Columns = std::vector<Column>;

  void IndexOldFile();
  void AddBest(const Words& words, const std::vector<Columns>& index, const Lexicon& lexicon,
               std::size_t most, Columns& found);
  void AddNear(const Columns& columns, Column newColumn, Columns& found) const;

  const Profiles& profiles_;
  const Pools& pools_;
  std::vector<Columns> byLabelWord_;
  std::vector<Columns> byQuestionWord_;
  ViewMap<Columns> byLabel_;
  std::vector<Columns> byValueSet_;
  TextMap<Columns> byNamePart_;
  std::vector<double> weights_;  // of old columns, while candidates are gathered; else 0
};

}  // namespace velahost
