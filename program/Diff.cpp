#include "program/Diff.h"

#include <string>
#include <string_view>
#include <vector>

#include "program/DifferenceJson.h"
#include "program/DifferenceText.h"
#include "program/JsonStream.h"
#include "program/Listing.h"
#include "program/Output.h"
#include "program/Progress.h"
#include "program/PropertyText.h"
#include "program/Terminal.h"
#include "program/TwoCodebooks.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Comparison/Difference.h"

namespace applydic {
namespace {

using velahost::Dictionary;
using velahost::Difference;

Difference Compare(const TwoCodebooks& files) {
  const Progress::Stage stage("Comparing variables");
  return DifferenceBetween(files.before, files.now);
}

std::vector<std::string> NamesAt(const Dictionary& dictionary,
                                 const std::vector<std::size_t>& columns) {
  std::vector<std::string> names;
  names.reserve(columns.size());
  for (const std::size_t column : columns) {
    names.push_back(dictionary.variables[column]->name.String());
  }
  return names;
}

void WriteJson(const DiffOptions& options, const Difference& difference, const TwoCodebooks& files,
               const velahost::ByteSink& sink) {
  const auto& [before, now] = files;
  JsonStream json(sink);
  json.Member("old", options.before);
  json.Member("new", options.now);
  WriteChanged(difference, SideOf(before), SideOf(now), LabelPairs::Compared, json);
  json.Member("added", NamesAt(now.dictionary, difference.added));
  json.Member("removed", NamesAt(before.dictionary, difference.removed));
  json.Member("reordered", difference.isReordered);
  WriteFileItems(difference.file, before.dictionary, now.dictionary, json);
  json.End();
}

void WriteCounts(const DiffOptions& options, const Difference& difference, Listing& listing) {
  const auto only = [&listing](const std::string& file, std::size_t count) {
    if (count > 0) {
      listing.Line("Variables only in " + MakeVisible(file) + ": " + CountText(count));
    }
  };
  if (!difference.file.Empty()) {
    listing.Line("Items of the file that differ: " + CountText(difference.file.Size()));
  }
  ListCounts("Variables that differ", difference.changed, listing);
  only(options.before, difference.removed.size());
  only(options.now, difference.added.size());
  if (difference.isReordered) listing.Line("The variables stand in another order.");
}

// Lists the variables that only one of the files has.
void ListOnly(const std::string& file, Mark mark, const Dictionary& dictionary,
              const std::vector<std::size_t>& columns, Listing& listing) {
  if (columns.empty()) return;
  listing.Title("Only in " + MakeVisible(file));
  for (const std::size_t column : columns) {
    const velahost::Variable& variable = *dictionary.variables[column];
    std::string text = MakeVisible(variable.name) + "  (" + TypeText(variable) + ")";
    if (variable.label) text += "  " + MakeVisible(*variable.label);
    listing.Marked(mark, text);
  }
  listing.BlankLine();
}

void WriteText(const DiffOptions& options, const Difference& difference, const TwoCodebooks& files,
               const velahost::ByteSink& sink) {
  const auto& [before, now] = files;
  Listing listing(PageOfOutput(options.color), sink, kDifferenceNames);
  if (difference.Empty()) return listing.Line("The dictionaries are the same.");
  ListFileDifference(difference.file, before.dictionary, now.dictionary, listing);
  ListVariableDifferences(difference.changed, SideOf(before), SideOf(now), listing);
  ListOnly(options.before, Mark::Removed, before.dictionary, difference.removed, listing);
  ListOnly(options.now, Mark::Added, now.dictionary, difference.added, listing);
  WriteCounts(options, difference, listing);
}

void Write(const DiffOptions& options, const Difference& difference, const TwoCodebooks& files) {
  WriteForReader(Stream::Output, [&](const velahost::ByteSink& sink) {
    if (options.json) {
      WriteJson(options, difference, files, sink);
    } else {
      WriteText(options, difference, files, sink);
    }
  });
}

}  // namespace

ExitStatus RunDiff(const DiffOptions& options) {
  const TwoCodebooks files = OpenBoth(options.before, options.now, options.language);
  WriteWarningsOf(files);
  const Difference difference = Compare(files);
  if (!options.isQuiet) Write(options, difference, files);
  return difference.Empty() ? kDone : kDifferent;
}

}  // namespace applydic
