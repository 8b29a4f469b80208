#include "program/DifferenceText.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include "program/Output.h"
#include "program/PropertyText.h"
#include "standalone/Comparison/ValueLabelDifference.h"

namespace applydic {
namespace {

using velahost::Dictionary;
using velahost::Difference;
using velahost::Documentation;
using velahost::DocumentationText;
using velahost::FileItem;
using velahost::Property;
using velahost::PropertySet;
using velahost::Side;
using velahost::ValueLabel;
using velahost::Variable;

constexpr std::size_t kBriefLines = 4;        // of an item, in a brief listing
constexpr std::size_t kBriefDifference = 24;  // lines of variables, in a brief listing
constexpr std::size_t kWidestName = 32;       // of a variable, in columns
constexpr const char* kOtherOrder = "in another order";

// How many of so many are listed where a few are enough.
std::size_t FewOf(std::size_t count) {
  constexpr std::size_t kFew = 10;
  return count > kFew + 2 ? kFew : count;
}

// Gives the lines of one item to a listing: its name stands before the first, and in a brief
// listing only a few follow.
class ItemLines {
 public:
  // So many lines will come.
  ItemLines(std::string_view name, std::size_t count, Listing& listing)
      : name_(name),
        left_(listing.IsBrief() && count > kBriefLines + 1 ? kBriefLines : count),
        more_(count - left_),
        listing_(listing) {}
  ItemLines(const ItemLines&) = delete;
  ItemLines& operator=(const ItemLines&) = delete;

  void Marked(Mark mark, const std::string& text) {
    if (Takes()) listing_.Marked(Name(), mark, text);
  }
  void Change(const std::string& before, const std::string& now, const std::string& label) {
    if (Takes()) listing_.Change(Name(), before, now, label);
  }
  // Says how many lines were left out.
  void End() {
    if (more_ > 0) listing_.Marked("", Mark::None, "and " + CountText(more_) + " more");
  }

 private:
  bool Takes() {
    if (left_ == 0) return false;
    --left_;
    return true;
  }
  std::string_view Name() { return std::exchange(name_, ""); }

  std::string_view name_;
  std::size_t left_;
  const std::size_t more_;
  Listing& listing_;
};

// Those of the texts that the others lack, in their order; of a text that stands there several
// times as many as are too many.
std::vector<std::string> Lacking(const std::vector<std::string>& texts,
                                 const std::vector<std::string>& others) {
  std::map<std::string_view, std::size_t> counts;
  for (const std::string& text : others) ++counts[text];
  std::vector<std::string> lacking;
  for (const std::string& text : texts) {
    std::size_t& count = counts[text];
    if (count == 0) {
      lacking.push_back(text);
    } else {
      --count;
    }
  }
  return lacking;
}

void ListTexts(std::string_view name, const std::vector<std::string>& before,
               const std::vector<std::string>& now, Listing& listing) {
  const std::vector<std::string> removed = Lacking(before, now);
  const std::vector<std::string> added = Lacking(now, before);
  if (removed.empty() && added.empty()) return listing.Marked(name, Mark::None, kOtherOrder);
  ItemLines lines(name, removed.size() + added.size(), listing);
  for (const std::string& text : removed) lines.Marked(Mark::Removed, text);
  for (const std::string& text : added) lines.Marked(Mark::Added, text);
  lines.End();
}

// The text of a pair of value labels in two columns.
struct PairText {
  std::string value;
  std::string label;
};
PairText TextOf(const ValueLabel& pair, bool isNumeric) {
  return {LabelledValueText(pair, isNumeric), MakeVisible(pair.label)};
}

void ListValueLabels(const Variable& before, const Variable& now, Listing& listing) {
  const velahost::ValueLabelDifference difference =
      DifferenceBetween(before.valueLabels, now.valueLabels);
  std::vector<PairText> removed;
  std::vector<PairText> old;
  std::vector<PairText> changed;
  std::vector<PairText> added;
  for (const ValueLabel* const pair : difference.removed) {
    removed.push_back(TextOf(*pair, before.IsNumeric()));
  }
  for (const auto& [was, is] : difference.changed) {
    old.push_back(TextOf(*was, now.IsNumeric()));
    changed.push_back(TextOf(*is, now.IsNumeric()));
  }
  for (const ValueLabel* const pair : difference.added) {
    added.push_back(TextOf(*pair, now.IsNumeric()));
  }
  std::size_t width = 0;
  for (const auto* const pairs : {&removed, &changed, &added}) {
    for (const PairText& pair : *pairs) width = std::max(width, WidthOf(pair.value));
  }
  const auto start = [width, isNumeric = now.IsNumeric()](const PairText& pair) {
    const std::size_t blanks = width - WidthOf(pair.value);
    return std::string(isNumeric ? blanks : 0, ' ') + pair.value +
           std::string(isNumeric ? 0 : blanks, ' ') + "  ";
  };
  ItemLines lines(TitleOf(Property::ValueLabels),
                  removed.size() + changed.size() + added.size() + (difference.isReordered ? 1 : 0),
                  listing);
  for (const PairText& pair : removed) lines.Marked(Mark::Removed, start(pair) + pair.label);
  for (std::size_t i = 0; i < changed.size(); ++i) {
    lines.Change(old[i].label, changed[i].label, start(changed[i]));
  }
  for (const PairText& pair : added) lines.Marked(Mark::Added, start(pair) + pair.label);
  if (difference.isReordered) lines.Marked(Mark::None, kOtherOrder);
  lines.End();
}

std::vector<std::string> TextsOf(const std::vector<DocumentationText>& documentation,
                                 Documentation kind) {
  std::vector<std::string> texts;
  for (const DocumentationText& text : documentation) {
    if (text.kind == kind) texts.push_back(MakeVisible(text.text));
  }
  return texts;
}

void ListDocumentation(const std::vector<DocumentationText>& before,
                       const std::vector<DocumentationText>& now, Listing& listing) {
  for (const Documentation kind : velahost::DocumentationSet::All()) {
    const std::vector<std::string> old = TextsOf(before, kind);
    const std::vector<std::string> texts = TextsOf(now, kind);
    if (old == texts) continue;
    if (old.size() == 1 && texts.size() == 1) {
      listing.Change(TitleOf(kind), old.front(), texts.front());
    } else {
      ListTexts(TitleOf(kind), old, texts, listing);
    }
  }
}

// An item that is there without a text is not absent.
std::optional<std::string> Shown(std::optional<std::string> text) {
  if (text && text->empty()) text = "(empty)";
  return text;
}

void ListProperty(const char* name, Property property, const Variable& before, const Variable& now,
                  Listing& listing) {
  listing.Change(name, Shown(PropertyText(before, property)), Shown(PropertyText(now, property)));
}

// Whether a variable's formats are one to its readers.
bool AreFormatsOne(PropertySet properties, const Variable& before, const Variable& now) {
  return properties.Has(Property::Print) && properties.Has(Property::Write) &&
         before.print == before.write && now.print == now.write;
}

std::vector<std::string> DocumentTexts(const Dictionary& dictionary) {
  std::vector<std::string> texts;
  for (const velahost::Text& document : dictionary.file.documents) {
    texts.push_back(fmt::to_string(fmt::join(LineTexts(document), " / ")));
  }
  return texts;
}

std::optional<std::string> LabelText(const Dictionary& dictionary) {
  if (!dictionary.file.label) return std::nullopt;
  return MakeVisible(*dictionary.file.label);
}

void ListItem(FileItem item, const Dictionary& before, const Dictionary& now, Listing& listing) {
  const char* const name = NameOf(item);
  switch (item) {
    case FileItem::Label:
      return listing.Change(name, Shown(LabelText(before)), Shown(LabelText(now)));
    case FileItem::Documents:
      return ListTexts(name, DocumentTexts(before), DocumentTexts(now), listing);
    case FileItem::Weight:
      return listing.Change(name, NameText(before, before.file.weight),
                            NameText(now, now.file.weight));
    case FileItem::Attributes:
      return ListTexts(name, AttributeTexts(before.file.attributes),
                       AttributeTexts(now.file.attributes), listing);
    case FileItem::MrSets:
    case FileItem::VarSets: {
      const auto kind = item == FileItem::MrSets ? velahost::SetKind::MultipleResponse
                                                 : velahost::SetKind::Variables;
      return ListTexts(name, SetTexts(before, kind), SetTexts(now, kind), listing);
    }
  }
}

// What differs in a variable, by name: in its name and type too.
std::vector<std::string> DifferingTitles(const Difference::OfVariable& difference) {
  std::vector<std::string> titles;
  if (difference.isRenamed) titles.emplace_back("name");
  if (difference.isRetyped) titles.emplace_back("type");
  for (const Property property : difference.properties)
    titles.emplace_back(TitleOf(property));
  return titles;
}

// Lists what differs in a variable, under its name. In a brief listing a few lines of each
// property.
void ListVariableDifference(const Difference::OfVariable& difference, const Side& before,
                            const Side& now, Listing& listing) {
  const Variable& old = *before.dictionary.variables[difference.oldColumn];
  const Variable& variable = *now.dictionary.variables[difference.newColumn];
  listing.Title(MakeVisible(variable.name));
  if (difference.isRenamed) {
    listing.Change("name", MakeVisible(old.name), MakeVisible(variable.name));
  }
  if (difference.isRetyped) listing.Change("type", TypeText(old), TypeText(variable));
  const bool hasOneFormat = AreFormatsOne(difference.properties, old, variable);
  for (const Property property : difference.properties) {
    switch (property) {
      case Property::ValueLabels:
        ListValueLabels(old, variable, listing);
        break;
      case Property::Attributes:
        ListTexts(TitleOf(property), AttributeTexts(old.attributes),
                  AttributeTexts(variable.attributes), listing);
        break;
      case Property::Documentation:
        ListDocumentation(before.documentation(difference.oldColumn),
                          now.documentation(difference.newColumn), listing);
        break;
      case Property::Print:
        ListProperty(hasOneFormat ? "format" : TitleOf(property), property, old, variable, listing);
        break;
      case Property::Write:
        if (!hasOneFormat) ListProperty(TitleOf(property), property, old, variable, listing);
        break;
      default:
        ListProperty(TitleOf(property), property, old, variable, listing);
    }
  }
}

}  // namespace

void ListFileDifference(velahost::FileItemSet items, const Dictionary& before,
                        const Dictionary& now, Listing& listing) {
  if (items.Empty()) return;
  listing.Title("File");
  for (const FileItem item : items) ListItem(item, before, now, listing);
  listing.BlankLine();
}

void ListVariableDifferences(const std::vector<Difference::OfVariable>& changed, const Side& before,
                             const Side& now, Listing& listing) {
  const std::size_t first = listing.LineCount();
  std::size_t left = changed.size();
  for (const Difference::OfVariable& difference : changed) {
    const bool isFull = listing.IsBrief() && listing.LineCount() - first >= kBriefDifference;
    if (isFull && left > 2) break;
    ListVariableDifference(difference, before, now, listing);
    listing.BlankLine();
    --left;
  }
  if (left == 0) return;
  listing.Line("and " + CountText(left) + " more variables: -v shows them");
  listing.BlankLine();
}

void ListVariableNames(const std::vector<Difference::OfVariable>& changed, const Dictionary& now,
                       Listing& listing) {
  if (changed.empty()) return;
  listing.Title("Variables");
  const std::size_t count = listing.IsBrief() ? FewOf(changed.size()) : changed.size();
  const auto nameOf = [&](std::size_t i) {
    return MakeVisible(now.variables[changed[i].newColumn]->name);
  };
  std::size_t width = 0;
  for (std::size_t i = 0; i < count; ++i) width = std::max(width, WidthOf(nameOf(i)));
  for (std::size_t i = 0; i < count; ++i) {
    listing.List("  " + Pad(nameOf(i), std::min(width, kWidestName)) + "  ",
                 DifferingTitles(changed[i]), "");
  }
  if (count < changed.size()) {
    listing.Line("  and " + CountText(changed.size() - count) + " more: -v lists them");
  }
  listing.BlankLine();
}

void ListCounts(const char* title, const std::vector<Difference::OfVariable>& changed,
                Listing& listing) {
  if (changed.empty()) return;
  std::size_t renamed = 0;
  std::size_t retyped = 0;
  std::map<Property, std::size_t> counts;
  for (const Difference::OfVariable& variable : changed) {
    if (variable.isRenamed) ++renamed;
    if (variable.isRetyped) ++retyped;
    for (const Property property : variable.properties) ++counts[property];
  }
  std::vector<std::string> texts;
  if (renamed > 0) texts.push_back("name " + CountText(renamed));
  if (retyped > 0) texts.push_back("type " + CountText(retyped));
  for (const auto& [property, count] : counts) {
    texts.push_back(std::string(TitleOf(property)) + " " + CountText(count));
  }
  listing.List(title + (": " + CountText(changed.size())) + " (", texts, ")");
}

void ListNames(const char* title, const std::vector<std::string>& names, Listing& listing) {
  if (names.empty()) return;
  const std::size_t count = listing.IsBrief() ? FewOf(names.size()) : names.size();
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < count; ++i) texts.push_back(MakeVisible(names[i]));
  std::string end;
  if (count < names.size()) end = " and " + CountText(names.size() - count) + " more";
  listing.List(title + (": " + CountText(names.size())) + " (", texts, end + ")");
}

}  // namespace applydic
