#include "standalone/Matching/ValueSets.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace velahost {

std::optional<ValueSets::Id> ValueSets::Read(const SharedValueLabels& set, MatchSide side) {
  if (!set || set->Empty()) return std::nullopt;
  Set read;
  read.pairs.reserve(std::min(set->Size(), kMostPairs));
  for (const ValueLabel& pair : *set) {
    if (read.pairs.size() == kMostPairs) break;
    const std::uint64_t value = set->IsNumeric() ? HashOf(pair.number) : HashOf(pair.string.View());
    read.pairs.push_back({value, KeyOf(pair.label)});
  }
  std::sort(read.pairs.begin(), read.pairs.end());
  const std::string_view bytes(reinterpret_cast<const char*>(read.pairs.data()),
                               read.pairs.size() * sizeof(Pair));
  auto found = ids_.find(bytes);
  if (found == ids_.end()) {
    found = ids_.emplace(bytes, sets_.size()).first;
    sets_.push_back(std::move(read));
  }
  ++sets_[found->second].counts[static_cast<std::size_t>(side)];
  return found->second;
}

std::size_t ValueSets::Count(Id id, MatchSide side) const {
  return sets_[id].counts[static_cast<std::size_t>(side)];
}

ValueSets::Agreement ValueSets::Compare(Id a, Id b) {
  if (a > b) std::swap(a, b);
  const std::uint64_t key = (std::uint64_t{a} << 32) | b;
  const auto [entry, isNew] = compared_.try_emplace(key);
  Agreement& agreement = entry->second;
  if (!isNew) return agreement;
  const std::vector<Pair>& pairsA = sets_[a].pairs;
  const std::vector<Pair>& pairsB = sets_[b].pairs;
  agreement.most = std::max(pairsA.size(), pairsB.size());
  auto inA = pairsA.begin();
  auto inB = pairsB.begin();
  while (inA != pairsA.end() && inB != pairsB.end()) {
    if (*inA == *inB) {
      ++agreement.agreeing;
      ++inA;
      ++inB;
    } else if (*inA < *inB) {
      ++inA;
    } else {
      ++inB;
    }
  }
  return agreement;
}

std::uint64_t ValueSets::KeyOf(const Text& label) {
  const auto found = labelKeys_.find(label.View());
  if (found != labelKeys_.end()) return found->second;
  const Words words = words_.Read(label, MatchSide::Old);
  // A label of signs alone is known by its text.
  const std::string_view bytes =
      words.text.empty() ? label.View()
                         : std::string_view(reinterpret_cast<const char*>(words.text.data()),
                                            words.text.size() * sizeof(WordId));
  const std::uint64_t key = HashOf(bytes);
  labelKeys_.emplace(label.View(), key);
  return key;
}

}  // namespace velahost
