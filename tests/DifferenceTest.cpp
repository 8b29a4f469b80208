#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "program/DifferenceJson.h"
#include "standalone/Comparison/Difference.h"
#include "tests/HostRun.h"

// What differs between two dictionaries, and how far commands reach.

namespace {

using Json = nlohmann::ordered_json;

velahost::CodebookFile Opened(const std::string& variables) {
  return velahost::OpenCodebook("f",
                                velahost::Bytes("<codeBook><fileDscr ID='F1'/><dataDscr>" +
                                                variables + "</dataDscr></codeBook>"),
                                std::nullopt, velahost::OpenFor::Showing);
}

std::string Category(const std::string& value, const std::string& label) {
  return "<catgry><catValu>" + value + "</catValu><labl>" + label + "</labl></catgry>";
}

// The one changed variable between two files, without its name; null where nothing differs.
Json ChangedBetween(const std::string& before, const std::string& now) {
  const velahost::CodebookFile old = Opened(before);
  const velahost::CodebookFile file = Opened(now);
  const velahost::Difference difference = DifferenceBetween(old, file);
  std::string text;
  applydic::JsonStream json([&text](std::string_view piece) { text += piece; });
  WriteChanged(difference, SideOf(old), SideOf(file), applydic::LabelPairs::Compared, json);
  json.End();
  Json changed = Json::parse(text)["changed"];
  EXPECT_EQ(changed.empty(), difference.Empty());
  if (changed.empty()) return nullptr;
  EXPECT_EQ(changed.size(), 1U);
  changed[0].erase("variable");
  return changed[0];
}

TEST(Difference, TellsWhatAVariableWasAndIs) {
  const struct {
    const char* what;
    std::string before, now;
    const char* changed;
  } kCases[] = {
      {"nothing", "<var name='a'><labl>L</labl></var>", "<var name='a'><labl> L </labl></var>",
       "null"},
      {"a label comes", "<var name='a'/>", "<var name='a'><labl>L</labl></var>",
       R"({"properties": ["label"], "old": {"label": null}, "new": {"label": "L"}})"},
      {"a name in another case", "<var name='a'/>", "<var name='A'/>",
       R"({"properties": ["name"], "old": {"name": "a"}, "new": {"name": "A"}})"},
      {"labels value by value",
       "<var name='a'>" + Category("1", "One") + Category("2", "Two") + Category("3", "Three") +
           "</var>",
       "<var name='a'>" + Category("3", "Three") + Category("02", "Zwei") + Category("4", "Four") +
           "</var>",
       R"({"properties": ["valueLabels"],
           "old": {"valueLabels": [{"value": 1, "label": "One"}, {"value": 2, "label": "Two"},
                                   {"value": 3, "label": "Three"}]},
           "new": {"valueLabels": [{"value": 3, "label": "Three"}, {"value": 2, "label": "Zwei"},
                                   {"value": 4, "label": "Four"}]},
           "valueLabels": {"added": [{"value": 4, "label": "Four"}],
                           "removed": [{"value": 1, "label": "One"}],
                           "changed": [{"value": 2, "old": "Two", "new": "Zwei"}],
                           "reordered": true}})"},
      {"labels of strings at another width",
       "<var name='a'><varFormat type='character' formatname='A2'/>" + Category("x", "X") +
           "</var>",
       "<var name='a'><varFormat type='character' formatname='A3'/>" + Category("x", "X") +
           "</var>",
       R"({"properties": ["type", "print", "write"],
           "old": {"type": 2, "print": {"type": "A", "width": 2, "decimals": 0},
                   "write": {"type": "A", "width": 2, "decimals": 0}},
           "new": {"type": 3, "print": {"type": "A", "width": 3, "decimals": 0},
                   "write": {"type": "A", "width": 3, "decimals": 0}}})"},
      {"labels of a number and a string", "<var name='a'>" + Category("1", "One") + "</var>",
       "<var name='a'><varFormat type='character'/>" + Category("1", "One") + "</var>",
       R"({"properties": ["type", "valueLabels", "alignment"],
           "old": {"type": 0, "valueLabels": [{"value": 1, "label": "One"}], "alignment": "right"},
           "new": {"type": 255, "valueLabels": [{"value": "1", "label": "One"}],
                   "alignment": "left"},
           "valueLabels": {"added": [{"value": "1", "label": "One"}],
                           "removed": [{"value": 1, "label": "One"}], "changed": [],
                           "reordered": false}})"},
      {"missing values in another order are the same",
       "<var name='a'><invalrng><item VALUE='8'/><item VALUE='9'/></invalrng></var>",
       "<var name='a'><invalrng><item VALUE='9'/><item VALUE='8'/></invalrng></var>", "null"},
      {"a question is asked in other words",
       "<var name='a'><qstn><qstnLit>How many?</qstnLit></qstn><universe>All</universe></var>",
       "<var name='a'><qstn><qstnLit>How much?</qstnLit></qstn><universe>All</universe></var>",
       R"({"properties": ["documentation"],
           "old": {"documentation": {"qstn": ["How many?"], "universe": ["All"]}},
           "new": {"documentation": {"qstn": ["How much?"], "universe": ["All"]}}})"}};
  for (const auto& test : kCases) {
    EXPECT_EQ(ChangedBetween(test.before, test.now), Json::parse(test.changed)) << test.what;
  }
}

TEST(Difference, PairsByNameAcrossPlaces) {
  const auto setOf = [](const char* members) {
    return "<varGrp ID='g' type='multipleResp' name='S' var='" + std::string(members) + "'/>";
  };
  const velahost::CodebookFile old = Opened(
      setOf("i j") + "<var ID='i' name='a'/><var ID='j' name='b' wgt='wgt'/><var name='c'/>");
  const velahost::CodebookFile same = Opened(
      setOf("i j") + "<var name='n'/><var ID='j' name='B' wgt='wgt'/><var ID='i' name='a'/>");
  const velahost::Difference difference = DifferenceBetween(old, same);
  EXPECT_EQ(difference.removed, std::vector<std::size_t>{2});
  EXPECT_EQ(difference.added, std::vector<std::size_t>{0});
  EXPECT_TRUE(difference.isReordered);
  EXPECT_EQ(difference.changed.size(), 1U) << "b is spelled B";
  EXPECT_TRUE(difference.file.Empty()) << "the same set and weight in other columns";
  // A weight and a member that the new file lacks are not taken for none.
  const velahost::Difference other =
      DifferenceBetween(old, Opened(setOf("i") + "<var ID='i' name='a'/>"));
  EXPECT_TRUE(other.file.Has(velahost::FileItem::Weight));
  EXPECT_TRUE(other.file.Has(velahost::FileItem::MrSets));
}

// The names that the host tells after commands: "not paired / not reached".
std::string ReachOf(const std::vector<std::string>& commands) {
  const Folder folder;
  folder.Write("s",
               "<codeBook><dataDscr><var name='A'/><var name='B'/><var name='X'/>"
               "<var name='Y'/></dataDscr></codeBook>");
  folder.Write("t", "<codeBook><dataDscr><var name='C'/><var name='X'/></dataDscr></codeBook>");
  Hosted hosted(folder.Write("w",
                             "<codeBook><dataDscr><var name='a'/><var name='b'/>"
                             "<var name='c'/></dataDscr></codeBook>"));
  for (std::string command : commands) {
    for (const char* file : {"s", "t"}) {
      command = Replaced(command, "'" + std::string(file) + "'", "'" + folder.At(file) + "'");
    }
    hosted.Run(command);
    EXPECT_FALSE(hosted.host.diagnostics.FatalError()) << command;
  }
  const velahost::Reach& reach = hosted.host.ReachOfRun();
  std::ostringstream text;
  for (const velahost::Text& name : reach.NotPaired()) text << name << ' ';
  text << '/';
  for (const std::size_t column : reach.NotReached(3)) text << ' ' << "abc"[column];
  return text.str();
}

TEST(Reach, IsToldForAllFormsOfTheCommand) {
  const std::pair<std::vector<std::string>, const char*> kCases[] = {
      {{}, "/ a b c"},
      {{"FROM 's'"}, "X Y / c"},
      {{"FROM 's' /FILEINFO /VARINFO"}, "X Y / c"},
      {{"FROM 's' /SOURCE VARIABLES=B Y"}, "Y / a c"},
      {{"FROM 's' /TARGET VARIABLES=A"}, "/ b c"},
      {{"FROM 's' /SOURCE VARIABLES=X /TARGET VARIABLES=b c"}, "/ a"},
      {{"FROM 's' /SOURCE VARIABLES=X /TARGET VARIABLES=c new1 TO new3 /NEWVARS"}, "/ a b"},
      {{"FROM 's' /NEWVARS"}, "/ c"},
      {{"FROM *"}, "/"},
      {{"FROM * /SOURCE VARIABLES=a /TARGET VARIABLES=b c"}, "/ a"},
      {{"FROM * /SOURCE VARIABLES=a /TARGET VARIABLES=b n /NEWVARS"}, "/ a c"},
      // Several commands: by none of them.
      {{"FROM 's'", "FROM 't'"}, "X Y X /"},
      {{"FROM 's'", "FROM 's' /SOURCE VARIABLES=X /TARGET VARIABLES=c"}, "Y /"},
      {{"FROM 's' /SOURCE VARIABLES=X /TARGET VARIABLES=c", "FROM 's'"}, "Y /"},
      {{"FROM 's'", "FROM 't' /NEWVARS"}, "X Y /"},
      {{"FROM 's'", "FROM 's' /SOURCE VARIABLES=Y /NEWVARS"}, "X / c"}};
  for (const auto& [commands, told] : kCases) {
    EXPECT_EQ(ReachOf(commands), told) << (commands.empty() ? "" : commands.front());
  }
}

}  // namespace
