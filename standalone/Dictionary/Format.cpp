#include "standalone/Dictionary/Format.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "standalone/Text/Numbers.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

constexpr bool IsAsciiLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

}  // namespace

std::optional<int> Format::StringWidth() const {
  if (letters == "A") return width;
  if (letters == "HEX" && width % 2 == 0) return width / 2;
  return std::nullopt;
}

std::optional<Format> ReadFormat(std::string_view text, TextArena& texts) {
  text = Trim(text);
  const auto* const lettersEnd = std::find_if_not(text.begin(), text.end(), IsAsciiLetter);
  const auto letterCount = static_cast<std::size_t>(lettersEnd - text.begin());
  if (letterCount == 0) return std::nullopt;

  Format format;
  std::string_view numbers = text.substr(letterCount);
  if (const std::size_t point = numbers.find('.'); point != std::string_view::npos) {
    const auto decimals =
        ReadInteger(numbers.substr(point + 1), 0, std::numeric_limits<short>::max());
    if (!decimals) return std::nullopt;
    format.decimals = *decimals;
    numbers = numbers.substr(0, point);
  }
  const auto width = ReadInteger(numbers, kLeastWidth, kMostWidth);
  if (!width) return std::nullopt;
  format.width = *width;
  format.letters = texts.Add(UpperCase(text.substr(0, letterCount)));
  return format;
}

std::string TextOf(const Format& format) {
  std::string text = format.letters.String() + std::to_string(format.width);
  if (format.decimals != 0) text += "." + std::to_string(format.decimals);
  return text;
}

Format StringFormat(int width) {
  static const Text letters("A");
  return {letters, width, 0};
}

std::optional<Format> FormatFor(const std::optional<Format>& stated, int type) {
  if (!stated || stated->IsOfStrings() != (type > 0)) return std::nullopt;
  if (type == 0) return stated;
  const int width = stated->letters == "HEX" ? 2 * type : type;
  if (width > kMostWidth) return std::nullopt;
  return Format{stated->letters, width, 0};
}

}  // namespace velahost
