#include "standalone/Codebook/Missing.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <string_view>
#include <utility>

#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Codebook/Elements.h"
#include "standalone/Text/Numbers.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

// A value of a variable of the type that an item gives; nothing where it gives none.
std::optional<ValueLabel> ValueOf(Element item, int type, TextArena& texts) {
  const MarkupText value = item.Attribute("VALUE");
  if (!value.IsThere()) return std::nullopt;
  if (type > 0) return ValueLabel{0, texts.AddCollapsed(value), {}};
  const auto number = ReadNumber(Trim(value));
  if (!number) return std::nullopt;
  return ValueLabel{*number, {}, {}};
}

// The range of an element; nothing if it has a bound that no variable can have.
std::optional<std::pair<double, double>> RangeOf(Element range) {
  constexpr double kOpen = std::numeric_limits<double>::infinity();
  const bool isExclusive =
      range.Attribute("minExclusive").IsThere() || range.Attribute("maxExclusive").IsThere();
  const MarkupText low = range.Attribute("min");
  const MarkupText high = range.Attribute("max");
  const auto lowNumber = low.IsThere() ? ReadNumber(Trim(low)) : -kOpen;
  const auto highNumber = high.IsThere() ? ReadNumber(Trim(high)) : kOpen;
  if (isExclusive || !lowNumber || !highNumber) return std::nullopt;
  return std::pair(*lowNumber, *highNumber);
}

// The missing values while they are read.
class MissingReader {
 public:
  explicit MissingReader(int type) : type_(type), seen_(type) {}

  void AddValue(const ValueLabel& value) {
    const bool isTooLong = type_ > 0 && value.string.Size() > static_cast<std::size_t>(type_);
    if (isTooLong) return Fail();
    if (seen_.FindValueOf(value) == nullptr) seen_.Add({value.number, value.string, {}});
  }
  void AddRange(Element element) {
    const auto range = RangeOf(element);
    if (!range || range_ || type_ > 0) return Fail();
    range_ = range;
  }
  void Fail() { hasFailed_ = true; }

  std::optional<MissingValues> Take() const {
    if (hasFailed_) return std::nullopt;
    return MissingOf(range_, seen_);
  }

 private:
  int type_;
  bool hasFailed_ = false;
  std::optional<std::pair<double, double>> range_;
  ValueLabels seen_;  // the single values
};

void ReadInvalidRange(Element invalrng, int type, MissingReader& reader, TextArena& texts) {
  for (const Element child : invalrng.All()) {
    if (child.Name() == element::range) {
      reader.AddRange(child);
    } else if (child.Name() == element::item) {
      if (const auto value = ValueOf(child, type, texts)) reader.AddValue(*value);
    }
  }
}

void ReadFlagged(const std::vector<CategoryReading>& categories, int type, MissingReader& reader) {
  for (const CategoryReading& category : categories) {
    if (!category.isFlagged || !category.hasValue) continue;
    if (category.fits) {
      reader.AddValue(category.Value());
    } else if (type > 0) {
      reader.Fail();
    }
  }
}

NewElement NewItem(std::string value) {
  return {.element = element::item, .attributes = {{"VALUE", std::move(value)}}};
}

NewElement NewRange(const std::pair<double, double>& bounds) {
  NewElement range{.element = element::range};
  const auto [low, high] = bounds;
  if (std::isfinite(low)) range.attributes.emplace_back("min", WriteNumber(low));
  if (std::isfinite(high)) range.attributes.emplace_back("max", WriteNumber(high));
  return range;
}

// The range and the items of the missing values, except those that are in `written`.
std::vector<NewElement> NewMissing(const MissingValues& missing, int type, bool isRangeWritten,
                                   const ValueLabels& written) {
  std::vector<NewElement> added;
  if (missing.range && !isRangeWritten) added.push_back(NewRange(*missing.range));
  for (const ValueLabel& value : SinglesOf(missing, type)) {
    if (written.FindValueOf(value) == nullptr)
      added.push_back(NewItem(ValueText(value, type == 0)));
  }
  return added;
}

// Edits the invalrng elements of one var.
class MissingWriter {
 public:
  MissingWriter(Element var, const Variable& now, Editor& editor)
      : var_(var),
        now_(now),
        editor_(editor),
        wanted_(SinglesOf(now.missing, now.type)),
        written_(now.type) {}

  void Write() {
    for (const Element invalrng : var_.All(element::invalrng)) WriteRangesAndItems(invalrng);
    const std::vector<NewElement> added =
        NewMissing(now_.missing, now_.type, isRangeWritten_, written_);
    Element first = var_.Child(element::invalrng);
    for (const Element invalrng : var_.All(element::invalrng)) {
      if (invalrng == first && !added.empty()) continue;
      if (emptied_.contains(invalrng.Begin())) editor_.Remove(invalrng);
    }
    if (added.empty()) return;
    if (!first) {
      editor_.Insert(var_, {.element = element::invalrng, .children = added});
      return;
    }
    for (const NewElement& child : added) editor_.Insert(first, child);
  }

 private:
  // Takes out what is no longer missing, or stands there twice.
  void WriteRangesAndItems(Element invalrng) {
    bool staysAny = false;
    bool goesAny = false;
    TextArena texts;
    for (const Element child : invalrng.All()) {
      const bool stays = Stays(child, texts);
      staysAny |= stays;
      goesAny |= !stays;
      if (!stays) editor_.Remove(child);
    }
    if (goesAny && !staysAny) emptied_.insert(invalrng.Begin());
  }

  bool Stays(Element child, TextArena& texts) {
    if (child.Name() == element::range) {
      const auto range = RangeOf(child);
      if (!range || range != now_.missing.range || isRangeWritten_) return false;
      isRangeWritten_ = true;
      return true;
    }
    if (child.Name() != element::item) return true;
    const auto value = ValueOf(child, now_.type, texts);
    if (!value) return true;
    if (wanted_.FindValueOf(*value) == nullptr || written_.FindValueOf(*value) != nullptr) {
      return false;
    }
    written_.Add(*value);
    return true;
  }

  const Element var_;
  const Variable& now_;
  Editor& editor_;
  const ValueLabels wanted_;
  ValueLabels written_;  // the items that stay
  bool isRangeWritten_ = false;
  std::set<std::size_t> emptied_;  // the invalrng elements in which nothing stays, by their begin
};

}  // namespace

std::optional<MissingValues> ReadMissing(Element var, int type,
                                         const std::vector<CategoryReading>& categories,
                                         TextArena& texts) {
  MissingReader reader(type);
  const auto all = var.All(element::invalrng);
  if (all.begin() == all.end()) ReadFlagged(categories, type, reader);
  for (const Element invalrng : all) ReadInvalidRange(invalrng, type, reader, texts);
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
  MissingWriter(var, now, editor).Write();
}

MissingValues InDocumentOrder(const Variable& read, const MissingValues& missing) {
  if (read.missing.Empty()) return missing;
  ValueLabels taken(read.type);
  const ValueLabels wanted = SinglesOf(missing, read.type);
  const auto take = [&](const ValueLabel& value) {
    if (wanted.FindValueOf(value) != nullptr && taken.FindValueOf(value) == nullptr) {
      taken.Add(value);
    }
  };
  for (const ValueLabel& value : SinglesOf(read.missing, read.type)) take(value);
  for (const ValueLabel& value : wanted) take(value);
  return MissingOf(missing.range, taken);
}

void AddMissing(const Variable& variable, NewElement& var) {
  if (variable.missing.Empty()) return;
  var.children.push_back(
      {.element = element::invalrng,
       .children = NewMissing(variable.missing, variable.type, false, ValueLabels(variable.type))});
}

}  // namespace velahost
