#include "standalone/Xml/Encoding.h"

#include <cstddef>

#include "standalone/Text/Utf8.h"

namespace velahost {

std::optional<Encoding> EncodingNamed(std::string_view name) {
  const std::string upper = UpperCase(name);
  for (const Encoding encoding : {Encoding::Utf8, Encoding::Ascii, Encoding::Latin1}) {
    if (upper == NameOf(encoding)) return encoding;
  }
  return std::nullopt;
}

const char* NameOf(Encoding encoding) {
  switch (encoding) {
    case Encoding::Ascii:
      return "US-ASCII";
    case Encoding::Latin1:
      return "ISO-8859-1";
    case Encoding::Utf8:
      break;
  }
  return "UTF-8";
}

std::string Encode(std::string utf8, Encoding encoding) {
  if (encoding == Encoding::Utf8) return utf8;
  const int limit = encoding == Encoding::Latin1 ? 0x100 : 0x80;
  std::string bytes;
  bytes.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size();) {
    const Character character = CharacterAt(utf8, i);
    if (character.code >= 0 && character.code < limit) {
      bytes += static_cast<char>(character.code);
    } else if (character.code >= 0) {
      bytes += "&#" + std::to_string(character.code) + ";";
    }
    i += character.length;
  }
  return bytes;
}

std::string Decode(std::string_view bytes, Encoding encoding) {
  if (encoding != Encoding::Latin1) return std::string(bytes);
  std::string utf8;
  utf8.reserve(bytes.size() + bytes.size() / 8);
  for (const char c : bytes) AppendCharacter(utf8, static_cast<unsigned char>(c));
  return utf8;
}

}  // namespace velahost
