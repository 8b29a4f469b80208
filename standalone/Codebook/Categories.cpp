#include "standalone/Codebook/Categories.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <numeric>
#include <string_view>
#include <utility>

#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Codebook/Elements.h"
#include "standalone/Codebook/Notes.h"
#include "standalone/Text/Hash.h"
#include "standalone/Text/Numbers.h"
#include "standalone/Text/Tokens.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

constexpr std::string_view kCategoryLevel = "category";

// Whether a text is how a number is written: digits alone are so often enough to be looked for
// first.
bool IsShortest(std::string_view text, double number) {
  constexpr std::size_t kFewDigits = 15;
  const bool isPlain =
      text.size() <= kFewDigits && text.front() != '0' &&
      std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  return isPlain || text == WriteNumber(number);
}

// Finds out whether a value is one of a variable's missing values.
class MissingIndex {
 public:
  MissingIndex(const MissingValues& missing, int type) : missing_(missing), singles_(type) {
    constexpr std::size_t kFew = 16;  // are searched one by one
    isIndexed_ = missing.numbers.size() + missing.strings.size() > kFew;
    if (isIndexed_) singles_ = SinglesOf(missing, type);
  }

  bool Has(const ValueLabel& value) const {
    if (!isIndexed_) {
      return singles_.IsNumeric() ? missing_.Contains(value.number)
                                  : missing_.Contains(value.string.View());
    }
    if (singles_.FindValueOf(value) != nullptr) return true;
    return missing_.IsInRange(value.number);
  }

 private:
  const MissingValues& missing_;
  ValueLabels singles_;
  bool isIndexed_ = false;
};

NewElement NewCategory(const ValueLabel& pair, bool isNumeric, bool isMissing,
                       const Languages& languages) {
  NewElement category{.element = element::catgry};
  if (isMissing) category.attributes.emplace_back("missing", "Y");
  category.children.reserve(2);
  category.children.push_back({.element = element::catValu, .text = ValueText(pair, isNumeric)});
  AddLabels(category, kCategoryLevel, pair.label, pair.languages, languages);
  return category;
}

// Edits the categories of one var.
class CategoryWriter {
 public:
  CategoryWriter(Element var, const Variable& now, PropertySet changed, const Languages& languages,
                 Editor& editor)
      : var_(var),
        now_(now),
        writesLabels_(changed.Has(Property::ValueLabels)),
        writesMissing_(changed.Has(Property::Missing)),
        languages_(languages),
        editor_(editor),
        missing_(now.missing, now.type),
        seen_(now.type) {}

  // Every category of the document in turn; then the values that the document does not have yet.
  void Write() {
    TextArena texts;
    categories_ = ReadCategories(var_, now_.type, languages_, texts);
    FindCarriers();
    auto carrier = carriers_.begin();
    for (std::size_t i = 0; i < categories_.size(); ++i) {
      const bool isCarrier = carrier != carriers_.end() && *carrier == i;
      if (isCarrier) ++carrier;
      if (categories_[i].fits) WriteCategory(categories_[i], isCarrier);
    }
    WriteReferences();
    if (writesLabels_ && now_.valueLabels) AddMissing(*now_.valueLabels);
  }

 private:
  // The label of a value stands in the first of its categories that has one, else goes to the
  // first.
  void FindCarriers() {
    seen_.Reserve(categories_.size());
    for (std::size_t i = 0; i < categories_.size(); ++i) {
      const CategoryReading& category = categories_[i];
      if (!category.fits) continue;
      const ValueLabel value = category.Value();
      if (const ValueLabel* const known = seen_.FindValueOf(value)) {
        std::size_t& carrier = carriers_[seen_.PlaceOf(known)];
        if (!categories_[carrier].label && category.label) carrier = i;
        continue;
      }
      seen_.Add(value);
      carriers_.push_back(i);
    }
    std::sort(carriers_.begin(), carriers_.end());
  }

  void AddMissing(const ValueLabels& labels) {
    for (const ValueLabel& pair : labels) {
      if (seen_.FindValueOf(pair) != nullptr) continue;
      editor_.Insert(var_, NewCategory(pair, now_.IsNumeric(), missing_.Has(pair), languages_));
    }
  }

  void WriteCategory(const CategoryReading& category, bool isCarrier) {
    const ValueLabel value = category.Value();
    const bool isMissing = writesMissing_ ? missing_.Has(value) : category.isFlagged;
    const ValueLabel* const label =
        now_.valueLabels ? now_.valueLabels->FindValueOf(value) : nullptr;
    const bool loses = writesLabels_ && label == nullptr && category.label;
    if (loses && !isMissing && HasNothingElse(category)) {
      editor_.Remove(category.element);
      const MarkupText id = category.element.Attribute("ID");
      if (id.IsThere()) goneIds_.emplace(Trim(id));
      return;
    }
    if (isMissing != category.isFlagged) {
      isMissing ? editor_.SetAttribute(category.element, "missing", "Y")
                : editor_.RemoveAttribute(category.element, "missing");
    }
    if (loses) {
      RemoveLabels(category.element, languages_, editor_);
    } else if (writesLabels_ && label != nullptr && isCarrier) {
      WriteLabel(category.element, kCategoryLevel, label->label, label->languages, languages_,
                 editor_);
    }
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

  // Whether a category has nothing but its value, labels that go, an ID and a missing flag.
  bool HasNothingElse(const CategoryReading& category) const {
    const std::string_view content = category.element.Content();
    const std::size_t begin = category.element.ContentBegin();
    std::size_t at = begin;
    const auto isEmptyUpTo = [&](std::size_t end) {
      const std::string_view between = content.substr(at - begin, end - at);
      return std::all_of(between.begin(), between.end(), IsSpace);
    };
    for (const Element child : category.element.All()) {
      const bool goes = child.Name() == element::labl && MayBeLabel(child, languages_);
      const bool isValue =
          child.Name() == element::catValu && child.Content().find('<') == std::string_view::npos;
      if ((!goes && !isValue) || !isEmptyUpTo(child.Begin())) return false;
      at = child.End();
    }
    if (!isEmptyUpTo(category.element.ContentEnd())) return false;
    const StartTag tag(category.element.Tag());
    for (auto attribute = tag.First(); attribute; attribute = tag.After(*attribute)) {
      const bool isFlag = attribute->name == "missing" && category.isFlagged;
      if (attribute->name != "ID" && !isFlag) return false;
    }
    return true;
  }

  const Element var_;
  const Variable& now_;
  const bool writesLabels_;
  const bool writesMissing_;
  const Languages& languages_;
  Editor& editor_;
  const MissingIndex missing_;
  std::vector<CategoryReading> categories_;
  ValueLabels seen_;                   // the values that the categories have
  std::vector<std::size_t> carriers_;  // the category of each value that carries its label
  TextSet goneIds_;                    // of categories that go
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

  // The first category of the value that has a label carries the value's label, else the first.
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
      if (categories_[*i].hasLabel) return *i;
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

std::vector<CategoryReading> ReadCategories(Element var, int type, const Languages& languages,
                                            TextArena& texts) {
  const auto all = var.All(element::catgry);
  std::vector<CategoryReading> categories;
  categories.reserve(static_cast<std::size_t>(std::distance(all.begin(), all.end())));
  for (const Element catgry : all) {
    CategoryReading& category = categories.emplace_back();
    category.element = catgry;
    category.label = FindLabel(catgry, languages);
    category.isFlagged = catgry.Attribute("missing").View() == "Y";
    const Element catValu = catgry.Child(element::catValu);
    if (!catValu) continue;
    category.hasValue = true;
    const MarkupText text = catValu.Text();
    if (type > 0) {
      const Text string = texts.AddCollapsed(text);
      category.fits = string.Size() <= static_cast<std::size_t>(type);
      if (category.fits) category.string = string;
      continue;
    }
    const std::string_view spelled = Trim(text);
    const auto number = ReadNumber(spelled);
    category.fits = number.has_value();
    if (!number) continue;
    category.number = *number;
    if (!IsShortest(spelled, *number)) category.string = texts.Add(spelled);
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

void TakeValueLabels(const std::vector<CategoryReading>& categories, Variable& variable,
                     LabelReader& labels, TextArena& texts) {
  if (categories.empty()) return;
  std::size_t fitting = 0;
  auto set = std::make_shared<ValueLabels>(variable.type);
  set->Reserve(categories.size());
  for (const CategoryReading& category : categories) {
    if (!category.fits) continue;
    ++fitting;
    if (!category.label) continue;
    ValueLabel pair = category.Value();
    if (set->FindValueOf(pair) != nullptr) continue;
    pair.label = texts.AddCollapsed(category.label.Text());
    pair.languages = labels.LanguagesOf(category.element, category.label, texts);
    set->Add(std::move(pair));
  }
  if (fitting > set->Size()) {
    auto all = std::make_shared<std::vector<Category>>();
    for (const CategoryReading& category : categories) {
      if (!category.fits) continue;
      all->push_back({category.number, category.string, static_cast<bool>(category.label)});
    }
    variable.categories = std::move(all);
  }
  if (!set->Empty()) variable.valueLabels = std::move(set);
}

void WriteCategories(Element var, const Variable& now, PropertySet changed,
                     const Languages& languages, Editor& editor) {
  CategoryWriter(var, now, changed, languages, editor).Write();
}

void AddCategories(const Variable& variable, const Languages& languages, NewElement& var) {
  if (!variable.valueLabels) return;
  const MissingIndex missing(variable.missing, variable.type);
  for (const ValueLabel& pair : *variable.valueLabels) {
    var.children.push_back(NewCategory(pair, variable.IsNumeric(), missing.Has(pair), languages));
  }
}

std::string ValueText(const ValueLabel& value, bool isNumeric) {
  return isNumeric && value.string.Empty() ? WriteNumber(value.number) : value.string.String();
}

ValueLabels SinglesOf(const MissingValues& missing, int type) {
  ValueLabels singles(type);
  singles.Reserve(missing.numbers.size() + missing.strings.size());
  for (const double number : missing.numbers) singles.Add({number, {}, {}});
  for (const Text& string : missing.strings) singles.Add({0, string, {}});
  return singles;
}

MissingValues MissingOf(const std::optional<std::pair<double, double>>& range,
                        const ValueLabels& singles) {
  MissingValues missing;
  missing.range = range;
  for (const ValueLabel& value : singles) {
    if (singles.IsNumeric()) {
      missing.numbers.push_back(value.number);
    } else {
      missing.strings.push_back(value.string);
    }
  }
  return missing;
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
