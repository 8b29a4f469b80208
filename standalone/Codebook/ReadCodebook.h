#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/OpenCodebook.h"
#include "standalone/Codebook/ReadVariable.h"

namespace velahost {

// What the fileDscr of a data file says of the file's dictionary.
struct FileReading {
  std::optional<std::string> label;
  std::vector<DSDocument> documents;
  std::optional<std::string> weight;  // the name in the weight's note
  DatasourceAttributes attributes;
};

// A document with the dictionary information of all its data files.
struct CodebookReading {
  OpenFor use = OpenFor::Writing;
  std::shared_ptr<Codebook> codebook;
  std::vector<FileReading> files;          // one for each of the document's
  std::vector<VariableReading> variables;  // likewise
  std::vector<std::string> groupMembers;   // each group's @var
};

// Reads a document from its text. Throws CodebookError, which names the path, and where and why the
// document is refused.
CodebookReading ReadCodebook(std::string path, std::string text, OpenFor use);

// Reads a fileDscr element.
FileReading ReadFile(const XmlTree& tree, XmlTree::Node fileDscr);

// Reads the name and the label of the set that a varGrp element is, and its kind and type.
VariableSet ReadSet(const XmlTree& tree, XmlTree::Node varGrp);

// The notes children that are documents, and the text of one.
std::vector<XmlTree::Node> FindDocuments(const XmlTree& tree, XmlTree::Node fileDscr);
std::string DocumentText(const XmlTree& tree, XmlTree::Node note);

// The fileCont that holds the file label, or kNone.
XmlTree::Node FindFileCont(const XmlTree& tree, XmlTree::Node fileDscr);

}  // namespace velahost
