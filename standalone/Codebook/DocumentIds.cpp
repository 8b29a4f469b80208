#include "standalone/Codebook/DocumentIds.h"

#include <algorithm>
#include <array>

#include "standalone/Codebook/ReadVariable.h"
#include "standalone/Codebook/XmlParser.h"
#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

// The attributes that hold IDs, and those that refer to IDs of variables and sets.
constexpr std::array<std::string_view, 6> kIdAttributes = {"ID",     "xml:id", "var",
                                                           "varGrp", "refs",   "parent"};

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

constexpr bool IsAsciiLetter(int c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// The name as an ID. Which letters of other scripts an ID may have differs between versions of the
// standards, so it has none.
std::string IdFrom(std::string_view name) {
  std::string id;
  for (std::size_t i = 0; i < name.size();) {
    const Character character = CharacterAt(name, i);
    const int c = character.code;
    const bool starts = IsAsciiLetter(c) || c == '_';
    const bool follows = (c >= '0' && c <= '9') || c == '-' || c == '.';
    if (id.empty() && !starts) id = "V";
    id += starts || follows ? static_cast<char>(c) : '_';
    i += character.length;
  }
  return id.empty() ? "V" : id;
}

}  // namespace

std::string DocumentIds::Make(std::string_view name) {
  if (!collected_) Collect();
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
  IdCollector collector(ids_);
  Namespaces namespaces;
  XmlParser(namespaces, collector).ParseDocument(codebook_.text);
  collected_ = true;
}

}  // namespace velahost
