#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velahost {

// The characters of a single-byte encoding.
struct CharacterTable;

// The encoding of a document: UTF-8, or a single-byte encoding that has the characters of US-ASCII
// in their places. A light value: it points to a table that lives as long as the process.
class Encoding {
 public:
  // UTF-8.
  Encoding() = default;
  // The encoding of that name, in any case, if the system's iconv knows it and it is one of these;
  // nothing for another. May be called on several threads at once.
  static std::optional<Encoding> Named(std::string_view name);

  bool IsUtf8() const { return table_ == nullptr; }
  bool operator==(const Encoding&) const = default;

  // The name by which Named found it.
  const char* Name() const;
  // The code of the character that a byte stands for; -1 for none. REQUIRES: not UTF-8.
  int CodeOf(unsigned char byte) const;

  // Whether it has every character of a text in UTF-8.
  bool Has(std::string_view utf8) const;

  // Markup or text in UTF-8 as bytes of the encoding. A character that the encoding lacks becomes a
  // character reference.
  std::string Encode(std::string utf8) const;
  // Bytes of the encoding as UTF-8.
  std::string Decode(std::string_view bytes) const;

 private:
  explicit Encoding(const CharacterTable* table) : table_(table) {}

  const CharacterTable* table_ = nullptr;  // null: UTF-8
};

}  // namespace velahost
