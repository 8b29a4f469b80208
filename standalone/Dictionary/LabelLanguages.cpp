#include "standalone/Dictionary/LabelLanguages.h"

#include <string>

namespace velahost {
namespace {

// Takes what stands before the next zero byte, or all, off the text.
std::string_view TakePart(std::string_view& packed) {
  const std::string_view part = packed.substr(0, packed.find('\0'));
  packed.remove_prefix(part.size() == packed.size() ? part.size() : part.size() + 1);
  return part;
}

}  // namespace

LabelLanguages::LabelLanguages(std::string_view own, const std::vector<Translation>& others,
                               TextArena& texts) {
  std::string packed(own);
  for (const Translation& other : others) {
    packed += '\0';
    packed += other.language;
    packed += '\0';
    packed += other.text;
  }
  packed_ = texts.Add(packed);
}

std::string_view LabelLanguages::Own() const {
  std::string_view packed = packed_;
  return TakePart(packed);
}

std::vector<LabelLanguages::Translation> LabelLanguages::Others() const {
  std::vector<Translation> others;
  std::string_view packed = packed_;
  TakePart(packed);
  while (!packed.empty()) {
    const std::string_view language = TakePart(packed);
    others.push_back({language, TakePart(packed)});
  }
  return others;
}

}  // namespace velahost
