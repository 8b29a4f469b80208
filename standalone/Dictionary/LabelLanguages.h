#pragma once

#include <string_view>
#include <vector>

#include "standalone/Text/Text.h"

namespace velahost {

// In which languages there is a label besides its text: the language of that text, and the label in
// other languages. Both are what comes along when the label goes to another document.
class LabelLanguages {
 public:
  // A label in a language; an empty one is not stated.
  struct Translation {
    std::string_view language;
    std::string_view text;
  };

  // Of a text that states no language, and is the only one.
  LabelLanguages() = default;
  // The texts of the translations are not empty.
  LabelLanguages(std::string_view own, const std::vector<Translation>& others, TextArena& texts);

  bool Empty() const { return packed_.Empty(); }
  // These live as long as a copy of this object.
  std::string_view Own() const;
  std::vector<Translation> Others() const;

 private:
  Text packed_;  // the own language, and a language and a text in turn, with zero bytes between
};

}  // namespace velahost
