#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Texts in UTF-8. A byte that does not belong to a well-formed character counts as a character of
// its own and is never changed.

namespace velahost {

// The bytes that a name holds at most.
inline constexpr std::size_t kNameBytes = 64;

// The character that starts at position, and its length in bytes. code is negative for a byte that
// does not start a well-formed character; length is 1 then. REQUIRES: position < text.size().
struct Character {
  int code;
  std::size_t length;
};
Character CharacterAt(std::string_view text, std::size_t position);

// Adds a character by its code. REQUIRES: the code of a character.
void AppendCharacter(std::string& text, int code);

// The columns of a terminal that a character takes: 2 for wide ones, 0 for marks, which stand over
// the character before. A byte that is no character, and a control character, takes one.
std::size_t ColumnsOf(int code);

// Whether a character is a letter of any script, or a mark that belongs to the letter before it.
bool IsLetter(int code);
bool IsMark(int code);

// The text in the case in which texts are compared: two texts have the same one exactly if they are
// the same by Unicode's simple case folding. It is upper case, except for letters whose capital
// takes more bytes than their small letter; the text never grows.
std::string UpperCase(std::string_view text);
// The same in place, on a zero-terminated text.
void UpperCaseInPlace(char* text);
// Whether two texts have the same upper case.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

// The longest beginning of the text of whole characters that takes at most the given bytes.
std::string_view CutToBytes(std::string_view text, std::size_t bytes);

// Whether a byte is white space as XML has it: blank, tab, line feed, carriage return.
constexpr bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
// The text without white space at its ends.
std::string_view Trim(std::string_view text);
// The text without white space at its ends, and every run of white space inside as one blank.
std::string Collapse(std::string_view text);
// Whether the text has no white space but single blanks, inside.
bool IsCollapsed(std::string_view text);
// The text without blanks at its end.
std::string_view TrimTrailingBlanks(std::string_view text);

}  // namespace velahost
