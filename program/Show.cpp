#include "program/Show.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <vector>

#include "program/DictionaryJson.h"
#include "program/Output.h"
#include "standalone/Codebook/OpenCodebook.h"
#include "standalone/Data/Attributes.h"
#include "standalone/Data/DataSource.h"
#include "standalone/Data/HostAccess.h"
#include "standalone/Data/ValueLabelSet.h"
#include "standalone/Data/Variable.h"
#include "standalone/Output/Diagnostics.h"
#include "standalone/Text/Numbers.h"
#include "standalone/Text/Utf8.h"

namespace applydic {
namespace {

// A listing of items: a name in a column of its own, and what it has to say beside it, on as many
// lines as there are texts.
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

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end = 0; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
    lines.push_back(Visible(text.substr(start, end - start)));
  }
  lines.push_back(Visible(text.substr(start)));
  return lines;
}

std::vector<std::string> AttributeTexts(const DatasourceAttributes& attributes) {
  std::vector<std::string> texts;
  for (const velahost::Attribute& attribute : HostAccess::Of(attributes).attributes) {
    texts.push_back(Visible(attribute.name) + ": " + List(attribute.values));
  }
  return texts;
}

std::vector<std::string> SetTexts(const std::vector<VariableSet>& sets) {
  std::vector<std::string> texts;
  for (const VariableSet& set : sets) {
    const std::string label = set.flags[VariableSet::HasLabel] ? " (" + set.label + ")" : "";
    texts.push_back(Visible(set.name + label) + ": " + List(set.members));
  }
  return texts;
}

void ListFile(const VELA_DataSource::Impl& dataSource, Listing& listing) {
  const velahost::FileProperties& file = dataSource.now;
  listing.Title("File");
  if (file.label) listing.Item("label", Visible(*file.label));
  for (const DSDocument& document : file.documents) {
    listing.Items("document", Lines(HostAccess::TextOf(document)));
  }
  if (file.weight >= 0) {
    const VELA_Variable& weight = dataSource.variables[static_cast<std::size_t>(file.weight)];
    listing.Item("weight", Visible(HostAccess::Of(weight).name));
  }
  listing.Items("attributes", AttributeTexts(file.attributes));
  listing.Items("mrsets", SetTexts(file.sets[VarSetsMrSets]));
  listing.Items("varsets", SetTexts(file.sets[VarSetsVariableSets]));
  listing.Item("variables", std::to_string(dataSource.variables.size()));
}

std::string StringText(const std::string& value) {
  return "'" + Visible(velahost::TrimTrailingBlanks(value)) + "'";
}

std::vector<std::string> ValueLabelTexts(const VELA_VLImplPointer& handle) {
  const VELA_VLImpl* set = HostAccess::Of(handle);
  std::vector<std::string> values;
  std::vector<std::string> texts;
  if (set == nullptr) return texts;
  std::size_t width = 0;
  for (int i = 0; i < set->Size(); ++i) {
    values.push_back(set->Type() == 0 ? velahost::WriteNumber(set->NumberAt(i))
                                      : StringText(set->StringAt(i)));
    width = std::max(width, WidthOf(values.back()));
  }
  const char* align = set->Type() == 0 ? "{:>{}}  {}" : "{:<{}}  {}";
  for (int i = 0; i < set->Size(); ++i) {
    texts.push_back(fmt::format(fmt::runtime(align), values[static_cast<std::size_t>(i)], width,
                                Visible(set->LabelAt(i))));
  }
  return texts;
}

std::string MissingText(const velahost::MissingValues& missing, int type) {
  const auto value = [&missing, type](std::size_t i) -> std::string {
    if (type != 0) return StringText(missing.strings[i]);
    const double number = missing.numbers[i];
    if (std::isinf(number)) return number < 0 ? "lowest" : "highest";
    return velahost::WriteNumber(number);
  };
  const auto count = static_cast<std::size_t>(std::abs(missing.count));
  std::string text;
  std::size_t next = 0;
  if (missing.count < 0) {
    text = value(0) + " to " + value(1);
    next = 2;
  }
  for (; next < count; ++next) text += (text.empty() ? "" : ", ") + value(next);
  return text;
}

std::string FormatText(const velahost::Format& format) {
  std::string text = velahost::NameOf(format.type) + std::to_string(format.width);
  if (format.decimals > 0) text += "." + std::to_string(format.decimals);
  return text;
}

// The alignment of a variable that is given none.
velahost::Alignment UsualAlignment(int type) {
  return type == 0 ? velahost::Enumerations::AlignRight : velahost::Enumerations::AlignLeft;
}

// Properties that say nothing of their own are left out.
void ListVariable(const VELA_Variable::Impl& variable, Listing& listing) {
  const velahost::VariableProperties& now = variable.now;
  const std::string type =
      variable.type == 0 ? "number" : "string of " + std::to_string(variable.type);
  listing.Title("\n" + Visible(variable.name) + "  (" + type + ")");
  if (now.label) listing.Item("label", Visible(*now.label));
  listing.Items("value labels", ValueLabelTexts(now.valueLabels));
  if (now.missing.count != 0) {
    listing.Item("missing values", MissingText(now.missing, variable.type));
  }
  listing.Item("format", now.print == now.write
                             ? FormatText(now.print)
                             : FormatText(now.print) + ", write " + FormatText(now.write));
  if (now.columnWidth != 0) listing.Item("column width", std::to_string(now.columnWidth));
  if (const char* level = velahost::NameOf(now.level)) listing.Item("level", level);
  if (now.role != velahost::Enumerations::RoleInput) {
    listing.Item("role", velahost::NameOf(now.role));
  }
  if (now.alignment != UsualAlignment(variable.type)) {
    listing.Item("alignment", velahost::NameOf(now.alignment));
  }
  listing.Items("attributes", AttributeTexts(now.attributes));
}

// The dictionary of a large file takes many times the file's size as JSON, so it is written as it
// is made.
void WriteJson(const VELA_DataSource& dataSource) {
  constexpr std::size_t kAtOnce = std::size_t{1} << 16;
  std::string text;
  WriteDictionaryJson(dataSource, [&text](std::string_view piece) {
    text += piece;
    if (text.size() < kAtOnce) return;
    WriteOutput(text);
    text.clear();
  });
  WriteOutput(text);
}

}  // namespace

std::string DictionaryText(const VELA_DataSource& dataSource) {
  const VELA_DataSource::Impl& impl = HostAccess::Of(dataSource);
  Listing listing;
  ListFile(impl, listing);
  for (const VELA_Variable& variable : impl.variables) {
    ListVariable(HostAccess::Of(variable), listing);
  }
  return listing.Text();
}

ExitStatus RunShow(const ShowOptions& options) {
  const velahost::OpenedCodebook opened =
      velahost::OpenCodebook(options.file, velahost::OpenFor::Reading);
  for (const velahost::ReadingWarning& warning : opened.warnings) {
    WriteWarning(velahost::Render(warning.text, warning.arguments));
  }
  if (options.json) {
    WriteJson(*opened.dataSource);
  } else {
    WriteOutput(DictionaryText(*opened.dataSource));
  }
  return kDone;
}

}  // namespace applydic
