#include "standalone/Matching/Evidence.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velahost {
namespace {

// A text that is the same counts the more, the more its words say.
constexpr double kSameText = 2.0;
constexpr double kWordsCount = 0.35;
constexpr double kMostWords = 3.5;

// What of that a text counts that is not the same, and what one counts that is quite different.
struct Point {
  double similarity;
  double share;
};
constexpr std::array kShares = {Point{0.35, 0.0}, Point{0.5, 0.1}, Point{0.7, 0.35},
                                Point{0.9, 0.65}, Point{1.0, 1.0}};
constexpr double kOtherLabel = -2.5;
constexpr double kOtherQuestion = -1.5;

// A set of value labels that all variables have says less than one that few have.
constexpr double kSameValues = 0.5;
constexpr double kRareValues = 2.0;
constexpr double kOtherValues = -2.0;
constexpr double kHalf = 0.5;

constexpr double kOtherType = -2.0;
constexpr double kSimilarNames = 1.0;

double ShareAt(double similarity) {
  const Point* above =
      std::find_if(kShares.begin(), kShares.end() - 1,
                   [similarity](const Point& point) { return similarity <= point.similarity; });
  const Point* below = above - 1;
  const double along = (similarity - below->similarity) / (above->similarity - below->similarity);
  return below->share + along * (above->share - below->share);
}

// A text that many variables of the old file share tells less of one of them.
double WeightOfTexts(double similarity, double words, std::size_t count, double other) {
  const double least = kShares.front().similarity;
  if (similarity <= least) return other * (1 - similarity / least);
  const double weight = kSameText + std::min(kMostWords, kWordsCount * words);
  return ShareAt(similarity) * weight / (1 + std::log(std::max<std::size_t>(1, count)));
}

double WeightOfValues(ValueSets& sets, ValueSets::Id set, const ValueSets::Agreement& agreement) {
  const double share = agreement.Share();
  if (share < kHalf) return kOtherValues * (1 - share / kHalf);
  const auto users = static_cast<double>(std::max<std::size_t>(1, sets.Count(set, MatchSide::Old)));
  return (share - kHalf) / (1 - kHalf) * (kSameValues + kRareValues / users);
}

}  // namespace

Evidence CompareContent(Profiles& profiles, Column oldColumn, Column newColumn) {
  const Profile& a = profiles.At(MatchSide::Old, oldColumn);
  const Profile& b = profiles.At(MatchSide::New, newColumn);
  Evidence evidence;
  if (!a.label.Empty() && !b.label.Empty()) {
    evidence.label = profiles.Labels().Similarity(a.label, b.label);
    evidence.content += WeightOfTexts(*evidence.label, std::min(a.label.weight, b.label.weight),
                                      a.labelCount, kOtherLabel);
  }
  if (!a.question.Empty() && !b.question.Empty()) {
    evidence.question = profiles.Questions().Similarity(a.question, b.question);
    evidence.content +=
        WeightOfTexts(*evidence.question, std::min(a.question.weight, b.question.weight),
                      a.questionCount, kOtherQuestion);
  }
  if (a.valueSet && b.valueSet) {
    evidence.values = profiles.Sets().Compare(*a.valueSet, *b.valueSet);
    evidence.content += WeightOfValues(profiles.Sets(), *a.valueSet, *evidence.values);
  }
  evidence.sameType = a.isNumeric == b.isNumeric;
  if (!evidence.sameType) evidence.content += kOtherType;
  return evidence;
}

double WeightOfNames(const Profile& a, const Profile& b) {
  return kSimilarNames * NameSimilarity(a.name.parts, b.name.parts);
}

}  // namespace velahost
