#include "program/Diff.h"

#include <future>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "program/DifferenceJson.h"
#include "program/JsonStream.h"
#include "program/Output.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Comparison/Difference.h"
#include "standalone/Text/Message.h"

namespace applydic {
namespace {

using velahost::CodebookFile;
using velahost::Dictionary;
using velahost::Difference;

CodebookFile Open(const std::string& specification, const std::string& language) {
  return velahost::OpenCodebook(specification, velahost::OpenFor::Showing, language);
}

// The two files, with their labels in one language.
struct Files {
  CodebookFile before;
  CodebookFile now;
};

// Opens both at the same time: the old one in the language that the new one seems to have, and once
// more in the rare case that it has another.
Files OpenBoth(const DiffOptions& options) {
  velahost::CodebookBytes bytes = velahost::ReadCodebook(options.now);
  const std::string guess = options.language.value_or(bytes.GuessLanguage());
  std::future<CodebookFile> reading = std::async(Open, options.before, guess);
  CodebookFile now =
      velahost::OpenCodebook(std::move(bytes), velahost::OpenFor::Showing, options.language);
  CodebookFile before = reading.get();
  if (now.language != guess) before = Open(options.before, now.language);
  return {std::move(before), std::move(now)};
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

void WriteJson(const DiffOptions& options, const Difference& difference, const CodebookFile& before,
               const CodebookFile& now) {
  OutputBuffer output(WriteOutput);
  JsonStream json([&output](std::string_view piece) { output.Write(piece); });
  json.Member("old", options.before);
  json.Member("new", options.now);
  WriteChanged(difference, SideOf(before), SideOf(now), json);
  json.Member("added", NamesAt(now.dictionary, difference.added));
  json.Member("removed", NamesAt(before.dictionary, difference.removed));
  json.Member("reordered", difference.isReordered);
  WriteFileItems(difference.file, before.dictionary, now.dictionary, json);
  json.End();
  output.Flush();
}

}  // namespace

ExitStatus RunDiff(const DiffOptions& options) {
  const auto [before, now] = OpenBoth(options);
  for (const CodebookFile* const file : {&before, &now}) {
    for (const velahost::Message& warning : file->warnings) {
      WriteWarning(velahost::Render(warning));
    }
  }
  const Difference difference = DifferenceBetween(before, now);
  if (options.json) WriteJson(options, difference, before, now);
  return difference.Empty() ? kDone : kDifferent;
}

}  // namespace applydic
