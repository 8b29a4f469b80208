#include "standalone/Codebook/Ids.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include "standalone/Text/Tokens.h"
#include "standalone/Text/Utf8.h"
#include "standalone/Xml/Markup.h"
#include "standalone/Xml/Parser.h"

namespace velahost {
namespace {

// The attributes that hold IDs, and those that refer to IDs of variables and sets.
constexpr std::array<std::string_view, 6> kIdAttributes = {"ID",     "xml:id", "var",
                                                           "varGrp", "refs",   "parent"};
// The attributes whose tokens may be IDs of sets.
constexpr std::array<std::string_view, 3> kReferring = {"varGrp", "refs", "parent"};

// Shows every attribute of a document to a function.
class AttributeScan final : public XmlHandler {
 public:
  using Look =
      std::function<void(const XmlStart& start, std::string_view name, std::string_view value)>;
  explicit AttributeScan(Look look) : look_(std::move(look)) {}

  void Of(const Document& document) {
    Namespaces namespaces(document.Scopes().Words());
    XmlParser(namespaces, *this).ParseDocument(document.Text());
  }

  void Start(const XmlStart& start) override {
    for (const char* const* attribute = start.attributes; *attribute != nullptr; attribute += 2) {
      look_(start, attribute[0], attribute[1]);
    }
  }
  bool ReadsText(ElementName /*element*/) const override { return false; }
  void End(std::size_t /*begin*/, std::size_t /*end*/) override {}
  void Text(std::string_view /*text*/) override {}

 private:
  Look look_;
};

template <std::size_t n>
bool IsAmong(const std::array<std::string_view, n>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

constexpr bool IsAsciiLetter(int c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// The name as an ID. Which letters of other scripts an ID may have differs between versions of the
// standards, so it has none.
std::string IdFrom(std::string_view name) {
  std::string id;
  for (std::size_t i = 0; i < name.size();) {
    const Character character = CharacterAt(name, i);
    const int c = character.code;
    const bool mayBegin = IsAsciiLetter(c) || c == '_';
    const bool mayFollow = (c >= '0' && c <= '9') || c == '-' || c == '.';
    if (id.empty() && !mayBegin) id = "V";
    id += mayBegin || mayFollow ? static_cast<char>(c) : '_';
    i += character.length;
  }
  return id.empty() ? "V" : id;
}

}  // namespace

std::string DocumentIds::Make(std::string_view name) {
  if (!isCollected_) Collect();
  std::string base = IdFrom(name);
  if (ids_.insert(base).second) return base;
  int& number = lastNumbers_.try_emplace(base, 1).first->second;
  std::string id;
  do {
    id = base + "_" + std::to_string(++number);
  } while (!ids_.insert(id).second);
  return id;
}

void DocumentIds::Collect() {
  AttributeScan([this](const XmlStart& /*start*/, std::string_view name, std::string_view value) {
    if (!IsAmong(kIdAttributes, name)) return;
    for (std::string& id : SplitTokens(value)) ids_.insert(std::move(id));
  }).Of(document_);
  isCollected_ = true;
}

std::vector<Reference> FindReferences(const Document& document,
                                      const std::unordered_set<std::string>& ids) {
  std::vector<Reference> found;
  if (ids.empty()) return found;
  AttributeScan([&](const XmlStart& start, std::string_view name, std::string_view value) {
    if (!IsAmong(kReferring, name)) return;
    std::vector<std::string> tokens = SplitTokens(value);
    const auto gone =
        std::erase_if(tokens, [&ids](const std::string& id) { return ids.contains(id); });
    if (gone > 0) found.push_back({start.begin, start.end, std::string(name), JoinTokens(tokens)});
  }).Of(document);
  return found;
}

void WriteReference(const Document& document, const Reference& reference, Edits& edits) {
  const StartTag tag(document.Text().substr(reference.begin, reference.end - reference.begin));
  const auto attribute = tag.Find(reference.attribute);
  if (!attribute) return;  // it stands in the document type declaration
  if (reference.left.empty()) {
    edits.Replace(reference.begin + attribute->begin, reference.begin + attribute->valueEnd + 1,
                  "");
  } else {
    edits.Replace(reference.begin + attribute->valueBegin, reference.begin + attribute->valueEnd,
                  EscapeAttribute(reference.left, attribute->quote));
  }
}

}  // namespace velahost
