#include "standalone/Matching/Words.h"

#include <algorithm>
#include <cmath>

#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

// What a year, or a word of one file alone, counts of what its rarity would make it count.
constexpr double kYearWeight = 0.1;
constexpr double kFileWordWeight = 0.25;
// Of how many of the texts of a file a word must be to say which file it is.
constexpr double kFileWordShare = 0.02;
constexpr unsigned kFileWordLeast = 3;

// What two words that are alike count of one that is the same.
constexpr double kAlikeWeight = 0.8;
// Words that are compared by their letters: longer, and no more of a text.
constexpr std::size_t kLeastAlike = 4;
constexpr std::size_t kMostCompared = 12;

// The scripts from here on are written without blanks, or nearly so.
constexpr int kFirstWithoutBlanks = 0x2E80;

bool IsDigit(int code) { return code >= '0' && code <= '9'; }
bool IsWordCharacter(int code) { return IsDigit(code) || IsLetter(code) || IsMark(code); }

bool IsYear(std::string_view word) {
  return word.size() == 4 && (word.starts_with("19") || word.starts_with("20")) &&
         std::all_of(word.begin(), word.end(), [](char c) { return IsDigit(c); });
}

bool HasDigit(std::string_view word) {
  return std::any_of(word.begin(), word.end(), [](char c) { return IsDigit(c); });
}

// Whether one becomes the other by one character added, taken out, replaced, or swapped with its
// neighbour.
bool DifferByOne(std::string_view a, std::string_view b) {
  if (a.size() > b.size()) std::swap(a, b);
  if (b.size() - a.size() > 1) return false;
  const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin());
  const std::string_view restA = a.substr(static_cast<std::size_t>(inA - a.begin()));
  const std::string_view restB = b.substr(static_cast<std::size_t>(inB - b.begin()));
  if (restB.empty()) return true;
  if (a.size() < b.size()) return restA == restB.substr(1);
  if (restA.substr(1) == restB.substr(1)) return true;
  return restA.size() > 1 && restA[0] == restB[1] && restA[1] == restB[0] &&
         restA.substr(2) == restB.substr(2);
}

// Calls `take` with each word of a text in upper case, until it returns false.
template <class Take>
void ForEachWord(std::string_view upper, Take take) {
  std::size_t start = 0;
  std::size_t position = 0;
  const auto end = [&] { return start == position || take(upper.substr(start, position - start)); };
  while (position < upper.size()) {
    const Character character = CharacterAt(upper, position);
    const bool standsAlone = character.code >= kFirstWithoutBlanks && IsLetter(character.code);
    if (!standsAlone && IsWordCharacter(character.code)) {
      position += character.length;
      continue;
    }
    if (!end()) return;
    start = position;
    position += character.length;
    if (standsAlone && !end()) return;
    start = position;
  }
  end();
}

}  // namespace

Words Lexicon::Read(std::string_view text, MatchSide side) {
  Words words;
  std::size_t count = 0;
  ForEachWord(UpperCase(text), [&](std::string_view word) {
    const WordId id = IdOf(word);
    words.ids.push_back(id);
    if (!words_[id].isYear) words.text.push_back(id);
    return ++count < kMostWords;
  });
  std::sort(words.ids.begin(), words.ids.end());
  words.ids.erase(std::unique(words.ids.begin(), words.ids.end()), words.ids.end());
  const auto at = static_cast<std::size_t>(side);
  for (const WordId id : words.ids) ++words_[id].texts[at];
  if (!words.Empty()) ++texts_[at];
  return words;
}

void Lexicon::Weigh() {
  for (Word& word : words_) word.weight = WeightOf(word);
}

void Lexicon::Weigh(Words& words) const {
  words.weight = 0;
  for (const WordId id : words.ids) words.weight += WeightOf(id);
}

WordId Lexicon::IdOf(std::string_view word) {
  const auto found = ids_.find(word);
  if (found != ids_.end()) return found->second;
  const auto id = static_cast<WordId>(words_.size());
  words_.push_back({std::string(word), {}, IsYear(word), 0});
  ids_.emplace(word, id);
  return id;
}

double Lexicon::WeightOf(const Word& word) const {
  const auto texts = static_cast<double>(texts_[0] + texts_[1]);
  const double weight = std::log(1 + texts / (word.texts[0] + word.texts[1]));
  if (word.isYear) return weight * kYearWeight;
  for (const std::size_t side : {0U, 1U}) {
    const bool isOfThisAlone =
        word.texts[1 - side] == 0 && texts_[1 - side] > 0 && word.texts[side] >= kFileWordLeast &&
        word.texts[side] >= kFileWordShare * static_cast<double>(texts_[side]);
    if (isOfThisAlone) return weight * kFileWordWeight;
  }
  return weight;
}

bool Lexicon::AreAlike(WordId a, WordId b) const {
  const std::string_view textA = words_[a].text;
  const std::string_view textB = words_[b].text;
  const std::size_t shorter = std::min(textA.size(), textB.size());
  if (shorter < kLeastAlike || HasDigit(textA) || HasDigit(textB)) return false;
  // Cut off, or with another ending.
  const auto common = static_cast<std::size_t>(
      std::mismatch(textA.begin(), textA.begin() + static_cast<std::ptrdiff_t>(shorter),
                    textB.begin())
          .first -
      textA.begin());
  if (common == shorter || common >= 6) return true;
  return DifferByOne(textA, textB);
}

double Lexicon::WeightOfAlike(const std::vector<WordId>& a, const std::vector<WordId>& b) const {
  if (a.size() > kMostCompared || b.size() > kMostCompared) return 0;
  double weight = 0;
  std::array<bool, kMostCompared> taken = {};
  for (const WordId word : a) {
    for (std::size_t i = 0; i < b.size(); ++i) {
      if (taken[i] || !AreAlike(word, b[i])) continue;
      taken[i] = true;
      weight += kAlikeWeight * (WeightOf(word) + WeightOf(b[i]));
      break;
    }
  }
  return weight;
}

double Lexicon::Similarity(const Words& a, const Words& b) const {
  const double all = a.weight + b.weight;
  if (all <= 0) return 0;
  if (a.text == b.text && !a.text.empty()) return 1;
  double common = 0;
  std::vector<WordId> onlyA;
  std::vector<WordId> onlyB;
  std::size_t inA = 0;
  std::size_t inB = 0;
  while (inA < a.ids.size() || inB < b.ids.size()) {
    const bool atEndOfA = inA == a.ids.size();
    const bool atEndOfB = inB == b.ids.size();
    if (!atEndOfA && !atEndOfB && a.ids[inA] == b.ids[inB]) {
      common += 2 * WeightOf(a.ids[inA]);
      ++inA;
      ++inB;
    } else if (atEndOfB || (!atEndOfA && a.ids[inA] < b.ids[inB])) {
      onlyA.push_back(a.ids[inA++]);
    } else {
      onlyB.push_back(b.ids[inB++]);
    }
  }
  if (common < all) common += WeightOfAlike(onlyA, onlyB);
  return std::min(1.0, common / all);
}

}  // namespace velahost
