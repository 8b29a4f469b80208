#include "standalone/Codebook/Categories.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <numeric>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Codebook/Elements.h"
#include "standalone/Codebook/Notes.h"
#include "standalone/Text/Numbers.h"
#include "standalone/Text/Tokens.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

// The categories that the variable can have, as it keeps them.
std::vector<Category> FittingCategories(const std::vector<CategoryReading>& readings,
                                        TextArena& texts) {
  std::vector<Category> categories;
  for (const CategoryReading& category : readings) {
    if (!category.fits) continue;
    std::optional<Text> label;
    if (category.label) label = texts.AddCollapsed(category.label.Text());
    categories.push_back({category.number, category.string, std::move(label)});
  }
  return categories;
}

bool IsMissing(const MissingValues& missing, const ValueLabel& value, bool isNumeric) {
  return isNumeric ? missing.Contains(value.number) : missing.Contains(value.string.View());
}

NewElement NewCategory(const ValueLabel& pair, bool isNumeric, bool isMissing) {
  NewElement category{.element = element::catgry};
  if (isMissing) category.attributes.emplace_back("missing", "Y");
  category.children.reserve(2);
  category.children.push_back({.element = element::catValu, .text = ValueText(pair, isNumeric)});
  category.children.push_back({.element = element::labl, .text = pair.label.String()});
  return category;
}

// Edits the categories of one var.
class CategoryWriter {
 public:
  CategoryWriter(Element var, const Variable& read, const Variable& now, PropertySet changed,
                 Editor& editor)
      : var_(var),
        read_(read),
        now_(now),
        writesMissing_(changed.Has(Property::Missing)),
        editor_(editor) {}

  // Every category of the document in turn, the first of each value with its label; then the values
  // that the document does not have yet.
  std::size_t Write() {
    TextArena texts;
    const std::vector<CategoryReading> categories = ReadCategories(var_, now_.type, texts);
    ValueLabels seen(now_.type);
    seen.Reserve(categories.size());
    for (const CategoryReading& category : categories) {
      if (!category.fits) {
        CountLength(category);
        continue;
      }
      const ValueLabel value = category.Value();
      const bool isFirst = seen.FindValueOf(value) == nullptr;
      if (isFirst) seen.Add(value);
      WriteCategory(category, isFirst);
    }
    WriteReferences();
    if (now_.valueLabels) AddMissing(*now_.valueLabels, seen);
    return longest_;
  }

 private:
  void AddMissing(const ValueLabels& labels, const ValueLabels& seen) {
    const bool isNumeric = now_.IsNumeric();
    for (const ValueLabel& pair : labels) {
      if (seen.FindValueOf(pair) != nullptr) continue;
      longest_ = std::max(longest_, ValueText(pair, isNumeric).size());
      const bool isMissing = writesMissing_ && IsMissing(now_.missing, pair, isNumeric);
      editor_.Insert(var_, NewCategory(pair, isNumeric, isMissing));
    }
  }

  void WriteCategory(const CategoryReading& category, bool isFirst) {
    const ValueLabel value = category.Value();
    const bool isMissing =
        writesMissing_ ? IsMissing(now_.missing, value, now_.IsNumeric()) : category.isFlagged;
    const ValueLabel* const label = LabelIn(now_, value);
    const bool loses = label == nullptr && category.label;
    if (loses && !isMissing && HasNothingElse(category)) {
      editor_.Remove(category.element);
      const MarkupText id = category.element.Attribute("ID");
      if (id.IsThere()) goneIds_.emplace(Trim(id));
      return;
    }
    CountLength(category);
    if (isMissing != category.isFlagged) {
      isMissing ? editor_.SetAttribute(category.element, "missing", "Y")
                : editor_.RemoveAttribute(category.element, "missing");
    }
    if (loses) {
      for (const Element labl : category.element.All(element::labl)) editor_.Remove(labl);
    } else if (label != nullptr && isFirst) {
      const ValueLabel* const asRead = LabelIn(read_, value);
      if (asRead == nullptr || asRead->label != label->label) WriteLabel(category, label->label);
    }
  }

  void WriteLabel(const CategoryReading& category, const Text& label) {
    if (!category.label) {
      editor_.Insert(category.element, {.element = element::labl, .text = label.String()});
    } else if (LineOf(category.label) != label.View()) {
      editor_.SetText(category.label, label);
    }
  }

  static const ValueLabel* LabelIn(const Variable& variable, const ValueLabel& value) {
    return variable.valueLabels ? variable.valueLabels->FindValueOf(value) : nullptr;
  }

  void CountLength(const CategoryReading& category) {
    if (now_.IsNumeric()) return;
    longest_ = std::max(longest_, LineOf(category.element.Child(element::catValu)).size());
  }

  // Takes the categories that go out of the groups of categories.
  void WriteReferences() {
    if (goneIds_.empty()) return;
    for (const Element group : var_.All(element::catgryGrp)) {
      std::vector<std::string> ids = SplitTokens(group.Attribute("catgry"));
      const auto gone =
          std::erase_if(ids, [this](const std::string& id) { return goneIds_.contains(id); });
      if (gone == 0) continue;
      ids.empty() ? editor_.RemoveAttribute(group, "catgry")
                  : editor_.SetAttribute(group, "catgry", JoinTokens(ids));
    }
  }

  // Whether a category has nothing but its value, labels, an ID and a missing flag.
  static bool HasNothingElse(const CategoryReading& category) {
    for (const Element child : category.element.All()) {
      if (child.Name() != element::labl && child.Name() != element::catValu) return false;
    }
    const StartTag tag(category.element.Tag());
    for (auto attribute = tag.First(); attribute; attribute = tag.After(*attribute)) {
      const bool isFlag = attribute->name == "missing" && category.isFlagged;
      if (attribute->name != "ID" && !isFlag) return false;
    }
    return true;
  }

  const Element var_;
  const Variable& read_;
  const Variable& now_;
  const bool writesMissing_;
  Editor& editor_;
  std::size_t longest_ = 0;                  // of the categories' values as they will be
  std::unordered_set<std::string> goneIds_;  // of categories that go
};

// The place of a pair whose value has no category.
constexpr std::size_t kAfterAll = std::numeric_limits<std::size_t>::max();

// The places of values among categories that may lack a label or repeat a value.
class CategoryPlaces {
 public:
  CategoryPlaces(const std::vector<Category>& categories, bool isNumeric)
      : categories_(categories), isNumeric_(isNumeric), byValue_(categories.size()) {
    std::iota(byValue_.begin(), byValue_.end(), 0);
    std::stable_sort(byValue_.begin(), byValue_.end(), [this](std::size_t a, std::size_t b) {
      return Compare(categories_[a], categories_[b].number, categories_[b].string) < 0;
    });
  }

  // The first category of the value with a label carries the value's label. As long as it is to
  // carry the same one nothing is written; another label goes to the first category of the value.
  std::size_t Of(const ValueLabel& pair) const {
    const auto isValue = [&](std::size_t place) {
      return Compare(categories_[place], pair.number, pair.string) == 0;
    };
    const auto first =
        std::partition_point(byValue_.begin(), byValue_.end(), [&](std::size_t place) {
          return Compare(categories_[place], pair.number, pair.string) < 0;
        });
    if (first == byValue_.end() || !isValue(*first)) return kAfterAll;
    for (auto i = first; i != byValue_.end() && isValue(*i); ++i) {
      const std::optional<Text>& label = categories_[*i].label;
      if (label) return *label == pair.label ? *i : *first;
    }
    return *first;
  }

 private:
  int Compare(const Category& category, double number, std::string_view string) const {
    if (!isNumeric_) return category.string.View().compare(string);
    return category.number < number ? -1 : static_cast<int>(category.number > number);
  }

  const std::vector<Category>& categories_;
  bool isNumeric_;
  std::vector<std::size_t> byValue_;  // places of the categories, sorted by value, then by place
};

// The set with its pairs in the order of their places. Pairs without a category keep their order.
SharedValueLabels Ordered(const SharedValueLabels& set,
                          const std::function<std::size_t(const ValueLabel& pair)>& placeOf) {
  std::vector<std::pair<std::size_t, const ValueLabel*>> sorted;
  sorted.reserve(set->Size());
  for (const ValueLabel& pair : *set) sorted.emplace_back(placeOf(pair), &pair);
  const auto isBefore = [](const auto& a, const auto& b) { return a.first < b.first; };
  if (std::is_sorted(sorted.begin(), sorted.end(), isBefore)) return set;

  std::stable_sort(sorted.begin(), sorted.end(), isBefore);
  auto ordered = std::make_shared<ValueLabels>(set->Type());
  ordered->Reserve(set->Size());
  for (const auto& [place, pair] : sorted) ordered->Add(*pair);
  return ordered;
}

}  // namespace

std::vector<CategoryReading> ReadCategories(Element var, int type, TextArena& texts) {
  const auto all = var.All(element::catgry);
  std::vector<CategoryReading> categories;
  categories.reserve(static_cast<std::size_t>(std::distance(all.begin(), all.end())));
  for (const Element catgry : all) {
    CategoryReading& category = categories.emplace_back();
    category.element = catgry;
    category.label = catgry.Child(element::labl);
    category.isFlagged = catgry.Attribute("missing").View() == "Y";
    const Element catValu = catgry.Child(element::catValu);
    if (!catValu) continue;
    category.hasValue = true;
    const MarkupText text = catValu.Text();
    if (type == 0) {
      const auto number = ReadNumber(Trim(text));
      category.fits = number.has_value();
      category.number = number.value_or(0);
      continue;
    }
    const Text string = texts.AddCollapsed(text);
    category.fits = string.Size() <= static_cast<std::size_t>(type);
    if (category.fits) category.string = string;
  }
  return categories;
}

std::size_t LongestCategory(Element var) {
  std::size_t longest = 0;
  for (const Element catgry : var.All(element::catgry)) {
    longest = std::max(longest, LineOf(catgry.Child(element::catValu)).size());
  }
  return longest;
}

bool TakeValueLabels(const std::vector<CategoryReading>& categories, Variable& variable,
                     TextArena& texts) {
  if (categories.empty()) return false;
  bool passesOver = false;
  std::size_t fitting = 0;
  auto set = std::make_shared<ValueLabels>(variable.type);
  set->Reserve(categories.size());
  for (const CategoryReading& category : categories) {
    if (!category.fits) {
      passesOver |= variable.type > 0 && category.hasValue && category.label;
      continue;
    }
    ++fitting;
    if (!category.label) continue;
    ValueLabel pair = category.Value();
    if (set->FindValueOf(pair) != nullptr) continue;
    pair.label = texts.AddCollapsed(category.label.Text());
    set->Add(std::move(pair));
  }
  if (fitting > set->Size()) {
    variable.categories =
        std::make_shared<const std::vector<Category>>(FittingCategories(categories, texts));
  }
  if (!set->Empty()) variable.valueLabels = std::move(set);
  return passesOver;
}

std::size_t WriteCategories(Element var, const Variable& read, const Variable& now,
                            PropertySet changed, Editor& editor) {
  return CategoryWriter(var, read, now, changed, editor).Write();
}

void AddCategories(const Variable& variable, NewElement& var) {
  if (!variable.valueLabels) return;
  const bool isNumeric = variable.IsNumeric();
  for (const ValueLabel& pair : *variable.valueLabels) {
    var.children.push_back(
        NewCategory(pair, isNumeric, IsMissing(variable.missing, pair, isNumeric)));
  }
}

std::string ValueText(const ValueLabel& value, bool isNumeric) {
  return isNumeric ? WriteNumber(value.number) : value.string.String();
}

SharedValueLabels InDocumentOrder(const Variable& read, const SharedValueLabels& set) {
  if (read.categories) {
    const CategoryPlaces places(*read.categories, read.IsNumeric());
    return Ordered(set, [&](const ValueLabel& pair) { return places.Of(pair); });
  }
  // Without more categories than labels, the labels that were read are the categories.
  if (!read.valueLabels) return set;
  const ValueLabels& labels = *read.valueLabels;
  return Ordered(set, [&](const ValueLabel& pair) {
    const ValueLabel* const found = labels.FindValueOf(pair);
    return found == nullptr ? kAfterAll : labels.PlaceOf(found);
  });
}

}  // namespace velahost
