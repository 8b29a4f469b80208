#include "standalone/Codebook/Documentation.h"

#include <algorithm>
#include <array>
#include <functional>
#include <optional>
#include <utility>

#include "standalone/Codebook/Elements.h"
#include "standalone/Text/Utf8.h"
#include "standalone/Xml/Encoding.h"
#include "standalone/Xml/Markup.h"
#include "standalone/Xml/Parser.h"

namespace velahost {

namespace {

// By the value of the enumerator.
constexpr std::array<ElementName, kItemCount<Documentation>> kElements = {
    element::imputation, element::security, element::embargo,  element::respUnit,
    element::anlysUnit,  element::qstn,     element::universe, element::txt,
    element::codInstr,   element::concept_, element::notes};

// What documents a set of variables.
constexpr std::array<ElementName, 5> kOfSets = {element::txt, element::concept_, element::defntn,
                                                element::universe, element::notes};

// The kind that an element is by its name; nothing for any other element.
std::optional<Documentation> KindOf(ElementName name) {
  const auto* const found = std::find(kElements.begin(), kElements.end(), name);
  if (found == kElements.end()) return std::nullopt;
  return static_cast<Documentation>(found - kElements.begin());
}

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

bool HasType(const XmlStart& start) {
  for (const char* const* attribute = start.attributes; *attribute != nullptr; attribute += 2) {
    if (std::string_view(*attribute) == "type") return true;
  }
  return false;
}

// Copies children of an element.
class DocumentationCopier : public XmlHandler {
 public:
  using Takes = std::function<bool(ElementName element)>;
  // prefix is that of the standard's elements in the copy, with its colon. Notes with a type are
  // never taken.
  DocumentationCopier(const Namespaces& namespaces, std::string prefix, Takes takes)
      : namespaces_(namespaces), prefix_(std::move(prefix)), takes_(std::move(takes)) {}

  void Start(const XmlStart& start) override {
    if (++depth_ == 1) return;
    if (depth_ == 2) {
      copying_ = takes_(start.element) && !(start.element == element::notes && HasType(start));
      if (copying_) elements_.push_back({.element = start.element});
    }
    if (!copying_) return;
    // A link says nothing without what it refers to: only its text stays.
    if (start.element == element::Link) {
      open_.emplace_back();
      return;
    }
    CloseStartTag();
    const bool foreign = start.element == kForeignElement;
    const bool declared = foreign && !open_.empty() && open_.back().foreign &&
                          PrefixOf(open_.back().name) == PrefixOf(start.name);
    open_.push_back(
        {foreign ? std::string(start.name) : prefix_ + std::string(LocalNameOf(start.name)),
         foreign});
    Markup() += "<" + open_.back().name;
    if (foreign && !declared) DeclareNamespace(start);
    CopyAttributes(start, foreign);
    startTagOpen_ = true;
  }

  bool ReadsText(ElementName /*element*/) const override { return true; }

  void End(std::size_t /*begin*/, std::size_t /*end*/) override {
    --depth_;
    if (!copying_) return;
    if (depth_ == 0) return;
    const std::string name = std::move(open_.back().name);
    open_.pop_back();
    if (!name.empty()) {
      Markup() += startTagOpen_ ? "/>" : "</" + name + ">";
      startTagOpen_ = false;
    }
    if (depth_ == 1) copying_ = false;
  }

  void Text(std::string_view text) override {
    if (!copying_) return;
    CloseStartTag();
    AppendText(Markup(), text);
  }

  std::vector<NewElement> Take() { return std::move(elements_); }

 private:
  struct OpenElement {
    std::string name;  // in the copy; empty if it is left out
    bool foreign = false;
  };

  std::string& Markup() { return elements_.back().markup; }

  void CloseStartTag() {
    if (startTagOpen_) Markup() += ">";
    startTagOpen_ = false;
  }

  // Declares the namespace of an element's prefix, unless the element does so itself.
  void DeclareNamespace(const XmlStart& start) {
    const std::string_view prefix = PrefixOf(start.name);
    const std::string attribute = prefix.empty() ? "xmlns" : "xmlns:" + std::string(prefix);
    for (const char* const* own = start.attributes; *own != nullptr; own += 2) {
      if (*own == attribute) return;
    }
    Markup() += " " + attribute + "=\"" +
                EscapeAttribute(namespaces_.Find(start.scope, prefix), '"') + "\"";
  }

  void CopyAttributes(const XmlStart& start, bool foreign) {
    for (const char* const* attribute = start.attributes; *attribute != nullptr; attribute += 2) {
      const std::string_view name = *attribute;
      const std::string_view prefix = PrefixOf(name);
      const bool unbound = !prefix.empty() && prefix != "xml";
      if (IsIdOrReference(name) || (IsDeclaration(name) ? !foreign : unbound)) continue;
      Markup() += " " + std::string(name) + "=\"" + EscapeAttribute(attribute[1], '"') + "\"";
    }
  }

  const Namespaces& namespaces_;
  const std::string prefix_;
  const Takes takes_;
  std::vector<NewElement> elements_;
  std::vector<OpenElement> open_;
  std::size_t depth_ = 0;
  bool copying_ = false;
  bool startTagOpen_ = false;
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

// Whether an element stands for itself as it stands in its document: most do, and need not be
// parsed. That the standard's elements have no prefix there is known.
bool IsPlain(std::string_view element) {
  if (element.find('\r') != std::string_view::npos || HasOtherReferences(element)) return false;
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

// The children of an element that are taken and have a text, as they stand in the document; nothing
// if one of them is not plain.
std::optional<std::vector<NewElement>> CopyPlain(const Document& document, Element parent,
                                                 Namespaces::Scope scope,
                                                 const DocumentationCopier::Takes& takes) {
  const StartTag own(parent.Tag());
  if (!parent.HasEndTag() || !PrefixOf(own.Name()).empty()) return std::nullopt;
  if (!document.Scopes().IsStandard(scope, "") ||
      parent.Tag().find("xmlns") != std::string_view::npos) {
    return std::nullopt;
  }
  std::vector<NewElement> elements;
  std::string_view left = parent.Content();
  const char* begin = nullptr;  // of the child that is taken
  ElementName name = kOtherElement;
  std::size_t depth = 0;
  while (!left.empty()) {
    const MarkupPiece piece = TakePiece(left);
    const bool starts = piece.kind == MarkupPiece::StartTag;
    if (depth == 0 && (starts || piece.kind == MarkupPiece::EmptyTag)) {
      const StartTag tag(piece.text);
      name = document.Scopes().Words().Find(LocalNameOf(tag.Name()));
      const bool taken = takes(name) && !(name == element::notes && tag.Find("type"));
      begin = taken ? piece.text.data() : nullptr;
    }
    if (starts) ++depth;
    if (piece.kind == MarkupPiece::EndTag) --depth;
    const bool ends =
        depth == 0 && (piece.kind == MarkupPiece::EndTag || piece.kind == MarkupPiece::EmptyTag);
    if (!ends || begin == nullptr) continue;
    const auto size = static_cast<std::size_t>(piece.text.data() + piece.text.size() - begin);
    const std::string_view markup(begin, size);
    begin = nullptr;
    if (!IsPlain(markup)) return std::nullopt;
    if (HasText(markup)) {
      elements.push_back({.element = name, .markup = document.Encoding().Decode(markup)});
    }
  }
  return elements;
}

// The children of an element that are taken and have a text, each as markup of its own.
std::vector<NewElement> Copy(const Document& document, Element parent, Namespaces::Scope scope,
                             const DocumentationCopier::Takes& takes) {
  if (auto plain = CopyPlain(document, parent, scope, takes)) return std::move(*plain);
  auto [namespaces, scopeOfParent] = document.Scopes().Only(scope);
  DocumentationCopier copier(namespaces, "", takes);
  XmlParser parser(namespaces, copier, document.Encoding());
  parser.MoveTo(parent.Begin(), scopeOfParent);
  parser.Parse(parent.Markup());
  std::vector<NewElement> elements = copier.Take();
  std::erase_if(elements, [](const NewElement& element) { return !HasText(element.markup); });
  return elements;
}

// Whether a tag states another language than the run's.
bool IsInOtherLanguage(const StartTag& tag, const Languages& languages) {
  if (languages.run.empty()) return false;
  const std::string_view stated = StatedLanguage(tag);
  return !stated.empty() && !IsSamePrimaryLanguage(stated, languages.run);
}

// The text of an element as one line, with a blank around the parts of a question and around
// paragraphs, without what states another language. Elements may be nested as deeply as they like.
std::string TextOf(Element element, const Languages& languages) {
  if (IsInOtherLanguage(StartTag(element.Tag()), languages)) return {};
  std::string text;
  std::vector<bool> standsApart;  // of the open elements
  std::size_t otherDepth = 0;     // of the outermost one in another language; 0: there is none
  std::string_view left = element.Content();
  while (!left.empty()) {
    const MarkupPiece piece = TakePiece(left);
    const bool isTag = piece.kind == MarkupPiece::StartTag || piece.kind == MarkupPiece::EmptyTag;
    if (isTag) {
      const StartTag tag(piece.text);
      const bool isPart = element.Name() == element::qstn && standsApart.empty();
      standsApart.push_back(isPart || LocalNameOf(tag.Name()) == "p");
      if (standsApart.back()) text += ' ';
      if (otherDepth == 0 && IsInOtherLanguage(tag, languages)) otherDepth = standsApart.size();
    }
    if (piece.kind == MarkupPiece::EndTag || piece.kind == MarkupPiece::EmptyTag) {
      if (standsApart.back()) text += ' ';
      if (otherDepth == standsApart.size()) otherDepth = 0;
      standsApart.pop_back();
    }
    if (otherDepth == 0 && !isTag) text += element.TextOf(piece.text).View();
  }
  return Collapse(text);
}

}  // namespace

DocumentationSet DocumentedIn(Element var) {
  DocumentationSet kinds;
  for (const Element child : var.All()) {
    const auto kind = KindOf(child.Name());
    if (!kind || IsOfNewVariables(*kind) || kinds.Has(*kind)) continue;
    if (kind == Documentation::Notes && child.Attribute("type").IsThere()) continue;
    if (HasText(child.Content())) kinds.Add(*kind);
  }
  return kinds;
}

std::vector<DocumentationElement> ReadDocumentation(const Document& document, Element var,
                                                    Namespaces::Scope scope,
                                                    DocumentationSet kinds) {
  std::vector<DocumentationElement> documentation;
  if (kinds.Empty()) return documentation;
  for (NewElement& element : Copy(document, var, scope, [kinds](ElementName name) {
         const auto kind = KindOf(name);
         return kind && kinds.Has(*kind);
       })) {
    documentation.push_back({*KindOf(element.element), std::move(element.markup)});
  }
  return documentation;
}

std::vector<std::string> ReadSetDocumentation(const Document& document, Element varGrp,
                                              Namespaces::Scope scope) {
  std::vector<std::string> documentation;
  for (NewElement& element : Copy(document, varGrp, scope, [](ElementName name) {
         return std::find(kOfSets.begin(), kOfSets.end(), name) != kOfSets.end();
       })) {
    documentation.push_back(std::move(element.markup));
  }
  return documentation;
}

std::vector<NewElement> NewDocumentation(const std::string& markup, const std::string& prefix) {
  if (prefix.empty() && IsPlain(markup)) {
    const ElementName name = CodebookVocabulary().Find(StartTag(markup).Name());
    return {{.element = name, .markup = markup}};
  }
  Namespaces namespaces(CodebookVocabulary());
  DocumentationCopier copier(namespaces, prefix, [](ElementName /*element*/) { return true; });
  XmlParser parser(namespaces, copier, Encoding());
  parser.Parse("<var>" + markup + "</var>");
  return copier.Take();
}

std::vector<DocumentationText> DocumentationTexts(Element var, const Languages& languages) {
  std::vector<DocumentationText> texts;
  for (const Element child : var.All()) {
    const auto kind = KindOf(child.Name());
    if (!kind || IsOfNewVariables(*kind)) continue;
    if (kind == Documentation::Notes && child.Attribute("type").IsThere()) continue;
    std::string text = TextOf(child, languages);
    if (!text.empty()) texts.push_back({*kind, std::move(text)});
  }
  std::stable_sort(texts.begin(), texts.end(),
                   [](const auto& a, const auto& b) { return a.kind < b.kind; });
  return texts;
}

}  // namespace velahost
