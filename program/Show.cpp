#include "program/Show.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <vector>

#include "program/DictionaryJson.h"
#include "program/Output.h"
#include "program/PropertyText.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Text/Message.h"
#include "standalone/Text/Numbers.h"
#include "standalone/Text/Utf8.h"

namespace applydic {
namespace {

using velahost::Dictionary;
using velahost::Text;

// Lines of a name, in a column of its own, and a text. An item of several texts has its name on the
// first of its lines.
class Listing {
 public:
  void Title(const std::string& text) { fmt::format_to(End(), "{}\n", text); }

  void Item(const char* name, const std::string& text) {
    fmt::format_to(End(), "  {:<16}{}\n", name, text);
  }

  void Items(const char* name, const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
      Item(name, text);
      name = "";
    }
  }

  const std::string& Text() const { return text_; }

 private:
  std::back_insert_iterator<std::string> End() { return std::back_inserter(text_); }

  std::string text_;
};

void ListFile(const Dictionary& dictionary, Listing& listing) {
  const velahost::FileItems& file = dictionary.file;
  listing.Title("File");
  if (file.label) listing.Item("label", MakeVisible(*file.label));
  for (const Text& document : file.documents) listing.Items("document", LineTexts(document));
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
  const char* align = set->IsNumeric() ? "{:>{}}  {}" : "{:<{}}  {}";
  for (std::size_t i = 0; i < set->Size(); ++i) {
    texts.push_back(
        fmt::format(fmt::runtime(align), values[i], width, MakeVisible((*set)[i].label)));
  }
  return texts;
}

std::string FormatsText(const velahost::Variable& variable) {
  std::string text = variable.print ? TextOf(*variable.print) : "";
  if (!variable.write || variable.print == variable.write) return text;
  if (!text.empty()) text += ", ";
  return text + "write " + TextOf(*variable.write);
}

// Leaves out properties that are absent or have their default.
void ListVariable(const velahost::Variable& variable,
                  const std::vector<velahost::DocumentationText>& documentation, Listing& listing) {
  const std::string type = TypeText(variable);
  listing.Title("\n" + MakeVisible(variable.name) + "  (" + type + ")");
  if (variable.label) listing.Item("label", MakeVisible(*variable.label));
  listing.Items("value labels", ValueLabelTexts(variable.valueLabels));
  if (!variable.missing.Empty()) listing.Item("missing values", MissingText(variable.missing));
  if (variable.print || variable.write) listing.Item("format", FormatsText(variable));
  if (variable.columnWidth != 0) {
    listing.Item("column width", std::to_string(variable.columnWidth));
  }
  if (const char* level = NameOf(variable.level)) listing.Item("level", level);
  if (variable.role != velahost::Role::Input) listing.Item("role", NameOf(variable.role));
  if (variable.alignment != velahost::DefaultAlignment(variable.type)) {
    listing.Item("alignment", NameOf(variable.alignment));
  }
  listing.Items("attributes", AttributeTexts(variable.attributes));
  for (const velahost::DocumentationText& text : documentation) {
    if (text.kind == velahost::Documentation::Question) {
      listing.Item("question", MakeVisible(text.text));
    }
  }
}

}  // namespace

std::string DictionaryText(const Dictionary& dictionary,
                           const velahost::DocumentationLookup& documentation) {
  Listing listing;
  ListFile(dictionary, listing);
  for (std::size_t column = 0; column < dictionary.variables.size(); ++column) {
    ListVariable(*dictionary.variables[column], documentation(column), listing);
  }
  return listing.Text();
}

ExitStatus RunShow(const ShowOptions& options) {
  const velahost::CodebookFile file =
      velahost::OpenCodebook(options.file, velahost::OpenFor::Showing, options.language);
  for (const velahost::Message& warning : file.warnings) WriteWarning(velahost::Render(warning));
  WriteForReader(Stream::Output, [&](const velahost::ByteSink& sink) {
    if (options.json) {
      WriteDictionaryJson(file.dictionary, DocumentationIn(file), sink);
    } else {
      sink(DictionaryText(file.dictionary, DocumentationIn(file)));
    }
  });
  return kDone;
}

}  // namespace applydic
