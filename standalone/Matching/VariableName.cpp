#include "standalone/Matching/VariableName.h"

#include <algorithm>

#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

constexpr char kBetweenNumbers = '\x1F';

enum class Kind { Letters, Digits, Other };

Kind KindOf(int code) {
  if (code >= '0' && code <= '9') return Kind::Digits;
  return IsLetter(code) || IsMark(code) ? Kind::Letters : Kind::Other;
}

std::string_view WithoutZeros(std::string_view digits) {
  const std::size_t first = digits.find_first_not_of('0');
  return digits.substr(std::min(first, digits.size() - 1));
}

// What a part counts: a number, of which a file has many, as two letters at most.
std::size_t WeightOf(const NamePart& part) {
  return part.isNumber ? std::min<std::size_t>(part.text.size(), 2) : part.text.size();
}

std::size_t WeightOf(const std::vector<NamePart>& parts) {
  std::size_t weight = 0;
  for (const NamePart& part : parts) weight += WeightOf(part);
  return weight;
}

}  // namespace

std::vector<NamePart> PartsOf(std::string_view upperCaseName) {
  std::vector<NamePart> parts;
  Kind before = Kind::Other;
  for (std::size_t position = 0; position < upperCaseName.size();) {
    const Character character = CharacterAt(upperCaseName, position);
    const Kind kind = KindOf(character.code);
    if (kind != Kind::Other) {
      if (kind != before) parts.push_back({position, 0, kind == Kind::Digits, {}});
      parts.back().length += character.length;
    }
    before = kind;
    position += character.length;
  }
  for (NamePart& part : parts) {
    const std::string_view spelled = upperCaseName.substr(part.position, part.length);
    part.text = part.isNumber ? WithoutZeros(spelled) : spelled;
  }
  return parts;
}

std::string PlainName(const std::vector<NamePart>& parts) {
  std::string name;
  bool isBehindNumber = false;
  for (const NamePart& part : parts) {
    if (isBehindNumber && part.isNumber) name += kBetweenNumbers;
    name += part.text;
    isBehindNumber = part.isNumber;
  }
  return name;
}

double NameSimilarity(const std::vector<NamePart>& a, const std::vector<NamePart>& b) {
  const std::size_t all = WeightOf(a) + WeightOf(b);
  if (all == 0) return 0;
  std::size_t common = 0;
  std::vector<bool> taken(b.size());
  for (const NamePart& part : a) {
    for (std::size_t i = 0; i < b.size(); ++i) {
      if (taken[i] || part.text != b[i].text) continue;
      taken[i] = true;
      common += 2 * WeightOf(part);
      break;
    }
  }
  return static_cast<double>(common) / static_cast<double>(all);
}

}  // namespace velahost
