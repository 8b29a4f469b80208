#include "standalone/Xml/CharacterCodes.h"

#include <iconv.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

// Converts one byte at a time.
class ByteConverter {
 public:
  explicit ByteConverter(const std::string& name)
      : descriptor_(iconv_open("UTF-8", name.c_str())) {}
  ByteConverter(const ByteConverter&) = delete;
  ByteConverter& operator=(const ByteConverter&) = delete;
  ~ByteConverter() {
    if (IsKnown()) iconv_close(descriptor_);
  }

  bool IsKnown() const { return reinterpret_cast<std::intptr_t>(descriptor_) != -1; }

  // The code of the character that the byte is alone; -1 if it is none. Nothing if it begins a
  // character of several bytes, or stands for several characters.
  std::optional<int> CodeOf(char byte) {
    char* in = &byte;
    std::size_t inLeft = 1;
    std::array<char, 16> converted = {};
    char* out = converted.data();
    std::size_t outLeft = converted.size();
    iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);
    if (iconv(descriptor_, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1)) {
      return errno == EILSEQ ? std::optional(-1) : std::nullopt;
    }
    // Some converters hold a letter back until they know whether an accent follows.
    iconv(descriptor_, nullptr, nullptr, &out, &outLeft);
    const std::string_view text(converted.data(), converted.size() - outLeft);
    if (text.empty()) return std::nullopt;
    const Character character = CharacterAt(text, 0);
    if (character.code < 0 || character.length != text.size()) return std::nullopt;
    return character.code;
  }

 private:
  iconv_t descriptor_;
};

// Whether markup may have the byte of US-ASCII.
constexpr bool IsAsciiOfXml(int byte) {
  return byte == '\t' || byte == '\n' || byte == '\r' || (byte >= ' ' && byte < 0x7F);
}

}  // namespace

std::optional<CharacterCodes> FindCharacterCodes(const std::string& name) {
  ByteConverter converter(name);
  if (!converter.IsKnown()) return std::nullopt;
  CharacterCodes codes = {};
  for (int byte = 0; byte < 256; ++byte) {
    const auto code = converter.CodeOf(static_cast<char>(byte));
    if (IsAsciiOfXml(byte) ? code != byte : !code) return std::nullopt;
    codes[static_cast<std::size_t>(byte)] = *code;
  }
  return codes;
}

}  // namespace velahost
