#include "standalone/Matching/LearnedRules.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "standalone/Matching/Evidence.h"
#include "standalone/Text/Hash.h"

namespace velahost {
namespace {

// What bounds the work on files of any size.
constexpr std::size_t kMostExamples = 4000;  // to learn from
constexpr std::size_t kMostTried = 48;       // rules
constexpr std::size_t kMostJudged = 200;     // pairs of a rule
constexpr std::size_t kMostOfOneKind = 3;    // names of a file that are the same but for one place
constexpr std::size_t kMostCharacters = 12;  // of a name, that are left out in turn

// From where on what two variables say speaks for or against a rule.
constexpr double kAgrees = 1.0;
constexpr double kDisagrees = -0.7;
constexpr double kLeastJudged = 3;
constexpr double kLeastJudgedShare = 0.2;  // of the pairs: fewer are told apart one by one
constexpr double kOneAgrees = 1.0;
constexpr double kOneDisagrees = 0.9;
constexpr double kMostByContent = 5.0;
constexpr double kLeastByContent = -2.0;

// A rule of fewer pairs is an accident.
constexpr std::size_t kLeastPairs = 3;
constexpr double kByNames = 1.8;
constexpr double kThroughout = 0.5;   // of the file's variables: a change throughout it
constexpr double kChangedByte = 0.2;  // a greater change is less likely
constexpr double kLeastChance = 0.01;
constexpr double kShiftByNames = 0.25;  // any shift leads from most numbers to one that is there
constexpr double kSpelling = 3.0;       // zeros and separators alone

constexpr double kLeastWeight = 0.3;

// The variables of a file that a key stands for: the only one, if there is only one.
struct Holders {
  Column column = 0;
  std::size_t count = 0;
};

ViewMap<Holders> HoldersOf(const Profiles& profiles, MatchSide side,
                           const std::vector<Column>& columns, Words Profile::*texts) {
  ViewMap<Holders> holders;
  for (const Column column : columns) {
    const Words& words = profiles.At(side, column).*texts;
    if (words.text.empty()) continue;
    Holders& found = holders[KeyOf(words)];
    found.column = column;
    ++found.count;
  }
  return holders;
}

// At most so many of them, spread over all.
template <class Item>
std::vector<Item> Sample(const std::vector<Item>& items, std::size_t most) {
  if (items.size() <= most) return items;
  std::vector<Item> sample;
  sample.reserve(most);
  for (std::size_t i = 0; i < most; ++i) sample.push_back(items[i * items.size() / most]);
  return sample;
}

// A name with something left out, as a hash.
struct Gapped {
  std::size_t hash;
  MatchSide side;
  Column column;
  friend bool operator<(const Gapped& a, const Gapped& b) {
    return std::tie(a.hash, a.side, a.column) < std::tie(b.hash, b.side, b.column);
  }
};

// How many parts stand before a separator: the first, or the last one; 0 where there is none.
std::size_t BehindFirstSeparator(const SplitName& name) {
  for (std::size_t i = 1; i < name.parts.size(); ++i) {
    const NamePart& before = name.parts[i - 1];
    if (name.parts[i].position > before.position + before.length) return i;
  }
  return 0;
}

std::size_t BeforeLastSeparator(const SplitName& name) {
  for (std::size_t i = name.parts.size(); i > 1; --i) {
    const NamePart& before = name.parts[i - 2];
    if (name.parts[i - 1].position > before.position + before.length) return i - 1;
  }
  return 0;
}

class Gaps {
 public:
  void Add(const SplitName& name, MatchSide side, Column column) {
    const auto add = [&](const std::string& text) {
      gapped_.push_back({HashOf(text), side, column});
    };
    const std::string& upper = name.upperCase;
    for (std::size_t i = 0; i < std::min(upper.size(), kMostCharacters); ++i) {
      std::string text = "c" + upper;
      text[i + 1] = '\x1D';
      add(text);
    }
    std::vector<NamePart> parts = name.parts;
    for (std::size_t i = 0; i < parts.size() && parts.size() > 1; ++i) {
      const NamePart whole = std::exchange(parts[i], {0, 0, false, gap_});
      add("p" + PlainName(parts));
      // A second number too, such as a wave's and a year's.
      for (std::size_t j = i + 1; whole.isNumber && j < parts.size() && parts.size() > 2; ++j) {
        if (!parts[j].isNumber) continue;
        const NamePart second = std::exchange(parts[j], {0, 0, false, gap_});
        add("p" + PlainName(parts));
        parts[j] = second;
      }
      parts[i] = whole;
    }
    // What stands before the first separator, or behind the last, a character or a part is gone.
    add("b" + name.plain);
    add("e" + name.plain);
    if (const std::size_t after = BehindFirstSeparator(name); after > 0) {
      add("b" + PlainName({parts.begin() + static_cast<std::ptrdiff_t>(after), parts.end()}));
    }
    if (const std::size_t before = BeforeLastSeparator(name); before > 0) {
      add("e" + PlainName({parts.begin(), parts.begin() + static_cast<std::ptrdiff_t>(before)}));
    }
    add("f" + upper);
    add("l" + upper);
    if (upper.size() > 2) {
      add("f" + upper.substr(1));
      add("l" + upper.substr(0, upper.size() - 1));
    }
  }

  // Pairs of names that are the same with what was left out.
  std::vector<ColumnPair> Pairs() {
    std::sort(gapped_.begin(), gapped_.end());
    std::vector<ColumnPair> pairs;
    for (auto first = gapped_.begin(); first != gapped_.end();) {
      const auto end = std::find_if(
          first, gapped_.end(), [first](const Gapped& other) { return other.hash != first->hash; });
      const auto firstNew = std::find_if(
          first, end, [](const Gapped& other) { return other.side == MatchSide::New; });
      const bool isFew = firstNew - first <= static_cast<std::ptrdiff_t>(kMostOfOneKind) &&
                         end - firstNew <= static_cast<std::ptrdiff_t>(kMostOfOneKind);
      for (auto from = first; isFew && from != firstNew; ++from) {
        for (auto to = firstNew; to != end; ++to) pairs.push_back({from->column, to->column});
      }
      first = end;
    }
    std::sort(pairs.begin(), pairs.end());
    pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
    return pairs;
  }

 private:
  std::vector<Gapped> gapped_;
  const std::string gap_ = "\x1D";
};

// A rule with how many examples it explains.
struct Supported {
  RenameRule rule;
  std::string key;
  std::size_t examples = 0;
  std::size_t rank = 0;  // of the rule among those of its first example
};

std::vector<Supported> RulesBehind(const Profiles& profiles,
                                   const std::vector<ColumnPair>& examples) {
  std::vector<Supported> rules;
  TextMap<std::size_t> places;
  for (const auto& [oldColumn, newColumn] : Sample(examples, kMostExamples)) {
    std::size_t rank = 0;
    for (RenameRule& rule : RenameRule::Between(profiles.At(MatchSide::Old, oldColumn).name,
                                                profiles.At(MatchSide::New, newColumn).name)) {
      std::string key = rule.Key();
      const auto [place, isNew] = places.try_emplace(key, rules.size());
      if (isNew) rules.push_back({std::move(rule), std::move(key), 0, rank});
      ++rules[place->second].examples;
      ++rank;
    }
  }
  std::erase_if(rules, [](const Supported& rule) { return rule.examples < 2; });
  const auto isBefore = [](const Supported& a, const Supported& b) {
    if (a.examples != b.examples) return a.examples > b.examples;
    return a.rank != b.rank ? a.rank < b.rank : a.key < b.key;
  };
  const std::size_t kept = std::min(rules.size(), kMostTried);
  std::partial_sort(rules.begin(), rules.begin() + static_cast<std::ptrdiff_t>(kept), rules.end(),
                    isBefore);
  rules.erase(rules.begin() + static_cast<std::ptrdiff_t>(kept), rules.end());
  return rules;
}

// Applies rules to the names of the old file and judges them by where they lead.
class Judge {
 public:
  Judge(Profiles& profiles, const Pools& pools) : profiles_(profiles), pools_(pools) {
    for (const Column column : pools.newColumns) {
      const SplitName& name = profiles.At(MatchSide::New, column).name;
      byName_.emplace(name.upperCase, column);
      Holders& plain = byPlainName_[name.plain];
      plain.column = column;
      ++plain.count;
    }
  }

  LearnedRule Try(const RenameRule& rule) {
    LearnedRule learned = {rule, 0, {}};
    std::size_t applicable = 0;
    for (const Column column : pools_.oldColumns) {
      const std::optional<std::string> name = rule.Apply(profiles_.At(MatchSide::Old, column).name);
      if (!name) continue;
      ++applicable;
      if (const std::optional<Column> found = Find(rule, *name)) {
        learned.pairs.push_back({column, *found});
      }
    }
    learned.weight = WeightOf(learned, applicable);
    return learned;
  }

 private:
  std::optional<Column> Find(const RenameRule& rule, const std::string& name) const {
    if (rule.WhichKind() == RenameRule::Kind::Characters) {
      const auto found = byName_.find(name);
      if (found == byName_.end()) return std::nullopt;
      return found->second;
    }
    const auto found = byPlainName_.find(name);
    if (found == byPlainName_.end() || found->second.count > 1) return std::nullopt;
    return found->second.column;
  }

  // What the variables say that a rule brings together.
  struct Verdict {
    double agree = 0;
    double disagree = 0;
    double silent = 0;  // what they say cannot be compared
    double unlike = 0;  // of these those of other types
  };

  Verdict VerdictOn(const LearnedRule& learned) {
    Verdict verdict;
    for (const auto& [oldColumn, newColumn] : Sample(learned.pairs, kMostJudged)) {
      const Evidence evidence = CompareContent(profiles_, oldColumn, newColumn);
      if (!evidence.label && !evidence.question && !evidence.values) {
        ++verdict.silent;
        if (!evidence.sameType) ++verdict.unlike;
      } else if (evidence.content >= kAgrees) {
        ++verdict.agree;
      } else if (evidence.content <= kDisagrees) {
        ++verdict.disagree;
      }
    }
    return verdict;
  }

  double WeightOf(const LearnedRule& learned, std::size_t applicable) {
    const bool isAccident =
        learned.pairs.size() < kLeastPairs && !learned.rule.ChangesSpellingAlone();
    if (learned.pairs.empty() || isAccident) return 0;
    const Verdict verdict = VerdictOn(learned);
    const double byNames = WeightByNames(learned, applicable, verdict) +
                           kOneAgrees * verdict.agree - kOneDisagrees * verdict.disagree;
    const double judged = verdict.agree + verdict.disagree;
    if (judged < kLeastJudged || judged < kLeastJudgedShare * (judged + verdict.silent)) {
      return byNames;
    }
    const double byContent = std::clamp(std::log((verdict.agree + 0.5) / (verdict.disagree + 0.5)),
                                        kLeastByContent, kMostByContent);
    // Where most say nothing, the names count too, unless what is said is against them.
    const bool countsNames = verdict.silent > judged && verdict.agree > verdict.disagree;
    return countsNames ? std::max(byContent, byNames) : byContent;
  }

  // The weight of a rule by the names alone that it brings together.
  double WeightByNames(const LearnedRule& learned, std::size_t applicable,
                       const Verdict& verdict) const {
    // Pairs by chance are of other types so often.
    const double chance = ShareOfOtherTypes();
    const bool tellsTypes = chance >= kLeastChance && verdict.silent > 0;
    const double likeness =
        tellsTypes ? std::max(0.0, 1 - verdict.unlike / verdict.silent / chance) : 1;
    if (learned.rule.ChangesSpellingAlone()) return kSpelling * likeness;
    const std::size_t count = learned.pairs.size();
    const double share = static_cast<double>(count) / static_cast<double>(applicable);
    const double ofFile =
        static_cast<double>(count) / static_cast<double>(profiles_.Count(MatchSide::Old));
    const double throughout = std::min(1.0, ofFile / kThroughout);
    const double changed = kChangedByte * static_cast<double>(learned.rule.ChangedBytes());
    const double weight = (kByNames * std::log(count) * share - changed) * likeness * throughout;
    return learned.rule.WhichKind() == RenameRule::Kind::Shift ? weight * kShiftByNames : weight;
  }

  // How many of the pairs that could be made of the pools are of a number and a string.
  double ShareOfOtherTypes() const {
    const auto numbers = [this](MatchSide side, const std::vector<Column>& columns) {
      const auto count = std::count_if(columns.begin(), columns.end(), [&](Column column) {
        return profiles_.At(side, column).isNumeric;
      });
      return static_cast<double>(count) / static_cast<double>(columns.size());
    };
    const double oldNumbers = numbers(MatchSide::Old, pools_.oldColumns);
    const double newNumbers = numbers(MatchSide::New, pools_.newColumns);
    return oldNumbers * (1 - newNumbers) + newNumbers * (1 - oldNumbers);
  }

  Profiles& profiles_;
  const Pools& pools_;
  ViewMap<Column> byName_;
  ViewMap<Holders> byPlainName_;
};

}  // namespace

std::vector<ColumnPair> UniquelyAlike(const Profiles& profiles, const Pools& pools) {
  std::vector<ColumnPair> pairs;
  for (Words Profile::*texts : {&Profile::label, &Profile::question}) {
    const ViewMap<Holders> inNew = HoldersOf(profiles, MatchSide::New, pools.newColumns, texts);
    const ViewMap<Holders> inOld = HoldersOf(profiles, MatchSide::Old, pools.oldColumns, texts);
    for (const Column column : pools.oldColumns) {
      const std::string_view key = KeyOf((profiles.At(MatchSide::Old, column).*texts));
      if (key.empty() || inOld.at(key).count != 1) continue;
      const auto found = inNew.find(key);
      if (found == inNew.end() || found->second.count != 1) continue;
      pairs.push_back({column, found->second.column});
    }
  }
  std::sort(pairs.begin(), pairs.end());
  pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
  return pairs;
}

std::vector<ColumnPair> NearlySameNames(const Profiles& profiles, const Pools& pools) {
  Gaps gaps;
  for (const Column column : pools.oldColumns) {
    gaps.Add(profiles.At(MatchSide::Old, column).name, MatchSide::Old, column);
  }
  for (const Column column : pools.newColumns) {
    gaps.Add(profiles.At(MatchSide::New, column).name, MatchSide::New, column);
  }
  return gaps.Pairs();
}

std::vector<LearnedRule> LearnRules(Profiles& profiles, const Pools& pools,
                                    const std::vector<ColumnPair>& examples) {
  Judge judge(profiles, pools);
  std::vector<LearnedRule> learned;
  for (const Supported& supported : RulesBehind(profiles, examples)) {
    LearnedRule rule = judge.Try(supported.rule);
    if (rule.weight >= kLeastWeight) learned.push_back(std::move(rule));
  }
  std::stable_sort(learned.begin(), learned.end(), [](const LearnedRule& a, const LearnedRule& b) {
    return a.weight != b.weight ? a.weight > b.weight : a.pairs.size() > b.pairs.size();
  });
  return learned;
}

}  // namespace velahost
