#pragma once

#include <cstddef>
#include <functional>
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

// What a codebook is opened for: to be a source, to be shown or to be written. Other than a source
// it keeps all elements of its variables, which takes about the room of the document once more.
enum class OpenFor { Reading, Showing, Writing };

// A data file of a codebook, as it was read: its dictionary, and the place of each variable in the
// document.
struct CodebookFile {
  Dictionary dictionary;
  VariableNames names;  // of its variables

  std::string path;      // of the document, without #ID
  std::string language;  // of its labels in this run; empty for none
  FileIdentity identity;
  // What was not taken into the dictionary.
  std::vector<Message> warnings;

  // The document, the file's place among its files, and that of each variable, by column, among its
  // variables. A dictionary that no document holds has none.
  std::shared_ptr<const Codebook> codebook;
  std::size_t place = 0;
  std::vector<std::string> dataFiles;  // the IDs of the document's files, each empty for none
  std::vector<std::size_t> variablePlaces;
};

// Opens the data file that the specification names: a path, which means the document's first data
// file, or path#ID. Its labels are those in the language, where an empty one is none; where none is
// given, in the language of the document's first label of a variable. Throws FileError. May be
// called on several threads at once.
CodebookFile OpenCodebook(const std::string& specification, OpenFor use = OpenFor::Writing,
                          const std::optional<std::string>& language = {});

// The path of the document that a specification names.
std::string PathIn(const std::string& specification);

// The bytes of the document that a specification names, to be opened once something is known of it.
struct CodebookBytes {
  std::string path;
  std::optional<std::string> id;  // of the data file
  FileBytes read;

  // The language that the file's labels seem to have: opening the file may show that it is another.
  std::string GuessLanguage() const;
};
// Throws FileError.
CodebookBytes ReadCodebook(const std::string& specification);
// The same of an open file, which may be a pipe. Messages name it by the name.
CodebookBytes ReadCodebook(int file, const std::string& name, const std::optional<std::string>& id);
// Opens the file, as from its specification. Throws FileError.
CodebookFile OpenCodebook(CodebookBytes bytes, OpenFor use,
                          const std::optional<std::string>& language);

// Opens one from the bytes of a document: the data file of that ID, or the first. The path is what
// messages name; the document has no identity.
CodebookFile OpenCodebook(const std::string& path, Bytes bytes,
                          const std::optional<std::string>& id, OpenFor use = OpenFor::Writing,
                          const std::optional<std::string>& language = {});

// Writes the document of a file that was opened for writing so that it reads as the dictionary:
// the file's own after a command, with variables added at its end. changes is what
// ChangesBetween(file.dictionary, dictionary) gives. What was not changed stays byte for byte. What
// the sink throws passes on.
void WriteCodebook(const CodebookFile& file, const Dictionary& dictionary, const Changes& changes,
                   const ByteSink& sink);
// The same as one text.
std::string WriteCodebook(const CodebookFile& file, const Dictionary& dictionary);

// What documents the variable at a column, of these kinds, to be carried to another document.
std::vector<DocumentationElement> DocumentationOf(const CodebookFile& file, std::size_t column,
                                                  DocumentationSet kinds);
// The same as texts, in the order of the kinds, without what states another language than that of
// the file's labels. REQUIRES: a file that was not opened as a source.
struct DocumentationText {
  Documentation kind;
  std::string text;

  bool operator==(const DocumentationText&) const = default;
};
std::vector<DocumentationText> DocumentationTexts(const CodebookFile& file, std::size_t column);
// The same of the variable as it is after a command: with what it has been given of other kinds.
std::vector<DocumentationText> DocumentationTexts(const CodebookFile& file, std::size_t column,
                                                  const Variable& now);

// What documents the variable at a column of some dictionary, as texts.
using DocumentationLookup = std::function<std::vector<DocumentationText>(std::size_t column)>;
// That of a file, which outlives it. REQUIRES: it was not opened as a source.
DocumentationLookup DocumentationIn(const CodebookFile& file);

// Why an element of another document cannot stand in the file's document, as the rest of a sentence
// about it; nothing if it can.
std::optional<std::string> WhyNotIn(const CodebookFile& file, const std::string& markup);
// The name of such an element.
std::string ElementNameOf(const std::string& markup);

// What the variable at a column brings to another document besides its dictionary.
Brought BroughtWith(const CodebookFile& file, std::size_t column);
// The same of a set that was read from the file.
BroughtSet BroughtWith(const CodebookFile& file, const VariableSet& set);

// The set's pairs in the order in which the document has them once the variable is saved, which was
// read as `read`: a label is written onto a category of its value where there is one, else onto a
// new category after the last. The set itself where it has that order already.
// REQUIRES: a set of the variable's type.
SharedValueLabels InDocumentOrder(const Variable& read, const SharedValueLabels& set);
// The same of missing values: those that stand there keep their places, and others come behind
// them.
MissingValues InDocumentOrder(const Variable& read, const MissingValues& missing);

}  // namespace velahost
