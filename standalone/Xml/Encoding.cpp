#include "standalone/Xml/Encoding.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <mutex>
#include <unordered_map>
#include <utility>

#include "standalone/Text/Utf8.h"
#include "standalone/Xml/CharacterCodes.h"

namespace velahost {

struct CharacterTable {
  std::string name;
  CharacterCodes codes;
  std::unordered_map<int, char> bytes;
};

namespace {

// Whether a text in upper case is a name of an encoding. To iconv other texts mean more than that:
// an empty one the locale's encoding, slashes what becomes of a character that cannot be converted.
bool IsName(std::string_view text) {
  const auto isPart = [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '_' || c == '-';
  };
  return !text.empty() && std::all_of(text.begin(), text.end(), isPart);
}

// The table of an encoding; nothing if it is not known or not of the kind.
std::optional<CharacterTable> MakeTable(const std::string& name) {
  const std::optional<CharacterCodes> codes = FindCharacterCodes(name);
  if (!codes) return std::nullopt;
  CharacterTable table{name, *codes, {}};
  for (std::size_t byte = 0; byte < codes->size(); ++byte) {
    if ((*codes)[byte] >= 0) table.bytes.emplace((*codes)[byte], static_cast<char>(byte));
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
