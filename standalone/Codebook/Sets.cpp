#include "standalone/Codebook/Sets.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Codebook/Elements.h"
#include "standalone/Codebook/Ids.h"
#include "standalone/Codebook/Notes.h"
#include "standalone/Text/Hash.h"
#include "standalone/Text/Tokens.h"
#include "standalone/Text/Utf8.h"
#include "standalone/Xml/Editor.h"

namespace velahost {
namespace {

// A set that is written: how it was read, or null for one that came from another document.
struct Written {
  const VariableSet* set;
  const VariableSet* read;
  std::string id;  // its element's, may be empty
};

// The place of a set in the document that it came from.
std::size_t PlaceIn(const VariableSet& set) { return set.brought ? set.brought->place : 0; }

class SetWriter {
 public:
  explicit SetWriter(const SetWriting& writing)
      : writing_(writing),
        codebook_(*writing.file.codebook),
        document_(codebook_.document),
        editor_(document_, writing.layout) {}

  SetEdits Write() {
    static constexpr std::array kItems = {std::pair(SetKind::MultipleResponse, FileItem::MrSets),
                                          std::pair(SetKind::Variables, FileItem::VarSets)};
    for (const auto& [kind, item] : kItems) Plan(kind, writing_.changed.Has(item));
    for (const auto& [kind, item] : kItems) {
      if (writing_.changed.Has(item)) WriteKind(kind);
    }
    SetEdits result{std::move(editor_).Take(), std::move(unplaced_)};
    for (const Reference& reference : FindReferences(document_, goneIds_)) {
      WriteReference(document_, reference, result.edits);
    }
    return result;
  }

 private:
  std::vector<Written>& WrittenOf(SetKind kind) { return written_[static_cast<std::size_t>(kind)]; }

  // Finds the sets that stay, with their IDs, gives new ones theirs, and takes out the others.
  void Plan(SetKind kind, bool isChanged) {
    const std::vector<VariableSet>& asRead = writing_.file.dictionary.file.SetsOf(kind);
    std::unordered_map<std::size_t, const VariableSet*> left;  // by place
    for (const VariableSet& set : asRead) left.emplace(*set.place, &set);
    std::vector<const VariableSet*> added;
    for (const VariableSet& set : writing_.dictionary.file.SetsOf(kind)) {
      if (!set.place) {
        added.push_back(&set);
        continue;
      }
      WrittenOf(kind).push_back(
          {&set, left.at(*set.place), codebook_.groups[*set.place].reading.id.String()});
      left.erase(*set.place);
    }
    // New ones come in the order in which their own document has them.
    std::stable_sort(added.begin(), added.end(), [](const VariableSet* a, const VariableSet* b) {
      return PlaceIn(*a) < PlaceIn(*b);
    });
    for (const VariableSet* const set : added) {
      WrittenOf(kind).push_back({set, nullptr, writing_.ids.Make(IdKind::Set, set->name)});
    }
    if (isChanged && !left.empty()) RemoveSets(kind, left);
  }

  // Removes sets, with the groups of the same names that are not in the dictionary.
  void RemoveSets(SetKind kind, const std::unordered_map<std::size_t, const VariableSet*>& sets) {
    ViewSet names;
    for (const auto& [place, set] : sets) names.insert(set->name);
    for (const Codebook::Group& group : codebook_.groups) {
      const bool goes =
          group.isOfFile && group.reading.kind == kind && names.contains(group.reading.set.name);
      if (!goes) continue;
      editor_.Remove(group.element);
      if (!group.reading.id.Empty()) goneIds_.insert(group.reading.id.String());
    }
  }

  void WriteKind(SetKind kind) {
    const Codebook::Group* const last = LastOfFile();
    const Element description =
        codebook_.DescriptionAround(last == nullptr ? Element() : last->element);
    const MarkupPlace place = codebook_.PlaceAround(description);
    for (const Written& written : WrittenOf(kind)) {
      if (written.read != nullptr) {
        WriteGroup(written);
        continue;
      }
      NewElement added = NewGroup(written, kind, place);
      if (last == nullptr) {
        unplaced_.push_back(std::move(added));
      } else {
        editor_.InsertAfter(description, last->element, added);
      }
    }
  }

  const Codebook::Group* LastOfFile() const {
    const auto last = std::find_if(codebook_.groups.rbegin(), codebook_.groups.rend(),
                                   [](const Codebook::Group& group) { return group.isOfFile; });
    return last == codebook_.groups.rend() ? nullptr : &*last;
  }

  void WriteGroup(const Written& written) {
    const auto& [set, read, id] = written;
    const Codebook::Group& group = codebook_.groups[*set->place];
    if (set->label && set->label != read->label) WriteLabelOf(*set, *read, group.element);
    if (set->members != read->members) WriteMembers(*set, group);
  }

  void WriteLabelOf(const VariableSet& set, const VariableSet& read, Element group) {
    // The label must not be taken for the name.
    if (read.isNamedByLabel) editor_.SetAttribute(group, "name", set.name);
    WriteLabel(group, "", *set.label, set.languages, codebook_.languages, editor_);
  }

  // The members' IDs; behind them what the attribute names besides this file's variables.
  void WriteMembers(const VariableSet& set, const Codebook::Group& group) {
    std::vector<std::string> ids = MemberIds(set);
    const bool hasOwn = !ids.empty();
    bool hasOthers = false;
    for (std::string& id : SplitTokens(group.reading.members)) {
      if (OwnIds().contains(id)) continue;
      hasOthers |= codebook_.VariableOfId(id).has_value();
      ids.push_back(std::move(id));
    }
    if (ids.empty()) {
      editor_.RemoveAttribute(group.element, "var");
    } else {
      editor_.SetAttribute(group.element, "var", JoinTokens(ids));
    }
    if (!hasOwn && group.reading.file.Empty() && NeedsFileNote(hasOthers)) {
      editor_.Insert(group.element, NewFileNote());
    }
  }

  // Whether a set without variables of this file reads as another file's.
  bool NeedsFileNote(bool hasOthers) const {
    const std::size_t place = writing_.file.place;
    return (hasOthers || place != 0) && !codebook_.files[place].id.Empty();
  }

  NewElement NewFileNote() const {
    return NewNote(element::varGrp, kFileNote, codebook_.files[writing_.file.place].id.String());
  }

  NewElement NewGroup(const Written& written, SetKind kind, const MarkupPlace& place) {
    const VariableSet& set = *written.set;
    NewElement group{.element = element::varGrp};
    const bool isMultiple = kind == SetKind::MultipleResponse;
    group.attributes = {{"ID", written.id},
                        {"type", isMultiple         ? "multipleResp"
                                 : set.type.Empty() ? "other"
                                                    : set.type.String()}};
    if (!set.isNamedByLabel) group.attributes.emplace_back("name", set.name.String());
    const std::vector<std::string> ids = MemberIds(set);
    if (!ids.empty()) group.attributes.emplace_back("var", JoinTokens(ids));
    if (set.isNamedByLabel) {
      AddNamingLabels(group, set.name, set.languages, codebook_.languages);
    } else {
      AddLabels(group, "", set.label, set.languages, codebook_.languages);
    }
    if (set.brought) AddBrought(*set.brought, place, group);
    if (ids.empty() && NeedsFileNote(false)) group.children.push_back(NewFileNote());
    SortChildren(group, document_.Scopes().Words());
    return group;
  }

  void AddBrought(const BroughtSet& brought, const MarkupPlace& place, NewElement& group) {
    std::vector<std::string> subsets;
    for (const auto& [kind, name] : brought.subsets) {
      const std::string id = IdOf(kind, name);
      if (!id.empty()) subsets.push_back(id);
    }
    if (!subsets.empty()) group.attributes.emplace_back("varGrp", JoinTokens(subsets));
    for (const std::string& markup : brought.documentation) {
      group.children.push_back(NewCarried(place, markup));
    }
  }

  // The ID of a set that is written; empty where there is no such set, or it has no ID.
  std::string IdOf(SetKind kind, std::string_view name) {
    if (idsByName_.empty()) {
      for (const SetKind of : kSetKinds) {
        for (const Written& written : WrittenOf(of)) {
          idsByName_.emplace(std::pair(of, written.set->name.View()), written.id);
        }
      }
    }
    const auto found = idsByName_.find(std::pair(kind, name));
    return found == idsByName_.end() ? std::string() : found->second;
  }

  std::vector<std::string> MemberIds(const VariableSet& set) const {
    std::vector<std::string> ids;
    ids.reserve(set.members.size());
    for (const int member : set.members) ids.push_back(writing_.idOf(member));
    return ids;
  }

  // The IDs that the file's variables were read with.
  const TextSet& OwnIds() {
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
  Editor editor_;
  std::array<std::vector<Written>, kSetKinds.size()> written_;
  std::map<std::pair<SetKind, std::string_view>, std::string> idsByName_;
  std::vector<NewElement> unplaced_;
  TextSet ownIds_;
  TextSet goneIds_;  // of the groups that go
};

}  // namespace

GroupReading ReadGroup(Element varGrp, LabelReader& labels, TextArena& texts) {
  GroupReading reading;
  VariableSet& set = reading.set;
  reading.id = texts.Add(Trim(varGrp.Attribute("ID")));
  reading.members = texts.Add(varGrp.Attribute("var"));
  reading.subsets = texts.Add(varGrp.Attribute("varGrp"));
  reading.file = texts.AddCollapsed(FindNote(varGrp, kFileNote).Text());
  set.type = texts.Add(varGrp.Attribute("type"));
  reading.kind = set.type == "multipleResp" ? SetKind::MultipleResponse : SetKind::Variables;
  set.name = texts.AddCollapsed(varGrp.Attribute("name"));
  set.isNamedByLabel = set.name.Empty();
  Element label = labels.Find(varGrp);
  if (!label && set.isNamedByLabel) label = LabelReader::FindFirst(varGrp);
  set.languages = labels.LanguagesOf(varGrp, label, texts);
  if (!label) return reading;
  const Text text = texts.AddCollapsed(label.Text());
  if (set.isNamedByLabel) {
    set.name = text;
  } else {
    set.label = text;
  }
  return reading;
}

SetEdits WriteSets(const SetWriting& writing) { return SetWriter(writing).Write(); }

}  // namespace velahost
