#include "standalone/Matching/Assignment.h"

#include <algorithm>
#include <numeric>

namespace velahost {
namespace {

// How much better than its rivals a pair must be, as a logarithm of odds.
constexpr double kMargin = 1.5;

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

class Assigner {
 public:
  Assigner(const std::vector<CandidatePair>& candidates) : candidates_(candidates) {
    std::size_t oldCount = 0;
    std::size_t newCount = 0;
    for (const CandidatePair& candidate : candidates) {
      oldCount = std::max<std::size_t>(oldCount, candidate.columns.oldColumn + std::size_t{1});
      newCount = std::max<std::size_t>(newCount, candidate.columns.newColumn + std::size_t{1});
    }
    ofOld_.resize(oldCount);
    ofNew_.resize(newCount);
    chosenOfOld_.assign(oldCount, kNone);
    chosenOfNew_.assign(newCount, kNone);
    for (std::size_t i = 0; i < candidates.size(); ++i) {
      ofOld_[candidates[i].columns.oldColumn].push_back(i);
      ofNew_[candidates[i].columns.newColumn].push_back(i);
    }
  }

  std::vector<ChosenPair> Assign() {
    std::vector<ChosenPair> chosen;
    for (const std::size_t i : BestFirst()) {
      const auto& [oldColumn, newColumn] = candidates_[i].columns;
      if (chosenOfOld_[oldColumn] != kNone || chosenOfNew_[newColumn] != kNone) continue;
      chosenOfOld_[oldColumn] = chosenOfNew_[newColumn] = i;
      chosen.push_back({i, {}});
    }
    for (ChosenPair& pair : chosen) pair.rivals = RivalsOf(pair.candidate);
    return chosen;
  }

 private:
  // Among equals those whose places in the files differ least.
  std::vector<std::size_t> BestFirst() const {
    std::vector<std::size_t> order(candidates_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
      const CandidatePair& pairA = candidates_[a];
      const CandidatePair& pairB = candidates_[b];
      const double weightA = pairA.evidence.Weight();
      const double weightB = pairB.evidence.Weight();
      if (weightA != weightB) return weightA > weightB;
      const Column distanceA = DistanceOf(pairA.columns);
      const Column distanceB = DistanceOf(pairB.columns);
      return distanceA != distanceB ? distanceA < distanceB : pairA.columns < pairB.columns;
    });
    return order;
  }

  static Column DistanceOf(const ColumnPair& columns) {
    return std::max(columns.oldColumn, columns.newColumn) -
           std::min(columns.oldColumn, columns.newColumn);
  }

  double WeightOf(std::size_t i) const { return candidates_[i].evidence.WithoutOrder(); }

  std::vector<std::size_t> RivalsOf(std::size_t chosen) const {
    std::vector<std::size_t> rivals;
    const double least = WeightOf(chosen) - kMargin;
    for (const std::vector<std::size_t>* others :
         {&ofNew_[candidates_[chosen].columns.newColumn],
          &ofOld_[candidates_[chosen].columns.oldColumn]}) {
      for (const std::size_t i : *others) {
        if (i != chosen && WeightOf(i) > least) rivals.push_back(i);
      }
    }
    std::stable_sort(rivals.begin(), rivals.end(), [this](std::size_t a, std::size_t b) {
      return candidates_[a].evidence.Weight() > candidates_[b].evidence.Weight();
    });
    return rivals;
  }

  const std::vector<CandidatePair>& candidates_;
  std::vector<std::vector<std::size_t>> ofOld_;  // places of candidates, by column
  std::vector<std::vector<std::size_t>> ofNew_;
  std::vector<std::size_t> chosenOfOld_;  // place of the chosen candidate, by column
  std::vector<std::size_t> chosenOfNew_;
};

}  // namespace

std::vector<ChosenPair> Assign(const std::vector<CandidatePair>& candidates) {
  return Assigner(candidates).Assign();
}

}  // namespace velahost
