#include "standalone/Codebook/SetReferences.h"

#include <array>
#include <string_view>

#include "standalone/Codebook/ElementEditor.h"
#include "standalone/Codebook/ReadVariable.h"
#include "standalone/Codebook/XmlParser.h"

namespace velahost {

namespace {

// The attributes whose tokens may be IDs of sets.
constexpr std::array<std::string_view, 3> kReferring = {"varGrp", "refs", "parent"};

class ReferenceFinder : public XmlHandler {
 public:
  explicit ReferenceFinder(const std::unordered_set<std::string>& ids) : ids_(ids) {}

  void Start(const XmlStart& start) override {
    for (const char* const* attribute = start.attributes; *attribute != nullptr; attribute += 2) {
      for (const std::string_view referring : kReferring) {
        if (referring == attribute[0]) Check(start, attribute[0], attribute[1]);
      }
    }
  }
  bool ReadsText(Element /*element*/) const override { return false; }
  void End(std::size_t /*begin*/, std::size_t /*end*/) override {}
  void Text(std::string_view /*text*/) override {}

  std::vector<SetReference> found;

 private:
  void Check(const XmlStart& start, const char* attribute, const char* value) {
    std::vector<std::string> tokens = SplitTokens(value);
    const auto gone =
        std::erase_if(tokens, [this](const std::string& id) { return ids_.contains(id); });
    if (gone > 0) found.push_back({start.begin, start.end, attribute, JoinTokens(tokens)});
  }

  const std::unordered_set<std::string>& ids_;
};

}  // namespace

std::vector<SetReference> FindSetReferences(const Codebook& codebook,
                                            const std::unordered_set<std::string>& ids) {
  if (ids.empty()) return {};
  ReferenceFinder finder(ids);
  Namespaces namespaces;
  XmlParser(namespaces, finder).ParseDocument(codebook.text);
  return std::move(finder.found);
}

void WriteSetReference(const Codebook& codebook, const SetReference& reference, Edits& edits) {
  const StartTag tag(
      std::string_view(codebook.text).substr(reference.begin, reference.end - reference.begin));
  const StartTag::Attribute* const attribute = tag.Find(reference.attribute);
  if (attribute == nullptr) return;  // it stands in the document type declaration
  if (reference.left.empty()) {
    edits.Replace(reference.begin + attribute->begin, reference.begin + attribute->valueEnd + 1,
                  "");
  } else {
    edits.Replace(reference.begin + attribute->valueBegin, reference.begin + attribute->valueEnd,
                  EscapeAttribute(reference.left, attribute->quote));
  }
}

}  // namespace velahost
