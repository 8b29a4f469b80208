#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Matching/RenameRule.h"
#include "standalone/Matching/ValueSets.h"
#include "standalone/Matching/Words.h"

namespace velahost {

// A variable by its column, in one of the two files.
using Column = std::uint32_t;

// What a variable is known by when its partner is looked for.
struct Profile {
  SplitName name;
  bool isNumeric;
  Words label;  // without the variable's name at its begin
  Words question;
  // How many variables of the file have the same words there, years aside; 0 without any.
  std::size_t labelCount = 0;
  std::size_t questionCount = 0;
  std::optional<ValueSets::Id> valueSet;
};

// The words of a text in their order, as bytes: the same for texts that are the same but for years.
// They live as long as the words.
std::string_view KeyOf(const Words& words);

// The variables of two files, comparable with each other.
class Profiles {
 public:
  // Reads the variables, but not their questions.
  Profiles(const Dictionary& oldFile, const Dictionary& newFile);

  // Adds the question that a variable answers; an empty text is none. Call WeighQuestions after the
  // last one.
  void AddQuestion(MatchSide side, Column column, std::string_view question);
  void WeighQuestions();

  const Profile& At(MatchSide side, Column column) const {
    return profiles_[static_cast<std::size_t>(side)][column];
  }
  std::size_t Count(MatchSide side) const {
    return profiles_[static_cast<std::size_t>(side)].size();
  }
  const Lexicon& Labels() const { return labels_; }
  const Lexicon& Questions() const { return questions_; }

  ValueSets& Sets() { return sets_; }

 private:
  void CountTexts(Words Profile::*texts, std::size_t Profile::*counts);

  std::array<std::vector<Profile>, 2> profiles_;  // by side and column
  Lexicon labels_;
  Lexicon questions_;
  ValueSets sets_;
};

}  // namespace velahost
