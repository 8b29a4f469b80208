#include "standalone/Matching/Reasons.h"

#include <fmt/format.h>

#include "standalone/Matching/FileOrder.h"

namespace velahost {
namespace {

constexpr double kSlightlyAlike = 0.35;
constexpr double kSimilarNames = 0.5;

std::string NameReason(const Evidence& evidence, const NamePair& names,
                       const Explanation& explanation) {
  if (explanation.rule == nullptr) return evidence.name >= kSimilarNames ? "similar name" : "";
  if (explanation.rule->ChangesSpellingAlone()) return "same name but for zeros and separators";
  std::string reason = RenameRule::Show(names.oldName, names.newName);
  if (explanation.others == 1) reason += " as 1 other";
  if (explanation.others > 1) reason += fmt::format(" as {} others", explanation.others);
  return reason;
}

std::string TextReason(const char* what, double similarity, const Words& a, const Words& b) {
  if (similarity >= 1) {
    const bool isWhole = a.ids == b.ids;
    return fmt::format("same {}{}", what, isWhole ? "" : " but for the year");
  }
  if (similarity >= kMuchAlike) return fmt::format("similar {}", what);
  return similarity >= kSlightlyAlike ? fmt::format("slightly similar {}", what)
                                      : fmt::format("different {}", what);
}

std::string ValuesReason(const ValueSets::Agreement& agreement) {
  if (agreement.agreeing == agreement.most) return "same value labels";
  if (agreement.agreeing == 0) return "different value labels";
  return fmt::format("{} of {} value labels", agreement.agreeing, agreement.most);
}

}  // namespace

std::vector<std::string> ReasonsFor(const Evidence& evidence, const NamePair& names,
                                    const Explanation& explanation, const Profile& oldProfile,
                                    const Profile& newProfile) {
  std::vector<std::string> reasons;
  if (std::string reason = NameReason(evidence, names, explanation); !reason.empty()) {
    reasons.push_back(std::move(reason));
  }
  if (evidence.label) {
    reasons.push_back(TextReason("label", *evidence.label, oldProfile.label, newProfile.label));
  }
  if (evidence.question) {
    reasons.push_back(
        TextReason("question", *evidence.question, oldProfile.question, newProfile.question));
  }
  if (evidence.values) reasons.push_back(ValuesReason(*evidence.values));
  if (!evidence.label && !evidence.question && !evidence.values) {
    reasons.emplace_back("nothing else to compare");
  }
  if (!evidence.sameType) reasons.emplace_back("a number and a string");
  if (evidence.order >= kSamePlace) reasons.emplace_back("same place in the file");
  return reasons;
}

}  // namespace velahost
