#include "standalone/Xml/CharacterCodes.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace velahost {
namespace {

struct NamedEncoding {
  const char* name;
  std::size_t codes;  // its place in kCodes
};

constexpr std::uint16_t kNone = 0xFFFF;  // for a byte that stands for no character

// The encodings, by name: NamedEncoding kEncodings[] and std::uint16_t kCodes[][256].
#include "CharacterCodes.inc"

}  // namespace

std::optional<CharacterCodes> FindCharacterCodes(const std::string& name) {
  const auto* const found =
      std::lower_bound(std::begin(kEncodings), std::end(kEncodings), name,
                       [](const NamedEncoding& encoding, std::string_view sought) {
                         return encoding.name < sought;
                       });
  if (found == std::end(kEncodings) || found->name != name) return std::nullopt;
  CharacterCodes codes = {};
  std::transform(std::begin(kCodes[found->codes]), std::end(kCodes[found->codes]), codes.begin(),
                 [](std::uint16_t code) { return code == kNone ? -1 : int{code}; });
  return codes;
}

}  // namespace velahost
