#include "standalone/Text/Utf8.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstring>

namespace velahost {
namespace {

// The bytes that a character takes in UTF-8.
std::size_t BytesOf(int code) {
  if (code < 0x80) return 1;
  if (code < 0x800) return 2;
  return code < 0x10000 ? 3 : 4;
}

int AsciiCapitalOf(int code) { return code >= 'a' && code <= 'z' ? code - ('a' - 'A') : code; }

// The simple case folding of a character: one character for all that differ in case alone.
int FoldingOf(int code) {
  constexpr int kCapitalIWithDot = 0x130;  // has a simple folding in Turkish only
  utf8proc_int32_t folded[8];
  int boundary = 0;
  const auto count = utf8proc_decompose_char(code, folded, 8, UTF8PROC_CASEFOLD, &boundary);
  if (count == 1) return folded[0];
  // What folds to several characters folds simply to its small letter.
  return code == kCapitalIWithDot ? code : utf8proc_tolower(code);
}

// The capital of a character: one for all characters that fold to the same. Where the capital would
// take more bytes than the folding it is the folding, so it never takes more than the character.
int CapitalOf(const Character& character) {
  if (character.code < 0x80) return AsciiCapitalOf(character.code);
  const int folding = FoldingOf(character.code);
  const int capital = utf8proc_toupper(folding);
  const bool isOfTheSame = FoldingOf(capital) == folding;
  return isOfTheSame && BytesOf(capital) <= BytesOf(folding) ? capital : folding;
}

// Turns the bytes into upper case in place and returns how many they are now. What has been written
// never overtakes what is read, since no character grows.
std::size_t UpperCaseBytes(char* text, std::size_t size) {
  const std::string_view all(text, size);
  std::size_t written = 0;
  for (std::size_t read = 0; read < size;) {
    if (static_cast<unsigned char>(text[read]) < 0x80) {  // as most are
      text[written++] = static_cast<char>(AsciiCapitalOf(text[read++]));
      continue;
    }
    const Character character = CharacterAt(all, read);
    const int capital = character.code < 0 ? -1 : CapitalOf(character);
    if (capital == character.code) {
      if (written != read) std::memmove(text + written, text + read, character.length);
      written += character.length;
    } else {
      written += static_cast<std::size_t>(
          utf8proc_encode_char(capital, reinterpret_cast<utf8proc_uint8_t*>(text + written)));
    }
    read += character.length;
  }
  return written;
}

}  // namespace

Character CharacterAt(std::string_view text, std::size_t position) {
  const auto first = static_cast<unsigned char>(text[position]);
  if (first < 0x80) return {first, 1};
  utf8proc_int32_t code = -1;
  const utf8proc_ssize_t length =
      utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data() + position),
                       static_cast<utf8proc_ssize_t>(text.size() - position), &code);
  if (length <= 0) return {-1, 1};
  return {code, static_cast<std::size_t>(length)};
}

void AppendCharacter(std::string& text, int code) {
  if (code < 0x80) {
    text += static_cast<char>(code);
    return;
  }
  utf8proc_uint8_t bytes[4];
  const auto length = static_cast<std::size_t>(utf8proc_encode_char(code, bytes));
  text.append(reinterpret_cast<const char*>(bytes), length);
}

std::size_t ColumnsOf(int code) {
  const bool isPlain = code < 0x300 && code != 0xAD;  // as most are; no control character is wide
  if (isPlain) return 1;
  return static_cast<std::size_t>(std::max(0, utf8proc_charwidth(code)));
}

bool IsLetter(int code) {
  switch (utf8proc_category(code)) {
    case UTF8PROC_CATEGORY_LU:
    case UTF8PROC_CATEGORY_LL:
    case UTF8PROC_CATEGORY_LT:
    case UTF8PROC_CATEGORY_LM:
    case UTF8PROC_CATEGORY_LO:
      return true;
    default:
      return false;
  }
}

bool IsMark(int code) {
  const utf8proc_category_t category = utf8proc_category(code);
  return category == UTF8PROC_CATEGORY_MN || category == UTF8PROC_CATEGORY_MC;
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  upper.resize(UpperCaseBytes(upper.data(), upper.size()));
  return upper;
}

void UpperCaseInPlace(char* text) { text[UpperCaseBytes(text, std::strlen(text))] = '\0'; }

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  std::size_t inA = 0;
  std::size_t inB = 0;
  while (inA < a.size() && inB < b.size()) {
    const Character fromA = CharacterAt(a, inA);
    const Character fromB = CharacterAt(b, inB);
    const bool areEqual = fromA.code < 0 || fromB.code < 0
                              ? fromA.code == fromB.code && a[inA] == b[inB]
                              : CapitalOf(fromA) == CapitalOf(fromB);
    if (!areEqual) return false;
    inA += fromA.length;
    inB += fromB.length;
  }
  return inA == a.size() && inB == b.size();
}

std::string_view CutToBytes(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes) return text;
  std::size_t end = 0;
  for (;;) {
    const std::size_t next = end + CharacterAt(text, end).length;
    if (next > bytes) return text.substr(0, end);
    end = next;
  }
}

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
  return text;
}

bool IsCollapsed(std::string_view text) {
  char before = ' ';
  for (const char c : text) {
    if (IsSpace(c) && (c != ' ' || before == ' ')) return false;
    before = c;
  }
  return text.empty() || before != ' ';
}

std::string Collapse(std::string_view text) {
  text = Trim(text);
  if (IsCollapsed(text)) return std::string(text);
  std::string collapsed;
  collapsed.reserve(text.size());
  for (const char c : text) {
    if (!IsSpace(c)) {
      collapsed += c;
    } else if (collapsed.back() != ' ') {
      collapsed += ' ';
    }
  }
  return collapsed;
}

std::string_view TrimTrailingBlanks(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

}  // namespace velahost
