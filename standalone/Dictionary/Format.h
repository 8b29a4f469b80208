#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "standalone/Text/Text.h"

namespace velahost {

// A print or write format: letters in upper case, a width from 1 to 32767, and decimals. The
// letters "A" and "HEX" are formats of strings: of a string's own width, or of twice that.
struct Format {
  Text letters;
  int width = 0;
  int decimals = 0;

  bool operator==(const Format&) const = default;
  bool IsOfStrings() const { return letters == "A" || letters == "HEX"; }
  // The width in bytes of the string that the format is for; nothing if it is for none.
  std::optional<int> StringWidth() const;
};

// The bounds of a width, of a format and of a string.
inline constexpr int kLeastWidth = 1;
inline constexpr int kMostWidth = 32767;

// What a string counts as that states no width, in bytes.
inline constexpr int kDefaultWidth = 255;

// The format that a text such as "F8.2" spells: letters, a width, and decimals after a point.
// Nothing if it spells none. The letters are a text of the arena's.
std::optional<Format> ReadFormat(std::string_view text, TextArena& texts);
// The text that reads as the format.
std::string TextOf(const Format& format);

// The format A of a string of that width.
Format StringFormat(int width);

// The format that a variable of the type has where this one is stated: a string has A or HEX at its
// own width, a number any other. Nothing where the variable cannot have it, or none is stated.
std::optional<Format> FormatFor(const std::optional<Format>& stated, int type);

}  // namespace velahost
