#include "standalone/Codebook/ReadCodebook.h"

#include <utility>

#include "standalone/Codebook/ReadInParts.h"
#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

using Node = XmlTree::Node;

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

CodebookReading NewReading(std::string path, std::string text, OpenFor use) {
  CodebookReading reading;
  reading.use = use;
  reading.codebook = std::make_shared<Codebook>();
  reading.codebook->path = std::move(path);
  reading.codebook->text = std::move(text);
  return reading;
}

}  // namespace

CodebookReading ReadCodebook(std::string path, std::string text, OpenFor use) {
  CodebookReading reading = NewReading(std::move(path), std::move(text), use);
  try {
    if (!ReadInParts(reading)) {
      reading =
          NewReading(std::move(reading.codebook->path), std::move(reading.codebook->text), use);
      ReadWhole(reading);
    }
  } catch (const XmlError& error) {
    throw CodebookError(reading.codebook->path + ": " + error.what());
  }
  if (reading.codebook->files.empty()) {
    reading.codebook->files.emplace_back();
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
