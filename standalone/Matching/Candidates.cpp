#include "standalone/Matching/Candidates.h"

#include <algorithm>
#include <string_view>

namespace velahost {
namespace {

// How many candidates there are of each kind at most.
constexpr std::size_t kMostByLabel = 6;
constexpr std::size_t kMostByQuestion = 4;
constexpr std::size_t kMostOfOneKind = 6;  // of those that have the very same

// The rarest words that are looked up, and how many variables may have one.
constexpr std::size_t kMostWords = 6;
constexpr std::size_t kMostHolders = 64;

constexpr std::size_t kLeastNamePart = 3;
constexpr std::size_t kMostNameHolders = 8;

}  // namespace

Candidates::Candidates(const Profiles& profiles, const Pools& pools)
    : profiles_(profiles),
      pools_(pools),
      byLabelWord_(profiles.Labels().Size()),
      byQuestionWord_(profiles.Questions().Size()),
      weights_(profiles.Count(MatchSide::Old)) {
  IndexOldFile();
}

void Candidates::IndexOldFile() {
  for (const Column column : pools_.oldColumns) {
    const Profile& profile = profiles_.At(MatchSide::Old, column);
    for (const WordId word : profile.label.ids) byLabelWord_[word].push_back(column);
    for (const WordId word : profile.question.ids) byQuestionWord_[word].push_back(column);
    if (!profile.label.text.empty()) byLabel_[KeyOf(profile.label)].push_back(column);
    if (profile.valueSet) {
      if (byValueSet_.size() <= *profile.valueSet) byValueSet_.resize(*profile.valueSet + 1);
      byValueSet_[*profile.valueSet].push_back(column);
    }
    for (const NamePart& part : profile.name.parts) {
      if (!part.isNumber && part.text.size() >= kLeastNamePart) {
        byNamePart_[part.text].push_back(column);
      }
    }
  }
}

std::vector<Column> Candidates::For(Column newColumn) {
  const Profile& profile = profiles_.At(MatchSide::New, newColumn);
  Columns found;
  AddBest(profile.label, byLabelWord_, profiles_.Labels(), kMostByLabel, found);
  AddBest(profile.question, byQuestionWord_, profiles_.Questions(), kMostByQuestion, found);
  if (!profile.label.text.empty()) {
    const auto same = byLabel_.find(KeyOf(profile.label));
    if (same != byLabel_.end()) AddNear(same->second, newColumn, found);
  }
  if (profile.valueSet && *profile.valueSet < byValueSet_.size()) {
    AddNear(byValueSet_[*profile.valueSet], newColumn, found);
  }
  for (const NamePart& part : profile.name.parts) {
    const auto same = byNamePart_.find(part.text);
    if (same == byNamePart_.end() || same->second.size() > kMostNameHolders) continue;
    found.insert(found.end(), same->second.begin(), same->second.end());
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

// Adds the columns that have the greatest weight of rare words in common with a text.
void Candidates::AddBest(const Words& words, const std::vector<Columns>& index,
                         const Lexicon& lexicon, std::size_t most, Columns& found) {
  std::vector<WordId> rarest = words.ids;
  std::erase_if(rarest, [&index](WordId word) {
    return index[word].empty() || index[word].size() > kMostHolders;
  });
  std::stable_sort(rarest.begin(), rarest.end(), [&lexicon](WordId a, WordId b) {
    return lexicon.WeightOf(a) > lexicon.WeightOf(b);
  });
  if (rarest.size() > kMostWords) rarest.resize(kMostWords);
  Columns touched;
  for (const WordId word : rarest) {
    for (const Column column : index[word]) {
      if (weights_[column] == 0) touched.push_back(column);
      weights_[column] += lexicon.WeightOf(word);
    }
  }
  const std::size_t kept = std::min(most, touched.size());
  std::partial_sort(touched.begin(), touched.begin() + static_cast<std::ptrdiff_t>(kept),
                    touched.end(), [this](Column a, Column b) {
                      return weights_[a] != weights_[b] ? weights_[a] > weights_[b] : a < b;
                    });
  found.insert(found.end(), touched.begin(), touched.begin() + static_cast<std::ptrdiff_t>(kept));
  for (const Column column : touched) weights_[column] = 0;
}

// Adds those whose place in the old file is most like the column's in the new one.
void Candidates::AddNear(const Columns& columns, Column newColumn, Columns& found) const {
  if (columns.empty()) return;
  const auto place = static_cast<Column>(
      std::uint64_t{newColumn} * profiles_.Count(MatchSide::Old) / profiles_.Count(MatchSide::New));
  const auto at = static_cast<std::size_t>(std::lower_bound(columns.begin(), columns.end(), place) -
                                           columns.begin());
  const std::size_t first = at < kMostOfOneKind / 2 ? 0 : at - kMostOfOneKind / 2;
  const std::size_t end = std::min(columns.size(), first + kMostOfOneKind);
  found.insert(found.end(), columns.begin() + static_cast<std::ptrdiff_t>(first),
               columns.begin() + static_cast<std::ptrdiff_t>(end));
}

}  // namespace velahost
