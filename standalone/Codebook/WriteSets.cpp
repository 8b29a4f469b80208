#include "standalone/Codebook/WriteSets.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "standalone/Codebook/ContainerEdits.h"
#include "standalone/Codebook/ElementEditor.h"
#include "standalone/Codebook/ReadVariable.h"
#include "standalone/Codebook/SetReferences.h"

namespace velahost {

namespace {

using Node = XmlTree::Node;

// What becomes of a varGrp.
struct GroupPlan {
  const VariableSet* set = nullptr;  // what it is to read as; null: as it does
  std::size_t place = 0;             // the group in whose place it stands
  bool goes = false;
};

class SetWriter {
 public:
  explicit SetWriter(const SetWriting& writing)
      : writing_(writing), codebook_(writing.codebook), plans_(writing.codebook.groups.size()) {
    for (std::size_t i = 0; i < plans_.size(); ++i) plans_[i].place = i;
  }

  std::vector<NewElement> Write() {
    for (const std::string_view property :
         DifferingProperties(writing_.file.AsRead(), writing_.file.now)) {
      if (property == "mrsets") Plan(VarSetsMrSets);
      if (property == "varsets") Plan(VarSetsVariableSets);
    }
    WriteReferences();
    for (std::size_t i = 0; i < plans_.size(); ++i) WriteGroup(i);
    return std::move(unplaced_);
  }

 private:
  // Finds for each set of the kind the element that it keeps, and the places of all.
  void Plan(VarSetsType kind) {
    std::vector<std::size_t> present;
    for (std::size_t i = 0; i < codebook_.groups.size(); ++i) {
      const Codebook::Group& group = codebook_.groups[i];
      if (group.IsSet() && group.file == writing_.file.place && group.set.kind == kind) {
        present.push_back(i);
      }
    }
    const auto& sets = writing_.file.now.sets[static_cast<std::size_t>(kind)];
    std::map<std::string, std::vector<std::size_t>> byName;  // those left, the first one last
    std::reverse(present.begin(), present.end());
    for (const std::size_t group : present) {
      byName[codebook_.groups[group].set.name].push_back(group);
    }
    std::vector<std::optional<std::size_t>> elements;  // of each set
    std::vector<std::size_t> places;
    for (const VariableSet& set : sets) {
      auto& left = byName[set.name];
      if (left.empty()) {
        elements.emplace_back();
        continue;
      }
      elements.emplace_back(left.back());
      places.push_back(left.back());
      left.pop_back();
    }
    for (const auto& [name, left] : byName) {
      for (const std::size_t group : left) {
        plans_[group].goes = true;
        if (!codebook_.groups[group].id.empty()) goneIds_.insert(codebook_.groups[group].id);
      }
    }
    std::sort(places.begin(), places.end());
    Place(sets, elements, places);
  }

  void Place(const std::vector<VariableSet>& sets,
             const std::vector<std::optional<std::size_t>>& elements,
             const std::vector<std::size_t>& places) {
    auto place = places.begin();
    for (std::size_t i = 0; i < sets.size(); ++i) {
      if (elements[i]) {
        plans_[*elements[i]].set = &sets[i];
        plans_[*elements[i]].place = *place++;
        continue;
      }
      NewElement element = NewSet(sets[i]);
      if (places.empty()) {
        unplaced_.push_back(std::move(element));
      } else if (place == places.begin()) {
        InsertBefore(codebook_, codebook_.groups[*place], element, writing_.layout, writing_.edits);
      } else {
        InsertAfter(codebook_, codebook_.groups[*std::prev(place)], element, writing_.layout,
                    writing_.edits);
      }
    }
  }

  void WriteGroup(std::size_t index) {
    const Codebook::Group& group = codebook_.groups[index];
    const GroupPlan& plan = plans_[index];
    if (plan.goes) {
      const std::size_t space = SpaceBefore(codebook_.text, group.begin).size();
      writing_.edits.Replace(group.begin - space, group.end, "");
      return;
    }
    const bool moves = plan.place != index;
    std::string bytes = Edited(group, plan.set);
    if (!moves && bytes == codebook_.Bytes(group)) return;
    const Codebook::Group& place = codebook_.groups[plan.place];
    writing_.edits.ReplaceBytes(place.begin, place.end, std::move(bytes));
  }

  // The group's bytes as they will be.
  std::string Edited(const Codebook::Group& group, const VariableSet* set) {
    const bool sameLabel = set == nullptr || SameLabel(*set, group.set);
    const bool sameMembers = set == nullptr || set->members == codebook_.MemberNames(group);
    if (sameLabel && sameMembers && goneIds_.empty()) return std::string(codebook_.Bytes(group));
    Edits edits(codebook_.encoding);
    ElementEditor editor(codebook_, writing_.layout, *group.tree, edits);
    if (!sameLabel) WriteLabel(*set, group, editor);
    if (!sameMembers) WriteMembers(*set, group, editor);
    editor.Finish();
    WriteReferences(group, edits);
    return edits.Apply(codebook_.text, group.begin, group.end);
  }

  static bool SameLabel(const VariableSet& a, const VariableSet& b) {
    return a.flags == b.flags && a.label == b.label;
  }

  static void WriteLabel(const VariableSet& set, const Codebook::Group& group,
                         ElementEditor& editor) {
    const XmlTree& tree = *group.tree;
    const Node root = group.root;
    const auto labels = tree.FindAll(root, Element::labl);
    if (!set.flags[VariableSet::HasLabel]) {
      for (const Node label : labels) editor.Remove(label);
      return;
    }
    // The label must not be taken for the name.
    if (!tree.Attribute(root, "name")) editor.SetAttribute(root, "name", set.name);
    if (labels.empty()) {
      editor.Insert(root, {.element = Element::labl, .attributes = {}, .text = set.label});
    } else {
      editor.SetText(labels.front(), set.label);
    }
  }

  // The members' IDs; behind them those of other files' variables, which this file's sets do not
  // tell of.
  void WriteMembers(const VariableSet& set, const Codebook::Group& group, ElementEditor& editor) {
    std::vector<std::string> ids = MemberIds(set);
    if (ids.empty()) {
      editor.RemoveAttribute(group.root, "var");
      return;
    }
    for (std::string& id : SplitTokens(group.tree->Attribute(group.root, "var").value_or(""))) {
      if (!OwnIds().contains(id)) ids.push_back(std::move(id));
    }
    editor.SetAttribute(group.root, "var", JoinTokens(ids));
  }

  // Takes the sets that go out of what refers to them outside the groups.
  void WriteReferences() {
    references_ = FindSetReferences(codebook_, goneIds_);
    std::erase_if(references_, [this](const SetReference& reference) {
      const auto after =
          std::upper_bound(codebook_.groups.begin(), codebook_.groups.end(), reference.begin,
                           [](std::size_t position, const Codebook::Group& group) {
                             return position < group.begin;
                           });
      const bool inGroup =
          after != codebook_.groups.begin() && reference.begin < std::prev(after)->end;
      if (!inGroup) WriteSetReference(codebook_, reference, writing_.edits);
      return !inGroup;
    });
  }

  // The same within a group.
  void WriteReferences(const Codebook::Group& group, Edits& edits) const {
    auto reference = std::lower_bound(
        references_.begin(), references_.end(), group.begin,
        [](const SetReference& a, std::size_t position) { return a.begin < position; });
    for (; reference != references_.end() && reference->begin < group.end; ++reference) {
      WriteSetReference(codebook_, *reference, edits);
    }
  }

  NewElement NewSet(const VariableSet& set) {
    const bool multiple = set.kind == VarSetsMrSets;
    const std::string type = multiple ? "multipleResp" : set.type.empty() ? "other" : set.type;
    NewElement group{
        .element = Element::varGrp,
        .attributes = {{"ID", writing_.ids.Make(set.name)}, {"type", type}, {"name", set.name}}};
    const std::vector<std::string> ids = MemberIds(set);
    if (!ids.empty()) group.attributes.emplace_back("var", JoinTokens(ids));
    if (set.flags[VariableSet::HasLabel]) {
      group.children.push_back({.element = Element::labl, .attributes = {}, .text = set.label});
    }
    return group;
  }

  std::vector<std::string> MemberIds(const VariableSet& set) const {
    std::vector<std::string> ids;
    for (const std::string& member : set.members) {
      const int column = writing_.file.Find(member);
      if (column >= 0) ids.push_back(writing_.variableId(column));
    }
    return ids;
  }

  // The IDs that the file's variables were read with.
  const std::unordered_set<std::string>& OwnIds() {
    if (ownIds_.empty()) {
      for (std::size_t i = 0; i < writing_.file.readCount; ++i) {
        const std::size_t place = HostAccess::Of(writing_.file.variables[i]).place;
        ownIds_.insert(codebook_.variables[place].id);
      }
    }
    return ownIds_;
  }

  const SetWriting& writing_;
  const Codebook& codebook_;
  std::vector<GroupPlan> plans_;
  std::vector<NewElement> unplaced_;
  std::unordered_set<std::string> ownIds_;
  std::unordered_set<std::string> goneIds_;  // of the groups that go
  std::vector<SetReference> references_;     // to them, in groups
};

}  // namespace

std::vector<NewElement> WriteSets(const SetWriting& writing) { return SetWriter(writing).Write(); }

}  // namespace velahost
