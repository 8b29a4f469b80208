#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "program/Listing.h"
#include "program/Output.h"
#include "program/Progress.h"
#include "standalone/Text/Utf8.h"
#include "tests/HostRun.h"

// What people see: on a terminal, in a pipe, and where the reader of the pipe goes away.

namespace {

using namespace std::chrono_literals;

// What a shell command prints and how it ends; `applydic` is the program.
struct Ran {
  std::string output;
  int status;
};
Ran Shell(const std::string& command) {
  const std::string line = "set -o pipefail; cd '" EXAMPLES_FOLDER "'; applydic() { '" +
                           ProgramUnderTest(APPLYDIC_PROGRAM) + "' \"$@\"; }; " + command;
  setenv("APPLYDIC_TEST", line.c_str(), 1);
  std::FILE* const pipe = popen("bash -c \"$APPLYDIC_TEST\"", "r");
  Ran ran;
  for (int c = 0; (c = std::fgetc(pipe)) != EOF;) ran.output += static_cast<char>(c);
  const int status = pclose(pipe);
  ran.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return ran;
}

// The same on a terminal of so many columns.
Ran OnTerminal(const std::string& arguments, int columns, const std::string& settings = "") {
  Ran ran = Shell("script -qec 'stty cols " + std::to_string(columns) +
                  "; unset COLUMNS NO_COLOR; " + settings + " TERM=xterm " +
                  ProgramUnderTest(APPLYDIC_PROGRAM) + " " + arguments + "' /dev/null </dev/null");
  std::erase(ran.output, '\r');
  return ran;
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

bool HasColor(const std::string& text) { return text.find('\x1b') != std::string::npos; }

TEST(Terminal, FitsItsWidth) {
  const std::string shown[] = {"show survey_2025.xml", "show survey_2025.xml SEX educ INCOME",
                               "diff survey_2025.xml survey_2026.xml"};
  for (const int width : {60, 80, 120}) {
    for (const std::string& arguments : shown) {
      const Ran ran = OnTerminal(arguments + " --color=never 2>/dev/null", width);
      EXPECT_FALSE(HasColor(ran.output)) << arguments;
      const std::vector<std::string> lines = LinesOf(ran.output);
      EXPECT_GT(lines.size(), 10U) << ran.output;
      for (const std::string& line : lines) {
        EXPECT_LE(applydic::WidthOf(line), static_cast<std::size_t>(width)) << line;
      }
    }
  }
}

TEST(Terminal, HasColorWhereItIsWanted) {
  const std::string diff = "diff survey_2025.xml survey_2026.xml 2>/dev/null";
  EXPECT_TRUE(HasColor(OnTerminal(diff, 80).output));
  EXPECT_FALSE(HasColor(OnTerminal(diff, 80, "NO_COLOR=1").output));
  EXPECT_TRUE(HasColor(OnTerminal(diff + " --color always", 80, "NO_COLOR=1").output));
  EXPECT_FALSE(HasColor(OnTerminal(diff + " --color never", 80).output));
  EXPECT_FALSE(HasColor(Shell("applydic " + diff).output));
  EXPECT_TRUE(HasColor(Shell("applydic " + diff + " --color=always").output));
  EXPECT_FALSE(HasColor(Shell("applydic " + diff + " --color=always --json").output));
  EXPECT_EQ(Shell("applydic " + diff + " --color=green").status, 2);
}

TEST(Terminal, MeasuresWideCharacters) {
  const struct {
    const char* text;
    std::size_t width;
    std::vector<std::string> lines;
  } kCases[] = {{"", 5, {""}},
                {"one two", 7, {"one two"}},
                {"one two", 6, {"one", "two"}},
                {"one two three", 8, {"one two", "three"}},
                {"abcdefgh ij", 4, {"abcd", "efgh", "ij"}},
                {"日本語の調査", 5, {"日本", "語の", "調査"}},
                {"e\u0301e\u0301e\u0301", 2, {"e\u0301e\u0301", "e\u0301"}},
                {"日", 1, {"日"}}};
  for (const auto& test : kCases) {
    EXPECT_EQ(applydic::Fold(test.text, test.width), test.lines) << test.text;
  }
  EXPECT_EQ(applydic::Pad("日本", 6), "日本  ");
  EXPECT_EQ(applydic::Cut("日本語の調査", 6), "日本…");
  EXPECT_EQ(applydic::CountText(1234567), "1,234,567");
}

TEST(Terminal, ShowsSingleVariables) {
  EXPECT_EQ(Shell("applydic show survey_2025.xml sex 2>/dev/null").output,
            "Sex  (number)\n  label           Sex of the person\n  value labels    1  Male\n"
            "                  2  Female\n                  9  No answer\n  missing values  9\n"
            "  format          F1\n  column width    6\n  level           nominal\n"
            "  role            partition\n  alignment       center\n"
            "  question        Are you male or female?\n");
  const Ran json = Shell("applydic show --json survey_2025.xml AGE sex 2>/dev/null");
  const auto variables = nlohmann::json::parse(json.output)["variables"];
  ASSERT_EQ(variables.size(), 2U);
  EXPECT_EQ(variables[1]["name"], "Sex");
  const Ran unknown = Shell("applydic show survey_2025.xml SEX zz 2>&1");
  EXPECT_EQ(unknown.status, 2);
  EXPECT_NE(unknown.output.find("survey_2025.xml has no variable zz"), std::string::npos);
}

TEST(Diff, EndsAsDiffDoes) {
  EXPECT_EQ(Shell("applydic diff survey_2025.xml survey_2025.xml 2>/dev/null").output,
            "The dictionaries are the same.\n");
  EXPECT_EQ(Shell("applydic diff survey_2025.xml survey_2025.xml").status, 0);
  EXPECT_EQ(Shell("applydic diff --json survey_2025.xml survey_2026.xml").status, 1);
  const Ran quiet = Shell("applydic diff -q survey_2025.xml survey_2026.xml 2>/dev/null");
  EXPECT_EQ(quiet.status, 1);
  EXPECT_EQ(quiet.output, "");
  EXPECT_EQ(Shell("applydic diff survey_2025.xml none.xml 2>&1").status, 2);
  EXPECT_EQ(Shell("applydic diff archives/nesstar_2025.xml#F1 archives/nesstar_2025.xml#F2").status,
            1);
  EXPECT_EQ(Shell("applydic diff survey_2025.xml 2>/dev/null").status, 2);
}

// What a run tells is what diff finds between the files before and after it.
TEST(Diff, AgreesWithTheOutcomeOfARun) {
  const Folder folder;
  const std::pair<std::string, std::string> kPairs[] = {
      {"survey_2025.xml", "survey_2026.xml"},
      {"archives/dataverse_2025.xml", "archives/dataverse_2026.xml"},
      {"archives/nesstar_2025.xml#F2", "archives/nesstar_2026.xml#F2"}};
  for (const auto& [source, working] : kPairs) {
    const std::string id = working.substr(std::min(working.find('#'), working.size()));
    setenv("SOURCE", source.c_str(), 1);
    setenv("WORKING", working.c_str(), 1);
    setenv("SAVED", folder.At("saved.xml").c_str(), 1);
    setenv("ID", id.c_str(), 1);
    const Ran run = Shell(
        "applydic apply --json -c \"FROM '$SOURCE' /FILEINFO ALL /NEWVARS\" -o \"$SAVED\" "
        "\"$WORKING\" 2>/dev/null");
    const Ran diff = Shell("applydic diff --json \"$WORKING\" \"$SAVED$ID\" 2>/dev/null");
    const auto told = nlohmann::json::parse(run.output);
    const auto found = nlohmann::json::parse(diff.output);
    EXPECT_GE(told["changed"].size(), 1U) << source;
    for (const char* key : {"changed", "added", "file"}) EXPECT_EQ(told[key], found[key]) << source;
  }
}

std::string ManyVariables(int count, const std::string& content) {
  std::string text = "<codeBook><dataDscr>";
  for (int i = 0; i < count; ++i) {
    text += "<var name='v" + std::to_string(i) + "'>" + content + "</var>\n";
  }
  return text + "</dataDscr></codeBook>";
}

TEST(Account, IsAScreenfulOfManyVariables) {
  const Folder folder;
  std::string labels = "<labl>" + Repeated("a long label ", 30) + "</labl>";
  for (int i = 0; i < 40; ++i) {
    labels += "<catgry><catValu>" + std::to_string(i) + "</catValu><labl>l</labl></catgry>";
  }
  folder.Write("s.xml", ManyVariables(3'000, labels));
  folder.Write("w.xml", ManyVariables(3'000, "") + "\n");
  const std::string start = "cd '" + folder.At("") + "'; applydic apply -c \"FROM 's.xml'\" ";
  for (const std::string options : {"-o o.xml", "--diff -o o.xml", "-n"}) {
    const Ran ran = Shell(start + options + " w.xml");
    EXPECT_LE(LinesOf(ran.output).size(), 40U) << ran.output;
    EXPECT_NE(ran.output.find("Variables changed: 3,000 (label 3,000, value labels 3,000)"),
              std::string::npos)
        << ran.output;
    EXPECT_NE(ran.output.find("-v "), std::string::npos) << ran.output;
  }
  EXPECT_GT(std::stoi(Shell(start + "-v -n w.xml | wc -l").output), 120'000);
  EXPECT_EQ(Shell(start + "-q -o o.xml w.xml 2>&1").output, "");
  EXPECT_NE(Shell(start + "-n o.xml").output.find("Nothing to change\n"), std::string::npos);

  // A reader that goes away has read enough, and takes nothing from what is saved.
  const std::string saved = folder.Read("o.xml");
  EXPECT_EQ(Shell(start + "-v --diff -o p.xml w.xml 2>&1 | head -n 1").output, "v0\n");
  EXPECT_EQ(folder.Read("p.xml"), saved);
  for (const std::string command : {"show o.xml", "show --json o.xml",
                                    "apply --json -n w.xml -c "
                                    "\"FROM 's.xml'\""}) {
    const Ran ran = Shell("cd '" + folder.At("") + "'; applydic " + command + " 2>&1 | head -n 1");
    EXPECT_EQ(ran.status, 0) << command;
    EXPECT_EQ(LinesOf(ran.output).size(), 1U) << ran.output;
  }
  EXPECT_EQ(Shell("cd '" + folder.At("") + "'; applydic diff w.xml o.xml 2>&1 | head -n 1").status,
            1);
  EXPECT_EQ(Shell(start + "-o /dev/stdout w.xml 2>/dev/null | head -n 1").status, 2)
      << "a codebook that is cut off is no success";
}

// Standard error of this process on a terminal: run by `script` from the test below.
TEST(Progress, DISABLED_OfSlowWork) {
  const applydic::Progress progress;
  { const applydic::Progress::Stage quick("Quick"); }
  applydic::Progress::Stage stage("Writing", applydic::Progress::Count::Bytes);
  stage.Advance(7'000'000);
  std::this_thread::sleep_for(800ms);
  applydic::WriteWarning("a message");
  std::this_thread::sleep_for(300ms);
}

TEST(Progress, IsShownOnATerminalAndWipedAway) {
  const std::string test = std::string("/proc/") + std::to_string(getpid()) +
                           "/exe --gtest_also_run_disabled_tests "
                           "--gtest_filter=Progress.DISABLED_OfSlowWork";
  const std::string shown =
      Shell("TERM=xterm script -qec '" + test + " >/dev/null' /dev/null </dev/null").output;
  const std::string line = "\r\x1b[KWriting, 7 MB";
  const std::string message = "\r\x1b[Kapplydic: warning: a message\r\n";
  EXPECT_TRUE(shown.starts_with(line)) << shown;
  EXPECT_NE(shown.find(line + message + line), std::string::npos) << shown;
  EXPECT_TRUE(shown.ends_with(line + "\r\x1b[K")) << shown;
  EXPECT_EQ(Shell(test + " 2>&1 >/dev/null").output, "applydic: warning: a message\n");
}

}  // namespace
