#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Matching/VariableName.h"

namespace velahost {

// A name with what rules look at.
struct SplitName {
  std::string upperCase;
  std::vector<NamePart> parts;
  std::string plain;  // PlainName(parts)

  explicit SplitName(std::string_view upperCaseName);
};

// A change of names that many variables of a file may share: characters at one place are replaced,
// parts of the name are replaced, or a number is shifted.
class RenameRule {
 public:
  enum class Kind : unsigned char { Characters, Parts, Shift };

  // The rules by which the first name becomes the second, the most telling first; none where the
  // two have too little in common. A rule of parts that replaces nothing changes only separators
  // and the zeros that fill up numbers.
  static std::vector<RenameRule> Between(const SplitName& from, const SplitName& to);

  Kind WhichKind() const { return kind_; }
  // Whether it changes nothing but separators and the zeros that fill up numbers.
  bool ChangesSpellingAlone() const { return kind_ == Kind::Parts && edits_.empty(); }

  // How many bytes it takes out and puts in.
  std::size_t ChangedBytes() const;

  // What the rule makes of a name; nothing where it does not apply. The name in upper case for a
  // rule of characters, else the plain name.
  std::optional<std::string> Apply(const SplitName& name) const;

  // A text that is the same for the same rule only.
  std::string Key() const;

  // The two names with what differs between asterisks: "CCC*A*_035 → CCC*C*_035".
  static std::string Show(std::string_view from, std::string_view to);

 private:
  // Where something stands, counted from the start or from the end: in bytes or in parts.
  struct Place {
    std::size_t offset = 0;
    bool isFromEnd = false;
  };
  struct Edit {
    Place place;
    std::string from;
    std::string to;
  };

  explicit RenameRule(Kind kind) : kind_(kind) {}
  static void AddCharacterRules(const SplitName& from, const SplitName& to,
                                std::vector<RenameRule>& rules);
  static void AddPartRules(const SplitName& from, const SplitName& to,
                           std::vector<RenameRule>& rules);
  std::optional<std::string> ReplaceCharacters(const std::string& name) const;
  std::optional<std::string> ReplaceParts(const std::vector<NamePart>& parts) const;

  Kind kind_;
  std::vector<Edit> edits_;
  long shift_ = 0;  // of a number; the edit says its place and the part before it
};

}  // namespace velahost
