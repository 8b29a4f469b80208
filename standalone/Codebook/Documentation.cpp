#include "standalone/Codebook/Documentation.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "standalone/Codebook/Elements.h"
#include "standalone/Text/Utf8.h"
#include "standalone/Xml/Markup.h"

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

bool DocumentsSets(ElementName name) {
  return std::find(kOfSets.begin(), kOfSets.end(), name) != kOfSets.end();
}

// The kind that an element is by its name; nothing for any other element.
std::optional<Documentation> KindOf(ElementName name) {
  const auto* const found = std::find(kElements.begin(), kElements.end(), name);
  if (found == kElements.end()) return std::nullopt;
  return static_cast<Documentation>(found - kElements.begin());
}

// The kind of an element that goes with the custom attributes; nothing for any other element.
std::optional<Documentation> KindWithAttributes(Element child) {
  const auto kind = KindOf(child.Name());
  if (!kind || IsOfNewVariables(*kind)) return std::nullopt;
  // A note with a type is no documentation.
  if (kind == Documentation::Notes && child.Attribute("type").IsThere()) return std::nullopt;
  return kind;
}

// Whether a tag states another language than the run's.
bool IsInOtherLanguage(const StartTag& tag, const Languages& languages) {
  if (languages.run.empty()) return false;
  const std::string_view stated = StatedLanguage(tag);
  return !stated.empty() && !IsSamePrimaryLanguage(stated, languages.run);
}

// Collects the text of an element, with a blank around the parts of a question and around
// paragraphs, without what states another language. Elements may be nested as deeply as they like.
class TextCollector {
 public:
  TextCollector(bool isQuestion, const Languages& languages)
      : isQuestion_(isQuestion), languages_(languages) {}

  void Open(const StartTag& tag) {
    const bool isPart = isQuestion_ && standsApart_.empty();
    standsApart_.push_back(isPart || LocalNameOf(tag.Name()) == "p");
    if (standsApart_.back()) text_ += ' ';
    if (otherDepth_ == 0 && IsInOtherLanguage(tag, languages_)) otherDepth_ = standsApart_.size();
  }
  void Close() {
    if (standsApart_.back()) text_ += ' ';
    if (otherDepth_ == standsApart_.size()) otherDepth_ = 0;
    standsApart_.pop_back();
  }
  void Add(std::string_view text) {
    if (otherDepth_ == 0) text_ += text;
  }
  const std::string& Text() const { return text_; }

 private:
  const bool isQuestion_;
  const Languages& languages_;
  std::string text_;
  std::vector<bool> standsApart_;  // of the open elements
  std::size_t otherDepth_ = 0;     // of the outermost one in another language; 0: there is none
};

// The text of an element as one line.
std::string TextOf(Element element, const Languages& languages) {
  if (IsInOtherLanguage(StartTag(element.Tag()), languages)) return {};
  TextCollector text(element.Name() == element::qstn, languages);
  std::string_view left = element.Content();
  while (!left.empty()) {
    const MarkupPiece piece = TakePiece(left);
    const bool isEmpty = piece.kind == MarkupPiece::EmptyTag;
    if (isEmpty || piece.kind == MarkupPiece::StartTag) {
      text.Open(StartTag(piece.text));
    } else {
      text.Add(element.TextOf(piece.text));
    }
    if (isEmpty || piece.kind == MarkupPiece::EndTag) text.Close();
  }
  return Collapse(text.Text());
}

}  // namespace

bool MayBeCarried(ElementName name) { return KindOf(name) || DocumentsSets(name); }

DocumentationSet DocumentedIn(Element var) {
  DocumentationSet kinds;
  for (const Element child : var.All()) {
    const auto kind = KindWithAttributes(child);
    if (kind && !kinds.Has(*kind) && HasText(child.Content())) kinds.Add(*kind);
  }
  return kinds;
}

std::vector<DocumentationElement> ReadDocumentation(const Document& document, Element var,
                                                    Namespaces::Scope scope,
                                                    DocumentationSet kinds) {
  std::vector<DocumentationElement> documentation;
  if (kinds.Empty()) return documentation;
  for (CarriedElement& element : CarryChildren(document, var, scope, [kinds](ElementName name) {
         const auto kind = KindOf(name);
         return kind && kinds.Has(*kind);
       })) {
    documentation.push_back({*KindOf(element.name), std::move(element.markup)});
  }
  return documentation;
}

std::vector<CarriedElement> ReadSetDocumentation(const Document& document, Element varGrp,
                                                 Namespaces::Scope scope) {
  return CarryChildren(document, varGrp, scope, DocumentsSets);
}

void WriteDocumentation(Element var, const Variable& read, const Variable& now,
                        const MarkupPlace& place, Editor& editor) {
  if (!now.brought) return;
  for (const DocumentationElement& element : now.brought->documentation) {
    if (!read.documented.Has(element.kind)) editor.Insert(var, NewCarried(place, element.markup));
  }
}

std::vector<DocumentationText> DocumentationTexts(Element var, const Languages& languages) {
  std::vector<DocumentationText> texts;
  for (const Element child : var.All()) {
    const auto kind = KindWithAttributes(child);
    if (!kind) continue;
    std::string text = TextOf(child, languages);
    if (!text.empty()) texts.push_back({*kind, std::move(text)});
  }
  std::stable_sort(texts.begin(), texts.end(),
                   [](const auto& a, const auto& b) { return a.kind < b.kind; });
  return texts;
}

}  // namespace velahost
