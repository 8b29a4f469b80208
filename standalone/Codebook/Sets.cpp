#include "standalone/Codebook/Sets.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Codebook/Elements.h"
#include "standalone/Codebook/Ids.h"
#include "standalone/Codebook/Notes.h"
#include "standalone/Text/Tokens.h"
#include "standalone/Text/Utf8.h"
#include "standalone/Xml/Editor.h"

namespace velahost {
namespace {

// What becomes of a varGrp.
struct GroupPlan {
  const VariableSet* read = nullptr;  // the set that it was read as
  const VariableSet* set = nullptr;   // what it is to read as; null: as it does
  std::size_t slot = 0;               // the group in whose stead it stands
  bool goes = false;
};

class SetWriter {
 public:
  explicit SetWriter(const SetWriting& writing)
      : writing_(writing),
        codebook_(*writing.file.codebook),
        document_(codebook_.document),
        plans_(codebook_.groups.size()),
        edits_(document_.Encoding()) {
    for (std::size_t i = 0; i < plans_.size(); ++i) plans_[i].slot = i;
  }

  SetEdits Write() {
    if (writing_.changed.Has(FileItem::MrSets)) Plan(SetKind::MultipleResponse);
    if (writing_.changed.Has(FileItem::VarSets)) Plan(SetKind::Variables);
    WriteReferences();
    for (std::size_t i = 0; i < plans_.size(); ++i) WriteGroup(i);
    return {std::move(edits_), std::move(unplaced_)};
  }

 private:
  const VariableSet& AsRead(std::size_t group) const { return *plans_[group].read; }

  // Finds for each set of the kind the element that it keeps, and the slots of all.
  void Plan(SetKind kind) {
    std::vector<std::size_t> present;
    auto read = writing_.file.dictionary.file.SetsOf(kind).begin();
    for (std::size_t i = 0; i < codebook_.groups.size(); ++i) {
      if (!IsSetOf(codebook_, i, writing_.file.place, kind)) continue;
      present.push_back(i);
      plans_[i].read = &*read++;
    }
    const auto& sets = writing_.dictionary.file.SetsOf(kind);
    std::map<std::string_view, std::vector<std::size_t>> byName;  // those left, the first one last
    std::reverse(present.begin(), present.end());
    for (const std::size_t group : present) byName[AsRead(group).name].push_back(group);
    std::vector<std::optional<std::size_t>> elements;  // of each set
    std::vector<std::size_t> slots;
    for (const VariableSet& set : sets) {
      auto& left = byName[set.name];
      if (left.empty()) {
        elements.emplace_back();
        continue;
      }
      elements.emplace_back(left.back());
      slots.push_back(left.back());
      left.pop_back();
    }
    for (const auto& [name, left] : byName) {
      for (const std::size_t group : left) {
        plans_[group].goes = true;
        const Text& id = codebook_.groups[group].reading.id;
        if (!id.Empty()) goneIds_.insert(id.String());
      }
    }
    std::sort(slots.begin(), slots.end());
    PutInSlots(sets, kind, elements, slots);
  }

  void PutInSlots(const std::vector<VariableSet>& sets, SetKind kind,
                  const std::vector<std::optional<std::size_t>>& elements,
                  const std::vector<std::size_t>& slots) {
    Editor editor(document_, writing_.layout);
    auto slot = slots.begin();
    for (std::size_t i = 0; i < sets.size(); ++i) {
      if (elements[i]) {
        plans_[*elements[i]].set = &sets[i];
        plans_[*elements[i]].slot = *slot++;
        continue;
      }
      NewElement added = NewGroup(sets[i], kind);
      if (slots.empty()) {
        unplaced_.push_back(std::move(added));
      } else if (slot == slots.begin()) {
        editor.InsertBefore(codebook_.groups[*slot].element, added);
      } else {
        editor.InsertAfter(codebook_.groups[*std::prev(slot)].element, added);
      }
    }
    edits_.Add(std::move(editor).Take());
  }

  void WriteGroup(std::size_t index) {
    const Element group = codebook_.groups[index].element;
    const GroupPlan& plan = plans_[index];
    if (plan.goes) {
      Editor editor(document_, writing_.layout);
      editor.Remove(group);
      edits_.Add(std::move(editor).Take());
      return;
    }
    const std::string bytes = Edited(index);
    if (plan.slot == index && bytes == group.Markup()) return;
    const Element slot = codebook_.groups[plan.slot].element;
    edits_.ReplaceBytes(slot.Begin(), slot.End(), bytes);
  }

  // The group's bytes as they will be.
  std::string Edited(std::size_t index) {
    const GroupPlan& plan = plans_[index];
    const Codebook::Group& group = codebook_.groups[index];
    const bool isSameLabel = plan.set == nullptr || plan.set->label == plan.read->label;
    const bool isSameMembers = plan.set == nullptr || plan.set->members == plan.read->members;
    if (isSameLabel && isSameMembers && goneIds_.empty()) {
      return std::string(group.element.Markup());
    }
    Editor editor(document_, writing_.layout);
    if (!isSameLabel) WriteLabel(*plan.set, group.element, editor);
    if (!isSameMembers) WriteMembers(*plan.set, group, editor);
    Edits edits = std::move(editor).Take();
    WriteReferencesIn(group.element, edits);
    return edits.Apply(document_.Text(), group.element.Begin(), group.element.End());
  }

  static void WriteLabel(const VariableSet& set, Element group, Editor& editor) {
    if (!set.label) {
      for (const Element label : group.All(element::labl)) editor.Remove(label);
      return;
    }
    // The label must not be taken for the name.
    if (!group.Attribute("name").IsThere()) editor.SetAttribute(group, "name", set.name);
    if (const Element label = group.Child(element::labl)) {
      editor.SetText(label, *set.label);
    } else {
      editor.Insert(group, {.element = element::labl, .text = set.label->String()});
    }
  }

  // The members' IDs; after them those of other files' variables, which this file's sets do not
  // tell of.
  void WriteMembers(const VariableSet& set, const Codebook::Group& group, Editor& editor) {
    std::vector<std::string> ids = MemberIds(set);
    if (ids.empty()) {
      editor.RemoveAttribute(group.element, "var");
      return;
    }
    for (std::string& id : SplitTokens(group.reading.members)) {
      if (!OwnIds().contains(id)) ids.push_back(std::move(id));
    }
    editor.SetAttribute(group.element, "var", JoinTokens(ids));
  }

  // Takes the sets that go out of what refers to them outside the groups.
  void WriteReferences() {
    references_ = FindReferences(document_, goneIds_);
    std::erase_if(references_, [this](const Reference& reference) {
      const auto after =
          std::upper_bound(codebook_.groups.begin(), codebook_.groups.end(), reference.begin,
                           [](std::size_t position, const Codebook::Group& group) {
                             return position < group.element.Begin();
                           });
      const bool isInGroup =
          after != codebook_.groups.begin() && reference.begin < std::prev(after)->element.End();
      if (!isInGroup) WriteReference(document_, reference, edits_);
      return !isInGroup;
    });
  }

  // The same within a group.
  void WriteReferencesIn(Element group, Edits& edits) const {
    auto reference = std::lower_bound(
        references_.begin(), references_.end(), group.Begin(),
        [](const Reference& a, std::size_t position) { return a.begin < position; });
    for (; reference != references_.end() && reference->begin < group.End(); ++reference) {
      WriteReference(document_, *reference, edits);
    }
  }

  NewElement NewGroup(const VariableSet& set, SetKind kind) {
    const bool isMultiple = kind == SetKind::MultipleResponse;
    const std::string type = isMultiple         ? "multipleResp"
                             : set.type.Empty() ? "other"
                                                : set.type.String();
    NewElement group{.element = element::varGrp};
    group.attributes = {
        {"ID", writing_.ids.Make(set.name)}, {"type", type}, {"name", set.name.String()}};
    const std::vector<std::string> ids = MemberIds(set);
    if (!ids.empty()) group.attributes.emplace_back("var", JoinTokens(ids));
    if (set.label) {
      group.children.push_back({.element = element::labl, .text = set.label->String()});
    }
    return group;
  }

  std::vector<std::string> MemberIds(const VariableSet& set) const {
    std::vector<std::string> ids;
    ids.reserve(set.members.size());
    for (const int member : set.members) ids.push_back(writing_.idOf(member));
    return ids;
  }

  // The IDs that the file's variables were read with.
  const std::unordered_set<std::string>& OwnIds() {
    if (ownIds_.empty()) {
      for (const std::size_t place : writing_.file.variablePlaces) {
        ownIds_.insert(codebook_.variables[place].id.String());
      }
    }
    return ownIds_;
  }

  const SetWriting& writing_;
  const Codebook& codebook_;
  const Document& document_;
  std::vector<GroupPlan> plans_;
  Edits edits_;
  std::vector<NewElement> unplaced_;
  std::unordered_set<std::string> ownIds_;
  std::unordered_set<std::string> goneIds_;  // of the groups that go
  std::vector<Reference> references_;        // to them, in groups
};

}  // namespace

GroupReading ReadGroup(Element varGrp, TextArena& texts) {
  GroupReading reading;
  VariableSet& set = reading.set;
  reading.id = texts.Add(Trim(varGrp.Attribute("ID")));
  reading.members = texts.Add(varGrp.Attribute("var"));
  set.type = texts.Add(varGrp.Attribute("type"));
  reading.kind = set.type == "multipleResp" ? SetKind::MultipleResponse : SetKind::Variables;
  set.name = texts.AddCollapsed(varGrp.Attribute("name"));
  const Element labl = varGrp.Child(element::labl);
  Text label = texts.AddCollapsed(labl.Text());
  if (set.name.Empty() && !label.Empty()) {
    set.name = std::move(label);
    return reading;
  }
  if (set.name.Empty()) set.name = texts.AddCollapsed(varGrp.Attribute("ID"));
  if (labl) set.label = std::move(label);
  return reading;
}

bool IsSetOf(const Codebook& codebook, std::size_t group, std::size_t file, SetKind kind) {
  const Codebook::Group& at = codebook.groups[group];
  return at.reading.IsSet() && at.file == file && at.reading.kind == kind;
}

SetEdits WriteSets(const SetWriting& writing) { return SetWriter(writing).Write(); }

}  // namespace velahost
