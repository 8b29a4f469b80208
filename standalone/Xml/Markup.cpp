#include "standalone/Xml/Markup.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

constexpr bool EndsName(char c) { return c == '=' || c == '>' || c == '/' || IsSpace(c); }

// The text after the end mark; everything where there is none.
void SkipPast(std::string_view& text, std::string_view mark) {
  text.remove_prefix(std::min(text.find(mark), text.size()));
  text.remove_prefix(std::min(mark.size(), text.size()));
}

// Adds text that is no markup, its line ends as line feeds.
void AppendLines(std::string& decoded, std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r') {
      decoded += text[i];
    } else if (i + 1 == text.size() || text[i + 1] != '\n') {
      decoded += '\n';
    }
  }
}

// Adds what the reference that begins the text stands for, and takes it off the text. A reference
// to an entity that a declaration outside the document may declare stands for itself.
void TakeReference(std::string& decoded, std::string_view& text) {
  constexpr std::array<std::pair<std::string_view, char>, 5> kEntities = {
      {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}}};
  const std::size_t end = std::min(text.find(';'), text.size() - 1);
  const std::string_view whole = text.substr(0, end + 1);
  std::string_view name = text.substr(1, end - 1);
  text.remove_prefix(whole.size());
  if (name.starts_with('#')) {
    const bool isHex = name.substr(1, 1) == "x";
    name.remove_prefix(isHex ? 2 : 1);
    int code = 0;
    std::from_chars(name.data(), name.data() + name.size(), code, isHex ? 16 : 10);
    AppendCharacter(decoded, code);
    return;
  }
  const auto* const found = std::find_if(kEntities.begin(), kEntities.end(),
                                         [name](const auto& known) { return known.first == name; });
  if (found == kEntities.end()) {
    decoded += whole;
  } else {
    decoded += found->second;
  }
}

// Adds the text of an element's content.
void AppendContent(std::string& decoded, std::string_view text) {
  constexpr std::string_view kSection = "<![CDATA[";
  constexpr std::string_view kSectionEnd = "]]>";
  while (!text.empty()) {
    const std::size_t plain = std::min(text.find_first_of("<&"), text.size());
    AppendLines(decoded, text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.starts_with('&')) {
      TakeReference(decoded, text);
    } else if (text.starts_with("<!--")) {
      SkipPast(text, "-->");
    } else if (text.starts_with("<?")) {
      SkipPast(text, "?>");
    } else if (text.starts_with(kSection)) {
      text.remove_prefix(kSection.size());
      const std::string_view section = text.substr(0, text.find(kSectionEnd));
      AppendLines(decoded, section);
      SkipPast(text, kSectionEnd);
    } else {
      text.remove_prefix(TagEnd(text));
    }
  }
}

// Adds the value of an attribute.
void AppendValue(std::string& decoded, std::string_view text) {
  while (!text.empty()) {
    if (text.front() == '&') {
      TakeReference(decoded, text);
      continue;
    }
    const bool isLineEnd = text.starts_with("\r\n");
    decoded += IsSpace(text.front()) ? ' ' : text.front();
    text.remove_prefix(isLineEnd ? 2 : 1);
  }
}

// Whether a byte of a text, or of a value, stands for something else than itself.
constexpr auto kIsMarkupInText = [](char c) { return c == '<' || c == '&' || c == '\r'; };
constexpr auto kIsMarkupInValue = [](char c) { return c == '&' || (IsSpace(c) && c != ' '); };

bool IsAscii(std::string_view text) {
  return std::none_of(text.begin(), text.end(),
                      [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

bool NeedsNoDecoding(Encoding encoding, std::string_view raw) {
  return encoding.IsUtf8() || IsAscii(raw);
}

}  // namespace

std::size_t TagEnd(std::string_view text) {
  char quote = '\0';
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      return i + 1;
    }
  }
  return text.size();
}

MarkupPiece TakePiece(std::string_view& markup) {
  const auto take = [&markup](MarkupPiece::Kind kind, std::size_t size) {
    const MarkupPiece piece{kind, markup.substr(0, size)};
    markup.remove_prefix(piece.text.size());
    return piece;
  };
  const auto sizeTo = [&markup](std::string_view mark) {
    const std::size_t at = markup.find(mark);
    return at == std::string_view::npos ? markup.size() : at + mark.size();
  };
  if (markup.front() != '<') {
    return take(MarkupPiece::Text, std::min(markup.find('<'), markup.size()));
  }
  if (markup.starts_with("</")) return take(MarkupPiece::EndTag, sizeTo(">"));
  if (markup.starts_with("<!--")) return take(MarkupPiece::CommentOrInstruction, sizeTo("-->"));
  if (markup.starts_with("<?")) return take(MarkupPiece::CommentOrInstruction, sizeTo("?>"));
  if (markup.starts_with("<![CDATA[")) return take(MarkupPiece::Section, sizeTo("]]>"));
  const std::size_t size = TagEnd(markup);
  const bool isEmpty = size >= 2 && markup[size - 2] == '/';
  return take(isEmpty ? MarkupPiece::EmptyTag : MarkupPiece::StartTag, size);
}

// The tag is walked by a pointer: a whole tag is well formed, so each walk ends before the tag
// does.
std::size_t StartTag::NameEnd() const {
  const char* at = tag_.data() + 1;
  while (!EndsName(*at)) ++at;
  return static_cast<std::size_t>(at - tag_.data());
}

std::optional<RawAttribute> StartTag::From(std::size_t position) const {
  const char* at = tag_.data() + position;
  while (IsSpace(*at)) ++at;
  if (*at == '>' || *at == '/') return std::nullopt;
  const char* const name = at;
  while (!EndsName(*at)) ++at;
  const char* const nameEnd = at;
  while (*at != '"' && *at != '\'') ++at;
  const char* const value = at + 1;
  const char* valueEnd = value;
  while (*valueEnd != *at) ++valueEnd;  // most values are too short to be worth a search
  return RawAttribute{.name = {name, static_cast<std::size_t>(nameEnd - name)},
                      .begin = position,
                      .valueBegin = static_cast<std::size_t>(value - tag_.data()),
                      .valueEnd = static_cast<std::size_t>(valueEnd - tag_.data()),
                      .quote = *at};
}

std::optional<RawAttribute> StartTag::Find(std::string_view name) const {
  std::optional<RawAttribute> attribute = First();
  while (attribute && attribute->name != name) attribute = After(*attribute);
  return attribute;
}

std::size_t StartTag::AttributesEnd() const {
  std::size_t end = NameEnd();
  for (auto attribute = From(end); attribute; attribute = After(*attribute)) {
    end = attribute->valueEnd + 1;
  }
  return end;
}

template <class IsMarkup>
MarkupText MarkupText::Of(std::string_view raw, Encoding encoding, IsMarkup isMarkup,
                          void (*append)(std::string& decoded, std::string_view text)) {
  MarkupText text;
  text.isThere_ = true;
  text.raw_ = raw;
  const bool isInUtf8 = NeedsNoDecoding(encoding, raw);
  text.isDecoded_ = !isInUtf8 || std::any_of(raw.begin(), raw.end(), isMarkup);
  if (text.isDecoded_) append(text.decoded_, isInUtf8 ? raw : encoding.Decode(raw));
  return text;
}

MarkupText MarkupText::OfContent(std::string_view raw, Encoding encoding) {
  return Of(raw, encoding, kIsMarkupInText, AppendContent);
}

MarkupText MarkupText::OfAttribute(std::string_view raw, Encoding encoding) {
  return Of(raw, encoding, kIsMarkupInValue, AppendValue);
}

bool HasText(std::string_view content) {
  while (!content.empty()) {
    const MarkupPiece piece = TakePiece(content);
    if (piece.kind != MarkupPiece::Text && piece.kind != MarkupPiece::Section) continue;
    const std::string_view trimmed = Trim(piece.text);
    if (trimmed.empty()) continue;
    if (piece.kind == MarkupPiece::Text && trimmed.front() != '&') return true;
    std::string text;
    AppendContent(text, trimmed);
    if (!Trim(text).empty()) return true;
  }
  return false;
}

void AppendText(std::string& markup, std::string_view text, std::string_view newLine) {
  while (!text.empty()) {
    const auto* const special = std::find_if(text.begin(), text.end(), [](char c) {
      return c == '&' || c == '<' || c == '>' || c == '\n' || c == '\r';
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
      case '\r':  // as it is, it would read as a line feed
        markup += "&#13;";
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
