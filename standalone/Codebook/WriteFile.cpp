#include "standalone/Codebook/WriteFile.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "standalone/Codebook/ReadCodebook.h"
#include "standalone/Codebook/WriteVariable.h"
#include "standalone/Data/Attributes.h"

namespace velahost {

namespace {

using Node = XmlTree::Node;

NewElement NewDocument(const DSDocument& document) {
  return {.element = Element::notes, .attributes = {}, .text = HostAccess::TextOf(document)};
}

NewElement NewFileCont(const std::string& label) {
  return {.element = Element::fileCont, .attributes = {}, .text = label};
}

NewElement NewFileTxt(const std::string& label) {
  return {
      .element = Element::fileTxt, .attributes = {}, .text = {}, .children = {NewFileCont(label)}};
}

void WriteLabel(const std::string& label, const XmlTree& tree, Node fileDscr,
                ElementEditor& editor) {
  const Node fileTxt = tree.Find(fileDscr, Element::fileTxt);
  if (const Node fileCont = FindFileCont(tree, fileDscr); fileCont != XmlTree::kNone) {
    editor.SetText(fileCont, label);
  } else if (fileTxt != XmlTree::kNone) {
    editor.Insert(fileTxt, NewFileCont(label));
  } else {
    editor.Insert(fileDscr, NewFileTxt(label));
  }
}

void WriteDocuments(const std::vector<DSDocument>& documents, const XmlTree& tree, Node fileDscr,
                    ElementEditor& editor) {
  const std::vector<Node> present = FindDocuments(tree, fileDscr);
  auto next = present.begin();
  bool inserted = false;
  for (const DSDocument& document : documents) {
    // Documents are inserted behind all others, so once one is, those that are left cannot follow
    // it.
    const auto kept = inserted ? present.end() : std::find_if(next, present.end(), [&](Node note) {
      return DocumentText(tree, note) == HostAccess::TextOf(document);
    });
    if (kept == present.end()) {
      editor.Insert(fileDscr, NewDocument(document));
      inserted = true;
      continue;
    }
    std::for_each(next, kept, [&](Node note) { editor.Remove(note); });
    next = std::next(kept);
  }
  std::for_each(next, present.end(), [&](Node note) { editor.Remove(note); });
}

}  // namespace

void WriteFile(const VELA_DataSource::Impl& file, const XmlTree& tree, Node fileDscr,
               ElementEditor& editor) {
  for (const std::string_view property : DifferingProperties(file.AsRead(), file.now)) {
    if (property == "label" && file.now.label) {
      WriteLabel(*file.now.label, tree, fileDscr, editor);
    } else if (property == "documents") {
      WriteDocuments(file.now.documents, tree, fileDscr, editor);
    } else if (property == "attributes") {
      WriteAttributes(file.now.attributes, tree, fileDscr, editor);
    }
  }
}

NewElement NewFile(const FileProperties& properties, const std::optional<std::string>& weight) {
  NewElement fileDscr{.element = Element::fileDscr, .attributes = {}};
  if (properties.label) fileDscr.children.push_back(NewFileTxt(*properties.label));
  for (const DSDocument& document : properties.documents) {
    fileDscr.children.push_back(NewDocument(document));
  }
  if (weight) fileDscr.children.push_back(NewNote(Element::fileDscr, kWeightNote, *weight));
  for (const Attribute& attribute : HostAccess::Of(properties.attributes).attributes) {
    for (const std::string& value : attribute.values) {
      fileDscr.children.push_back(NewAttributeNote(Element::fileDscr, attribute.name, value));
    }
  }
  return fileDscr;
}

}  // namespace velahost
