#include "standalone/Codebook/Documentation.h"

#include <algorithm>
#include <array>
#include <utility>

#include "standalone/Codebook/Elements.h"
#include "standalone/Xml/Encoding.h"
#include "standalone/Xml/Markup.h"
#include "standalone/Xml/Parser.h"

namespace velahost {

namespace {

constexpr std::array<ElementName, 9> kDocumentation = {
    element::qstn,     element::universe,  element::txt,      element::codInstr, element::concept_,
    element::respUnit, element::anlysUnit, element::security, element::embargo};

// Attributes that name something in the document that they stand in.
constexpr std::array<std::string_view, 18> kIdsAndReferences = {
    "ID",     "id",       "xml:id", "sdatrefs", "methrefs",    "pubrefs",
    "access", "files",    "fileid", "varRef",   "var",         "varGrp",
    "nCube",  "nCubeGrp", "qstn",   "refs",     "elementRefs", "catgry"};

bool IsDeclaration(std::string_view attribute) {
  return attribute == "xmlns" || attribute.starts_with("xmlns:");
}

// Copies the documentation among the children of an element.
class DocumentationCopier : public XmlHandler {
 public:
  // prefix is that of the standard's elements in the copy, with its colon.
  DocumentationCopier(const Namespaces& namespaces, std::string prefix)
      : namespaces_(namespaces), prefix_(std::move(prefix)) {}

  void Start(const XmlStart& start) override {
    if (++depth_ == 1) return;
    if (depth_ == 2) {
      copying_ = std::find(kDocumentation.begin(), kDocumentation.end(), start.element) !=
                 kDocumentation.end();
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
      const bool refers = std::find(kIdsAndReferences.begin(), kIdsAndReferences.end(), name) !=
                          kIdsAndReferences.end();
      const bool unbound = !prefix.empty() && prefix != "xml";
      if (refers || (IsDeclaration(name) ? !foreign : unbound)) continue;
      Markup() += " " + std::string(name) + "=\"" + EscapeAttribute(attribute[1], '"') + "\"";
    }
  }

  const Namespaces& namespaces_;
  const std::string prefix_;
  std::vector<NewElement> elements_;
  std::vector<OpenElement> open_;
  std::size_t depth_ = 0;
  bool copying_ = false;
  bool startTagOpen_ = false;
};

}  // namespace

Text ReadDocumentation(const Document& document, Element var, Namespaces::Scope scope) {
  auto [namespaces, scopeOfVar] = document.Scopes().Only(scope);
  DocumentationCopier copier(namespaces, "");
  XmlParser parser(namespaces, copier, document.Encoding());
  parser.MoveTo(var.Begin(), scopeOfVar);
  parser.Parse(var.Markup());
  std::string documentation;
  for (const NewElement& element : copier.Take()) documentation += element.markup;
  return Text(documentation);
}

void AddDocumentation(const Text& documentation, const Layout& layout, NewElement& var) {
  if (documentation.Empty()) return;
  Namespaces namespaces(*layout.vocabulary);
  DocumentationCopier copier(namespaces, layout.prefix);
  XmlParser parser(namespaces, copier, Encoding::Utf8);
  parser.Parse("<var>" + documentation.String() + "</var>");
  for (NewElement& element : copier.Take()) var.children.push_back(std::move(element));
}

}  // namespace velahost
