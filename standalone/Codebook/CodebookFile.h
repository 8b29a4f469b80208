#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "standalone/Dictionary/Changes.h"
#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Dictionary/VariableNames.h"
#include "standalone/Files/File.h"
#include "standalone/Text/Message.h"
#include "standalone/Text/Text.h"

namespace velahost {

class Codebook;

// What a codebook is opened for. One that may be written keeps its elements, which takes about the
// room of the document once more.
enum class OpenFor { Reading, Writing };

// A data file of a codebook, as it was read: its dictionary, and the place of each variable in the
// document.
struct CodebookFile {
  Dictionary dictionary;
  VariableNames names;  // of its variables

  std::string path;  // of the document, without #ID
  FileIdentity identity;
  // What was not taken into the dictionary.
  std::vector<Message> warnings;

  // The document, the file's place among its files, and that of each variable, by column, among its
  // variables. A dictionary that no document holds has none.
  std::shared_ptr<const Codebook> codebook;
  std::size_t place = 0;
  std::vector<std::size_t> variablePlaces;
};

// Opens the data file that the specification names: a path, which means the document's first data
// file, or path#ID. Throws FileError. May be called on several threads at once.
CodebookFile OpenCodebook(const std::string& specification, OpenFor use = OpenFor::Writing);

// The same from the bytes of a document: the data file of that ID, or the first. The path is what
// messages name; the document has no identity.
CodebookFile OpenCodebook(const std::string& path, Bytes bytes,
                          const std::optional<std::string>& id, OpenFor use = OpenFor::Writing);

// Writes the document of a file that was opened for writing so that it reads as the dictionary:
// the file's own after a command, with variables added at its end. changes is what
// ChangesBetween(file.dictionary, dictionary) gives. What was not changed stays byte for byte. What
// the sink throws passes on.
void WriteCodebook(const CodebookFile& file, const Dictionary& dictionary, const Changes& changes,
                   const ByteSink& sink);
// The same as one text.
std::string WriteCodebook(const CodebookFile& file, const Dictionary& dictionary);

// What documents the question of the variable at a column, as markup for Variable::documentation;
// empty if there is none.
Text DocumentationOf(const CodebookFile& file, std::size_t column);

// The set's pairs in the order in which the document has them once the variable is saved, which was
// read as `read`: a label is written onto a category of its value where there is one, else onto a
// new category after the last. The set itself where it has that order already.
// REQUIRES: a set of the variable's type.
SharedValueLabels InDocumentOrder(const Variable& read, const SharedValueLabels& set);

}  // namespace velahost
