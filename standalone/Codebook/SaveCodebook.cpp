#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Codebook/Elements.h"
#include "standalone/Codebook/FileDescription.h"
#include "standalone/Codebook/Ids.h"
#include "standalone/Codebook/Notes.h"
#include "standalone/Codebook/Sets.h"
#include "standalone/Codebook/Variables.h"
#include "standalone/Dictionary/Changes.h"
#include "standalone/Dictionary/VariableNames.h"
#include "standalone/Parallel/InOrder.h"
#include "standalone/Text/Tokens.h"
#include "standalone/Text/Utf8.h"
#include "standalone/Xml/Editor.h"

namespace velahost {
namespace {

// Variables are written so many at a time, and less once they take so many bytes of the document:
// enough to be worth a thread, few enough for what is made of them to stay in a processor's cache.
constexpr std::size_t kVariablesAtOnce = 512;
constexpr std::size_t kBytesAtOnce = std::size_t{1} << 19;

// The layout of a codebook: a level is what variables are indented by in their description.
Layout LayoutOfCodebook(const Codebook& codebook) {
  const Element description = codebook.document.Root().Child(element::dataDscr);
  if (!description) return LayoutOf(codebook.document, {}, {});
  if (codebook.variables.empty()) return LayoutOf(codebook.document, {}, description);
  return LayoutOf(codebook.document, description, codebook.variables.front().element);
}

// Writes one document. The changes outside its variables are gathered first, as edits of its text.
// Then the document goes out in stretches, each with the edits of its variables; while one goes
// out, the next are made on all threads.
class CodebookWriter {
 public:
  CodebookWriter(const CodebookFile& file, const Dictionary& now, const Changes& changes)
      : file_(file),
        now_(now),
        changes_(changes),
        changed_(changes.file),
        codebook_(*file.codebook),
        document_(codebook_.document),
        layout_(LayoutOfCodebook(codebook_)),
        edits_(document_.Encoding()),
        ids_(codebook_),
        newIds_(now.variables.size()) {
    for (std::size_t i = ReadCount(); i < now.variables.size(); ++i) {
      newNames_.Add(*now.variables[i]);
    }
  }

  void Write(const ByteSink& sink) {
    WriteSetsAndNewIds();
    WriteFile();
    AddToDataDescription();
    Editor editor(document_, layout_);
    for (const NewElement& added : newInRoot_) editor.Insert(document_.Root(), added);
    edits_.Add(std::move(editor).Take());
    const std::vector<Stretch> stretches = Stretches();
    InOrder made(stretches.size(), [&](std::size_t i) { return BytesOf(stretches[i]); });
    made.TakeAll(sink);
  }

 private:
  // A part of the text, and the columns whose variables stand in it. New variables are stretches of
  // no text.
  struct Stretch {
    std::size_t begin;
    std::size_t end;
    std::size_t firstColumn;
    std::size_t lastColumn;  // the one after them
  };

  std::size_t ReadCount() const { return file_.variablePlaces.size(); }
  bool IsNew(std::size_t column) const { return column >= ReadCount(); }
  const Codebook::Variable& AsRead(std::size_t column) const {
    return codebook_.variables[file_.variablePlaces[column]];
  }

  // The text from end to end, cut after variables. The new ones stand after the last one.
  std::vector<Stretch> Stretches() const {
    std::vector<Stretch> stretches(1);
    for (std::size_t column = 0; column < ReadCount(); ++column) {
      const Stretch& last = stretches.back();
      const bool isFull = last.lastColumn - last.firstColumn == kVariablesAtOnce ||
                          last.end - last.begin >= kBytesAtOnce;
      if (isFull) stretches.push_back({last.end, last.end, column, column});
      stretches.back().end = AsRead(column).element.End();
      stretches.back().lastColumn = column + 1;
    }
    if (ReadCount() > 0 && ReadCount() < now_.variables.size()) {
      const std::size_t end = stretches.back().end;
      for (std::size_t column = ReadCount(); column < now_.variables.size();) {
        const std::size_t first = column;
        column = std::min(column + kVariablesAtOnce, now_.variables.size());
        stretches.push_back({end, end, first, column});
      }
      stretches.push_back({end, end, now_.variables.size(), now_.variables.size()});
    }
    // One byte more than there is takes in what is inserted after everything.
    stretches.back().end = document_.Text().size() + 1;
    return stretches;
  }

  // Sets come first: they decide which variables need an ID.
  void WriteSetsAndNewIds() {
    for (std::size_t i = ReadCount(); i < now_.variables.size(); ++i) IdOf(i);
    SetEdits sets = WriteSets({file_, now_, changed_, layout_, ids_, [this](int column) {
                                 return IdOf(static_cast<std::size_t>(column));
                               }});
    edits_.Add(sets.edits);
    newSets_ = std::move(sets.unplaced);
  }

  // The ID of a variable; one that has none is given one.
  std::string IdOf(std::size_t column) {
    if (!IsNew(column) && !AsRead(column).id.Empty()) return AsRead(column).id.String();
    if (newIds_[column].empty())
      newIds_[column] = ids_.Make(IdKind::Variable, now_.variables[column]->name);
    return newIds_[column];
  }

  // A stretch with all changes in it. Called on several threads at once.
  std::string BytesOf(const Stretch& stretch) const {
    Edits edits(document_.Encoding());
    edits.AddBetween(edits_, stretch.begin, stretch.end);
    Editor editor(document_, layout_);
    IsNew(stretch.firstColumn) ? AddNewVariables(stretch, editor) : WriteVariables(stretch, editor);
    Edits ofVariables = std::move(editor).Take();
    ofVariables.Add(edits);
    return ofVariables.Apply(document_.Text(), stretch.begin,
                             std::min(stretch.end, document_.Text().size()));
  }

  void WriteVariables(const Stretch& stretch, Editor& editor) const {
    auto change = std::lower_bound(
        changes_.changed.begin(), changes_.changed.end(), stretch.firstColumn,
        [](const Changes::OfVariable& of, std::size_t column) { return of.column < column; });
    for (std::size_t i = stretch.firstColumn; i < stretch.lastColumn; ++i) {
      now_.FetchAfter(i);
      const bool isChanged = change != changes_.changed.end() && change->column == i;
      WriteColumn(i, isChanged ? change++->properties : PropertySet(), editor);
    }
  }

  // After the last variable of the document; of a stretch of none nothing.
  void AddNewVariables(const Stretch& stretch, Editor& editor) const {
    if (stretch.firstColumn == stretch.lastColumn) return;
    const Element last = AsRead(ReadCount() - 1).element;
    const Element description = codebook_.DescriptionAround(last);
    for (std::size_t i = stretch.firstColumn; i < stretch.lastColumn; ++i) {
      editor.InsertAfter(description, last, NewVariableAt(i));
    }
  }

  void WriteColumn(std::size_t column, PropertySet changed, Editor& editor) const {
    const Codebook::Variable& read = AsRead(column);
    if (!newIds_[column].empty()) editor.SetAttribute(read.element, "ID", newIds_[column]);
    const bool weights =
        SetsWeight() && now_.file.weight == static_cast<int>(column) && !read.weights;
    if (weights) editor.SetAttribute(read.element, "wgt", "wgt");
    if (changed.Empty()) return;
    WriteVariable(
        read.element, *file_.dictionary.variables[column], *now_.variables[column], changed,
        codebook_.languages,
        changed.Has(Property::Documentation) ? PlaceInVariable(read.element) : MarkupPlace(),
        editor);
  }

  MarkupPlace PlaceInVariable(Element var) const {
    return PlaceIn(document_, {document_.Root(), codebook_.DescriptionAround(var), var});
  }

  // Whether the document would not read as weighted as the file is now.
  bool SetsWeight() const { return changed_.Has(FileItem::Weight); }

  // What the weight's note must say: nothing where the attribute alone says which variable it is.
  std::optional<std::string> WeightNote() const {
    if (now_.file.weight < 0) return std::nullopt;
    const auto weight = static_cast<std::size_t>(now_.file.weight);
    for (std::size_t i = 0; i < ReadCount(); ++i) {
      if (i != weight && AsRead(i).weights) return NameAt(now_.file.weight);
    }
    return std::nullopt;
  }

  std::string NameAt(int column) const {
    return now_.variables[static_cast<std::size_t>(column)]->name.String();
  }

  // The column of the variable of that name as the file is now, or -1.
  int FindNow(std::string_view name) const {
    const int column = file_.names.Find(name);
    if (column >= 0) return column;
    const int added = newNames_.Find(name);
    return added < 0 ? -1 : added + static_cast<int>(ReadCount());
  }

  void WriteFile() {
    const Element fileDscr = codebook_.files[file_.place].element;
    if (!fileDscr) {
      const std::optional<std::string> weight = SetsWeight() ? WeightNote() : std::nullopt;
      NewElement added = NewFileDescription(now_.file, weight);
      if (!added.children.empty()) newInRoot_.push_back(std::move(added));
      return;
    }
    Editor editor(document_, layout_);
    WriteFileDescription(fileDscr, now_.file, changed_, editor);
    WriteWeightNote(fileDscr, editor);
    edits_.Add(std::move(editor).Take());
  }

  void WriteWeightNote(Element fileDscr, Editor& editor) const {
    const Element note = FindNote(fileDscr, kWeightNote);
    if (!note) {
      if (!SetsWeight()) return;
      if (const auto name = WeightNote()) {
        editor.Insert(fileDscr, NewNote(element::fileDscr, kWeightNote, *name));
      }
      return;
    }
    if (FindNow(LineOf(note)) == now_.file.weight) return;
    // The note named another variable, or none until one of that name was added.
    editor.SetText(note, now_.file.weight < 0 ? std::string() : NameAt(now_.file.weight));
  }

  // How a new variable names its file: as the file's last one does. Where that is in several files
  // the new one is in this file alone: another one may have a variable of its name.
  NewVariablePlace PlaceOfNew() const {
    NewVariablePlace place;
    if (ReadCount() == 0) {
      place.files = codebook_.files[file_.place].id.String();
      return place;
    }
    const Element last = AsRead(ReadCount() - 1).element;
    place.files = last.Attribute("files").View();
    const std::string id = codebook_.files[file_.place].id.String();
    if (SplitTokens(place.files).size() > 1 && !id.empty()) place.files = id;
    if (!Trim(place.files).empty()) return place;
    place.files.clear();
    for (const Element location : last.All(element::location)) {
      place.locationFile = Trim(location.Attribute("fileid"));
      if (!place.locationFile.empty()) break;
    }
    return place;
  }

  // The IDs of the variables of these names, as far as they have one.
  std::vector<std::string> IdsOf(const std::vector<Text>& names) const {
    std::vector<std::string> ids;
    for (const Text& name : names) {
      const int column = FindNow(name);
      if (column < 0) continue;
      const auto at = static_cast<std::size_t>(column);
      std::string id = IsNew(at) || AsRead(at).id.Empty() ? newIds_[at] : AsRead(at).id.String();
      if (!id.empty()) ids.push_back(std::move(id));
    }
    return ids;
  }

  // The element of a new variable, which has its ID already.
  NewElement NewVariableAt(std::size_t column) const {
    const Variable& variable = *now_.variables[column];
    NewVariablePlace place = placeOfNew_;
    place.id = newIds_[column];
    place.weights = SetsWeight() && now_.file.weight == static_cast<int>(column);
    if (variable.brought) place.weightIds = IdsOf(variable.brought->weightNames);
    return NewVariable(variable, place, codebook_.languages);
  }

  // New sets that have no place behind others, and new variables where there is none that they
  // could follow.
  void AddToDataDescription() {
    const Element last = ReadCount() > 0 ? AsRead(ReadCount() - 1).element : Element();
    const Element description = codebook_.DescriptionAround(last);
    placeOfNew_ = PlaceOfNew();
    placeOfNew_.markup = codebook_.PlaceAround(description);
    std::vector<NewElement> added = std::move(newSets_);
    for (std::size_t i = 0; !last && i < now_.variables.size(); ++i) {
      added.push_back(NewVariableAt(i));
    }
    if (added.empty()) return;
    if (!description) {
      newInRoot_.push_back({.element = element::dataDscr, .children = std::move(added)});
      return;
    }
    Editor editor(document_, layout_);
    for (const NewElement& element : added) editor.Insert(description, element);
    edits_.Add(std::move(editor).Take());
  }

  const CodebookFile& file_;
  const Dictionary& now_;
  const Changes& changes_;
  const FileItemSet changed_;  // of the file
  const Codebook& codebook_;
  const Document& document_;
  const Layout layout_;
  Edits edits_;
  DocumentIds ids_;
  VariableNames newNames_;           // of the variables behind those that were read
  std::vector<std::string> newIds_;  // by column; empty for none
  NewVariablePlace placeOfNew_;      // without what each has of its own
  std::vector<NewElement> newSets_;
  std::vector<NewElement> newInRoot_;  // inserted at once, in their order there
};

}  // namespace

void WriteCodebook(const CodebookFile& file, const Dictionary& dictionary, const Changes& changes,
                   const ByteSink& sink) {
  CodebookWriter(file, dictionary, changes).Write(sink);
}

std::string WriteCodebook(const CodebookFile& file, const Dictionary& dictionary) {
  std::string document;
  WriteCodebook(file, dictionary, ChangesBetween(file.dictionary, dictionary),
                [&](std::string_view bytes) { document += bytes; });
  return document;
}

}  // namespace velahost
