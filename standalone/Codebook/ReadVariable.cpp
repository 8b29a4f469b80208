#include "standalone/Codebook/ReadVariable.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "standalone/Codebook/FormatName.h"
#include "standalone/Data/Attributes.h"
#include "standalone/Data/Cells.h"
#include "standalone/Data/ValueLabelSet.h"
#include "standalone/Text/Numbers.h"
#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

using Node = XmlTree::Node;

constexpr int kDefaultWidth = 8;

std::optional<int> StatedLocationWidth(const XmlTree& tree, Node var) {
  const Node location = tree.Find(var, Element::location);
  if (location == XmlTree::kNone) return std::nullopt;
  const auto width = tree.Attribute(location, "width");
  return width ? ReadInteger(Trim(*width), kLeastWidth, kMostWidth) : std::nullopt;
}

std::optional<FormatName> StatedFormat(const XmlTree& tree, Node var) {
  const Node varFormat = tree.Find(var, Element::varFormat);
  if (varFormat == XmlTree::kNone) return std::nullopt;
  const auto name = tree.Attribute(varFormat, "formatname");
  return name ? ReadFormatName(*name) : std::nullopt;
}

bool IsCharacter(const XmlTree& tree, Node var) {
  const Node varFormat = tree.Find(var, Element::varFormat);
  return varFormat != XmlTree::kNone && tree.Attribute(varFormat, "type") == "character";
}

std::size_t LongestValue(const XmlTree& tree, Node var) {
  std::size_t longest = LongestMissing(tree, var);
  for (const Node category : tree.FindAll(var, Element::catgry)) {
    const Node catValu = tree.Find(category, Element::catValu);
    if (catValu != XmlTree::kNone) longest = std::max(longest, LineOfText(tree, catValu).size());
  }
  return longest;
}

int ReadType(const XmlTree& tree, Node var) {
  if (!IsCharacter(tree, var)) return 0;
  if (const auto stated = StatedStringWidth(tree, var)) return *stated;
  const std::size_t longest = LongestValue(tree, var);
  return longest == 0 ? kDefaultWidth
                      : static_cast<int>(std::min<std::size_t>(longest, kMostWidth));
}

Format ReadPrintFormat(const XmlTree& tree, Node var, int type) {
  if (const auto format = FormatFor(StatedFormat(tree, var), type)) return *format;
  static const VELA_Variable::FormatType plain = FormatTypeNamed("F");
  const auto decimals = tree.Attribute(var, "dcml");
  return {
      plain, StatedLocationWidth(tree, var).value_or(kDefaultWidth),
      (decimals ? ReadInteger(Trim(*decimals), 0, std::numeric_limits<short>::max()) : std::nullopt)
          .value_or(0)};
}

Format ReadWriteFormat(const XmlTree& tree, Node var, int type, const Format& print) {
  const Node note = FindNote(tree, var, kWriteFormatNote);
  if (note == XmlTree::kNone) return print;
  const auto name = ReadFormatName(tree.Text(note));
  if (!name) return print;
  return FormatFor(name, type).value_or(print);
}

Level ReadLevel(const XmlTree& tree, Node var) {
  const auto nature = tree.Attribute(var, "nature").value_or("");
  if (nature == "nominal") return kNominal;
  if (nature == "ordinal") return kOrdinal;
  if (nature == "interval" || nature == "ratio" || nature == "percent") return kScale;
  return Enumerations::NoLevel;
}

short ReadColumnWidth(const XmlTree& tree, Node var) {
  const Node note = FindNote(tree, var, kColumnWidthNote);
  if (note == XmlTree::kNone) return 0;
  constexpr int kMost = std::numeric_limits<short>::max();
  return static_cast<short>(ReadInteger(Trim(tree.Text(note)), 0, kMost).value_or(0));
}

// The categories that the variable can have, as it keeps them.
std::shared_ptr<const Categories> FittingCategories(const XmlTree& tree,
                                                    const std::vector<CategoryReading>& readings) {
  auto categories = std::make_shared<Categories>();
  for (const CategoryReading& category : readings) {
    if (!category.fits) continue;
    std::optional<std::string> label;
    if (category.label != XmlTree::kNone) label = LineOfText(tree, category.label);
    categories->push_back(
        {.number = category.number, .text = category.text, .label = std::move(label)});
  }
  return categories;
}

// The value labels, and the categories where these are more.
void ReadValueLabels(const XmlTree& tree, const std::vector<CategoryReading>& readings,
                     VELA_Variable::Impl& variable, bool& longCategoriesNotRead) {
  if (readings.empty()) return;
  auto set = std::make_shared<VELA_VLImpl>(variable.type);
  set->Reserve(readings.size());
  int fitting = 0;
  for (const CategoryReading& category : readings) {
    if (!category.fits) {
      if (variable.type > 0 && category.hasValue && category.label != XmlTree::kNone) {
        longCategoriesNotRead = true;
      }
      continue;
    }
    ++fitting;
    if (category.label == XmlTree::kNone) continue;
    if (variable.type > 0) {
      if (set->FindString(category.text) < 0) {
        set->AddString(category.text, LineOfText(tree, category.label));
      }
    } else if (set->FindNumber(category.number) < 0) {
      set->AddNumber(category.number, LineOfText(tree, category.label));
    }
  }
  if (fitting > set->Size()) variable.categories = FittingCategories(tree, readings);
  if (set->Size() > 0) variable.now.valueLabels = HostAccess::HandleOf(std::move(set));
}

// Missing values while they are read: at most what a variable can hold, or a failure.
class MissingReader {
 public:
  explicit MissingReader(int type) : type_(type) {}

  void AddValue(std::string_view text) {
    if (type_ > 0) {
      if (text.size() > static_cast<std::size_t>(type_)) return Fail();
      return AddString(AtWidth(text, type_));
    }
    const auto number = ReadNumber(text);
    return number ? AddNumber(*number) : Fail();
  }
  void AddNumber(double number) {
    if (values_ == 3) return Fail();
    numbers_[values_++] = number;
  }
  void AddString(std::string text) {
    if (values_ == 3) return Fail();
    strings_.push_back(std::move(text));
    ++values_;
  }
  void AddRange(std::optional<std::string_view> low, std::optional<std::string_view> high) {
    constexpr double kOpen = std::numeric_limits<double>::infinity();
    const auto lowNumber = low ? ReadNumber(*low) : std::optional(-kOpen);
    const auto highNumber = high ? ReadNumber(*high) : std::optional(kOpen);
    if (type_ > 0 || hasRange_ || !lowNumber || !highNumber) return Fail();
    hasRange_ = true;
    range_ = {*lowNumber, *highNumber};
  }
  void Fail() { failed_ = true; }

  // What was read; nothing if it is more than a variable can hold.
  std::optional<MissingValues> Result() const {
    if (failed_ || (hasRange_ && values_ > 1)) return std::nullopt;
    if (!hasRange_) return MissingValues{static_cast<int>(values_), numbers_, strings_};
    if (values_ == 0) return MissingValues{-2, {range_.first, range_.second, 0}, {}};
    return MissingValues{-3, {range_.first, range_.second, numbers_[0]}, {}};
  }

 private:
  int type_;
  bool failed_ = false;
  bool hasRange_ = false;
  std::size_t values_ = 0;
  std::array<double, 3> numbers_ = {};
  std::vector<std::string> strings_;
  std::pair<double, double> range_ = {};
};

void ReadInvalidRange(const XmlTree& tree, Node invalrng, MissingReader& reader) {
  for (Node node = tree.FirstChild(invalrng); node != XmlTree::kNone; node = tree.Next(node)) {
    if (tree.ElementOf(node) == Element::item) {
      const auto value = tree.Attribute(node, "VALUE");
      value ? reader.AddValue(Collapse(*value)) : reader.Fail();
    } else if (tree.ElementOf(node) == Element::range) {
      if (tree.Attribute(node, "minExclusive") || tree.Attribute(node, "maxExclusive")) {
        reader.Fail();
      }
      const auto low = tree.Attribute(node, "min");
      const auto high = tree.Attribute(node, "max");
      reader.AddRange(low ? std::optional(Trim(*low)) : low,
                      high ? std::optional(Trim(*high)) : high);
    }
  }
}

void ReadFlaggedCategories(const std::vector<CategoryReading>& readings, int type,
                           MissingReader& reader) {
  std::vector<const CategoryReading*> seen;
  for (const CategoryReading& category : readings) {
    if (!category.flaggedMissing || !category.hasValue) continue;
    if (!category.fits) return reader.Fail();
    const bool repeated = std::any_of(seen.begin(), seen.end(), [&](const CategoryReading* other) {
      return other->number == category.number && other->text == category.text;
    });
    if (repeated) continue;
    if (seen.size() == 3) return reader.Fail();
    seen.push_back(&category);
    type > 0 ? reader.AddString(category.text) : reader.AddNumber(category.number);
  }
}

std::optional<MissingValues> ReadMissing(const XmlTree& tree, Node var, int type,
                                         const std::vector<CategoryReading>& readings) {
  MissingReader reader(type);
  Node invalrng = tree.Find(var, Element::invalrng);
  if (invalrng == XmlTree::kNone) ReadFlaggedCategories(readings, type, reader);
  for (; invalrng != XmlTree::kNone; invalrng = tree.FindNext(invalrng, Element::invalrng)) {
    ReadInvalidRange(tree, invalrng, reader);
  }
  return reader.Result();
}

std::string ReadName(const XmlTree& tree, Node var) {
  std::string name = Collapse(tree.Attribute(var, "name").value_or(""));
  if (name.empty()) name = Collapse(tree.Attribute(var, "ID").value_or(""));
  return std::string(CutToBytes(name, kNameBytes));
}

template <typename Value>
Value ReadNamed(const XmlTree& tree, Node var, std::string_view noteType,
                std::optional<Value> (*named)(std::string_view), Value standard) {
  const Node note = FindNote(tree, var, noteType);
  if (note == XmlTree::kNone) return standard;
  return named(Trim(tree.Text(note))).value_or(standard);
}

}  // namespace

VariableReading ReadVariable(const XmlTree& tree, Node var) {
  VariableReading reading;
  reading.variable = std::make_unique<VELA_Variable::Impl>();
  VELA_Variable::Impl& variable = *reading.variable;
  variable.name = ReadName(tree, var);
  variable.upperCaseName = UpperCase(variable.name);
  variable.type = ReadType(tree, var);
  const std::vector<CategoryReading> categories = ReadCategories(tree, var, variable.type);

  VariableProperties& now = variable.now;
  if (const Node labl = tree.Find(var, Element::labl); labl != XmlTree::kNone) {
    now.label = LineOfText(tree, labl);
  }
  ReadValueLabels(tree, categories, variable, reading.longCategoriesNotRead);
  const auto missing = ReadMissing(tree, var, variable.type, categories);
  now.missing = missing.value_or(MissingValues());
  reading.missingNotRead = !missing;
  now.print = ReadPrintFormat(tree, var, variable.type);
  now.write = ReadWriteFormat(tree, var, variable.type, now.print);
  now.columnWidth = ReadColumnWidth(tree, var);
  now.level = ReadLevel(tree, var);
  now.role = ReadNamed(tree, var, kRoleNote, RoleNamed, Enumerations::RoleInput);
  now.alignment =
      ReadNamed(tree, var, kAlignmentNote, AlignmentNamed, DefaultAlignment(variable.type));
  now.attributes = ReadAttributes(tree, var);

  reading.id = Trim(tree.Attribute(var, "ID").value_or(""));
  reading.weights = tree.Attribute(var, "wgt") == "wgt";
  reading.files = tree.Attribute(var, "files").value_or("");
  for (Node location = tree.Find(var, Element::location); location != XmlTree::kNone;
       location = tree.FindNext(location, Element::location)) {
    if (const auto id = tree.Attribute(location, "fileid")) {
      reading.locations.emplace_back(Trim(*id));
    }
  }
  return reading;
}

std::vector<CategoryReading> ReadCategories(const XmlTree& tree, Node var, int type) {
  const std::vector<Node> categories = tree.FindAll(var, Element::catgry);
  std::vector<CategoryReading> readings;
  readings.reserve(categories.size());
  for (const Node node : categories) {
    CategoryReading category;
    category.node = node;
    category.label = tree.Find(node, Element::labl);
    category.flaggedMissing = tree.Attribute(node, "missing") == "Y";
    if (const Node catValu = tree.Find(node, Element::catValu); catValu != XmlTree::kNone) {
      category.hasValue = true;
      const std::string text = LineOfText(tree, catValu);
      if (type > 0) {
        category.fits = text.size() <= static_cast<std::size_t>(type);
        if (category.fits) category.text = AtWidth(text, type);
      } else if (const auto number = ReadNumber(text)) {
        category.fits = true;
        category.number = *number;
      }
    }
    readings.push_back(std::move(category));
  }
  return readings;
}

std::string LineOfText(const XmlTree& tree, Node node) { return Collapse(tree.Text(node)); }

std::optional<int> StatedStringWidth(const XmlTree& tree, Node var) {
  if (const auto width = StatedLocationWidth(tree, var)) return width;
  const auto format = StatedFormat(tree, var);
  return format ? format->StringWidth() : std::nullopt;
}

std::size_t LongestMissing(const XmlTree& tree, Node var) {
  std::size_t longest = 0;
  for (const Node invalrng : tree.FindAll(var, Element::invalrng)) {
    for (const Node item : tree.FindAll(invalrng, Element::item)) {
      longest = std::max(longest, Collapse(tree.Attribute(item, "VALUE").value_or("")).size());
    }
  }
  return longest;
}

Alignment DefaultAlignment(int type) {
  return type > 0 ? Enumerations::AlignLeft : Enumerations::AlignRight;
}

XmlTree::Node FindNote(const XmlTree& tree, Node parent, std::string_view type) {
  Node node = tree.Find(parent, Element::notes);
  while (node != XmlTree::kNone && tree.Attribute(node, "type") != type) {
    node = tree.FindNext(node, Element::notes);
  }
  return node;
}

std::vector<std::string> SplitTokens(std::string_view text) {
  std::vector<std::string> tokens;
  while (!(text = Trim(text)).empty()) {
    const auto* const end = std::find_if(text.begin(), text.end(), IsSpace);
    tokens.emplace_back(text.begin(), end);
    text.remove_prefix(tokens.back().size());
  }
  return tokens;
}

std::string JoinTokens(const std::vector<std::string>& tokens) {
  std::string text;
  for (const std::string& token : tokens) text += (text.empty() ? "" : " ") + token;
  return text;
}

DatasourceAttributes ReadAttributes(const XmlTree& tree, Node parent) {
  DatasourceAttributes attributes;
  for (Node note = FindNote(tree, parent, kAttributeNote); note != XmlTree::kNone;
       note = tree.FindNext(note, Element::notes)) {
    if (tree.Attribute(note, "type") != kAttributeNote) continue;
    const std::string name = Collapse(tree.Attribute(note, "subject").value_or(""));
    if (!name.empty()) HostAccess::Of(attributes).AddValue(name, LineOfText(tree, note));
  }
  return attributes;
}

}  // namespace velahost
