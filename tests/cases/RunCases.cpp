#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <set>

#include "program/Library.h"
#include "standalone/Host/DataSources.h"
#include "standalone/Host/HostAccess.h"
#include "standalone/Host/Variables.h"
#include "tests/HostRun.h"
#include "tests/cases/CaseFile.h"
#include "tests/cases/CodebookText.h"
#include "tests/cases/Notation.h"

// Runs the cases of the case files that it is given, each as a test named after its title.

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
  const auto& variables = HostAccess::Of(host.Working()).variables;
  for (const VELA_Variable& variable : variables) {
    identities.insert(HostAccess::Of(variable).identity);
  }
  EXPECT_EQ(variables.size(), identities.size()) << "two variables have one identity";
}

void CheckOutcome(const Case& test, const velahost::Host& host, const Lines& changes) {
  Lines lines;
  for (const velahost::Diagnostic& diagnostic : host.diagnostics.All()) {
    lines.push_back(DiagnosticLine(diagnostic));
  }
  lines.insert(lines.end(), changes.begin(), changes.end());
  if (host.legacyWeight != 0) lines.push_back("legacy weight " + std::to_string(host.legacyWeight));
  const std::string expected = Joined(test.outcome);
  const std::string actual = Joined(lines);
  if (actual == expected) return;
  ADD_FAILURE_AT(test.file.c_str(), test.line) << "Expected:\n----\n"
                                               << expected << "\nActual:\n----\n"
                                               << actual;
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
}

// Runs a case through the library's entry point on a host of its own.
void RunCase(const Case& test, applydic::EntryPoint applyDictionary) {
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
  CheckOutcome(test, hosted.host, changes);
  CheckSaving(hosted, !changes.empty(), saved, folder);
  EXPECT_EQ(source, folder.Read("source"));
}

class CaseTest : public testing::Test {
 public:
  CaseTest(Case test, applydic::EntryPoint applyDictionary)
      : test_(std::move(test)), applyDictionary_(applyDictionary) {}

  void TestBody() override { RunCase(test_, applyDictionary_); }

 private:
  Case test_;
  applydic::EntryPoint applyDictionary_;
};

void Register(const std::string& path, applydic::EntryPoint applyDictionary) {
  const std::string suite = std::filesystem::path(path).stem();
  for (const Case& test : ReadCaseFile(path)) {
    testing::RegisterTest(suite.c_str(), test.title.c_str(), nullptr, nullptr, test.file.c_str(),
                          test.line, [test, applyDictionary]() -> testing::Test* {
                            return new CaseTest(test, applyDictionary);  // owned by GoogleTest
                          });
  }
}

}  // namespace
}  // namespace cases

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  try {
    const applydic::EntryPoint applyDictionary = applydic::LoadLibrary();
    for (int i = 1; i < argc; ++i) cases::Register(argv[i], applyDictionary);
  } catch (const std::exception& exception) {
    std::cerr << exception.what() << "\n";
    return 2;
  }
  return RUN_ALL_TESTS();
}
