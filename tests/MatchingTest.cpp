#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "program/SourceReader.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Matching/Matching.h"
#include "standalone/Syntax/Tokenizer.h"
#include "tests/ProgramRun.h"

// Which variables of a newer file come from which of an older one, and the commands that say so.

namespace {

struct Var {
  std::string name;
  std::string label = {};
  std::string inside = {};  // as markup
};

std::string CodebookOf(const std::vector<Var>& variables) {
  std::string text = "<codeBook><fileDscr/><dataDscr>";
  for (const auto& [name, label, inside] : variables) {
    text += "<var name=\"" + name + "\">";
    if (!label.empty()) text += "<labl>" + label + "</labl>";
    text += inside + "</var>\n";
  }
  return text + "</dataDscr></codeBook>";
}

velahost::CodebookFile FileOf(const std::vector<Var>& variables) {
  return velahost::OpenCodebook("f.xml", velahost::Bytes(CodebookOf(variables)), {});
}

// The proposals for two files, each as "old>new", with "?" behind those that are uncertain.
std::vector<std::string> Pairs(const std::vector<Var>& oldOnes, const std::vector<Var>& newOnes) {
  const velahost::CodebookFile oldFile = FileOf(oldOnes);
  const velahost::CodebookFile newFile = FileOf(newOnes);
  const auto none = [](std::size_t) { return std::string(); };
  std::vector<std::string> pairs;
  for (const velahost::Proposal& proposal :
       velahost::MatchVariables({oldFile.dictionary, none}, {newFile.dictionary, none}).proposals) {
    EXPECT_GT(proposal.score, 0);
    EXPECT_LT(proposal.score, 1);
    EXPECT_FALSE(proposal.reasons.empty());
    EXPECT_FALSE(proposal.isCertain && !proposal.rivals.empty());
    pairs.push_back(oldOnes[proposal.oldColumn].name + ">" + newOnes[proposal.newColumn].name +
                    (proposal.isCertain ? "" : "?"));
  }
  std::sort(pairs.begin(), pairs.end());
  return pairs;
}

// Labels that have no rare word in common.
const std::vector<std::string> kLabels = {
    "Sex of the person",  "Age at last birthday", "Highest certificate",    "Region of residence",
    "Occupation, stated", "Trust in courts",      "Yearly income of all",   "Household number",
    "Main benefit",       "Working time",         "Children under fifteen", "Interview language"};

// Variables with these labels, or none, whose names the function makes of their numbers.
template <class NameOf>
std::vector<Var> Named(NameOf nameOf, bool isLabelled = true) {
  std::vector<Var> variables;
  for (std::size_t i = 0; i < kLabels.size(); ++i) {
    variables.push_back({nameOf(std::to_string(i)), isLabelled ? kLabels[i] : ""});
  }
  return variables;
}

struct Renaming {
  const char* name;
  std::string (*before)(const std::string& number);
  std::string (*now)(const std::string& number);
  bool needsLabels = false;
};

TEST(Matching, FollowsSystematicChangesOfNames) {
  using Number = const std::string&;
  const Renaming kRenamings[] = {
      {"a letter", [](Number n) { return "CCCA_0" + n; }, [](Number n) { return "CCCC_0" + n; }},
      {"a year", [](Number n) { return "q_" + n + "_2024"; },
       [](Number n) { return "q_" + n + "_2025"; }},
      {"a prefix", [](Number n) { return "x" + n; }, [](Number n) { return "w2_x" + n; }},
      {"a suffix less", [](Number n) { return "x" + n + "_r"; }, [](Number n) { return "X" + n; }},
      {"both ends", [](Number n) { return "w3_q" + n + "_24"; },
       [](Number n) { return "w4_q" + n + "_25"; }},
      {"zeros", [](Number n) { return "q_" + n; }, [](Number n) { return "Q00" + n; }},
      {"a shift", [](Number n) { return "q" + n; },
       [](Number n) { return "q" + std::to_string(std::stoi(n) + 100); }, true},
      {"no scheme", [](Number n) { return std::string("abc") + n; },
       [](Number n) { return "zyx" + std::to_string(std::stoi(n) * 7919 % 997); }, true}};
  for (const auto& [name, before, now, needsLabels] : kRenamings) {
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < kLabels.size(); ++i) {
      expected.push_back(before(std::to_string(i)) + ">" + now(std::to_string(i)));
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(Pairs(Named(before), Named(now)), expected) << name;
    if (needsLabels) continue;
    // Names alone may leave a doubt, but no wrong pair and no gap.
    std::vector<std::string> byNames = Pairs(Named(before), Named(now, false));
    for (std::string& pair : byNames) std::erase(pair, '?');
    EXPECT_EQ(byNames, expected) << name;
  }
}

TEST(Matching, BelievesWhatVariablesSayMoreThanTheirNames) {
  // Two have changed places, and two that were dropped and added have names that fit the scheme.
  std::vector<Var> oldOnes = Named([](const std::string& n) { return "q" + n + "_2024"; });
  std::vector<Var> newOnes = Named([](const std::string& n) { return "q" + n + "_2025"; });
  std::swap(newOnes[2].label, newOnes[3].label);
  newOnes[7].label = "Satisfaction with the weather";
  const std::vector<std::string> pairs = Pairs(oldOnes, newOnes);
  for (const char* wrong : {"q2_2024>q2_2025", "q3_2024>q3_2025", "q7_2024>q7_2025"}) {
    EXPECT_EQ(std::count(pairs.begin(), pairs.end(), wrong), 0) << wrong;
  }
  EXPECT_EQ(std::count(pairs.begin(), pairs.end(), "q5_2024>q5_2025"), 1);
}

TEST(Matching, SeesThatNamesAreUsedAnew) {
  std::vector<Var> oldOnes = Named([](const std::string& n) { return "v" + n; });
  std::vector<Var> newOnes =
      Named([](const std::string& n) { return "v" + std::to_string(std::stoi(n) + 1); });
  const std::vector<std::string> pairs = Pairs(oldOnes, newOnes);
  EXPECT_EQ(std::count(pairs.begin(), pairs.end(), "v3>v4"), 1);
  // A single such name is left to the reader.
  newOnes = oldOnes;
  newOnes[3] = {"new", oldOnes[3].label};
  newOnes.push_back({"v3", "Satisfaction with the weather"});
  EXPECT_EQ(Pairs(oldOnes, newOnes), std::vector<std::string>{"v3>new"});
}

TEST(Matching, ChoosesNothingInSilence) {
  const std::vector<Var> some = Named([](const std::string& n) { return "a" + n; });
  std::vector<Var> oldOnes = some;
  std::vector<Var> newOnes = some;
  oldOnes.insert(oldOnes.end(),
                 {{"first", "Other, please specify"}, {"second", "Other, please specify"}});
  newOnes.insert(newOnes.end(), {{"xx", "Other, please specify"}, {"yy", "Other, please specify"}});
  EXPECT_EQ(Pairs(oldOnes, newOnes), (std::vector<std::string>{"first>xx?", "second>yy?"}));
  oldOnes.pop_back();  // where there is one to two
  EXPECT_EQ(Pairs(oldOnes, newOnes), std::vector<std::string>{"first>xx?"});
  std::swap(oldOnes, newOnes);
  EXPECT_EQ(Pairs(oldOnes, newOnes), std::vector<std::string>{"xx>first?"});
}

TEST(Matching, ProposesNothingWithoutAReason) {
  const std::vector<Var> oldOnes = {{"alpha", "Sex of the person"}, {"beta", "Main benefit"}};
  EXPECT_EQ(Pairs(oldOnes, {{"one", "Opinion on taxes"}, {"two", "Number of rooms"}, {"three"}}),
            std::vector<std::string>{});
  EXPECT_EQ(Pairs(oldOnes, oldOnes), std::vector<std::string>{});
  EXPECT_EQ(Pairs(oldOnes, {}), std::vector<std::string>{});
  EXPECT_EQ(Pairs({}, oldOnes), std::vector<std::string>{});
  EXPECT_EQ(Pairs({{"***", "***"}, {"_", "2024"}}, {{"---", "---"}, {".", "2025"}}),
            std::vector<std::string>{});
}

// The program from outside.
using MatchProgram = ProgramRun;

TEST_F(MatchProgram, WritesCommandsThatApplyRuns) {
  // A file's name with a quote, and names and labels that would end a comment or its line.
  const std::string oldName = "last year's.xml";
  std::vector<Var> oldOnes = Named([](const std::string& n) { return "CCA_" + n; });
  std::vector<Var> newOnes = Named([](const std::string& n) { return "CCB_" + n; }, false);
  for (std::size_t i = 0; i < 3; ++i) newOnes[i].label = kLabels[i];
  oldOnes[0].label = newOnes[0].label = "Sex */ FROM 'x' &#10;. /* of the person";
  oldOnes.insert(oldOnes.end(), {{"*/ a.", "Weather in spring"}, {"t1", "Other"}, {"t2", "Other"}});
  newOnes.insert(newOnes.end(),
                 {{"b */\xE2\x80\xA8", "Weather in spring"}, {"u1", "Other"}, {"u2", "Other"}});
  std::string source = CodebookOf(oldOnes);
  source = Replaced(source, "name=\"CCA_1\"", "name=\"CCA_1\" wgt=\"wgt\"");
  folder_.Write(oldName, source);
  folder_.Write("new.xml", CodebookOf(newOnes));
  ASSERT_EQ(Run("match --json -o pairs.txt \"" + oldName + "\" new.xml"), 0) << err_;
  const auto json = nlohmann::json::parse(out_);
  EXPECT_EQ(json["old"], oldName);
  EXPECT_EQ(json["written"], "pairs.txt");
  const std::string syntax = folder_.Read("pairs.txt");
  EXPECT_NE(syntax.find("/*? FROM 'last year''s.xml' /SOURCE VARIABLES=t1"), std::string::npos)
      << syntax;
  ASSERT_EQ(Run("apply --json -f pairs.txt -o done.xml new.xml"), 0) << err_ << syntax;
  const auto outcome = nlohmann::json::parse(out_);
  EXPECT_EQ(outcome["file"], nlohmann::json::array()) << "the weight stays";
  const velahost::CodebookFile done = velahost::OpenCodebook(folder_.At("done.xml"));
  for (std::size_t i = 1; i < kLabels.size(); ++i) {
    EXPECT_EQ(done.dictionary.variables[i]->label.value_or(velahost::Text()), kLabels[i]) << syntax;
  }

  const std::string before = folder_.Read("new.xml");
  for (const std::string& refused :
       {"match \"" + oldName + "\" new.xml -o new.xml",
        "match \"" + oldName + "\" none.xml -o new.xml", std::string("match new.xml"),
        std::string("match new.xml new.xml -o -")}) {
    EXPECT_EQ(Run(refused), 2) << refused;
  }
  EXPECT_EQ(folder_.Read("new.xml"), before);
}

TEST_F(MatchProgram, ReadsEachSourceOnceInARun) {
  const std::string path = folder_.Write(
      "s.xml", CodebookOf({{"a", "Label", "<catgry><labl>No value</labl></catgry>"}}));
  const std::string command = "FROM '" + path + "' /SOURCE VARIABLES=a /TARGET VARIABLES=b.\n";
  folder_.Write("c.txt", Repeated(command, 3));
  folder_.Write("w.xml", CodebookOf({{"b"}}));
  EXPECT_EQ(Run("apply -n -q -f c.txt w.xml"), 0);
  const std::string warnings = err_;
  EXPECT_EQ(std::count(warnings.begin(), warnings.end(), '\n'), 1) << warnings;

  applydic::SourceReader sources(velahost::SplitCommands(Repeated(command, 3)), "");
  const auto first = sources.Open(path, "");
  folder_.Write("s.xml", "changed meanwhile");
  EXPECT_EQ(sources.Open(path, ""), first);
  EXPECT_EQ(first.use_count(), 2) << "one command is left";
  EXPECT_EQ(sources.Open(path, ""), first);
  EXPECT_EQ(first.use_count(), 1) << "no command is left";
  EXPECT_EQ(sources.Opened().size(), 1U);
}

}  // namespace
