#include "standalone/Xml/Encoding.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <unordered_map>
#include <utility>

#include "standalone/Text/Utf8.h"

namespace velahost {

struct CharacterTable {
  std::string name;
  std::array<int, 256> codes;  // by byte; -1: no character
  std::unordered_map<int, char> bytes;
};

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

// Whether a text in upper case is a name of an encoding. To iconv other texts mean more than that:
// an empty one the locale's encoding, slashes what becomes of a character that cannot be converted.
bool IsName(std::string_view text) {
  const auto isPart = [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '_' || c == '-';
  };
  return !text.empty() && std::all_of(text.begin(), text.end(), isPart);
}

// Whether markup may have the byte of US-ASCII.
constexpr bool IsAsciiOfXml(int byte) {
  return byte == '\t' || byte == '\n' || byte == '\r' || (byte >= ' ' && byte < 0x7F);
}

// The table of an encoding; nothing if it is not known or not of the kind.
std::optional<CharacterTable> MakeTable(const std::string& name) {
  ByteConverter converter(name);
  if (!converter.IsKnown()) return std::nullopt;
  CharacterTable table{name, {}, {}};
  for (int byte = 0; byte < 256; ++byte) {
    const auto code = converter.CodeOf(static_cast<char>(byte));
    if (IsAsciiOfXml(byte) ? code != byte : !code) return std::nullopt;
    table.codes[static_cast<std::size_t>(byte)] = *code;
    if (*code >= 0) table.bytes.emplace(*code, static_cast<char>(byte));
  }
  return table;
}

}  // namespace

std::optional<Encoding> Encoding::Named(std::string_view name) {
  const std::string upper = UpperCase(name);
  if (!IsName(upper)) return std::nullopt;
  if (upper == "UTF-8" || upper == "UTF8") return Encoding();
  // Tables stay where they are and are never taken out.
  static std::mutex mutex;
  static std::map<std::string, CharacterTable> tables;
  const std::lock_guard lock(mutex);
  auto known = tables.find(upper);
  if (known == tables.end()) {
    auto table = MakeTable(upper);
    if (!table) return std::nullopt;
    known = tables.emplace(upper, std::move(*table)).first;
  }
  return Encoding(&known->second);
}

const char* Encoding::Name() const { return IsUtf8() ? "UTF-8" : table_->name.c_str(); }

int Encoding::CodeOf(unsigned char byte) const { return table_->codes[byte]; }

bool Encoding::Has(std::string_view utf8) const {
  if (IsUtf8()) return true;
  for (std::size_t i = 0; i < utf8.size();) {
    const Character character = CharacterAt(utf8, i);
    if (!table_->bytes.contains(character.code)) return false;
    i += character.length;
  }
  return true;
}

std::string Encoding::Encode(std::string utf8) const {
  if (IsUtf8()) return utf8;
  std::string bytes;
  bytes.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size();) {
    const Character character = CharacterAt(utf8, i);
    if (const auto byte = table_->bytes.find(character.code); byte != table_->bytes.end()) {
      bytes += byte->second;
    } else if (character.code >= 0) {
      bytes += "&#" + std::to_string(character.code) + ";";
    }
    i += character.length;
  }
  return bytes;
}

std::string Encoding::Decode(std::string_view bytes) const {
  if (IsUtf8()) return std::string(bytes);
  std::string utf8;
  utf8.reserve(bytes.size() + bytes.size() / 8);
  for (const char c : bytes) {
    const int code = CodeOf(static_cast<unsigned char>(c));
    if (code >= 0) AppendCharacter(utf8, code);
  }
  return utf8;
}

}  // namespace velahost
