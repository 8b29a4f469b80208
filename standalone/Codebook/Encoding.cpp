#include "standalone/Codebook/Encoding.h"

#include <algorithm>
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
  for (const char c : bytes) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | (code >> 6));
      utf8 += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return utf8;
}

void AppendText(std::string& markup, std::string_view text, std::string_view newLine) {
  while (!text.empty()) {
    const auto* const special = std::find_if(text.begin(), text.end(), [](char c) {
      return c == '&' || c == '<' || c == '>' || c == '\n';
    });
    markup.append(text.begin(), special);
    if (special == text.end()) return;
    switch (*special) {
      case '&':
        markup += "&amp;";
        break;
      case '<':
        markup += "&lt;";
        break;
      case '>':
        markup += "&gt;";
        break;
      default:
        markup += newLine;
    }
    text.remove_prefix(static_cast<std::size_t>(special - text.begin()) + 1);
  }
}

std::string EscapeAttribute(std::string_view text, char quote) {
  std::string escaped;
  escaped.reserve(text.size());
  for (const char c : text) {
    if (c == '&') {
      escaped += "&amp;";
    } else if (c == '<') {
      escaped += "&lt;";
    } else if (c == quote) {
      escaped += quote == '"' ? "&quot;" : "&apos;";
    } else if (IsSpace(c) && c != ' ') {
      escaped += "&#" + std::to_string(static_cast<int>(c)) + ";";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

}  // namespace velahost
