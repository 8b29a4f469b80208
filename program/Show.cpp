#include "program/Show.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

#include "program/DictionaryJson.h"
#include "program/DictionaryTable.h"
#include "program/Input.h"
#include "program/Listing.h"
#include "program/Output.h"
#include "program/Progress.h"
#include "program/PropertyText.h"
#include "program/Terminal.h"
#include "standalone/Text/Message.h"

namespace applydic {
namespace {

using velahost::ByteSink;
using velahost::CodebookFile;
using velahost::Dictionary;
using velahost::Property;
using velahost::Variable;

constexpr std::size_t kNameWidth = 16;

// Which data file it is, of those in a codebook that has several; empty for the only one.
std::string DataFileText(const CodebookFile& file) {
  if (file.dataFiles.size() < 2) return {};
  const auto text = [](const std::string& id) { return id.empty() ? "(no ID)" : MakeVisible(id); };
  std::string all;
  for (const std::string& id : file.dataFiles) all += (all.empty() ? "" : ", ") + text(id);
  return text(file.dataFiles[file.place]) + " of " + all;
}

void ListFile(const Dictionary& dictionary, const std::string& dataFile, Listing& listing) {
  const velahost::FileItems& file = dictionary.file;
  listing.Title("File");
  if (!dataFile.empty()) listing.Item("data file", dataFile);
  if (file.label) listing.Item("label", MakeVisible(*file.label));
  for (const velahost::Text& document : file.documents) {
    listing.Items("document", LineTexts(document));
  }
  if (const auto weight = NameText(dictionary, file.weight)) listing.Item("weight", *weight);
  listing.Items("attributes", AttributeTexts(file.attributes));
  listing.Items("mrsets", SetTexts(dictionary, velahost::SetKind::MultipleResponse));
  listing.Items("varsets", SetTexts(dictionary, velahost::SetKind::Variables));
  listing.Item("variables", std::to_string(dictionary.variables.size()));
}

std::vector<std::string> ValueLabelTexts(const velahost::SharedValueLabels& set) {
  std::vector<std::string> values;
  std::vector<std::string> texts;
  if (!set) return texts;
  std::size_t width = 0;
  for (const velahost::ValueLabel& pair : *set) {
    values.push_back(LabelledValueText(pair, set->IsNumeric()));
    width = std::max(width, WidthOf(values.back()));
  }
  for (std::size_t i = 0; i < set->Size(); ++i) {
    const std::string blanks(width - WidthOf(values[i]), ' ');
    texts.push_back((set->IsNumeric() ? blanks + values[i] : values[i] + blanks) + "  " +
                    MakeVisible((*set)[i].label));
  }
  return texts;
}

std::string FormatsText(const Variable& variable) {
  std::string text = PropertyText(variable, Property::Print).value_or("");
  if (!variable.write || variable.print == variable.write) return text;
  if (!text.empty()) text += ", ";
  return text + "write " + *PropertyText(variable, Property::Write);
}

// The value of a property that is not the one which every variable has that states none.
std::optional<std::string> StatedText(const Variable& variable, Property property) {
  if (property == Property::Role && variable.role == velahost::Role::Input) return std::nullopt;
  const bool isDefault = variable.alignment == velahost::DefaultAlignment(variable.type);
  if (property == Property::Alignment && isDefault) return std::nullopt;
  return PropertyText(variable, property);
}

// Leaves out properties that are absent or have their default. documentation is what is listed of
// what documents the variable.
void ListVariable(const Variable& variable,
                  const std::vector<velahost::DocumentationText>& documentation,
                  velahost::DocumentationSet kinds, Listing& listing) {
  listing.Title(MakeVisible(variable.name) + "  (" + TypeText(variable) + ")");
  const auto item = [&](Property property) {
    const auto text = StatedText(variable, property);
    if (text) listing.Item(TitleOf(property), *text);
  };
  item(Property::Label);
  listing.Items(TitleOf(Property::ValueLabels), ValueLabelTexts(variable.valueLabels));
  item(Property::Missing);
  if (variable.print || variable.write) listing.Item("format", FormatsText(variable));
  item(Property::ColumnWidth);
  item(Property::Level);
  item(Property::Role);
  item(Property::Alignment);
  listing.Items(TitleOf(Property::Attributes), AttributeTexts(variable.attributes));
  for (const velahost::DocumentationText& text : documentation) {
    if (kinds.Has(text.kind)) listing.Item(TitleOf(text.kind), MakeVisible(text.text));
  }
}

void WriteListing(const Dictionary& dictionary, const std::string& dataFile,
                  const velahost::DocumentationLookup& documentation, const ByteSink& sink) {
  Listing listing({}, sink, kNameWidth);
  velahost::DocumentationSet questions;
  questions.Add(velahost::Documentation::Question);
  ListFile(dictionary, dataFile, listing);
  for (std::size_t column = 0; column < dictionary.variables.size(); ++column) {
    listing.BlankLine();
    ListVariable(*dictionary.variables[column], documentation(column), questions, listing);
  }
}

// Lists variables with all that the codebook has of them.
void WriteInFull(const CodebookFile& file, const std::vector<std::size_t>& columns,
                 const Page& page, const ByteSink& sink) {
  Listing listing(page, sink, kNameWidth);
  for (const std::size_t column : columns) {
    if (listing.LineCount() > 0) listing.BlankLine();
    ListVariable(*file.dictionary.variables[column], DocumentationTexts(file, column),
                 velahost::DocumentationSet::All(), listing);
  }
}

void WriteTable(const Dictionary& dictionary, const std::string& dataFile, const Page& page,
                const ByteSink& sink) {
  Listing listing(page, sink, kNameWidth);
  ListFile(dictionary, dataFile, listing);
  listing.BlankLine();
  WriteDictionaryTable(dictionary, page, sink);
}

// The columns of the variables that the user names, as often as they are named. Throws Failure if
// the file lacks any.
std::vector<std::size_t> ColumnsOf(const std::vector<std::string>& names, const CodebookFile& file,
                                   const std::string& specification) {
  std::vector<std::size_t> columns;
  std::vector<std::string> unknown;
  for (const std::string& name : names) {
    const int column = file.names.Find(name);
    if (column >= 0) {
      columns.push_back(static_cast<std::size_t>(column));
    } else {
      unknown.push_back(name);
    }
  }
  if (unknown.empty()) return columns;
  throw Failure(specification + " has no variable " + JoinVisible(unknown) + "; 'applydic show " +
                specification + "' lists those that it has.");
}

void WriteDictionary(const CodebookFile& file, const std::vector<std::size_t>& columns,
                     const ShowOptions& options, const ByteSink& sink) {
  const Dictionary& dictionary = file.dictionary;
  const bool isAll = options.variables.empty();
  if (options.json && isAll) return WriteDictionaryJson(dictionary, DocumentationIn(file), sink);
  if (options.json) return WriteDictionaryJson(dictionary, columns, DocumentationIn(file), sink);
  const Page page = PageOfOutput(options.color);
  if (!isAll) return WriteInFull(file, columns, page, sink);
  if (page.width) return WriteTable(dictionary, DataFileText(file), page, sink);
  WriteListing(dictionary, DataFileText(file), DocumentationIn(file), sink);
}

CodebookFile Open(const ShowOptions& options) {
  const Progress::Stage stage("Reading " + MakeVisible(options.file));
  return OpenFileOrInput(options.file, velahost::OpenFor::Showing, options.language);
}

}  // namespace

std::string DictionaryText(const Dictionary& dictionary,
                           const velahost::DocumentationLookup& documentation) {
  std::string text;
  WriteListing(dictionary, {}, documentation, [&text](std::string_view piece) { text += piece; });
  return text;
}

ExitStatus RunShow(const ShowOptions& options) {
  const CodebookFile file = Open(options);
  const std::vector<std::size_t> columns = ColumnsOf(options.variables, file, options.file);
  for (const velahost::Message& warning : file.warnings) WriteWarning(velahost::Render(warning));
  WriteForReader(Stream::Output,
                 [&](const ByteSink& sink) { WriteDictionary(file, columns, options, sink); });
  return kDone;
}

}  // namespace applydic
