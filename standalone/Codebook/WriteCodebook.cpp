#include <algorithm>
#include <deque>
#include <future>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "standalone/Codebook/ContainerEdits.h"
#include "standalone/Codebook/DocumentIds.h"
#include "standalone/Codebook/Edits.h"
#include "standalone/Codebook/ElementEditor.h"
#include "standalone/Codebook/OpenCodebook.h"
#include "standalone/Codebook/ReadVariable.h"
#include "standalone/Codebook/WriteFile.h"
#include "standalone/Codebook/WriteSets.h"
#include "standalone/Codebook/WriteVariable.h"
#include "standalone/Data/DataSource.h"
#include "standalone/Data/Variable.h"
#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

using Node = XmlTree::Node;

// Variables are written so many at a time: enough to be worth a thread, few enough to take little
// memory.
constexpr std::size_t kVariablesAtOnce = 2048;

// Writes one document. The changes outside its variables are gathered first, as edits of its text.
// Then the document goes out in stretches, each with the edits of its variables; while one goes
// out, as many are made as the machine has threads.
class CodebookWriter {
 public:
  explicit CodebookWriter(const VELA_DataSource::Impl& file)
      : file_(file),
        codebook_(*file.document),
        layout_(LayoutOf(codebook_)),
        edits_(codebook_.encoding),
        ids_(codebook_),
        newIds_(file.variables.size()) {}

  void Write(const ByteSink& sink) {
    WriteSetsAndNewIds();
    WriteFileDescription();
    AddToDataDescription();
    InsertInto(codebook_, codebook_.root, newInRoot_, layout_, edits_);
    edits_.Sort();
    const std::size_t threads = std::max(1U, std::thread::hardware_concurrency());
    std::deque<std::future<std::string>> made;
    for (const Stretch& stretch : Stretches()) {
      made.push_back(std::async(&CodebookWriter::BytesOf, this, stretch));
      if (made.size() <= threads) continue;
      sink(made.front().get());
      made.pop_front();
    }
    for (std::future<std::string>& last : made) sink(last.get());
  }

 private:
  // A part of the text, and the columns whose variables stand in it.
  struct Stretch {
    std::size_t begin;
    std::size_t end;
    std::size_t firstColumn;
    std::size_t lastColumn;  // the one behind them
  };

  // The text from end to end, cut behind variables.
  std::vector<Stretch> Stretches() const {
    std::vector<Stretch> stretches;
    for (std::size_t column = 0; column < file_.readCount; column += kVariablesAtOnce) {
      const std::size_t begin = stretches.empty() ? 0 : stretches.back().end;
      const std::size_t last = std::min(column + kVariablesAtOnce, file_.readCount);
      stretches.push_back({begin, AsRead(last - 1).end, column, last});
    }
    if (stretches.empty()) stretches.push_back({0, 0, 0, 0});
    // One byte more than there is takes in what is inserted behind all.
    stretches.back().end = codebook_.text.size() + 1;
    return stretches;
  }

  const VELA_Variable::Impl& Variable(std::size_t column) const {
    return HostAccess::Of(file_.variables[column]);
  }
  const Codebook::Variable& AsRead(std::size_t column) const {
    return codebook_.variables[Variable(column).place];
  }
  bool IsNew(std::size_t column) const { return column >= file_.readCount; }

  // Sets come first: they decide which variables need an ID.
  void WriteSetsAndNewIds() {
    for (std::size_t i = file_.readCount; i < file_.variables.size(); ++i) IdOf(i);
    newSets_ = WriteSets({file_, codebook_, layout_, ids_, edits_,
                          [this](int column) { return IdOf(static_cast<std::size_t>(column)); }});
  }

  // The ID of a variable; one that has none is given one.
  std::string IdOf(std::size_t column) {
    if (!IsNew(column) && !AsRead(column).id.empty()) return AsRead(column).id;
    if (newIds_[column].empty()) newIds_[column] = ids_.Make(Variable(column).name);
    return newIds_[column];
  }

  // A stretch with all changes in it. Called on several threads at once.
  std::string BytesOf(const Stretch& stretch) const {
    Edits edits(codebook_.encoding);
    WriteVariables(stretch, edits);
    edits.TakeOver(edits_, stretch.begin, stretch.end);
    return edits.Apply(codebook_.text, stretch.begin, std::min(stretch.end, codebook_.text.size()));
  }

  void WriteVariables(const Stretch& stretch, Edits& edits) const {
    for (std::size_t i = stretch.firstColumn; i < stretch.lastColumn; ++i) {
      const VELA_Variable::Impl& variable = Variable(i);
      const bool weights =
          SetsWeight() && file_.now.weight == static_cast<int>(i) && !AsRead(i).weights;
      if (!variable.before && !weights && newIds_[i].empty()) continue;
      const Codebook::Variable& element = AsRead(i);
      ElementEditor editor(codebook_, layout_, *element.tree, edits);
      if (!newIds_[i].empty()) editor.SetAttribute(element.root, "ID", newIds_[i]);
      if (weights) editor.SetAttribute(element.root, "wgt", "wgt");
      WriteVariable(variable, *element.tree, element.root, editor);
      editor.Finish();
    }
  }

  // Whether the document would not read as weighted as the file is now.
  bool SetsWeight() const { return file_.now.weight != file_.AsRead().weight; }

  // What the weight's note must say: nothing where the attribute alone says which variable it is.
  std::optional<std::string> WeightNote() const {
    if (file_.now.weight < 0) return std::nullopt;
    const auto weight = static_cast<std::size_t>(file_.now.weight);
    for (std::size_t i = 0; i < file_.readCount; ++i) {
      if (i != weight && AsRead(i).weights) return Variable(weight).name;
    }
    return std::nullopt;
  }

  void WriteFileDescription() {
    const Codebook::File& place = codebook_.files[file_.place];
    if (place.end == 0) {
      AddFileDescription();
      return;
    }
    const bool mayRename = file_.variables.size() > file_.readCount;
    if (!file_.before && !mayRename) return;
    ElementEditor editor(codebook_, layout_, *place.tree, edits_);
    WriteFile(file_, *place.tree, place.root, editor);
    WriteWeightNote(place, editor);
    editor.Finish();
  }

  void WriteWeightNote(const Codebook::File& place, ElementEditor& editor) {
    const XmlTree& tree = *place.tree;
    const Node note = FindNote(tree, place.root, kWeightNote);
    if (note == XmlTree::kNone) {
      if (!SetsWeight()) return;
      if (const auto name = WeightNote()) {
        editor.Insert(place.root, NewNote(Element::fileDscr, kWeightNote, *name));
      }
      return;
    }
    if (file_.Find(LineOfText(tree, note)) == file_.now.weight) return;
    // The note named another variable, or none until one of that name was added.
    editor.SetText(note, file_.now.weight < 0
                             ? std::string()
                             : Variable(static_cast<std::size_t>(file_.now.weight)).name);
  }

  void AddFileDescription() {
    const std::optional<std::string> weight = SetsWeight() ? WeightNote() : std::nullopt;
    NewElement fileDscr = NewFile(file_.now, weight);
    if (!fileDscr.children.empty()) newInRoot_.push_back(std::move(fileDscr));
  }

  // New sets that have no place among others, and the new variables.
  void AddToDataDescription() {
    std::vector<NewElement> variables;
    const std::string& fileId = codebook_.files[file_.place].id;
    for (std::size_t i = file_.readCount; i < file_.variables.size(); ++i) {
      const bool weights = SetsWeight() && file_.now.weight == static_cast<int>(i);
      variables.push_back(NewVariable(Variable(i), IdOf(i), fileId, weights, layout_));
    }
    if (variables.empty() && newSets_.empty()) return;
    if (codebook_.dataDescriptions.empty()) {
      NewElement dataDscr{.element = Element::dataDscr,
                          .attributes = {},
                          .text = {},
                          .children = std::move(newSets_)};
      for (NewElement& variable : variables) dataDscr.children.push_back(std::move(variable));
      newInRoot_.push_back(std::move(dataDscr));
      return;
    }
    if (file_.readCount > 0) {
      for (const NewElement& variable : variables) {
        InsertAfter(codebook_, AsRead(file_.readCount - 1), variable, layout_, edits_);
      }
      variables.clear();
    }
    std::move(variables.begin(), variables.end(), std::back_inserter(newSets_));
    InsertInto(codebook_, codebook_.dataDescriptions.front(), newSets_, layout_, edits_);
  }

  const VELA_DataSource::Impl& file_;
  const Codebook& codebook_;
  const Layout layout_;
  Edits edits_;
  DocumentIds ids_;
  std::vector<std::string> newIds_;  // by column; empty for none
  std::vector<NewElement> newSets_;
  std::vector<NewElement> newInRoot_;  // inserted at once: an empty root is opened only once
};

}  // namespace

void WriteCodebook(const VELA_DataSource& dataSource, const ByteSink& sink) {
  CodebookWriter(HostAccess::Of(dataSource)).Write(sink);
}

std::string WriteCodebook(const VELA_DataSource& dataSource) {
  std::string document;
  WriteCodebook(dataSource, [&](std::string_view bytes) { document += bytes; });
  return document;
}

}  // namespace velahost
