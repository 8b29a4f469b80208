#pragma once

#include <array>
#include <cstddef>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Xml/Encoding.h"
#include "standalone/Xml/Namespaces.h"
#include "standalone/Xml/Vocabulary.h"

struct XML_ParserStruct;

namespace velahost {

// A text that is not well formed, or that is refused for what it declares. what() says the reason
// and the line and column, both from 1.
class XmlError : public std::runtime_error {
 public:
  explicit XmlError(const std::string& reason, std::size_t errorLine = 0,
                    std::size_t errorColumn = 0)
      : std::runtime_error(reason), line(errorLine), column(errorColumn) {}

  // From 1; 0 where it is about no place.
  std::size_t line;
  std::size_t column;
};

// The start of an element. What it points at lives until the event has been handled.
struct XmlStart {
  ElementName element;
  const char* name;               // as it stands in the text, with its prefix
  const char* const* attributes;  // names and values in turn, ended by null
  std::size_t begin;              // the bytes of the start tag in the text
  std::size_t end;
  Namespaces::Scope scope;  // inside the element
  Encoding encoding;        // of the document
};

// What receives the events of a parse. An exception that it throws ends the parse and passes on to
// the caller of Parse.
class XmlHandler {
 public:
  virtual void Start(const XmlStart& start) = 0;
  // Whether the text in an element, that of the elements in it included, is to be reported. Most
  // text is white space between elements, and what is not reported costs little.
  virtual bool ReadsText(ElementName element) const = 0;
  // The end tag's bytes; both are the element's end for an element without an end tag.
  virtual void End(std::size_t begin, std::size_t end) = 0;
  // A piece of text in UTF-8, in an element whose text is read.
  virtual void Text(std::string_view text) = 0;

 protected:
  ~XmlHandler() = default;
};

// An XML parser that tells where everything stands. It reads one document, or what is cut out of
// one, with the names of the namespaces' vocabulary.
class XmlParser {
 public:
  // For a whole document, whose encoding is found, or for one part of a document.
  XmlParser(Namespaces& namespaces, XmlHandler& handler);
  // For elements cut out of a document of that encoding, one after the other.
  XmlParser(Namespaces& namespaces, XmlHandler& handler, Encoding encoding);
  XmlParser(const XmlParser&) = delete;
  XmlParser& operator=(const XmlParser&) = delete;
  ~XmlParser();

  // What a parser reads at once, in bytes.
  static constexpr std::size_t kMostAtOnce = std::size_t{1} << 29;

  // Reads a whole document. Throws XmlError.
  void ParseDocument(std::string_view text);
  // The same step by step: reads the next bytes, and ends the document. Throws XmlError.
  void Parse(std::string_view bytes);
  void Finish();
  // How many bytes to read next where `usual` are read at a time. A tag or text that goes beyond
  // what has been read is gone through anew with each piece, so the pieces grow as long as it goes
  // on.
  std::size_t NextPiece(std::size_t usual) const { return usual > inToken_ ? usual : inToken_; }
  // What is read next stands at this place of the document and in this scope. What was left out is
  // read elsewhere; the lines and columns of an XmlError do not count it.
  void MoveTo(std::size_t position, Namespaces::Scope scope);

  // Reads a part that stands at begin in a document of that encoding without a document type
  // declaration, in the given scope. Throws XmlError, also if the part does not end outside of all
  // that begins in it. Called once. REQUIRES: at most kMostAtOnce bytes.
  void ParsePart(std::string_view text, std::size_t begin, Encoding encoding,
                 Namespaces::Scope scope);

  // The encoding of the document that is being read.
  Encoding DocumentEncoding() const { return encoding_; }
  // Whether the document says UTF-16, in bytes that are none: it is read as UTF-8.
  bool SaysUtf16() const { return saysUtf16_; }
  // Whether the document has a document type declaration, as far as it has been read.
  bool HasDocumentType() const { return hasDocumentType_; }

 private:
  struct Callbacks;
  friend struct Callbacks;
  struct Name {
    std::string name;
    std::string prefix;
    ElementName element = kOtherElement;
  };

  void SetCallbacks();
  void Feed(std::string_view bytes, bool last);
  void Check(bool parsed) const;
  [[noreturn]] void Fail(const std::string& reason) const;
  const Name& NameFor(std::string_view name);
  std::size_t Position() const;

  XML_ParserStruct* parser_;
  Namespaces& namespaces_;
  XmlHandler& handler_;
  Encoding encoding_;
  std::vector<Namespaces::Scope> scopes_;  // of the open elements
  std::array<Name, 256> names_;            // those met last, each where its letters say
  std::ptrdiff_t offset_ = 0;              // from the parser's positions to those in the document
  std::ptrdiff_t fed_ = 0;
  std::size_t inToken_ = 0;  // bytes read since the parser came on
  std::size_t depth_ = 0;
  std::size_t defaults_ = 0;   // declared of attributes
  std::size_t outermost_ = 0;  // elements of the parser's own around what is reported
  std::size_t textDepth_ = 0;  // of the open element whose text is reported; 0 if there is none
  bool hasDocumentType_ = false;
  bool saysUtf16_ = false;
  std::exception_ptr failure_;
};

}  // namespace velahost
