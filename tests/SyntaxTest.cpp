#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "standalone/Syntax/Subcommands.h"
#include "standalone/Syntax/Tokenizer.h"
#include "tests/HostRun.h"

// Commands that are large, or that are none at all.

namespace {

struct Wrong {
  const char* name;
  std::string command;
};
void PrintTo(const Wrong& wrong, std::ostream* out) { *out << wrong.name; }

class ManyErrors : public testing::TestWithParam<Wrong> {};

TEST_P(ManyErrors, AreReportedUpToABoundInEachCommand) {
  const Folder folder;
  const std::string path =
      folder.Write("w.xml", "<codeBook><dataDscr><var name='a'/></dataDscr></codeBook>");
  Hosted hosted(path);
  const std::vector<velahost::Diagnostic>& all = hosted.host.diagnostics.All();
  for (std::size_t run = 1; run <= 2; ++run) {
    hosted.Run(Replaced(GetParam().command, "SRC", "'" + path + "'"));
    ASSERT_EQ(all.size(), run * (velahost::kMostErrors + 1));
    EXPECT_EQ(all.back().shown,
              "More than 1000 errors in this command. The others are not reported...");
    EXPECT_EQ(all.back().level, velahost::Severity::Error);
    EXPECT_NE(all[all.size() - 2].shown, all.back().shown);
    EXPECT_TRUE(hosted.host.diagnostics.FatalError());
  }
}

constexpr int kMany = 3000;
const Wrong kWrong[] = {{"Characters", "FROM SRC " + std::string(kMany, '\x01')},
                        {"UnclosedStrings", "FROM SRC " + Repeated("'\n", kMany)},
                        {"Subcommands", "FROM SRC" + Repeated("/X", kMany)},
                        {"Keywords", "FROM SRC /VARINFO" + Repeated(" X", kMany)},
                        {"Variables", "FROM SRC /SOURCE VARIABLES=" + Repeated(" x", kMany)}};
INSTANTIATE_TEST_SUITE_P(All, ManyErrors, testing::ValuesIn(kWrong),
                         [](const auto& param) { return std::string(param.param.name); });

TEST(Tokens, OfWhatIsNoCommandAreNoMoreThanAreReported) {
  const auto commands = velahost::SplitCommands(std::string(100'000, '\x01') + "/X.\n" +
                                                Repeated("'\n", 100'000) + "/Y");
  ASSERT_EQ(commands.size(), 2U);
  for (const velahost::Command& command : commands) {
    EXPECT_EQ(command.tokens.size(), velahost::kMostErrors + 4) << "the errors, / X and the end";
    EXPECT_TRUE(command.tokens.rbegin()[2].Is('/')) << "what follows is there";
  }
}

TEST(Tokens, TakeASmallMultipleOfTheText) {
  const std::string text = Repeated("Variable ", 100'000);
  const velahost::Command command = velahost::SplitCommands(text).front();
  EXPECT_LE(command.tokens.size() * sizeof(velahost::Token), 4 * text.size());
  for (const velahost::Token& token : command.tokens) {
    ASSERT_GE(token.typed.data(), command.text->data()) << "not a copy";
    ASSERT_LE(token.typed.data() + token.typed.size(), command.text->data() + text.size());
  }
}

TEST(SourceNamedIn, IsTheFileThatARunWouldOpen) {
  const std::pair<const char*, const char*> kRows[] = {
      {"APPLY DICTIONARY FROM 'a'", "a"},
      {"TARGET VARIABLES=FROM 'b' /FRO = \"a\" /NEWVARS", "a"},
      {"FROM 'a' PASSWORD = 'x' /VARINFO X", "a"},
      {"FROM 'a' PASSWORD NONE", "a"},
      {"TARGET VARIABLES=FROM 'a'", nullptr},
      {"FROM 'a' /FROM 'b'", nullptr},
      {"FROM 'a' /X", nullptr},
      {"FROM 'a' 'PASSWORD' 'x'", nullptr},
      {"FROM 'a' PASSWORD", nullptr},
      {"FROM 'a' PASSWORD=''", nullptr},
      {"FROM 'a' PASSWORD 'x' 'y'", nullptr},
      {"FROM = = 'a'", nullptr},
      {"FROM ''", nullptr},
      {"FROM *", nullptr},
      {"FROM", nullptr}};
  for (const auto& [command, expected] : kRows) {
    const auto named = velahost::SourceNamedIn(velahost::SplitCommands(command).front());
    EXPECT_EQ(named.value_or("nothing"), expected == nullptr ? "nothing" : expected) << command;
  }
}

TEST(TextWithoutPasswords, HidesWhatMayBelongToOne) {
  const std::pair<const char*, const char*> kRows[] = {
      {"FROM 'a' PASSWORD 'x' /VARINFO LABEL", "FROM 'a' PASSWORD (not shown) /VARINFO LABEL"},
      {"FROM 'a' PASS = x\n/NEWVARS.\n\nFROM 'b' PASSWORD \"y\".",
       "FROM 'a' PASS (not shown) (not shown)\n/NEWVARS.\n\nFROM 'b' PASSWORD (not shown)."},
      {"FROM 'a' PASSWORD 'x", "FROM 'a' PASSWORD (not shown)"},
      {"FROM 'a' PASSWORD NONE", "FROM 'a' PASSWORD NONE"},
      {"FROM 'a' /SOURCE VARIABLES=passed b 'x'",
       "FROM 'a' /SOURCE VARIABLES=passed b (not shown)"},
      {"/* PASSWORD */ FROM 'a' /TARGET VARIABLES=a",
       "/* PASSWORD */ FROM 'a' /TARGET VARIABLES=a"},
      {"", ""}};
  for (const auto& [text, expected] : kRows) {
    EXPECT_EQ(velahost::TextWithoutPasswords(velahost::SplitCommands(text)), expected);
  }
}

}  // namespace
