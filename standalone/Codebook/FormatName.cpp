#include "standalone/Codebook/FormatName.h"

#include <algorithm>
#include <limits>

#include "standalone/Text/Numbers.h"
#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

constexpr bool IsAsciiLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

}  // namespace

std::optional<int> FormatName::StringWidth() const {
  if (letters == "A") return width;
  if (letters == "HEX" && width % 2 == 0) return width / 2;
  return std::nullopt;
}

std::optional<FormatName> ReadFormatName(std::string_view text) {
  text = Trim(text);
  const auto* const lettersEnd = std::find_if_not(text.begin(), text.end(), IsAsciiLetter);
  const auto letterCount = static_cast<std::size_t>(lettersEnd - text.begin());
  if (letterCount == 0) return std::nullopt;
  FormatName name{.letters = UpperCase(text.substr(0, letterCount))};

  std::string_view numbers = text.substr(letterCount);
  if (const std::size_t point = numbers.find('.'); point != std::string_view::npos) {
    const auto decimals =
        ReadInteger(numbers.substr(point + 1), 0, std::numeric_limits<short>::max());
    if (!decimals) return std::nullopt;
    name.decimals = *decimals;
    numbers = numbers.substr(0, point);
  }
  const auto width = ReadInteger(numbers, kLeastWidth, kMostWidth);
  if (!width) return std::nullopt;
  name.width = *width;
  return name;
}

std::optional<Format> FormatFor(const std::optional<FormatName>& name, int type) {
  if (type > 0) {
    const bool hex = name && name->letters == "HEX";
    return hex ? Format{VELA_Variable::FormatHexString, 2 * type, 0}
               : Format{VELA_Variable::FormatString, type, 0};
  }
  if (!name || name->IsString()) return std::nullopt;
  return Format{FormatTypeNamed(name->letters), name->width, name->decimals};
}

std::string WriteFormatName(const Format& format) {
  std::string text = NameOf(format.type) + std::to_string(format.width);
  if (format.decimals != 0) text += "." + std::to_string(format.decimals);
  return text;
}

}  // namespace velahost
