#include "standalone/Xml/Parser.h"

#include <expat.h>

#include <algorithm>
#include <new>

#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

// Expat copies what it is fed, so a document is fed in pieces.
constexpr std::size_t kPiece = std::size_t{1} << 18;
// Expat looks at all of an element's declared defaults each time that the element stands there.
constexpr std::size_t kMostDefaults = 1000;

// Whether a document is in UTF-16, as a byte order mark or its first "<" shows.
bool IsUtf16(std::string_view text) {
  using namespace std::string_view_literals;
  return text.starts_with("\xFE\xFF"sv) || text.starts_with("\xFF\xFE"sv) ||
         text.starts_with("\0<"sv) || text.starts_with("<\0"sv);
}

// Whether XML 1.0 takes a version: every document of version 1 is read as one of 1.0.
bool IsVersion(std::string_view version) {
  return version.size() > 2 && version.starts_with("1.") &&
         std::all_of(version.begin() + 2, version.end(),
                     [](char c) { return c >= '0' && c <= '9'; });
}

// The encoding that the XML declaration of a document in single bytes names; empty for none.
std::string_view DeclaredEncoding(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  constexpr std::string_view kWord = "encoding";
  if (text.starts_with(kMark)) text.remove_prefix(kMark.size());
  if (!text.starts_with("<?xml")) return {};
  text = text.substr(0, text.find("?>"));
  const std::size_t word = text.find(kWord);
  const std::size_t quote = text.find_first_of("'\"", std::min(word, text.size()));
  if (quote == std::string_view::npos) return {};
  const std::size_t begin = quote + 1;
  return text.substr(begin, text.find(text[quote], begin) - begin);
}

bool IsUtf16Name(std::string_view encoding) { return UpperCase(encoding).starts_with("UTF-16"); }

std::string RefusalOf(std::string_view encoding) {
  const std::string name(encoding);
  return "encoding " + name +
         " cannot be read: convert the document to UTF-8, for example by iconv -f " + name +
         " -t UTF-8, and let its first line say UTF-8";
}

}  // namespace

// What expat calls. No exception may pass through expat: it is kept, the parse stopped, and thrown
// again by Feed.
struct XmlParser::Callbacks {
  template <typename Work>
  static void Guard(XmlParser& self, Work work) noexcept {
    if (self.failure_) return;
    try {
      work();
    } catch (...) {
      self.failure_ = std::current_exception();
      XML_StopParser(self.parser_, XML_FALSE);
    }
  }

  static void Start(void* data, const char* name, const char** attributes) {
    auto& self = *static_cast<XmlParser*>(data);
    Guard(self, [&] {
      if (self.depth_++ < self.outermost_) return;
      // Without the defaults that a declaration gives: what stands in the text is what counts, here
      // as when the element is read alone.
      attributes[XML_GetSpecifiedAttributeCount(self.parser_)] = nullptr;
      const auto entered = self.namespaces_.Enter(self.scopes_.back(), attributes);
      if (!entered) self.Fail("more than 1000 namespaces are declared around this element");
      const Namespaces::Scope scope = *entered;
      self.scopes_.push_back(scope);
      const Name& known = self.NameFor(name);
      const ElementName element =
          self.namespaces_.IsStandard(scope, known.prefix) ? known.element : kForeignElement;
      const std::size_t begin = self.Position();
      const auto length = static_cast<std::size_t>(XML_GetCurrentByteCount(self.parser_));
      if (self.textDepth_ == 0 && self.handler_.ReadsText(element)) {
        self.textDepth_ = self.depth_;
        XML_SetCharacterDataHandler(self.parser_, Text);
      }
      self.handler_.Start(
          {element, name, attributes, begin, begin + length, scope, self.encoding_});
    });
  }

  static void End(void* data, const char* /*name*/) {
    auto& self = *static_cast<XmlParser*>(data);
    Guard(self, [&] {
      if (self.depth_ == self.textDepth_) {
        self.textDepth_ = 0;
        XML_SetCharacterDataHandler(self.parser_, nullptr);
      }
      if (--self.depth_ < self.outermost_) return;
      self.scopes_.pop_back();
      const std::size_t begin = self.Position();
      const auto length = static_cast<std::size_t>(XML_GetCurrentByteCount(self.parser_));
      self.handler_.End(begin, begin + length);
    });
  }

  static void Text(void* data, const char* text, int length) {
    auto& self = *static_cast<XmlParser*>(data);
    Guard(self, [&] { self.handler_.Text({text, static_cast<std::size_t>(length)}); });
  }

  // A reference to an entity that a declaration outside the document may declare: it stands for
  // itself, since nothing outside is ever opened.
  static void SkippedEntity(void* data, const char* name, int isParameterEntity) {
    auto& self = *static_cast<XmlParser*>(data);
    if (isParameterEntity != 0 || self.textDepth_ == 0) return;
    Guard(self, [&] { self.handler_.Text("&" + std::string(name) + ";"); });
  }

  static void Declaration(void* data, const char* version, const char* encoding,
                          int /*standalone*/) {
    auto& self = *static_cast<XmlParser*>(data);
    Guard(self, [&] {
      if (version != nullptr && !IsVersion(version)) {
        self.Fail("XML of version " + std::string(version) + " cannot be read: let it be 1.0");
      }
      if (encoding == nullptr) return;
      if (IsUtf16Name(encoding)) {
        self.saysUtf16_ = true;
        return;
      }
      const auto known = Encoding::Named(encoding);
      if (!known) self.Fail(RefusalOf(encoding));
      self.encoding_ = *known;
    });
  }

  // An encoding that expat has no table for.
  static int UnknownEncoding(void* data, const char* name, XML_Encoding* info) {
    auto& self = *static_cast<XmlParser*>(data);
    int known = XML_STATUS_ERROR;
    Guard(self, [&] {
      const auto encoding = Encoding::Named(name);
      if (!encoding || encoding->IsUtf8()) self.Fail(RefusalOf(name));
      for (int byte = 0; byte < 256; ++byte) {
        info->map[byte] = encoding->CodeOf(static_cast<unsigned char>(byte));
      }
      info->data = nullptr;
      info->convert = nullptr;
      info->release = nullptr;
      known = XML_STATUS_OK;
    });
    return known;
  }

  static void DocumentType(void* data, const char* /*name*/, const char* /*system*/,
                           const char* /*public*/, int /*hasInternalSubset*/) {
    static_cast<XmlParser*>(data)->hasDocumentType_ = true;
  }

  static void EntityDeclaration(void* data, const char* name, int /*isParameterEntity*/,
                                const char* /*value*/, int /*length*/, const char* /*base*/,
                                const char* /*system*/, const char* /*public*/,
                                const char* /*notation*/) {
    auto& self = *static_cast<XmlParser*>(data);
    Guard(self, [&] {
      self.Fail("the document declares an entity of its own, " + std::string(name) +
                ": write its text where it is used");
    });
  }

  static void AttributeDeclaration(void* data, const char* /*element*/, const char* /*attribute*/,
                                   const char* /*type*/, const char* standard, int /*required*/) {
    auto& self = *static_cast<XmlParser*>(data);
    if (standard == nullptr || ++self.defaults_ <= kMostDefaults) return;
    Guard(self, [&] { self.Fail("more than 1000 attributes are declared with a default"); });
  }
};

XmlParser::XmlParser(Namespaces& namespaces, XmlHandler& handler)
    : parser_(XML_ParserCreate(nullptr)),
      namespaces_(namespaces),
      handler_(handler),
      scopes_(1, Namespaces::kOutermost) {
  SetCallbacks();
}

XmlParser::XmlParser(Namespaces& namespaces, XmlHandler& handler, Encoding encoding)
    : parser_(XML_ParserCreate(encoding.Name())),
      namespaces_(namespaces),
      handler_(handler),
      encoding_(encoding),
      scopes_(1, Namespaces::kOutermost),
      outermost_(1) {
  SetCallbacks();
  // With an external subset that is never read a reference to an unknown entity is no error here
  // where it was none in the document.
  Feed("<!DOCTYPE x SYSTEM 'x'><x>", false);
}

XmlParser::~XmlParser() { XML_ParserFree(parser_); }

void XmlParser::SetCallbacks() {
  if (parser_ == nullptr) throw std::bad_alloc();
  XML_SetUserData(parser_, this);
  XML_SetElementHandler(parser_, Callbacks::Start, Callbacks::End);
  XML_SetSkippedEntityHandler(parser_, Callbacks::SkippedEntity);
  XML_SetXmlDeclHandler(parser_, Callbacks::Declaration);
  XML_SetUnknownEncodingHandler(parser_, Callbacks::UnknownEncoding, this);
  XML_SetStartDoctypeDeclHandler(parser_, Callbacks::DocumentType);
  XML_SetEntityDeclHandler(parser_, Callbacks::EntityDeclaration);
  XML_SetAttlistDeclHandler(parser_, Callbacks::AttributeDeclaration);
}

void XmlParser::ParseDocument(std::string_view text) {
  for (std::size_t begin = 0; begin < text.size();) {
    const std::string_view piece = text.substr(begin, NextPiece(kPiece));
    Parse(piece);
    begin += piece.size();
  }
  Finish();
}

void XmlParser::Parse(std::string_view bytes) {
  if (fed_ == 0 && outermost_ == 0) {
    if (IsUtf16(bytes)) throw XmlError(RefusalOf("UTF-16"));
    // What says UTF-16 and is not, or spells UTF-8 as expat does not know it.
    const std::string_view declared = DeclaredEncoding(bytes);
    const auto known = Encoding::Named(declared);
    if (IsUtf16Name(declared) || (known && known->IsUtf8())) XML_SetEncoding(parser_, "UTF-8");
  }
  for (std::size_t at = 0; at < bytes.size(); at += kMostAtOnce) {
    Feed(bytes.substr(at, kMostAtOnce), false);
  }
}

void XmlParser::Finish() { Feed({}, true); }

void XmlParser::MoveTo(std::size_t position, Namespaces::Scope scope) {
  offset_ = static_cast<std::ptrdiff_t>(position) - fed_;
  scopes_.back() = scope;
}

void XmlParser::ParsePart(std::string_view text, std::size_t begin, Encoding encoding,
                          Namespaces::Scope scope) {
  constexpr std::string_view kStart = "<x>";
  constexpr std::string_view kEnd = "</x>";
  XML_SetEncoding(parser_, encoding.Name());
  encoding_ = encoding;
  outermost_ = 1;
  MoveTo(begin, scope);
  offset_ -= static_cast<std::ptrdiff_t>(kStart.size());
  // All at once, and as the last: of what is not the last expat counts the lines.
  const auto size = static_cast<int>(kStart.size() + text.size() + kEnd.size());
  auto* const buffer = static_cast<char*>(XML_GetBuffer(parser_, size));
  if (buffer == nullptr) throw std::bad_alloc();
  char* const behindStart = std::copy(kStart.begin(), kStart.end(), buffer);
  char* const behindText = std::copy(text.begin(), text.end(), behindStart);
  std::copy(kEnd.begin(), kEnd.end(), behindText);
  Check(XML_ParseBuffer(parser_, size, XML_TRUE) == XML_STATUS_OK);
}

void XmlParser::Feed(std::string_view bytes, bool last) {
  const XML_Index before = XML_GetCurrentByteIndex(parser_);
  const XML_Status status =
      XML_Parse(parser_, bytes.data(), static_cast<int>(bytes.size()), last ? XML_TRUE : XML_FALSE);
  fed_ += static_cast<std::ptrdiff_t>(bytes.size());
  const bool hasComeOn = XML_GetCurrentByteIndex(parser_) != before;
  inToken_ = hasComeOn ? 0 : inToken_ + bytes.size();
  Check(status == XML_STATUS_OK);
}

void XmlParser::Check(bool parsed) const {
  if (failure_) std::rethrow_exception(failure_);
  if (parsed) return;
  const XML_Error error = XML_GetErrorCode(parser_);
  if (error == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
  Fail(XML_ErrorString(error));
}

void XmlParser::Fail(const std::string& reason) const {
  const std::size_t line = XML_GetCurrentLineNumber(parser_);
  const std::size_t column = XML_GetCurrentColumnNumber(parser_) + 1;
  throw XmlError(
      "line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + reason, line,
      column);
}

const XmlParser::Name& XmlParser::NameFor(std::string_view name) {
  const auto code = [](char c) { return std::size_t{static_cast<unsigned char>(c)}; };
  const std::size_t slot =
      (name.size() * 31 + code(name.front()) * 7 + code(name.back())) % names_.size();
  Name& known = names_[slot];
  if (known.name != name) {
    known = {std::string(name), std::string(PrefixOf(name)),
             namespaces_.Words().Find(LocalNameOf(name))};
  }
  return known;
}

std::size_t XmlParser::Position() const {
  return static_cast<std::size_t>(XML_GetCurrentByteIndex(parser_) + offset_);
}

}  // namespace velahost
