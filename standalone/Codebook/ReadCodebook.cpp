#include "standalone/Codebook/ReadCodebook.h"

#include <algorithm>
#include <deque>
#include <future>
#include <utility>

#include "standalone/Codebook/OpenCodebook.h"
#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

using Node = XmlTree::Node;

// Variables are read when so many elements have come: enough to be worth a thread, few enough to
// take little memory.
constexpr std::size_t kElementsAtOnce = 8192;
// Batches that may wait until they are read.
constexpr std::size_t kBatchesAhead = 4;

// Variables of a document that have been parsed and are to be read.
struct Batch {
  XmlTree tree;
  std::vector<Node> variables;
};

std::vector<VariableReading> ReadBatch(const Batch& batch) {
  std::vector<VariableReading> readings;
  readings.reserve(batch.variables.size());
  for (const Node var : batch.variables) readings.push_back(ReadVariable(batch.tree, var));
  return readings;
}

// Reads a document as its events come: each fileDscr, varGrp and var is gathered in a tree, read,
// and forgotten again; of everything else only the place is kept. The variables of a large document
// are read on another thread while the parser goes on.
class DocumentReader : public XmlHandler {
 public:
  explicit DocumentReader(CodebookReading& reading)
      : reading_(reading), codebook_(*reading.codebook) {}

  void Start(const XmlStart& start) override {
    const Namespaces::Scope around = scopes_.empty() ? Namespaces::kOutermost : scopes_.back();
    if (inTree_) {
      batch_.tree.Start(start);
      return;
    }
    ++depth_;
    if (depth_ > 3) return;
    scopes_.push_back(start.scope);
    if (depth_ == 1) return StartRoot(start);
    const Element parent = path_.back();
    path_.push_back(start.element);
    begins_.push_back(start.begin);
    const bool isTree = parent == Element::codeBook
                            ? start.element == Element::fileDscr
                            : parent == Element::dataDscr && (start.element == Element::var ||
                                                              start.element == Element::varGrp);
    if (isTree) {
      treeScope_ = around;
      inTree_ = true;
      batch_.tree.Start(start);
    } else if (parent == Element::codeBook && start.element == Element::dataDscr) {
      Codebook::Container container;
      container.begin = start.begin;
      container.contentBegin = start.end;
      container.scope = around;
      container.element = Element::dataDscr;
      codebook_.dataDescriptions.push_back(container);
    }
  }

  bool ReadsText(Element element) const override { return inTree_ && XmlTree::ReadsText(element); }

  void End(std::size_t begin, std::size_t end) override {
    if (inTree_) {
      batch_.tree.End(begin, end);
      if (!batch_.tree.Complete()) return;
      inTree_ = false;
      ReadTree();
    }
    if (depth_-- > 3) return;
    scopes_.pop_back();
    const Element element = path_.back();
    path_.pop_back();
    const std::size_t elementBegin = begins_.back();
    begins_.pop_back();
    if (path_.empty()) {
      Close(codebook_.root, begin, end);
      return;
    }
    const Codebook::Place place = {elementBegin, end, Namespaces::kOutermost};
    if (path_.back() == Element::codeBook) codebook_.root.last[element] = place;
    if (path_.back() == Element::dataDscr) codebook_.dataDescriptions.back().last[element] = place;
    if (path_.back() == Element::codeBook && element == Element::dataDscr) {
      Close(codebook_.dataDescriptions.back(), begin, end);
    }
  }

  void Text(std::string_view text) override { batch_.tree.Text(text); }

  // Reads what is left. Called when all events have come.
  void Finish() {
    while (!ahead_.empty()) TakeOldest();
    Take(ReadBatch(batch_));
  }

 private:
  void StartRoot(const XmlStart& start) {
    if (LocalNameOf(start.name) != "codeBook") {
      throw CodebookError(codebook_.path + ": line " +
                          std::to_string(LineCounter(codebook_.text).LineOf(start.begin)) +
                          ": the document is no codebook: its root element is " + start.name +
                          ", not codeBook");
    }
    codebook_.namespaces.Adopt(start.scope, PrefixOf(start.name));
    codebook_.root.begin = start.begin;
    codebook_.root.contentBegin = start.end;
    codebook_.root.element = Element::codeBook;
    path_.push_back(Element::codeBook);
    begins_.push_back(start.begin);
  }

  static void Close(Codebook::Container& container, std::size_t begin, std::size_t end) {
    container.contentEnd = begin;
    container.end = end;
  }

  void ReadTree() {
    const Node root = batch_.tree.Root();
    const Codebook::Place place = {batch_.tree.Begin(root), batch_.tree.End(root), treeScope_};
    switch (batch_.tree.ElementOf(root)) {
      case Element::fileDscr:
        codebook_.files.push_back(
            {place, std::string(Trim(batch_.tree.Attribute(root, "ID").value_or("")))});
        reading_.files.push_back(ReadFile(batch_.tree, root));
        break;
      case Element::varGrp:
        codebook_.groups.push_back(
            {place, std::string(Trim(batch_.tree.Attribute(root, "ID").value_or(""))), 0,
             ReadSet(batch_.tree, root)});
        reading_.groupMembers.push_back(
            SplitTokens(batch_.tree.Attribute(root, "var").value_or("")));
        break;
      default:
        codebook_.variables.push_back({place, {}, {}, false});
        batch_.variables.push_back(root);
    }
    if (batch_.tree.ElementCount() >= kElementsAtOnce) ReadAhead();
  }

  // Has the batch read on a thread of its own.
  void ReadAhead() {
    if (ahead_.size() == kBatchesAhead) TakeOldest();
    ahead_.push_back(std::async(ReadBatch, std::move(batch_)));
    batch_ = {};
  }

  void TakeOldest() {
    Take(ahead_.front().get());
    ahead_.pop_front();
  }

  // Takes the next variables in the document's order.
  void Take(std::vector<VariableReading> readings) {
    for (VariableReading& reading : readings) {
      const std::size_t place = reading_.variables.size();
      Codebook::Variable& variable = codebook_.variables[place];
      variable.id = reading.id;
      variable.name = reading.variable->name;
      variable.weights = reading.weights;
      reading.variable->document = reading_.codebook;
      reading.variable->place = place;
      reading_.variables.push_back(std::move(reading));
    }
  }

  CodebookReading& reading_;
  Codebook& codebook_;
  Batch batch_;
  std::deque<std::future<std::vector<VariableReading>>> ahead_;  // in the document's order
  bool inTree_ = false;
  Namespaces::Scope treeScope_ = Namespaces::kOutermost;
  std::size_t depth_ = 0;
  std::vector<Namespaces::Scope> scopes_;  // of the open elements, to depth 3
  std::vector<Element> path_;
  std::vector<std::size_t> begins_;
};

// Line ends as one line feed.
std::string WithLineFeeds(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool endsLine = text[i] == '\r';
    if (endsLine && i + 1 < text.size() && text[i + 1] == '\n') continue;
    result += endsLine ? '\n' : text[i];
  }
  return result;
}

}  // namespace

CodebookReading ReadCodebook(std::string path, std::string text) {
  CodebookReading reading;
  reading.codebook = std::make_shared<Codebook>();
  Codebook& codebook = *reading.codebook;
  codebook.path = std::move(path);
  codebook.text = std::move(text);
  DocumentReader handler(reading);
  XmlParser parser(codebook.namespaces, handler);
  try {
    parser.ParseDocument(codebook.text);
    handler.Finish();
  } catch (const XmlError& error) {
    throw CodebookError(codebook.path + ": " + error.what());
  }
  codebook.encoding = parser.DocumentEncoding();
  if (codebook.files.empty()) {
    codebook.files.emplace_back();
    reading.files.emplace_back();
  }
  return reading;
}

FileReading ReadFile(const XmlTree& tree, Node fileDscr) {
  FileReading reading;
  if (const Node fileCont = FindFileCont(tree, fileDscr); fileCont != XmlTree::kNone) {
    reading.label = LineOfText(tree, fileCont);
  }
  for (const Node note : FindDocuments(tree, fileDscr)) {
    reading.documents.emplace_back(DocumentText(tree, note));
  }
  if (const Node note = FindNote(tree, fileDscr, kWeightNote); note != XmlTree::kNone) {
    reading.weight = LineOfText(tree, note);
  }
  reading.attributes = ReadAttributes(tree, fileDscr);
  return reading;
}

VariableSet ReadSet(const XmlTree& tree, Node varGrp) {
  VariableSet set;
  set.type = tree.Attribute(varGrp, "type").value_or("");
  set.kind = set.type == "multipleResp" ? VarSetsMrSets : VarSetsVariableSets;
  set.name = Collapse(tree.Attribute(varGrp, "name").value_or(""));
  const Node labl = tree.Find(varGrp, Element::labl);
  const std::string label = labl == XmlTree::kNone ? "" : LineOfText(tree, labl);
  if (set.name.empty() && !label.empty()) {
    set.name = label;
    return set;
  }
  if (set.name.empty()) set.name = Collapse(tree.Attribute(varGrp, "ID").value_or(""));
  if (labl != XmlTree::kNone) {
    set.label = label;
    set.flags[VariableSet::HasLabel] = true;
  }
  return set;
}

std::vector<Node> FindDocuments(const XmlTree& tree, Node fileDscr) {
  std::vector<Node> documents;
  for (const Node note : tree.FindAll(fileDscr, Element::notes)) {
    if (!tree.Attribute(note, "type") && !Trim(tree.Text(note)).empty()) documents.push_back(note);
  }
  return documents;
}

std::string DocumentText(const XmlTree& tree, Node note) {
  return WithLineFeeds(Trim(tree.Text(note)));
}

Node FindFileCont(const XmlTree& tree, Node fileDscr) {
  for (const Node fileTxt : tree.FindAll(fileDscr, Element::fileTxt)) {
    const Node fileCont = tree.Find(fileTxt, Element::fileCont);
    if (fileCont != XmlTree::kNone) return fileCont;
  }
  return XmlTree::kNone;
}

}  // namespace velahost
