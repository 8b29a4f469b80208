#include "standalone/Matching/Matching.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "standalone/Matching/Assignment.h"
#include "standalone/Matching/Candidates.h"
#include "standalone/Matching/Evidence.h"
#include "standalone/Matching/FileOrder.h"
#include "standalone/Matching/LearnedRules.h"
#include "standalone/Matching/Namesakes.h"
#include "standalone/Matching/Profiles.h"
#include "standalone/Matching/Reasons.h"

namespace velahost {
namespace {

// The odds that a pair of variables taken by chance is right, by how many there are to take from.
constexpr double kOdds = -1.0;
constexpr double kOddsByCount = -0.4;

// Which scores are certain, and which are not told.
constexpr double kCertain = 0.9;
constexpr double kLeast = 0.25;
constexpr double kLeastReasons = 0.8;  // what content and names must weigh together to be told
constexpr double kMost = 0.999;

// What a namesake counts for that says something else, where names are reused and where not.
constexpr double kReusedName = 0.5;
constexpr double kSameName = 2.0;

constexpr std::size_t kMostRivals = 3;

double ScoreOf(double weight) { return std::min(kMost, 1 / (1 + std::exp(-weight))); }

class Matcher {
 public:
  Matcher(const MatchedFile& oldFile, const MatchedFile& newFile)
      : oldFile_(oldFile),
        newFile_(newFile),
        profiles_(oldFile.dictionary, newFile.dictionary),
        namesakes_(FindNamesakes(profiles_)),
        pools_(PoolsOf(profiles_, namesakes_)),
        isInPool_(profiles_.Count(MatchSide::Old)),
        hasNamesake_(profiles_.Count(MatchSide::New)),
        odds_(kOdds + kOddsByCount * std::log(1 + pools_.oldColumns.size())) {
    for (const Column column : pools_.oldColumns) isInPool_[column] = true;
    for (const ColumnPair& doubted : namesakes_.doubted) hasNamesake_[doubted.newColumn] = true;
  }

  Matches Match() {
    ReadQuestions();
    Candidates candidates(profiles_, pools_);
    std::vector<ColumnPair> examples = UniquelyAlike(profiles_, pools_);
    Append(NearlySameNames(profiles_, pools_), examples);
    Choose(candidates, examples, FileOrder({}, profiles_.Count(MatchSide::New)));
    // Once more, knowing the pairs that are sure: what else their names have in common, and what
    // stands around them.
    const std::vector<ColumnPair> sure = SurePairs();
    Append(sure, examples);
    std::vector<ColumnPair> places = namesakes_.trusted;
    Append(sure, places);
    Choose(candidates, examples, FileOrder(places, profiles_.Count(MatchSide::New)));
    return Report();
  }

 private:
  static void Append(const std::vector<ColumnPair>& pairs, std::vector<ColumnPair>& to) {
    to.insert(to.end(), pairs.begin(), pairs.end());
  }

  void ReadQuestions() {
    for (const Column column : pools_.oldColumns) {
      profiles_.AddQuestion(MatchSide::Old, column, oldFile_.question(column));
    }
    for (const Column column : pools_.newColumns) {
      profiles_.AddQuestion(MatchSide::New, column, newFile_.question(column));
    }
    profiles_.WeighQuestions();
  }

  void Choose(Candidates& candidates, const std::vector<ColumnPair>& examples,
              const FileOrder& order) {
    rules_ = LearnRules(profiles_, pools_, examples);
    pairs_.clear();
    AddRulePairs();
    AddContentPairs(candidates, order);
    AddNamesakes();
    Weigh(order);
    chosen_ = Assign(pairs_);
  }

  void Add(Column oldColumn, Column newColumn, std::optional<std::size_t> rule) {
    pairs_.push_back({{oldColumn, newColumn}, {}});
    pairs_.back().evidence.rule = rule;
  }

  void AddRulePairs() {
    for (std::size_t rule = 0; rule < rules_.size(); ++rule) {
      for (const auto& [oldColumn, newColumn] : rules_[rule].pairs) Add(oldColumn, newColumn, rule);
    }
  }

  void AddContentPairs(Candidates& candidates, const FileOrder& order) {
    for (const Column newColumn : pools_.newColumns) {
      for (const Column oldColumn : candidates.For(newColumn)) Add(oldColumn, newColumn, {});
      for (const Column oldColumn : order.Expected(newColumn)) {
        if (oldColumn < isInPool_.size() && isInPool_[oldColumn]) Add(oldColumn, newColumn, {});
      }
    }
  }

  void AddNamesakes() {
    for (const auto& [oldColumn, newColumn] : namesakes_.doubted) Add(oldColumn, newColumn, {});
  }

  // Makes each pair stand once, with the weight of the best of the rules that lead to it and the
  // name of the widest, and weighs it.
  void Weigh(const FileOrder& order) {
    std::stable_sort(
        pairs_.begin(), pairs_.end(),
        [](const CandidatePair& a, const CandidatePair& b) { return a.columns < b.columns; });
    std::vector<CandidatePair> weighed;
    for (auto first = pairs_.begin(); first != pairs_.end();) {
      const auto end = std::find_if(first, pairs_.end(), [first](const CandidatePair& other) {
        return other.columns != first->columns;
      });
      weighed.push_back(
          {first->columns, EvidenceFor({&*first, static_cast<std::size_t>(end - first)}, order)});
      first = end;
    }
    pairs_ = std::move(weighed);
  }

  // The evidence for a pair that was found in several ways.
  Evidence EvidenceFor(std::span<const CandidatePair> found, const FileOrder& order) {
    const ColumnPair& columns = found.front().columns;
    Evidence evidence = CompareContent(profiles_, columns.oldColumn, columns.newColumn);
    evidence.content += odds_;
    evidence.order = order.WeightOf(columns);
    evidence.name = WeightOfNames(columns);
    for (const CandidatePair& way : found) {
      const std::optional<std::size_t> rule = way.evidence.rule;
      if (!rule) continue;
      const LearnedRule& learned = rules_[*rule];
      evidence.name = evidence.rule ? std::max(evidence.name, learned.weight) : learned.weight;
      if (!evidence.rule || learned.pairs.size() > rules_[*evidence.rule].pairs.size()) {
        evidence.rule = rule;
      }
    }
    return evidence;
  }

  double WeightOfNames(const ColumnPair& pair) const {
    const Profile& oldProfile = profiles_.At(MatchSide::Old, pair.oldColumn);
    const Profile& newProfile = profiles_.At(MatchSide::New, pair.newColumn);
    if (oldProfile.name.upperCase == newProfile.name.upperCase) {
      return namesakes_.namesAreReused ? kReusedName : kSameName;
    }
    return velahost::WeightOfNames(oldProfile, newProfile);
  }

  bool IsSure(const ChosenPair& chosen) const {
    return chosen.rivals.empty() && ScoreOf(chosen) >= kCertain;
  }
  // What a rival's odds are of those of the chosen pair.
  double OddsAgainst(const ChosenPair& chosen, std::size_t rival) const {
    const double better =
        pairs_[rival].evidence.Weight() - pairs_[chosen.candidate].evidence.Weight();
    return std::exp(std::min(0.0, better));
  }
  // What its rivals leave of the likelihood of a pair.
  double ShareOf(const ChosenPair& chosen) const {
    double all = 1;
    for (const std::size_t rival : chosen.rivals) all += OddsAgainst(chosen, rival);
    return 1 / all;
  }

  // A place in the file alone is no reason.
  bool IsTold(const ChosenPair& chosen) const {
    const double reasons = pairs_[chosen.candidate].evidence.WithoutOrder() - odds_;
    return reasons >= kLeastReasons && ScoreOf(chosen) >= kLeast;
  }
  double ScoreOf(const ChosenPair& chosen) const {
    return velahost::ScoreOf(pairs_[chosen.candidate].evidence.Weight());
  }

  std::vector<ColumnPair> SurePairs() const {
    std::vector<ColumnPair> sure;
    for (const ChosenPair& chosen : chosen_) {
      if (IsSure(chosen)) sure.push_back(pairs_[chosen.candidate].columns);
    }
    return sure;
  }

  Matches Report() {
    Matches matches;
    matches.namesakes = namesakes_.Count();
    const std::vector<std::size_t> uses = UsesOfRules();
    std::vector<bool> hasProposal = hasNamesake_;
    for (const ChosenPair& chosen : chosen_) {
      const ColumnPair& columns = pairs_[chosen.candidate].columns;
      if (!IsTold(chosen) || AreNamesakes(columns)) continue;
      matches.proposals.push_back(ProposalOf(chosen, uses));
      hasProposal[columns.newColumn] = true;
    }
    for (const Column column : pools_.newColumns) {
      if (!hasProposal[column]) matches.withoutProposal.push_back(column);
    }
    std::stable_sort(matches.proposals.begin(), matches.proposals.end(),
                     [](const Proposal& a, const Proposal& b) {
                       if (a.isCertain != b.isCertain) return a.isCertain;
                       return a.score != b.score ? a.score > b.score : a.newColumn < b.newColumn;
                     });
    return matches;
  }

  // How many of the pairs that are told each rule explains.
  std::vector<std::size_t> UsesOfRules() const {
    std::vector<std::size_t> uses(rules_.size());
    for (const ChosenPair& chosen : chosen_) {
      const std::optional<std::size_t> rule = pairs_[chosen.candidate].evidence.rule;
      if (rule && IsTold(chosen)) ++uses[*rule];
    }
    return uses;
  }

  bool AreNamesakes(const ColumnPair& columns) const {
    return profiles_.At(MatchSide::Old, columns.oldColumn).name.upperCase ==
           profiles_.At(MatchSide::New, columns.newColumn).name.upperCase;
  }

  Proposal ProposalOf(const ChosenPair& chosen, const std::vector<std::size_t>& uses) const {
    const CandidatePair& pair = pairs_[chosen.candidate];
    const bool hasNamesake = hasNamesake_[pair.columns.newColumn];
    Proposal proposal;
    proposal.oldColumn = pair.columns.oldColumn;
    proposal.newColumn = pair.columns.newColumn;
    const double share = ShareOf(chosen);
    proposal.score = ScoreOf(chosen) * share;
    proposal.isCertain = IsSure(chosen) && (!hasNamesake || namesakes_.namesAreReused);
    proposal.reasons = ReasonsFor(
        pair.evidence, NamesOf(pair.columns),
        pair.evidence.rule
            ? Explanation{&rules_[*pair.evidence.rule].rule, uses[*pair.evidence.rule] - 1}
            : Explanation{},
        profiles_.At(MatchSide::Old, pair.columns.oldColumn),
        profiles_.At(MatchSide::New, pair.columns.newColumn));
    if (hasNamesake) proposal.reasons.emplace_back("the name is in both files for other things");
    for (const std::size_t rival : chosen.rivals) {
      if (proposal.rivals.size() == kMostRivals) break;
      const bool isOld = pairs_[rival].columns.newColumn == pair.columns.newColumn;
      proposal.rivals.push_back(
          {isOld, isOld ? pairs_[rival].columns.oldColumn : pairs_[rival].columns.newColumn,
           ScoreOf(chosen) * share * OddsAgainst(chosen, rival)});
    }
    return proposal;
  }

  NamePair NamesOf(const ColumnPair& columns) const {
    return {oldFile_.dictionary.variables[columns.oldColumn]->name,
            newFile_.dictionary.variables[columns.newColumn]->name};
  }

  const MatchedFile& oldFile_;
  const MatchedFile& newFile_;
  Profiles profiles_;
  const Namesakes namesakes_;
  const Pools pools_;
  std::vector<bool> isInPool_;     // by old column
  std::vector<bool> hasNamesake_;  // by new column: one that is doubted
  const double odds_;

  // Of the choice that was made last.
  std::vector<LearnedRule> rules_;
  std::vector<CandidatePair> pairs_;
  std::vector<ChosenPair> chosen_;
};

}  // namespace

Matches MatchVariables(const MatchedFile& oldFile, const MatchedFile& newFile) {
  return Matcher(oldFile, newFile).Match();
}

}  // namespace velahost
