#include "program/Diff.h"

#include <future>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "program/DifferenceJson.h"
#include "program/DifferenceText.h"
#include "program/Input.h"
#include "program/JsonStream.h"
#include "program/Listing.h"
#include "program/Output.h"
#include "program/Progress.h"
#include "program/PropertyText.h"
#include "program/Terminal.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Comparison/Difference.h"
#include "standalone/Text/Message.h"

namespace applydic {
namespace {

using velahost::CodebookFile;
using velahost::Dictionary;
using velahost::Difference;

CodebookFile Open(const std::string& specification, const std::string& language) {
  return OpenFileOrInput(specification, velahost::OpenFor::Showing, language);
}

// The two files, with their labels in one language.
struct Files {
  CodebookFile before;
  CodebookFile now;
};

// Opens both at the same time: the old one in the language that the new one seems to have, and once
// more in the rare case that it has another.
Files OpenBoth(const DiffOptions& options) {
  const Progress::Stage stage("Reading " + MakeVisible(options.before) + " and " +
                              MakeVisible(options.now));
  velahost::CodebookBytes bytes = ReadFileOrInput(options.now);
  const std::string guess = options.language.value_or(bytes.GuessLanguage());
  if (IsInput(options.before)) {  // it can be read once, so when its language is known
    CodebookFile now =
        velahost::OpenCodebook(std::move(bytes), velahost::OpenFor::Showing, options.language);
    CodebookFile before = Open(options.before, now.language);
    return {std::move(before), std::move(now)};
  }
  std::future<CodebookFile> reading = std::async(Open, options.before, guess);
  CodebookFile now =
      velahost::OpenCodebook(std::move(bytes), velahost::OpenFor::Showing, options.language);
  CodebookFile before = reading.get();
  if (now.language != guess) before = Open(options.before, now.language);
  return {std::move(before), std::move(now)};
}

Difference Compare(const Files& files) {
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

void WriteJson(const DiffOptions& options, const Difference& difference, const Files& files,
               const velahost::ByteSink& sink) {
  const auto& [before, now] = files;
  JsonStream json(sink);
  json.Member("old", options.before);
  json.Member("new", options.now);
  WriteChanged(difference, SideOf(before), SideOf(now), json);
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
    listing.Line("Items of the file that differ: " + CountText(difference.file.Items().size()));
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

void WriteText(const DiffOptions& options, const Difference& difference, const Files& files,
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

void Write(const DiffOptions& options, const Difference& difference, const Files& files) {
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
  const Files files = OpenBoth(options);
  for (const CodebookFile* const file : {&files.before, &files.now}) {
    for (const velahost::Message& warning : file->warnings) {
      WriteWarning(velahost::Render(warning));
    }
  }
  const Difference difference = Compare(files);
  if (!options.isQuiet) Write(options, difference, files);
  return difference.Empty() ? kDone : kDifferent;
}

}  // namespace applydic
