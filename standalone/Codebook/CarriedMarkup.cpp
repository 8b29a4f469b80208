#include "standalone/Codebook/CarriedMarkup.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Codebook/Elements.h"
#include "standalone/Text/Utf8.h"
#include "standalone/Xml/Markup.h"
#include "standalone/Xml/Parser.h"

namespace velahost {
namespace {

// Carried markup has one of two forms. Where all of its elements are the standard's they have no
// prefix, and no namespace is declared. Otherwise the names of the standard's elements begin with
// this mark, which no document has.
constexpr char kStandard = '\1';

// Attributes that name something in the document that they stand in.
constexpr std::array<std::string_view, 18> kIdsAndReferences = {
    "ID",     "id",       "xml:id", "sdatrefs", "methrefs",    "pubrefs",
    "access", "files",    "fileid", "varRef",   "var",         "varGrp",
    "nCube",  "nCubeGrp", "qstn",   "refs",     "elementRefs", "catgry"};

bool IsIdOrReference(std::string_view attribute) {
  return std::find(kIdsAndReferences.begin(), kIdsAndReferences.end(), attribute) !=
         kIdsAndReferences.end();
}

bool IsDeclaration(std::string_view attribute) {
  return attribute == "xmlns" || attribute.starts_with("xmlns:");
}

// The attribute that declares a prefix, which has no colon, and the prefix that one declares.
std::string DeclarationOf(std::string_view prefix) {
  return prefix.empty() ? "xmlns" : "xmlns:" + std::string(prefix);
}
std::string_view DeclaredPrefix(std::string_view declaration) {
  return declaration.size() > 6 ? declaration.substr(6) : std::string_view();
}

// The namespaces that markup itself declares, inside its open elements.
class Declared {
 public:
  void Open() { counts_.push_back(0); }
  void Declare(std::string_view prefix, std::string_view uri) {
    bindings_.emplace_back(prefix, uri);
    ++counts_.back();
  }
  void Close() {
    bindings_.resize(bindings_.size() - counts_.back());
    counts_.pop_back();
  }
  // The namespace of a prefix; nothing where the markup does not declare it.
  std::optional<std::string_view> Find(std::string_view prefix) const {
    const auto found =
        std::find_if(bindings_.rbegin(), bindings_.rend(),
                     [prefix](const auto& binding) { return binding.first == prefix; });
    if (found == bindings_.rend()) return std::nullopt;
    return found->second;
  }

 private:
  std::vector<std::pair<std::string, std::string>> bindings_;
  std::vector<std::size_t> counts_;  // of each open element
};

bool HasType(const XmlStart& start) {
  for (const char* const* attribute = start.attributes; *attribute != nullptr; attribute += 2) {
    if (std::string_view(*attribute) == "type") return true;
  }
  return false;
}

// Copies children of an element by parsing it.
class Copier final : public XmlHandler {
 public:
  Copier(const Namespaces& namespaces, const std::function<bool(ElementName)>& takes)
      : namespaces_(namespaces), takes_(takes) {}

  void Start(const XmlStart& start) override {
    if (++depth_ == 1) return;
    const std::string_view prefix = PrefixOf(start.name);
    const std::string_view uri = namespaces_.Find(start.scope, prefix);
    if (depth_ == 2) {
      copying_ = takes_(start.element) && !(start.element == element::notes && HasType(start));
      if (copying_) elements_.push_back({start.element, {}});
      ownUri_ = uri;
    }
    if (!copying_) return;
    // A link says nothing without what it refers to: only its text stays.
    if (start.element == element::Link) {
      open_.emplace_back();
      return;
    }
    CloseStartTag();
    // An element without a namespace is the standard's only where the one it stands in is so too.
    const bool isForeign = uri.empty() ? prefix.empty() && !ownUri_.empty()
                                       : uri != ownUri_ && start.element == kForeignElement;
    open_.push_back(isForeign ? std::string(start.name)
                              : kStandard + std::string(LocalNameOf(start.name)));
    Markup() += "<" + open_.back();
    declared_.Open();
    if (isForeign) DeclareNamespaces(start, prefix, uri);
    CopyAttributes(start);
    startTagIsOpen_ = true;
  }

  bool ReadsText(ElementName /*element*/) const override { return true; }

  void End(std::size_t /*begin*/, std::size_t /*end*/) override {
    --depth_;
    if (!copying_) return;
    if (depth_ == 0) return;
    const std::string name = std::move(open_.back());
    open_.pop_back();
    if (!name.empty()) {
      Markup() += startTagIsOpen_ ? "/>" : "</" + name + ">";
      startTagIsOpen_ = false;
      declared_.Close();
    }
    if (depth_ == 1) copying_ = false;
  }

  void Text(std::string_view text) override {
    if (!copying_) return;
    CloseStartTag();
    AppendText(Markup(), text);
  }

  std::vector<CarriedElement> Take() { return std::move(elements_); }

 private:
  std::string& Markup() { return elements_.back().markup; }

  void CloseStartTag() {
    if (startTagIsOpen_) Markup() += ">";
    startTagIsOpen_ = false;
  }

  // What an element of another namespace declares, and its own namespace if the copy lacks it
  // there.
  void DeclareNamespaces(const XmlStart& start, std::string_view prefix, std::string_view uri) {
    for (const char* const* own = start.attributes; *own != nullptr; own += 2) {
      if (IsDeclaration(own[0])) Declare(DeclaredPrefix(own[0]), own[1]);
    }
    if (declared_.Find(prefix) != uri) Declare(prefix, uri);
  }
  void Declare(std::string_view prefix, std::string_view uri) {
    Markup() += " " + DeclarationOf(prefix) + "=\"" + EscapeAttribute(uri, '"') + "\"";
    declared_.Declare(prefix, uri);
  }

  void CopyAttributes(const XmlStart& start) {
    for (const char* const* attribute = start.attributes; *attribute != nullptr; attribute += 2) {
      const std::string_view name = *attribute;
      const std::string_view prefix = PrefixOf(name);
      const bool mayBeUnbound = !prefix.empty() && prefix != "xml";
      if (IsIdOrReference(name) || IsDeclaration(name) || mayBeUnbound) continue;
      Markup() += " " + std::string(name) + "=\"" + EscapeAttribute(attribute[1], '"') + "\"";
    }
  }

  const Namespaces& namespaces_;
  const std::function<bool(ElementName)>& takes_;
  std::vector<CarriedElement> elements_;
  std::vector<std::string> open_;  // the names in the copy; empty for one that is left out
  Declared declared_;
  std::string ownUri_;  // the namespace of the child that is copied
  std::size_t depth_ = 0;
  bool copying_ = false;
  bool startTagIsOpen_ = false;
};

// Whether the attributes of a tag go along as they stand there.
bool HasPlainAttributes(const StartTag& tag) {
  for (auto attribute = tag.First(); attribute; attribute = tag.After(*attribute)) {
    const bool hasPrefix = attribute->name.find(':') != std::string_view::npos;
    if (IsDeclaration(attribute->name) || IsIdOrReference(attribute->name) ||
        (hasPrefix && !attribute->name.starts_with("xml:"))) {
      return false;
    }
  }
  return true;
}

// Whether an ampersand in the text begins anything but a reference to a character.
bool HasOtherReferences(std::string_view text) {
  constexpr std::array<std::string_view, 6> kCharacters = {"&amp;",  "&lt;",   "&gt;",
                                                           "&quot;", "&apos;", "&#"};
  for (std::size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
    const auto isCharacter = [&](std::string_view known) {
      return text.substr(at).starts_with(known);
    };
    if (std::none_of(kCharacters.begin(), kCharacters.end(), isCharacter)) return true;
  }
  return false;
}

// Whether an element stands for itself as it stands in its document, where the standard's elements
// have no prefix: most do, and need not be parsed.
bool IsPlain(std::string_view element) {
  if (HasOtherReferences(element)) return false;
  while (!element.empty()) {
    const MarkupPiece piece = TakePiece(element);
    if (piece.kind == MarkupPiece::Text || piece.kind == MarkupPiece::EndTag) continue;
    if (piece.kind != MarkupPiece::StartTag && piece.kind != MarkupPiece::EmptyTag) return false;
    const StartTag tag(piece.text);
    const bool isStandard = PrefixOf(tag.Name()).empty() && tag.Name() != "Link";
    if (!isStandard || !HasPlainAttributes(tag)) return false;
  }
  return true;
}

// The bytes in UTF-8, with line feeds as line ends.
std::string Plain(std::string_view element, Encoding encoding) {
  std::string plain = encoding.Decode(element);
  if (plain.find('\r') == std::string::npos) return plain;
  std::size_t size = 0;
  for (std::size_t i = 0; i < plain.size(); ++i) {
    if (plain[i] != '\r') {
      plain[size++] = plain[i];
    } else if (i + 1 == plain.size() || plain[i + 1] != '\n') {
      plain[size++] = '\n';
    }
  }
  plain.resize(size);
  return plain;
}

// The children that are taken, as they stand in the document; nothing if one of them is not plain.
std::optional<std::vector<CarriedElement>> CarryPlain(
    const Document& document, Element parent, Namespaces::Scope scope,
    const std::function<bool(ElementName)>& takes) {
  const bool hasPrefix = !parent.Prefix().empty();
  const bool declares = parent.Tag().find("xmlns") != std::string_view::npos;
  if (hasPrefix || declares || !document.Scopes().IsStandard(scope, "")) return std::nullopt;
  std::vector<CarriedElement> elements;
  for (const Element child : parent.All()) {
    const bool isTyped = child.Name() == element::notes && child.Attribute("type").IsThere();
    if (!takes(child.Name()) || isTyped) continue;
    const std::string_view markup = child.Markup();
    if (!IsPlain(markup)) return std::nullopt;
    if (HasText(markup)) elements.push_back({child.Name(), Plain(markup, document.Encoding())});
  }
  return elements;
}

// Calls a function for each tag of markup: with the tag, its kind and the text before it. Returns
// the text behind the last one.
template <class Look>
std::string_view ForEachTag(std::string_view markup, Look look) {
  const char* begin = markup.data();
  while (!markup.empty()) {
    const MarkupPiece piece = TakePiece(markup);
    if (piece.kind != MarkupPiece::StartTag && piece.kind != MarkupPiece::EmptyTag &&
        piece.kind != MarkupPiece::EndTag) {
      continue;
    }
    look(piece, std::string_view(begin, static_cast<std::size_t>(piece.text.data() - begin)));
    begin = piece.text.data() + piece.text.size();
  }
  return {begin, static_cast<std::size_t>(markup.data() - begin)};
}

// Gives the tags of carried markup the prefix of its place.
class Placer {
 public:
  Placer(const MarkupPlace& place, bool isMarked)
      : place_(place),
        bare_(std::string_view(place.prefix).substr(0, place.prefix.find(':'))),
        uri_(EscapeAttribute(place.namespaceUri, '"')),
        isMarked_(isMarked) {}

  void Place(const MarkupPiece& piece, std::string_view before) {
    markup_ += before;
    const bool isEnd = piece.kind == MarkupPiece::EndTag;
    std::string_view tag = piece.text.substr(isEnd ? 2 : 1);
    const bool isStandard = !isMarked_ || tag.front() == kStandard;
    if (isMarked_ && isStandard) tag.remove_prefix(1);
    markup_.append(isEnd ? "</" : "<").append(isStandard ? place_.prefix : "");
    if (isEnd) {
      markup_ += tag;
    } else {
      declared_.Open();
      PlaceStart(StartTag(piece.text), tag, isStandard);
    }
    if (piece.kind != MarkupPiece::StartTag) declared_.Close();
  }

  std::string Take(std::string_view rest) { return std::move(markup_.append(rest)); }

 private:
  // What follows the prefix in a start tag. Where an element of another namespace has bound the
  // place's prefix otherwise, it is declared once more.
  void PlaceStart(const StartTag& start, std::string_view tag, bool isStandard) {
    for (auto attribute = start.First(); attribute; attribute = start.After(*attribute)) {
      if (!IsDeclaration(attribute->name)) continue;
      declared_.Declare(DeclaredPrefix(attribute->name), start.ValueOf(*attribute));
    }
    const std::size_t nameEnd = std::min(tag.find_first_of(" />"), tag.size());
    markup_ += tag.substr(0, nameEnd);
    if (isStandard && declared_.Find(bare_).value_or(uri_) != uri_) {
      markup_ += " " + DeclarationOf(bare_) + "=\"" + uri_ + "\"";
      declared_.Declare(bare_, uri_);
    }
    markup_ += tag.substr(nameEnd);
  }

  const MarkupPlace& place_;
  const std::string_view bare_;  // its prefix without the colon
  const std::string uri_;        // its namespace as it stands in an attribute
  const bool isMarked_;
  Declared declared_;
  std::string markup_;
};

// Carried markup as it stands at a place.
std::string MarkupAt(const MarkupPlace& place, const std::string& carried) {
  const bool isMarked = carried.size() > 1 && carried[1] == kStandard;
  if (!isMarked && place.prefix.empty()) return carried;
  Placer placer(place, isMarked);
  return placer.Take(ForEachTag(carried, [&](const MarkupPiece& piece, std::string_view before) {
    placer.Place(piece, before);
  }));
}

}  // namespace

std::vector<CarriedElement> CarryChildren(const Document& document, Element parent,
                                          Namespaces::Scope scope,
                                          const std::function<bool(ElementName child)>& takes) {
  if (auto plain = CarryPlain(document, parent, scope, takes)) return std::move(*plain);
  auto [namespaces, scopeOfParent] = document.Scopes().Only(scope);
  Copier copier(namespaces, takes);
  XmlParser parser(namespaces, copier, document.Encoding());
  parser.MoveTo(parent.Begin(), scopeOfParent);
  parser.Parse(parent.Markup());
  std::vector<CarriedElement> elements = copier.Take();
  std::erase_if(elements, [](const CarriedElement& element) { return !HasText(element.markup); });
  return elements;
}

MarkupPlace PlaceIn(const Document& document, const std::vector<Element>& path) {
  MarkupPlace place{path.back().Prefix(), std::string(document.Scopes().AdoptedUri())};
  const std::string_view prefix = place.prefix;
  const std::string declaration =
      DeclarationOf(prefix.substr(0, prefix.empty() ? 0 : prefix.size() - 1));
  // The innermost declaration counts.
  for (const Element element : path) {
    const MarkupText uri = element.Attribute(declaration);
    if (uri.IsThere()) place.namespaceUri = uri.View();
  }
  return place;
}

std::string ElementNameOf(const std::string& markup) {
  std::string_view name = StartTag(markup).Name();
  if (name.starts_with(kStandard)) name.remove_prefix(1);
  return std::string(name);
}

NewElement NewCarried(const MarkupPlace& place, const std::string& carried) {
  return {.element = CodebookVocabulary().Find(ElementNameOf(carried)),
          .markup = MarkupAt(place, carried)};
}

std::optional<std::string> WhyNotIn(const Document& document, const std::string& carried) {
  const Encoding encoding = document.Encoding();
  bool hasAllNames = true;
  std::size_t declarations = 0;
  ForEachTag(carried, [&](const MarkupPiece& piece, std::string_view /*before*/) {
    if (piece.kind == MarkupPiece::EndTag) return;
    const StartTag tag(piece.text);
    hasAllNames = hasAllNames && encoding.Has(tag.Name());
    for (auto attribute = tag.First(); attribute; attribute = tag.After(*attribute)) {
      hasAllNames = hasAllNames && encoding.Has(attribute->name);
      if (IsDeclaration(attribute->name)) ++declarations;
    }
  });
  if (!hasAllNames) {
    return "has names of elements or attributes that the encoding " + std::string(encoding.Name()) +
           " lacks";
  }
  // Where the standard's own prefix is bound otherwise, it is declared once more.
  const std::size_t needed = 2 * declarations + document.Scopes().MostInScope();
  if (declarations > 0 && needed > Namespaces::kMostInScope) {
    return "declares too many namespaces";
  }
  return std::nullopt;
}

}  // namespace velahost
