#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "standalone/Xml/Encoding.h"

// Markup as it stands in a well-formed document: what it says, and how a text is written in it.

namespace velahost {

// Where the tag ends that begins the text, after its ">". A value may have a ">" in it.
std::size_t TagEnd(std::string_view text);

// An attribute of a start tag. Positions are bytes from the begin of the tag.
struct RawAttribute {
  std::string_view name;
  std::size_t begin;  // of the white space before the name
  std::size_t valueBegin;
  std::size_t valueEnd;
  char quote;
};

// A start tag as it stands in a document.
class StartTag {
 public:
  // The whole tag, from "<" to ">". It lives as long as this object.
  explicit StartTag(std::string_view tag) : tag_(tag) {}

  std::string_view Name() const { return tag_.substr(1, NameEnd() - 1); }
  bool IsSelfClosing() const { return tag_[tag_.size() - 2] == '/'; }

  // The first attribute, and the one after another; nothing at the end.
  std::optional<RawAttribute> First() const { return From(NameEnd()); }
  std::optional<RawAttribute> After(const RawAttribute& attribute) const {
    return From(attribute.valueEnd + 1);
  }
  std::optional<RawAttribute> Find(std::string_view name) const;
  // Where a further attribute is inserted, in bytes from the tag's begin.
  std::size_t AttributesEnd() const;

  std::string_view ValueOf(const RawAttribute& attribute) const {
    return tag_.substr(attribute.valueBegin, attribute.valueEnd - attribute.valueBegin);
  }

 private:
  std::size_t NameEnd() const;
  std::optional<RawAttribute> From(std::size_t position) const;

  std::string_view tag_;
};

// A piece of what stands in a document: a tag, or what stands between two tags.
struct MarkupPiece {
  enum Kind { Text, StartTag, EmptyTag, EndTag, Section, CommentOrInstruction };
  Kind kind;
  std::string_view text;
};
// Takes the next piece off well-formed markup. REQUIRES: there is some.
MarkupPiece TakePiece(std::string_view& markup);

// A text or a value that stands in a document, in UTF-8: a view into the document, except where
// something in it had to be decoded. It may be absent, and is empty then.
class MarkupText {
 public:
  MarkupText() = default;
  // What stands between the tags of an element: its text with that of all elements in it. Line ends
  // are one line feed each.
  static MarkupText OfContent(std::string_view raw, Encoding encoding);
  // What stands between the quotes of an attribute: every white space character is a blank.
  static MarkupText OfAttribute(std::string_view raw, Encoding encoding);

  bool IsThere() const { return isThere_; }
  // It lives as long as this object and the document.
  std::string_view View() const { return isDecoded_ ? std::string_view(decoded_) : raw_; }
  operator std::string_view() const { return View(); }

 private:
  // What stands there decoded by the function, if it has markup in it or needs the encoding.
  template <class IsMarkup>
  static MarkupText Of(std::string_view raw, Encoding encoding, IsMarkup isMarkup,
                       void (*append)(std::string& decoded, std::string_view text));

  std::string_view raw_;
  std::string decoded_;
  bool isDecoded_ = false;
  bool isThere_ = false;
};

// Whether what stands between the tags of an element has more text in it than white space.
bool HasText(std::string_view content);

// Adds a text to markup as it stands between tags, with those line ends.
void AppendText(std::string& markup, std::string_view text, std::string_view newLine = "\n");
// A text as it stands between the given quotes in an attribute.
std::string EscapeAttribute(std::string_view text, char quote);

}  // namespace velahost
