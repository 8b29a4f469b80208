#include "standalone/Codebook/Ids.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <utility>

#include "standalone/Codebook/Codebook.h"
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

// An element's ID and name.
struct Named {
  std::string id;
  std::string name;
};

// The last two elements of the kind that have an ID, the last one first.
std::vector<Named> LastNamed(const Codebook& codebook, IdKind kind) {
  constexpr std::size_t kEnough = 2;
  std::vector<Named> named;
  const auto add = [&named](const Text& id, std::string name) {
    if (!id.Empty()) named.push_back({id.String(), std::move(name)});
  };
  if (kind == IdKind::Set) {
    for (std::size_t i = codebook.groups.size(); i > 0 && named.size() < kEnough; --i) {
      const GroupReading& group = codebook.groups[i - 1].reading;
      add(group.id, group.set.name.String());
    }
    return named;
  }
  for (std::size_t i = codebook.variables.size(); i > 0 && named.size() < kEnough; --i) {
    const Codebook::Variable& variable = codebook.variables[i - 1];
    add(variable.id, Collapse(variable.element.Attribute("name")));
  }
  return named;
}

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// More digits do not fit into a number that can be counted on.
constexpr std::size_t kMostDigits = 18;

// Where a number stands in a text.
struct NumberPlace {
  std::size_t begin;
  std::size_t end;
};

// The number around a position where two texts differ.
NumberPlace NumberAround(std::string_view text, std::size_t position) {
  NumberPlace place{position, position};
  while (place.begin > 0 && IsDigit(text[place.begin - 1])) --place.begin;
  while (place.end < text.size() && IsDigit(text[place.end])) ++place.end;
  return place;
}

// The number in which an ID differs from the one before it, if in that alone; else the number at
// its end.
std::optional<NumberPlace> NumberIn(std::string_view id, std::string_view before) {
  const auto isUsable = [](const NumberPlace& place) {
    return place.begin < place.end && place.end - place.begin <= kMostDigits;
  };
  if (!before.empty()) {
    const auto differing = static_cast<std::size_t>(
        std::mismatch(id.begin(), id.end(), before.begin(), before.end()).first - id.begin());
    const NumberPlace here = NumberAround(id, differing);
    const NumberPlace there = NumberAround(before, differing);
    const bool differsInNumber = isUsable(here) && isUsable(there) && id != before &&
                                 id.substr(here.end) == before.substr(there.end);
    if (differsInNumber) return here;
  }
  const NumberPlace atEnd = NumberAround(id, id.size());
  return isUsable(atEnd) ? std::optional(atEnd) : std::nullopt;
}

// The number that an ID has between two texts; 0 if it is not of that form.
std::uint64_t NumberBetween(std::string_view id, std::string_view before, std::string_view after) {
  if (id.size() <= before.size() + after.size()) return 0;
  if (!id.starts_with(before) || !id.ends_with(after)) return 0;
  const std::string_view digits =
      id.substr(before.size(), id.size() - before.size() - after.size());
  if (digits.size() > kMostDigits || !std::all_of(digits.begin(), digits.end(), IsDigit)) return 0;
  std::uint64_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

}  // namespace

std::string DocumentIds::Make(IdKind kind, std::string_view name) {
  if (!isCollected_) Collect();
  std::optional<Habit>& habit = habits_[static_cast<std::size_t>(kind)];
  if (!habit) habit = HabitOf(kind);
  if (!*habit) return MakeFromName(name);
  Numbering& numbering = **habit;
  std::string id;
  do {
    std::string digits = std::to_string(++numbering.last);
    if (digits.size() < numbering.digits) digits.insert(0, numbering.digits - digits.size(), '0');
    id = numbering.before + digits + numbering.after;
  } while (!ids_.insert(id).second);
  return id;
}

DocumentIds::Habit DocumentIds::HabitOf(IdKind kind) const {
  const std::vector<Named> last = LastNamed(codebook_, kind);
  if (last.empty()) return Numbering{.before = kind == IdKind::Variable ? "V" : "VG", .after = ""};
  const auto& [id, name] = last.front();
  if (id == name || id == IdFrom(name)) return std::nullopt;
  const auto number = NumberIn(id, last.size() > 1 ? last[1].id : "");
  if (!number) return std::nullopt;
  Numbering numbering{.before = id.substr(0, number->begin),
                      .after = id.substr(number->end),
                      .digits = number->end - number->begin};
  for (const std::string& other : ids_) {
    numbering.last =
        std::max(numbering.last, NumberBetween(other, numbering.before, numbering.after));
  }
  return numbering;
}

std::string DocumentIds::MakeFromName(std::string_view name) {
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
  }).Of(codebook_.document);
  isCollected_ = true;
}

std::vector<Reference> FindReferences(const Document& document, const TextSet& ids) {
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
