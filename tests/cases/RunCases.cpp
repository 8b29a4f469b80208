#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <set>
#include <string_view>

#include "program/Help/MessageHelp.h"
#include "program/Library.h"
#include "standalone/Host/DataSources.h"
#include "standalone/Host/HostAccess.h"
#include "standalone/Host/Variables.h"
#include "tests/HostRun.h"
#include "tests/cases/CaseFile.h"
#include "tests/cases/CodebookText.h"
#include "tests/cases/Notation.h"
#include "tests/cases/RewriteOutcomes.h"

// Runs the cases of the case files that it is given, each as a test named after its title. With the
// option --update before them, what comes out is written into the files: of cases that fail for no
// other reason than their outcome.

namespace cases {
namespace {

// A folder of its own, the current one as long as this object lives.
struct CurrentFolder : Folder {
  CurrentFolder() { std::filesystem::current_path(At("")); }
  ~CurrentFolder() { std::filesystem::current_path(before); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

  const std::filesystem::path before = std::filesystem::current_path();
};

std::string Joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

// What is read must be what the case says: a line that is not in the notation's own form would say
// something else than it seems to.
void CheckReading(const std::string& path, Lines dictionary) {
  std::stable_partition(dictionary.begin(), dictionary.end(),
                        [](const std::string& line) { return line.starts_with("file "); });
  const velahost::CodebookFile opened = velahost::OpenCodebook(path);
  EXPECT_TRUE(opened.warnings.empty()) << path;
  const std::string actual = Joined(DictionaryLines(DictionaryJson(opened)));
  if (actual != Joined(dictionary)) ADD_FAILURE() << path << " reads as\n" << actual;
}

// Calls the library for a command and checks what it leaves behind in the host, whatever it did.
void RunCommand(const velahost::Command& command, velahost::Host& host,
                applydic::EntryPoint applyDictionary) {
  const VELA_DataSource& working = host.Working();
  const Json before = DictionaryJson(host.WorkingDictionary());
  host.SetCommand(command);
  applyDictionary();
  EXPECT_TRUE(host.openFrames.empty());
  EXPECT_EQ(&host.Working(), host.active);
  if (&host.Working() != &working) {
    EXPECT_FALSE(host.diagnostics.FatalError());
    EXPECT_EQ(before, DictionaryJson(HostAccess::Of(working).DictionaryNow()))
        << "a store is a copy of what it is made over";
  }
  std::set<std::int64_t> identities;
  VELA_DataSource::Impl& now = HostAccess::Of(host.Working());
  for (std::size_t column = 0; column < now.Count(); ++column) {
    identities.insert(HostAccess::Of(now.At(column)).identity);
  }
  EXPECT_EQ(now.Count(), identities.size()) << "two variables have one identity";
}

// What is to be written, by the path of the case file; null where nothing is.
using Updates = std::map<std::string, Outcomes>;

Lines OutcomeOf(const velahost::Host& host, const Lines& changes) {
  Lines lines;
  for (const velahost::Diagnostic& diagnostic : host.diagnostics.All()) {
    lines.push_back(DiagnosticLine(diagnostic));
    EXPECT_NE(applydic::HelpFor(diagnostic.shown), nullptr) << "no help for: " << diagnostic.shown;
  }
  lines.insert(lines.end(), changes.begin(), changes.end());
  if (host.legacyWeight != 0) lines.push_back("legacy weight " + std::to_string(host.legacyWeight));
  return lines;
}

// Checks the outcome, after all else.
void CheckOutcome(const Case& test, const Lines& actual, Updates* updates) {
  if (actual == test.outcome) return;
  const std::string both =
      "Expected:\n----\n" + Joined(test.outcome) + "\nActual:\n----\n" + Joined(actual);
  if (updates == nullptr || testing::Test::HasFailure()) {
    ADD_FAILURE_AT(test.file.c_str(), test.line) << both;
    return;
  }
  std::cout << test.file << ":" << test.line << ": " << test.title << "\n" << both << "\n";
  (*updates)[test.file][test.line] = actual;
}

// What is in memory, with what documents the variables as it stands in a file with its dictionary.
Json WithDocumentation(Json memory, const velahost::CodebookFile& file) {
  const Json json = DictionaryJson(file);
  for (std::size_t i = 0; i < memory["variables"].size(); ++i) {
    memory["variables"][i]["documentation"] = json["variables"].at(i)["documentation"];
  }
  return memory;
}

// What is in memory comes back from the saved file; what did not change is saved as it was.
void CheckSaving(const Hosted& hosted, bool changed, const velahost::CodebookFile& saved,
                 const Folder& folder) {
  const std::string document = folder.Read("saved");
  if (!changed) {
    EXPECT_EQ(folder.Read("working"), document);
  }
  EXPECT_EQ(WithSortedSets(hosted.Json()).dump(1),
            WithSortedSets(DictionaryJson(saved.dictionary)).dump(1))
      << document;
  // What has been brought to a variable is told as it will be read.
  const velahost::CodebookFile& working = hosted.host.WorkingFile();
  const velahost::Dictionary now = hosted.host.WorkingDictionary();
  for (std::size_t i = 0; i < working.dictionary.variables.size(); ++i) {
    EXPECT_EQ(DocumentationTexts(working, i, *now.variables[i]), DocumentationTexts(saved, i));
  }
}

// Runs a case through the library's entry point on a host of its own.
void RunCase(const Case& test, applydic::EntryPoint applyDictionary, Updates* updates) {
  const testing::ScopedTrace trace(test.file.c_str(), test.line, test.title);
  const CurrentFolder folder;
  const std::string source = CodebookText(test.source);
  CheckReading(folder.Write("source", source), test.source);
  CheckReading(folder.Write("working", CodebookText(test.working)), test.working);

  Hosted hosted("working");
  hosted.host.hasPendingTransformations = test.pending;
  const Json before = WithDocumentation(hosted.Json(), hosted.host.WorkingFile());
  for (const velahost::Command& command : velahost::SplitCommands(Joined(test.command))) {
    RunCommand(command, hosted.host, applyDictionary);
  }
  const velahost::CodebookFile saved =
      velahost::OpenCodebook(folder.Write("saved", hosted.Saved()), velahost::OpenFor::Writing,
                             hosted.host.WorkingFile().language);
  const Json after = WithDocumentation(hosted.Json(), saved);
  const Lines changes = ChangeLines(before, after);
  EXPECT_EQ(changes.empty(), WithSortedSets(before) == WithSortedSets(after))
      << "a change that no line shows";
  CheckSaving(hosted, !changes.empty(), saved, folder);
  EXPECT_EQ(source, folder.Read("source"));
  CheckOutcome(test, OutcomeOf(hosted.host, changes), updates);
}

class CaseTest : public testing::Test {
 public:
  CaseTest(Case test, applydic::EntryPoint applyDictionary, Updates* updates)
      : test_(std::move(test)), applyDictionary_(applyDictionary), updates_(updates) {}

  void TestBody() override { RunCase(test_, applyDictionary_, updates_); }

 private:
  Case test_;
  applydic::EntryPoint applyDictionary_;
  Updates* updates_;
};

void Register(const std::string& path, applydic::EntryPoint applyDictionary, Updates* updates) {
  const std::string suite = std::filesystem::path(path).stem();
  for (const Case& test : ReadCaseFile(path)) {
    testing::RegisterTest(suite.c_str(), test.title.c_str(), nullptr, nullptr, test.file.c_str(),
                          test.line, [test, applyDictionary, updates]() -> testing::Test* {
                            return new CaseTest(test, applyDictionary, updates);  // GoogleTest's
                          });
  }
}

}  // namespace
}  // namespace cases

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const bool isUpdating = argc > 1 && std::string_view(argv[1]) == "--update";
  cases::Updates updates;
  try {
    const applydic::EntryPoint applyDictionary = applydic::LoadLibrary();
    for (int i = isUpdating ? 2 : 1; i < argc; ++i) {
      cases::Register(argv[i], applyDictionary, isUpdating ? &updates : nullptr);
    }
    const int status = RUN_ALL_TESTS();
    for (const auto& [path, outcomes] : updates) cases::RewriteOutcomes(path, outcomes);
    return status;
  } catch (const std::exception& exception) {
    std::cerr << exception.what() << "\n";
    return 2;
  }
}
