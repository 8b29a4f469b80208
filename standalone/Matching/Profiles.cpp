#include "standalone/Matching/Profiles.h"

#include <algorithm>
#include <string_view>

#include "standalone/Text/Hash.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The label without the variable's name, if it begins with it. A name that is a word may be a word
// of the label: without a digit in it, only a sign behind it sets it apart.
std::string_view WithoutName(std::string_view label, std::string_view name) {
  const bool hasDigit = std::any_of(name.begin(), name.end(), IsDigit);
  if (hasDigit && EqualIgnoringCase(label, name)) return {};
  if (label.size() <= name.size() || name.empty()) return label;
  const char behind = label[name.size()];
  const bool endsThere = !IsDigit(behind) && (behind != ' ' || hasDigit) &&
                         !IsLetter(CharacterAt(label, name.size()).code);
  return endsThere && EqualIgnoringCase(label.substr(0, name.size()), name)
             ? label.substr(name.size())
             : label;
}

}  // namespace

std::string_view KeyOf(const Words& words) {
  return {reinterpret_cast<const char*>(words.text.data()), words.text.size() * sizeof(WordId)};
}

Profiles::Profiles(const Dictionary& oldFile, const Dictionary& newFile) {
  for (const MatchSide side : {MatchSide::Old, MatchSide::New}) {
    const Dictionary& file = side == MatchSide::Old ? oldFile : newFile;
    std::vector<Profile>& profiles = profiles_[static_cast<std::size_t>(side)];
    profiles.reserve(file.variables.size());
    for (const auto& variable : file.variables) {
      const std::string_view label = variable->label ? variable->label->View() : std::string_view();
      profiles.push_back({SplitName(variable->upperCaseName), variable->IsNumeric(),
                          labels_.Read(WithoutName(label, variable->name), side), Words(), 0, 0,
                          sets_.Read(variable->valueLabels, side)});
    }
  }
  labels_.Weigh();
  for (std::vector<Profile>& profiles : profiles_) {
    for (Profile& profile : profiles) labels_.Weigh(profile.label);
  }
  CountTexts(&Profile::label, &Profile::labelCount);
}

void Profiles::AddQuestion(MatchSide side, Column column, std::string_view question) {
  profiles_[static_cast<std::size_t>(side)][column].question = questions_.Read(question, side);
}

void Profiles::WeighQuestions() {
  questions_.Weigh();
  for (std::vector<Profile>& profiles : profiles_) {
    for (Profile& profile : profiles) questions_.Weigh(profile.question);
  }
  CountTexts(&Profile::question, &Profile::questionCount);
}

void Profiles::CountTexts(Words Profile::*texts, std::size_t Profile::*counts) {
  for (std::vector<Profile>& profiles : profiles_) {
    ViewMap<std::size_t> found;
    for (const Profile& profile : profiles) ++found[KeyOf(profile.*texts)];
    for (Profile& profile : profiles) {
      if (!(profile.*texts).Empty()) profile.*counts = found[KeyOf(profile.*texts)];
    }
  }
}

}  // namespace velahost
