#include "standalone/Codebook/DocumentIds.h"

#include <algorithm>
#include <array>

#include "standalone/Codebook/ReadVariable.h"
#include "standalone/Codebook/XmlParser.h"
#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

// The attributes that hold IDs, and those that refer to IDs of variables and sets.
constexpr std::array<std::string_view, 5> kIdAttributes = {"ID", "xml:id", "var", "varGrp", "refs"};

class IdCollector : public XmlHandler {
 public:
  explicit IdCollector(std::unordered_set<std::string>& ids) : ids_(ids) {}

  void Start(const XmlStart& start) override {
    for (const char* const* attribute = start.attributes; *attribute != nullptr; attribute += 2) {
      if (std::find(kIdAttributes.begin(), kIdAttributes.end(), *attribute) ==
          kIdAttributes.end()) {
        continue;
      }
      for (std::string& id : SplitTokens(attribute[1])) ids_.insert(std::move(id));
    }
  }
  bool ReadsText(Element /*element*/) const override { return false; }
  void End(std::size_t /*begin*/, std::size_t /*end*/) override {}
  void Text(std::string_view /*text*/) override {}

 private:
  std::unordered_set<std::string>& ids_;
};

// The name with what an ID cannot have replaced.
std::string IdFrom(std::string_view name) {
  std::string id;
  for (std::size_t i = 0; i < name.size();) {
    const Character character = CharacterAt(name, i);
    const bool digit = character.code >= '0' && character.code <= '9';
    const bool mark = character.code == '_' || character.code == '-' || character.code == '.';
    if (IsLetter(character.code) || character.code == '_') {
      id += name.substr(i, character.length);
    } else {
      if (id.empty()) id = "V";
      id += digit || mark ? static_cast<char>(character.code) : '_';
    }
    i += character.length;
  }
  return id.empty() ? "V" : id;
}

}  // namespace

std::string DocumentIds::Make(std::string_view name) {
  if (!collected_) Collect();
  const std::string base = IdFrom(name);
  std::string id = base;
  for (int number = 2; !ids_.insert(id).second; ++number) id = base + "_" + std::to_string(number);
  return id;
}

void DocumentIds::Collect() {
  IdCollector collector(ids_);
  Namespaces namespaces;
  XmlParser(namespaces, collector).ParseDocument(codebook_.text);
  collected_ = true;
}

}  // namespace velahost
