#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Text/Hash.h"

namespace velahost {

// The two files whose variables are matched.
enum class MatchSide : std::uint8_t { Old, New };

using WordId = std::uint32_t;

// The words of a text, by their numbers in a lexicon.
struct Words {
  std::vector<WordId> ids;   // ascending, none twice
  std::vector<WordId> text;  // in the order of the text, without years
  double weight = 0;         // of all ids together, once the lexicon has weighed them

  bool Empty() const { return ids.empty(); }
};

// The words of many texts of one kind, such as labels. A word is a run of letters and digits
// without regard to case; a character of a script that is written without blanks is one by itself.
// Rare words weigh more than common ones. Years weigh little, and so do words that many texts of
// one file have and none of the other: they say which file it is.
class Lexicon {
 public:
  // Reads the words of a text, the first kMostWords of them, and counts them.
  Words Read(std::string_view text, MatchSide side);

  // Weighs all words by how many texts have them. Call it once, after the last Read.
  void Weigh();
  // Sets the weight of a text that was read. REQUIRES: Weigh has been called.
  void Weigh(Words& words) const;

  double WeightOf(WordId word) const { return words_[word].weight; }
  std::size_t Size() const { return words_.size(); }

  // How alike two texts are, from 0 (no word in common) to 1 (the same but for years). Words that
  // differ by a slip, or of which one is cut off, count for the most part.
  // REQUIRES: both have been weighed.
  double Similarity(const Words& a, const Words& b) const;

 private:
  static constexpr std::size_t kMostWords = 64;

  struct Word {
    std::string text;
    std::array<unsigned, 2> texts = {};  // how many have it, by side
    bool isYear = false;
    double weight = 0;
  };

  WordId IdOf(std::string_view word);
  double WeightOf(const Word& word) const;
  bool AreAlike(WordId a, WordId b) const;
  // What words that stand in one of two texts alone have in common by being alike.
  double WeightOfAlike(const std::vector<WordId>& a, const std::vector<WordId>& b) const;

  std::vector<Word> words_;
  TextMap<WordId> ids_;
  std::array<std::size_t, 2> texts_ = {};  // that have words, by side
};

}  // namespace velahost
