#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "standalone/Codebook/Labels.h"
#include "standalone/Dictionary/Changes.h"
#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Text/Text.h"
#include "standalone/Xml/Document.h"
#include "standalone/Xml/Edits.h"
#include "standalone/Xml/NewElement.h"

// Variable sets and multiple-response sets: the varGrp elements of a document.

namespace velahost {

class Codebook;
struct CodebookFile;
class DocumentIds;

// A varGrp as it describes a set, except the file that it belongs to and the columns of its
// members.
struct GroupReading {
  SetKind kind = SetKind::Variables;
  VariableSet set;
  Text id;
  Text members;  // @var: IDs
  Text subsets;  // @varGrp: IDs
  Text file;     // the ID of the file that a note names; empty where none does

  // A group without a name and a label is no set: nothing could tell it from others.
  bool IsSet() const { return !set.name.Empty(); }
};
GroupReading ReadGroup(Element varGrp, LabelReader& labels, TextArena& texts);

// What the writing of sets needs of the writer of the document.
struct SetWriting {
  const CodebookFile& file;
  const Dictionary& dictionary;  // as it is now
  FileItemSet changed;
  const Layout& layout;
  DocumentIds& ids;
  // The ID of the variable at a column, as it will be.
  std::function<std::string(int column)> idOf;
};

// The changes to the varGrp elements of the file that make them read as its sets, where these have
// changed, and to references to those that go.
struct SetEdits {
  Edits edits;
  // The elements that have no place behind others of the file: they go where the standard has them.
  std::vector<NewElement> unplaced;
};
SetEdits WriteSets(const SetWriting& writing);

}  // namespace velahost
