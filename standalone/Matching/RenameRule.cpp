#include "standalone/Matching/RenameRule.h"

#include <algorithm>
#include <utility>

#include "standalone/Text/Numbers.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

constexpr std::size_t kMostEditedParts = 3;
constexpr int kMostNumber = 99'999'999;
constexpr char kBetween = '\x1E';

// Where the beginnings and ends that two names have in common stop.
struct Common {
  std::size_t beginning = 0;
  std::size_t end = 0;
};

bool IsCharacterStart(std::string_view text, std::size_t position) {
  return position >= text.size() || (static_cast<unsigned char>(text[position]) & 0xC0) != 0x80;
}

Common CommonEndsOf(std::string_view a, std::string_view b) {
  const std::size_t shorter = std::min(a.size(), b.size());
  Common common;
  while (common.beginning < shorter && a[common.beginning] == b[common.beginning]) {
    ++common.beginning;
  }
  while (!IsCharacterStart(a, common.beginning) || !IsCharacterStart(b, common.beginning)) {
    --common.beginning;
  }
  while (common.end < shorter - common.beginning &&
         a[a.size() - common.end - 1] == b[b.size() - common.end - 1]) {
    ++common.end;
  }
  while (!IsCharacterStart(a, a.size() - common.end)) --common.end;
  return common;
}

// Moves the ends of what differs outwards to where parts of both names begin and end; or only out
// of numbers.
enum class Within { Parts, Numbers };
Common MovedOut(const SplitName& a, const SplitName& b, Common common, Within within) {
  const auto splits = [within](const SplitName& name, std::size_t position) {
    return std::any_of(name.parts.begin(), name.parts.end(), [&](const NamePart& part) {
      return (within == Within::Parts || part.isNumber) && part.position < position &&
             position < part.position + part.length;
    });
  };
  while (common.beginning > 0 && (splits(a, common.beginning) || splits(b, common.beginning))) {
    --common.beginning;
  }
  while (common.end > 0 && (splits(a, a.upperCase.size() - common.end) ||
                            splits(b, b.upperCase.size() - common.end))) {
    --common.end;
  }
  return common;
}

std::string Middle(std::string_view name, Common common) {
  return std::string(name.substr(common.beginning, name.size() - common.beginning - common.end));
}

std::string Marked(std::string_view name, Common common) {
  const std::string middle = Middle(name, common);
  if (middle.empty()) return std::string(name);
  return std::string(name.substr(0, common.beginning)) + "*" + middle + "*" +
         std::string(name.substr(name.size() - common.end));
}

std::optional<int> NumberIn(const NamePart& part) {
  if (!part.isNumber) return std::nullopt;
  return ReadInteger(part.text, 0, kMostNumber);
}

}  // namespace

SplitName::SplitName(std::string_view upperCaseName)
    : upperCase(upperCaseName), parts(PartsOf(upperCaseName)), plain(PlainName(parts)) {}

std::vector<RenameRule> RenameRule::Between(const SplitName& from, const SplitName& to) {
  std::vector<RenameRule> rules;
  AddPartRules(from, to, rules);
  AddCharacterRules(from, to, rules);
  return rules;
}

void RenameRule::AddPartRules(const SplitName& from, const SplitName& to,
                              std::vector<RenameRule>& rules) {
  const std::size_t count = from.parts.size();
  if (count == 0 || count != to.parts.size()) return;
  RenameRule rule(Kind::Parts);
  for (std::size_t i = 0; i < count; ++i) {
    if (from.parts[i].text == to.parts[i].text) continue;
    // Names of other lengths have their first parts in the same place, or their last.
    const bool isFromEnd = 2 * i >= count;
    rule.edits_.push_back(
        {{isFromEnd ? count - 1 - i : i, isFromEnd}, from.parts[i].text, to.parts[i].text});
  }
  if (rule.edits_.size() > kMostEditedParts || rule.edits_.size() == count) return;
  if (rule.edits_.size() == 1) {
    const Place place = rule.edits_[0].place;
    const std::size_t i = place.isFromEnd ? count - 1 - place.offset : place.offset;
    const std::optional<int> before = NumberIn(from.parts[i]);
    const std::optional<int> after = NumberIn(to.parts[i]);
    if (before && after) {
      RenameRule shift(Kind::Shift);
      shift.edits_.push_back({place, i == 0 ? std::string() : from.parts[i - 1].text, {}});
      shift.shift_ = static_cast<long>(*after) - *before;
      rules.push_back(std::move(shift));
    }
  }
  rules.push_back(std::move(rule));
}

void RenameRule::AddCharacterRules(const SplitName& from, const SplitName& to,
                                   std::vector<RenameRule>& rules) {
  const Common least = CommonEndsOf(from.upperCase, to.upperCase);
  if (least.beginning + least.end < 2) return;
  const Common atParts = MovedOut(from, to, least, Within::Parts);
  std::vector<Common> stretches = {atParts};
  if (atParts.beginning != least.beginning || atParts.end != least.end) stretches.push_back(least);
  for (const Common& common : stretches) {
    if (common.beginning + common.end == 0) continue;
    const std::string before = Middle(from.upperCase, common);
    const std::string after = Middle(to.upperCase, common);
    for (const bool isFromEnd : {false, true}) {
      RenameRule rule(Kind::Characters);
      rule.edits_.push_back(
          {{isFromEnd ? common.end : common.beginning, isFromEnd}, before, after});
      rules.push_back(std::move(rule));
    }
  }
}

std::optional<std::string> RenameRule::Apply(const SplitName& name) const {
  if (kind_ == Kind::Characters) return ReplaceCharacters(name.upperCase);
  return ReplaceParts(name.parts);
}

std::optional<std::string> RenameRule::ReplaceCharacters(const std::string& name) const {
  const auto& [place, from, to] = edits_.front();
  if (name.size() < place.offset + from.size()) return std::nullopt;
  const std::size_t position =
      place.isFromEnd ? name.size() - place.offset - from.size() : place.offset;
  if (name.compare(position, from.size(), from) != 0) return std::nullopt;
  std::string replaced = name;
  return replaced.replace(position, from.size(), to);
}

std::optional<std::string> RenameRule::ReplaceParts(const std::vector<NamePart>& parts) const {
  std::vector<NamePart> replaced = parts;
  std::size_t next = 0;  // the places ascend
  for (const auto& [place, from, to] : edits_) {
    if (place.offset >= parts.size()) return std::nullopt;
    const std::size_t i = place.isFromEnd ? parts.size() - 1 - place.offset : place.offset;
    if (i < next) return std::nullopt;
    next = i + 1;
    if (kind_ == Kind::Parts) {
      if (parts[i].text != from) return std::nullopt;
      replaced[i].text = to;
      continue;
    }
    const std::optional<int> number = NumberIn(parts[i]);
    const std::string_view before = i == 0 ? std::string_view() : parts[i - 1].text;
    if (!number || before != from || *number + shift_ < 0) return std::nullopt;
    replaced[i].text = std::to_string(*number + shift_);
  }
  return PlainName(replaced);
}

std::size_t RenameRule::ChangedBytes() const {
  std::size_t count = 0;
  for (const auto& [place, from, to] : edits_) {
    const Common common = CommonEndsOf(from, to);
    count += from.size() + to.size() - 2 * (common.beginning + common.end);
  }
  return count;
}

std::string RenameRule::Key() const {
  std::string key = std::to_string(static_cast<int>(kind_)) + kBetween + std::to_string(shift_);
  for (const auto& [place, from, to] : edits_) {
    key += kBetween;
    key += std::to_string(place.offset);
    key += place.isFromEnd ? 'e' : 's';
    key += from;
    key += kBetween;
    key += to;
  }
  return key;
}

std::string RenameRule::Show(std::string_view from, std::string_view to) {
  const SplitName before(UpperCase(from));
  const SplitName after(UpperCase(to));
  // Where upper case moves the characters, it is what is shown.
  if (before.upperCase.size() != from.size()) from = before.upperCase;
  if (after.upperCase.size() != to.size()) to = after.upperCase;
  const Common common =
      MovedOut(before, after, CommonEndsOf(before.upperCase, after.upperCase), Within::Numbers);
  return Marked(from, common) + " → " + Marked(to, common);
}

}  // namespace velahost
