#pragma once

#include <optional>
#include <string>
#include <vector>

#include "standalone/Dictionary/Changes.h"
#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Text/Text.h"
#include "standalone/Xml/Document.h"
#include "standalone/Xml/Editor.h"
#include "standalone/Xml/NewElement.h"

// What a fileDscr says of its data file: the file label, the documents, the custom attributes, and
// the note that names the weight.

namespace velahost {

// The same without the sets, and with the weight by its name.
struct FileReading {
  std::optional<Text> label;
  std::vector<Text> documents;
  std::optional<Text> weight;  // as the note names it
  CustomAttributes attributes;
};
FileReading ReadFileDescription(Element fileDscr, TextArena& texts);

// Edits a fileDscr so that it reads as the items that have changed.
void WriteFileDescription(Element fileDscr, const FileItems& now, FileItemSet changed,
                          Editor& editor);

// A fileDscr for a document that has none, with the name of the weight variable if a note must say
// it.
NewElement NewFileDescription(const FileItems& items, const std::optional<std::string>& weight);

}  // namespace velahost
