#include "standalone/Codebook/WriteVariable.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <unordered_set>
#include <utility>

#include "standalone/Codebook/Documentation.h"
#include "standalone/Codebook/FormatName.h"
#include "standalone/Codebook/ReadVariable.h"
#include "standalone/Data/Attributes.h"
#include "standalone/Data/ValueLabelSet.h"
#include "standalone/Text/Numbers.h"
#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

using Node = XmlTree::Node;

NewElement TextElement(Element element, std::string text) {
  return {.element = element, .attributes = {}, .text = std::move(text)};
}

std::string ValueText(const VELA_VLImpl& set, int position) {
  return set.Type() > 0 ? std::string(TrimTrailingBlanks(set.StringAt(position)))
                        : WriteNumber(set.NumberAt(position));
}

NewElement NewCategory(std::string value, const std::string& label, bool missing) {
  NewElement category{.element = Element::catgry, .attributes = {}};
  if (missing) category.attributes.emplace_back("missing", "Y");
  category.children.reserve(2);
  category.children.push_back(TextElement(Element::catValu, std::move(value)));
  category.children.push_back(TextElement(Element::labl, label));
  return category;
}

bool IsMissing(const MissingValues& missing, const VELA_VLImpl& set, int position) {
  return set.Type() > 0 ? missing.Contains(std::string_view(set.StringAt(position)))
                        : missing.Contains(set.NumberAt(position));
}

NewElement NewInvalidRange(const MissingValues& missing, int type) {
  NewElement invalrng{.element = Element::invalrng, .attributes = {}};
  std::size_t value = 0;
  if (missing.count < 0) {
    NewElement range{.element = Element::range, .attributes = {}};
    if (std::isfinite(missing.numbers[0])) {
      range.attributes.emplace_back("min", WriteNumber(missing.numbers[0]));
    }
    if (std::isfinite(missing.numbers[1])) {
      range.attributes.emplace_back("max", WriteNumber(missing.numbers[1]));
    }
    invalrng.children.push_back(std::move(range));
    value = 2;
  }
  for (; value < static_cast<std::size_t>(std::abs(missing.count)); ++value) {
    const std::string text = type > 0 ? std::string(TrimTrailingBlanks(missing.strings[value]))
                                      : WriteNumber(missing.numbers[value]);
    invalrng.children.push_back({.element = Element::item, .attributes = {{"VALUE", text}}});
  }
  return invalrng;
}

// The notes of the host's own that a variable needs, in their order.
struct NeededNote {
  std::string_view type;
  std::optional<std::string> text;
};
std::optional<std::string> Unless(bool standard, std::string text) {
  return standard ? std::nullopt : std::optional(std::move(text));
}
NeededNote WriteFormatNote(const VariableProperties& now) {
  return {kWriteFormatNote, Unless(now.write == now.print, WriteFormatName(now.write))};
}
NeededNote ColumnWidthNote(const VariableProperties& now) {
  return {kColumnWidthNote, Unless(now.columnWidth == 0, std::to_string(now.columnWidth))};
}
NeededNote RoleNote(const VariableProperties& now) {
  return {kRoleNote, Unless(now.role == Enumerations::RoleInput, NameOf(now.role))};
}
NeededNote AlignmentNote(const VariableProperties& now, int type) {
  return {kAlignmentNote, Unless(now.alignment == DefaultAlignment(type), NameOf(now.alignment))};
}

// How the standard names a level. REQUIRES: a level other than none.
const char* NatureOf(Level level) { return level == kScale ? "interval" : NameOf(level); }

// Edits one var element.
class VariableWriter {
 public:
  VariableWriter(const VELA_Variable::Impl& variable, const XmlTree& tree, Node var,
                 ElementEditor& editor)
      : variable_(variable),
        now_(variable.now),
        tree_(tree),
        var_(var),
        editor_(editor),
        set_(HostAccess::Of(now_.valueLabels)),
        categories_(ReadCategories(tree, var, variable.type)),
        changed_(DifferingProperties(variable.AsRead(), now_)) {}

  void Write() {
    if (Changed("label")) WriteLabel();
    if (Changed("valueLabels") || Changed("missing")) WriteCategories();
    if (Changed("missing")) WriteMissing();
    WriteFormat();
    if (Changed("level")) {
      editor_.SetAttribute(var_, "nature", NatureOf(now_.level));
    }
    if (Changed("columnWidth")) WriteNeeded(ColumnWidthNote(now_));
    if (Changed("role")) WriteNeeded(RoleNote(now_));
    if (Changed("alignment")) WriteNeeded(AlignmentNote(now_, variable_.type));
    if (Changed("attributes")) WriteAttributes(now_.attributes, tree_, var_, editor_);
  }

 private:
  bool Changed(std::string_view property) const {
    return std::find(changed_.begin(), changed_.end(), property) != changed_.end();
  }

  void WriteLabel() {
    const Node labl = tree_.Find(var_, Element::labl);
    const std::string& label = now_.label.value_or("");
    if (labl == XmlTree::kNone) {
      editor_.Insert(var_, TextElement(Element::labl, label));
    } else if (!now_.label) {
      editor_.Remove(labl);
    } else {
      editor_.SetText(labl, label);
    }
  }

  // The label that the set has for a category's value; null for none.
  const std::string* LabelFor(const CategoryReading& category) const {
    if (set_ == nullptr || !category.fits) return nullptr;
    const int position =
        variable_.type > 0 ? set_->FindString(category.text) : set_->FindNumber(category.number);
    return position < 0 ? nullptr : &set_->LabelAt(position);
  }

  const std::string* LabelAsRead(const CategoryReading& category) const {
    const VELA_VLImpl* read = HostAccess::Of(variable_.AsRead().valueLabels);
    if (read == nullptr) return nullptr;
    const int position =
        variable_.type > 0 ? read->FindString(category.text) : read->FindNumber(category.number);
    return position < 0 ? nullptr : &read->LabelAt(position);
  }

  // Every category of the document in turn, the first of each value with its label; then the values
  // that the document does not have yet.
  void WriteCategories() {
    std::set<std::pair<double, std::string>> seen;
    for (const CategoryReading& category : categories_) {
      if (!category.fits) {
        longest_ = std::max(longest_, ValueOf(category).size());
        continue;
      }
      const bool first = seen.emplace(category.number, category.text).second;
      WriteCategory(category, first);
    }
    WriteReferences();
    if (set_ == nullptr) return;
    for (int i = 0; i < set_->Size(); ++i) {
      const bool known =
          seen.contains(variable_.type > 0 ? std::pair(0.0, set_->StringAt(i))
                                           : std::pair(set_->NumberAt(i), std::string()));
      if (known) continue;
      const std::string value = ValueText(*set_, i);
      longest_ = std::max(longest_, value.size());
      const bool missing = Changed("missing") && IsMissing(now_.missing, *set_, i);
      editor_.Insert(var_, NewCategory(value, set_->LabelAt(i), missing));
    }
  }

  void WriteCategory(const CategoryReading& category, bool first) {
    const bool missing = Changed("missing")
                             ? (variable_.type > 0 ? now_.missing.Contains(category.text)
                                                   : now_.missing.Contains(category.number))
                             : category.flaggedMissing;
    const std::string* const label = LabelFor(category);
    const std::string* const asRead = LabelAsRead(category);
    const bool labelGoes = label == nullptr && category.label != XmlTree::kNone;
    if (labelGoes && !missing && NothingElseIn(category)) {
      editor_.Remove(category.node);
      if (const auto id = tree_.Attribute(category.node, "ID")) goneIds_.emplace(Trim(*id));
      return;
    }
    longest_ = std::max(longest_, ValueOf(category).size());
    if (missing != category.flaggedMissing) {
      missing ? editor_.SetAttribute(category.node, "missing", "Y")
              : editor_.RemoveAttribute(category.node, "missing");
    }
    if (labelGoes) {
      for (const Node labl : tree_.FindAll(category.node, Element::labl)) editor_.Remove(labl);
    } else if (label != nullptr && first && (asRead == nullptr || *asRead != *label)) {
      if (category.label == XmlTree::kNone) {
        editor_.Insert(category.node, TextElement(Element::labl, *label));
      } else if (LineOfText(tree_, category.label) != *label) {
        editor_.SetText(category.label, *label);
      }
    }
  }

  // Takes the categories that go out of the groups of categories.
  void WriteReferences() {
    if (goneIds_.empty()) return;
    for (const Node group : tree_.FindAll(var_, Element::catgryGrp)) {
      std::vector<std::string> ids = SplitTokens(tree_.Attribute(group, "catgry").value_or(""));
      const auto gone =
          std::erase_if(ids, [this](const std::string& id) { return goneIds_.contains(id); });
      if (gone == 0) continue;
      ids.empty() ? editor_.RemoveAttribute(group, "catgry")
                  : editor_.SetAttribute(group, "catgry", JoinTokens(ids));
    }
  }

  std::string ValueOf(const CategoryReading& category) const {
    const Node catValu = tree_.Find(category.node, Element::catValu);
    return catValu == XmlTree::kNone ? std::string() : LineOfText(tree_, catValu);
  }

  // Whether a category has nothing but its value, labels, an ID and a missing flag.
  bool NothingElseIn(const CategoryReading& category) const {
    for (Node child = tree_.FirstChild(category.node); child != XmlTree::kNone;
         child = tree_.Next(child)) {
      const Element element = tree_.ElementOf(child);
      if (element != Element::labl && element != Element::catValu) return false;
    }
    for (std::size_t i = 0; i < tree_.AttributeCount(category.node); ++i) {
      const std::string_view name = tree_.AttributeName(category.node, i);
      const bool flag = name == "missing" && category.flaggedMissing;
      if (name != "ID" && !flag) return false;
    }
    return true;
  }

  void WriteMissing() {
    const auto found = tree_.FindAll(var_, Element::invalrng);
    for (std::size_t i = 1; i < found.size(); ++i) editor_.Remove(found[i]);
    if (now_.missing.count == 0) {
      if (!found.empty()) editor_.Remove(found.front());
      return;
    }
    const NewElement invalrng = NewInvalidRange(now_.missing, variable_.type);
    found.empty() ? editor_.Insert(var_, invalrng) : editor_.Replace(found.front(), invalrng);
  }

  void WriteFormat() {
    const bool print = Changed("print");
    if (print || WidthWouldChange()) {
      const std::string name = WriteFormatName(now_.print);
      const Node varFormat = tree_.Find(var_, Element::varFormat);
      if (varFormat != XmlTree::kNone) {
        editor_.SetAttribute(varFormat, "formatname", name);
      } else {
        editor_.Insert(var_, {.element = Element::varFormat,
                              .attributes = {{"type", variable_.type > 0 ? "character" : "numeric"},
                                             {"formatname", name}}});
      }
    }
    if (print || Changed("write")) WriteNeeded(WriteFormatNote(now_));
  }

  // Whether a width that is read off the values would be another with the values as they are now.
  bool WidthWouldChange() const {
    if (variable_.type == 0 || StatedStringWidth(tree_, var_)) return false;
    if (!Changed("valueLabels") && !Changed("missing")) return false;
    std::size_t longest = longest_;
    if (Changed("missing")) {
      for (const std::string& value : now_.missing.strings) {
        longest = std::max(longest, TrimTrailingBlanks(value).size());
      }
    } else {
      longest = std::max(longest, LongestMissing(tree_, var_));
    }
    constexpr std::size_t kWhenNone = 8;
    return (longest == 0 ? kWhenNone : longest) != static_cast<std::size_t>(variable_.type);
  }

  void WriteNeeded(const NeededNote& note) {
    WriteNote(tree_, var_, note.type, note.text, editor_);
  }

  const VELA_Variable::Impl& variable_;
  const VariableProperties& now_;
  const XmlTree& tree_;
  const Node var_;
  ElementEditor& editor_;
  const VELA_VLImpl* set_;
  std::vector<CategoryReading> categories_;
  std::vector<const char*> changed_;
  std::size_t longest_ = 0;                  // of the categories' values as they will be
  std::unordered_set<std::string> goneIds_;  // of categories that go
};

}  // namespace

void WriteVariable(const VELA_Variable::Impl& variable, const XmlTree& tree, Node var,
                   ElementEditor& editor) {
  VariableWriter(variable, tree, var, editor).Write();
}

NewElement NewVariable(const VELA_Variable::Impl& variable, const std::string& id,
                       const std::string& fileId, bool weights, const Layout& layout) {
  const VariableProperties& now = variable.now;
  NewElement var{.element = Element::var, .attributes = {{"ID", id}, {"name", variable.name}}};
  if (!fileId.empty()) var.attributes.emplace_back("files", fileId);
  if (weights) var.attributes.emplace_back("wgt", "wgt");
  if (now.level != Enumerations::NoLevel)
    var.attributes.emplace_back("nature", NatureOf(now.level));

  if (now.label) var.children.push_back(TextElement(Element::labl, *now.label));
  if (now.missing.count != 0) var.children.push_back(NewInvalidRange(now.missing, variable.type));
  if (const VELA_VLImpl* set = HostAccess::Of(now.valueLabels)) {
    for (int i = 0; i < set->Size(); ++i) {
      var.children.push_back(
          NewCategory(ValueText(*set, i), set->LabelAt(i), IsMissing(now.missing, *set, i)));
    }
  }
  var.children.push_back({.element = Element::varFormat,
                          .attributes = {{"type", variable.type > 0 ? "character" : "numeric"},
                                         {"formatname", WriteFormatName(now.print)}}});
  for (const NeededNote& note : {WriteFormatNote(now), ColumnWidthNote(now), RoleNote(now),
                                 AlignmentNote(now, variable.type)}) {
    if (note.text) var.children.push_back(NewNote(Element::var, note.type, *note.text));
  }
  for (const Attribute& attribute : HostAccess::Of(now.attributes).attributes) {
    for (const std::string& value : attribute.values) {
      var.children.push_back(NewAttributeNote(Element::var, attribute.name, value));
    }
  }

  for (NewElement& element : DocumentationElements(variable.documentation, layout)) {
    var.children.push_back(std::move(element));
  }
  const auto rank = [](const NewElement& element) {
    const auto order = ChildOrder(Element::var);
    return std::find(order.begin(), order.end(), element.element) - order.begin();
  };
  std::stable_sort(var.children.begin(), var.children.end(),
                   [&](const NewElement& a, const NewElement& b) { return rank(a) < rank(b); });
  return var;
}

NewElement NewNote(Element parent, std::string_view type, std::string text) {
  return {.element = Element::notes,
          .attributes = {{"type", std::string(type)},
                         {"level", parent == Element::fileDscr ? "file" : "variable"}},
          .text = std::move(text)};
}

NewElement NewAttributeNote(Element parent, const std::string& name, const std::string& value) {
  NewElement note = NewNote(parent, kAttributeNote, value);
  note.attributes.emplace_back("subject", name);
  return note;
}

void WriteNote(const XmlTree& tree, Node parent, std::string_view type,
               const std::optional<std::string>& text, ElementEditor& editor) {
  Node note = FindNote(tree, parent, type);
  if (text) {
    if (note == XmlTree::kNone) {
      editor.Insert(parent, NewNote(tree.ElementOf(parent), type, *text));
    } else if (LineOfText(tree, note) != *text) {
      editor.SetText(note, *text);
    }
    return;
  }
  for (; note != XmlTree::kNone; note = tree.FindNext(note, Element::notes)) {
    if (tree.Attribute(note, "type") == type) editor.Remove(note);
  }
}

void WriteAttributes(const DatasourceAttributes& attributes, const XmlTree& tree, Node parent,
                     ElementEditor& editor) {
  // The notes of each attribute, under the spelling of its first.
  std::map<std::string, std::vector<Node>> notes;
  std::map<std::string, std::string> spellings;
  for (Node note = FindNote(tree, parent, kAttributeNote); note != XmlTree::kNone;
       note = tree.FindNext(note, Element::notes)) {
    if (tree.Attribute(note, "type") != kAttributeNote) continue;
    const std::string name = Collapse(tree.Attribute(note, "subject").value_or(""));
    if (name.empty()) continue;
    notes[spellings.emplace(UpperCase(name), name).first->second].push_back(note);
  }
  for (const Attribute& attribute : HostAccess::Of(attributes).attributes) {
    const auto known = notes.find(attribute.name);
    std::vector<Node> present = known == notes.end() ? std::vector<Node>() : known->second;
    auto next = present.begin();
    bool inserted = false;
    bool hasSpelling = false;
    for (const std::string& value : attribute.values) {
      // Notes are inserted behind all others, so once one is, those that are left cannot follow it.
      const auto kept =
          inserted ? present.end() : std::find_if(next, present.end(), [&](Node note) {
            return LineOfText(tree, note) == value;
          });
      if (kept == present.end()) {
        editor.Insert(parent, NewAttributeNote(tree.ElementOf(parent), attribute.name, value));
        inserted = true;
        continue;
      }
      std::for_each(next, kept, [&](Node note) { editor.Remove(note); });
      // The first note gives the attribute its spelling.
      const bool gives = !hasSpelling;
      hasSpelling = true;
      if (gives && Collapse(tree.Attribute(*kept, "subject").value_or("")) != attribute.name) {
        editor.SetAttribute(*kept, "subject", attribute.name);
      }
      next = std::next(kept);
    }
    std::for_each(next, present.end(), [&](Node note) { editor.Remove(note); });
    if (known != notes.end()) notes.erase(known);
  }
  for (const auto& [name, gone] : notes) {
    for (const Node note : gone) editor.Remove(note);
  }
}

}  // namespace velahost
