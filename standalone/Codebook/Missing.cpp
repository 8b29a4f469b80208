#include "standalone/Codebook/Missing.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

#include "standalone/Codebook/Elements.h"
#include "standalone/Text/Numbers.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

constexpr std::size_t kMostSingles = 3;
constexpr std::size_t kMostBesideRange = 1;

// The missing values while they are read: at most what a variable can hold, or a failure.
class MissingReader {
 public:
  MissingReader(int type, TextArena& texts) : type_(type), texts_(texts) {}

  void AddText(std::string_view text) {
    if (type_ > 0) {
      if (text.size() > static_cast<std::size_t>(type_)) return Fail();
      return AddString(texts_.Add(text));
    }
    const auto number = ReadNumber(text);
    return number ? AddNumber(*number) : Fail();
  }
  void AddNumber(double number) { values_.numbers.push_back(number); }
  void AddString(Text string) { values_.strings.push_back(std::move(string)); }
  void AddRange(const MarkupText& low, const MarkupText& high) {
    constexpr double kOpen = std::numeric_limits<double>::infinity();
    const auto lowNumber = low.IsThere() ? ReadNumber(Trim(low)) : -kOpen;
    const auto highNumber = high.IsThere() ? ReadNumber(Trim(high)) : kOpen;
    if (type_ > 0 || values_.range || !lowNumber || !highNumber) return Fail();
    values_.range = {*lowNumber, *highNumber};
  }
  void Fail() { hasFailed_ = true; }

  std::optional<MissingValues> Take() {
    const std::size_t singles = values_.numbers.size() + values_.strings.size();
    if (hasFailed_ || singles > (values_.range ? kMostBesideRange : kMostSingles)) {
      return std::nullopt;
    }
    return std::move(values_);
  }

 private:
  int type_;
  TextArena& texts_;
  bool hasFailed_ = false;
  MissingValues values_;
};

void ReadInvalidRange(Element invalrng, MissingReader& reader) {
  for (const Element child : invalrng.All()) {
    if (child.Name() == element::item) {
      const MarkupText value = child.Attribute("VALUE");
      value.IsThere() ? reader.AddText(Collapse(value)) : reader.Fail();
    } else if (child.Name() == element::range) {
      if (child.Attribute("minExclusive").IsThere() || child.Attribute("maxExclusive").IsThere()) {
        reader.Fail();
      }
      reader.AddRange(child.Attribute("min"), child.Attribute("max"));
    }
  }
}

void ReadFlagged(const std::vector<CategoryReading>& categories, int type, MissingReader& reader) {
  std::vector<ValueLabel> seen;
  for (const CategoryReading& category : categories) {
    if (!category.isFlagged || !category.hasValue) continue;
    if (!category.fits) return reader.Fail();
    const ValueLabel value = category.Value();
    const bool isRepeated = std::any_of(
        seen.begin(), seen.end(), [&](const ValueLabel& other) { return other.HasValueOf(value); });
    if (isRepeated) continue;
    if (seen.size() == kMostSingles) return reader.Fail();
    seen.push_back(value);
    type > 0 ? reader.AddString(category.string) : reader.AddNumber(category.number);
  }
}

NewElement NewItem(std::string value) {
  return {.element = element::item, .attributes = {{"VALUE", std::move(value)}}};
}

NewElement NewInvalidRange(const MissingValues& missing) {
  NewElement invalrng{.element = element::invalrng};
  if (missing.range) {
    NewElement range{.element = element::range};
    const auto [low, high] = *missing.range;
    if (std::isfinite(low)) range.attributes.emplace_back("min", WriteNumber(low));
    if (std::isfinite(high)) range.attributes.emplace_back("max", WriteNumber(high));
    invalrng.children.push_back(std::move(range));
  }
  for (const double number : missing.numbers) {
    invalrng.children.push_back(NewItem(WriteNumber(number)));
  }
  for (const Text& string : missing.strings) {
    invalrng.children.push_back(NewItem(string.String()));
  }
  return invalrng;
}

}  // namespace

std::optional<MissingValues> ReadMissing(Element var, int type,
                                         const std::vector<CategoryReading>& categories,
                                         TextArena& texts) {
  MissingReader reader(type, texts);
  if (!var.Child(element::invalrng)) ReadFlagged(categories, type, reader);
  for (const Element invalrng : var.All(element::invalrng)) ReadInvalidRange(invalrng, reader);
  return reader.Take();
}

std::size_t LongestMissing(Element var) {
  std::size_t longest = 0;
  for (const Element invalrng : var.All(element::invalrng)) {
    for (const Element item : invalrng.All(element::item)) {
      longest = std::max(longest, Collapse(item.Attribute("VALUE")).size());
    }
  }
  return longest;
}

void WriteMissing(Element var, const Variable& now, Editor& editor) {
  const Element first = var.Child(element::invalrng);
  for (const Element invalrng : var.All(element::invalrng)) {
    if (invalrng != first) editor.Remove(invalrng);
  }
  if (now.missing.Empty()) {
    if (first) editor.Remove(first);
  } else if (first) {
    editor.Replace(first, NewInvalidRange(now.missing));
  } else {
    editor.Insert(var, NewInvalidRange(now.missing));
  }
}

void AddMissing(const Variable& variable, NewElement& var) {
  if (!variable.missing.Empty()) var.children.push_back(NewInvalidRange(variable.missing));
}

}  // namespace velahost
