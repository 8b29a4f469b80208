#pragma once

#include <array>
#include <optional>
#include <string>

namespace velahost {

// The codes of the characters that the bytes of a single-byte encoding stand for; -1 for none.
using CharacterCodes = std::array<int, 256>;

// Those of the encoding of that name, in upper case, if the system's iconv knows it and it is a
// single-byte encoding that has the characters of US-ASCII in their places; nothing for another.
// May be called on several threads at once.
std::optional<CharacterCodes> FindCharacterCodes(const std::string& name);

}  // namespace velahost
