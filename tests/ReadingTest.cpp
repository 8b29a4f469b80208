#include <gtest/gtest.h>
#include <sys/stat.h>

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "tests/HostRun.h"

// What is refused when a codebook is opened, with which message, and what is only warned of.

namespace {

struct Opening {
  const char* name;
  std::string text;
  std::string message;  // "PATH" stands for the file's path
  std::string id = {};
};
void PrintTo(const Opening& opening, std::ostream* out) { *out << opening.name; }

class Refusal : public testing::TestWithParam<Opening> {};

TEST_P(Refusal, NamesTheFileThePlaceAndTheReason) {
  const Folder folder;
  const std::string path = folder.Write("file.xml", GetParam().text);
  try {
    velahost::OpenCodebook(path + GetParam().id);
    FAIL() << "not refused";
  } catch (const velahost::FileError& error) {
    EXPECT_EQ(error.what(), Replaced(GetParam().message, "PATH", path));
  }
}

// A root element with that many namespace declarations, and one with that many attributes that are
// declared with a default.
std::string WithNamespaces(int count) {
  std::string text = "<codeBook";
  for (int i = 0; i < count; ++i) text += " xmlns:p" + std::to_string(i) + "='u'";
  return text + "><dataDscr><var name='a'/></dataDscr></codeBook>";
}
std::string WithDefaults(int count) {
  std::string text = "<!DOCTYPE codeBook [";
  for (int i = 1; i < count; ++i) text += "<!ATTLIST x a" + std::to_string(i) + " CDATA 'v'>\n";
  return text +
         "<!ATTLIST var nature CDATA 'ordinal'>\n<!ATTLIST var wgt CDATA #IMPLIED>]>"
         "<codeBook><dataDscr><var name='a'/></dataDscr></codeBook>";
}

const std::string kTwice = "<codeBook>\n<dataDscr><var name='a b'/>\r\n<var name='A  B'/>";
const Opening kRefused[] = {
    {"Empty", "", "PATH: line 1, column 1: no element found"},
    {"NotWellFormed", "<codeBook>\r\n\u00E9<a></b>", "PATH: line 2, column 7: mismatched tag"},
    {"Unfinished", "<codeBook>\n", "PATH: line 2, column 1: no element found"},
    {"InvalidUtf8", "<codeBook>\n\xFF</codeBook>",
     "PATH: line 2, column 1: not well-formed (invalid token)"},
    {"OtherRoot", "\n<html/>",
     "PATH: line 2: the document is no codebook: its root element is html, not codeBook"},
    {"Entity", "<!DOCTYPE codeBook [\n<!ENTITY e 'x'>]><codeBook>&e;</codeBook>",
     "PATH: line 2, column 12: the document declares an entity of its own, e: write its text where "
     "it is used"},
    {"ExternalEntity", "<!DOCTYPE codeBook [<!ENTITY % p SYSTEM '/etc/passwd'>%p;]><codeBook/>",
     "PATH: line 1, column 54: the document declares an entity of its own, p: write its text where "
     "it is used"},
    {"UndeclaredEntity", "<codeBook>&e;</codeBook>", "PATH: line 1, column 11: undefined entity"},
    {"TwoOfOneName", kTwice + "</dataDscr></codeBook>",
     "PATH: line 3: variable A B stands in the file already, on line 2 as a b: names must differ "
     "in "
     "more than case"},
    {"TwoOfOneNameAt64Bytes",
     "<codeBook><dataDscr><var name='" + std::string(64, 'x') + "1'/><var name='" +
         std::string(64, 'x') + "2'/></dataDscr></codeBook>",
     "PATH: line 1: variable " + std::string(64, 'x') +
         " stands in the file already, on line 1: names must differ in more than case"},
    {"NoSuchId", "<codeBook><fileDscr ID='F1'/><fileDscr/><fileDscr ID='F 2'/></codeBook>",
     "PATH: has no data file with the ID F3: it has F1, F 2", "#F3"},
    {"NoIdAtAll", "<codeBook/>",
     "PATH: has no data file with the ID : none of its data files has an ID", "#"},
    {"Namespaces", WithNamespaces(1001),
     "PATH: line 1, column 1: more than 1000 namespaces are declared around this element"},
    {"Defaults", WithDefaults(1001),
     "PATH: line 1001, column 28: more than 1000 attributes are declared with a default"},
    {"Windows1252", "<?xml version='1.0' encoding='windows-1252'?><codeBook/>",
     "PATH: line 1, column 1: encoding windows-1252 cannot be read: save the document as UTF-8, "
     "US-ASCII or ISO-8859-1"},
    {"Utf16", std::string("\xFF\xFE<\0c\0", 6),
     "PATH: encoding UTF-16 cannot be read: save the document as UTF-8"}};
INSTANTIATE_TEST_SUITE_P(All, Refusal, testing::ValuesIn(kRefused),
                         [](const auto& param) { return std::string(param.param.name); });

TEST(Refusal, OfWhatIsNoFile) {
  const Folder folder;
  ASSERT_EQ(mkfifo(folder.At("pipe").c_str(), 0600), 0);
  ASSERT_TRUE(std::filesystem::create_directory(folder.At("folder")));
  const std::pair<std::string, std::string> kPaths[] = {
      {folder.At("none.xml"), "No such file or directory"},
      {folder.At("none.xml#F1"), "No such file or directory"},
      {folder.At("folder"), "it is a folder"},
      {folder.At("pipe"), "it is not a regular file"},
      {"/dev/zero", "it is not a regular file"}};
  for (const auto& [path, reason] : kPaths) {
    try {
      velahost::OpenCodebook(path);
      ADD_FAILURE() << path << " not refused";
    } catch (const velahost::FileError& error) {
      EXPECT_EQ(error.what(), path.substr(0, path.find('#')) + ": cannot be read: " + reason);
    }
  }
}

TEST(Reading, TakesAFileWhoseWholeNameHasTheIdMark) {
  const Folder folder;
  const std::string path = folder.Write("a#F2", "<codeBook><fileDscr ID='F1'/></codeBook>");
  EXPECT_EQ(velahost::OpenCodebook(path).path, path);
  EXPECT_EQ(velahost::OpenCodebook(path + "#F1").path, path);
}

TEST(Reading, TakesAsManyDeclarationsAsThereMayBe) {
  for (const std::string& text : {WithNamespaces(1000), WithDefaults(1000)}) {
    const velahost::CodebookFile opened =
        velahost::OpenCodebook("w", velahost::Bytes(text), std::nullopt);
    const auto variable = DictionaryJson(opened.dictionary)["variables"].at(0);
    EXPECT_EQ(variable["name"], "a");
    EXPECT_TRUE(variable["level"].is_null()) << "a declared default does not count";
  }
}

TEST(Reading, TakesNoSetThatHasNothingToBeCalledBy) {
  const velahost::CodebookFile opened = velahost::OpenCodebook(
      "w",
      velahost::Bytes(
          "<codeBook><dataDscr><varGrp var='A'/><varGrp ID=' ' name='' type='multipleResp'><labl> "
          "</labl></varGrp><varGrp ID='G'/><var ID='A' name='a'/></dataDscr></codeBook>"),
      std::nullopt);
  const auto file = DictionaryJson(opened.dictionary)["file"];
  EXPECT_EQ(file["mrsets"].size(), 0);
  ASSERT_EQ(file["varsets"].size(), 1);
  EXPECT_EQ(file["varsets"][0]["name"], "G");
}

TEST(Reading, WarnsOnceAFileOfWhatIsNotTaken) {
  const Folder folder;
  const std::string path = folder.Write(
      "w.xml",
      "<codeBook><dataDscr>\n<var name='a'><invalrng><item VALUE='1'/><item VALUE='2'/><range/>"
      "</invalrng></var>\n<var name='b'><catgry missing='Y'><catValu>DK</catValu></catgry></var>\n"
      "<var name='c'><invalrng><range minExclusive='1'/></invalrng></var>\n<var/>\n"
      "<var name='s'><invalrng><range/></invalrng><catgry><catValu>long</catValu><labl>l</labl>"
      "</catgry><varFormat type='character' formatname='A2'/></var>\n<var "
      "name='d'><catgry><catValu>"
      "DK</catValu><labl>no number</labl></catgry></var></dataDscr></codeBook>");
  std::vector<std::string> warnings;
  for (const auto& warning : velahost::OpenCodebook(path).warnings) {
    warnings.push_back(velahost::Render(warning));
  }
  EXPECT_EQ(warnings,
            (std::vector<std::string>{
                path + ": Missing values not read, more or others than a variable can have: a, b, "
                       "c, s...",
                path + ": Value labels not read, values longer than the variable: s...",
                path + ": Variables without a name not read, on line 5..."}));
}

}  // namespace
