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
    {"Empty", "",
     "PATH: this is no codebook, but an empty file: give a DDI Codebook document (XML)"},
    {"NotWellFormed", "<codeBook>\r\n\u00E9<a></b>", "PATH: line 2, column 7: mismatched tag"},
    {"Unfinished", "<codeBook>\n", "PATH: line 2, column 1: no element found"},
    {"InvalidUtf8", "<codeBook>\n\xFF</codeBook>",
     "PATH: line 2, column 1: not well-formed (invalid token)"},
    {"OtherRoot", "\n<html/>",
     "PATH: the document has no codebook: its root element is html, and no codeBook stands in it"},
    {"CodebookInACodebook", "<codeBook><dataDscr><var>\n<codeBook/></var></dataDscr></codeBook>",
     "PATH: line 2: the document has another codeBook on line 1: give a document with one"},
    {"SeveralCodebooks", "<r><codeBook/>\n<codeBook/></r>",
     "PATH: line 2: the document has another codeBook on line 1: give a document with one"},
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
    {"Version", "<?xml version='.0'?><codeBook/>",
     "PATH: line 1, column 1: XML of version .0 cannot be read: let it be 1.0"},
    {"ShiftJis", "<?xml version='1.0' encoding='Shift_JIS'?><codeBook/>",
     "PATH: line 1, column 1: encoding Shift_JIS cannot be read: convert the document to UTF-8, "
     "for "
     "example by iconv -f Shift_JIS -t UTF-8, and let its first line say UTF-8"},
    {"Utf16", std::string("\xFF\xFE<\0c\0", 6),
     "PATH: encoding UTF-16 cannot be read: convert the document to UTF-8, for example by iconv -f "
     "UTF-16 -t UTF-8, and let its first line say UTF-8"}};
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

TEST(Reading, TakesSetsByTheFirstOfEachName) {
  const velahost::CodebookFile opened = velahost::OpenCodebook(
      "w",
      velahost::Bytes(
          "<codeBook><dataDscr><varGrp ID='G'/><varGrp name='s' var='A'/><varGrp ID='H'><labl>s"
          "</labl></varGrp><varGrp ID=' ' name='' type='multipleResp'><labl>s</labl></varGrp><var "
          "ID='A' name='a'/></dataDscr></codeBook>"),
      std::nullopt);
  const auto file = DictionaryJson(opened.dictionary)["file"];
  ASSERT_EQ(file["varsets"].size(), 1);
  EXPECT_EQ(file["varsets"][0]["variables"], nlohmann::ordered_json{"a"});
  ASSERT_EQ(file["mrsets"].size(), 1);
  EXPECT_EQ(file["mrsets"][0]["name"], "s");
}

struct InLanguage {
  std::optional<std::string> language;
  std::string label;    // of the variable
  std::string warning;  // of a source
};

TEST(Reading, TakesLabelsOfTheRunsLanguage) {
  const std::string text =
      "<codeBook><dataDscr><var name='b'><labl/></var><var name='a'><labl xml:lang='sv'/><labl "
      "xml:lang='pt-BR'>B</labl><labl>N</labl><labl "
      "xml-lang='PT'>P</labl></var></dataDscr></codeBook>";
  const std::string noLanguage = Replaced(text, "<labl>N</labl>", "");
  const std::pair<std::string, InLanguage> kReadings[] = {
      {text, {std::nullopt, "B", ""}},  // that of the first label
      {text, {"", "B", ""}},
      {text, {"pt", "P", ""}},
      {text, {"pt-PT", "B", ""}},
      {text, {"sv", "N", ""}},
      {noLanguage,
       {"sv", "null",
        "w: No label is in the language of this run (sv). The labels there are in other languages "
        "(PT, pt-BR): choose one of them for the run..."}}};
  for (const auto& [document, reading] : kReadings) {
    const testing::ScopedTrace trace(__FILE__, __LINE__, reading.language.value_or("own"));
    const velahost::CodebookFile opened = velahost::OpenCodebook(
        "w", velahost::Bytes(document), std::nullopt, velahost::OpenFor::Reading, reading.language);
    const auto label = DictionaryJson(opened.dictionary)["variables"][1]["label"];
    EXPECT_EQ(label.is_null() ? "null" : label.get<std::string>(), reading.label);
    const std::string warning =
        opened.warnings.empty() ? "" : velahost::Render(opened.warnings.front());
    EXPECT_EQ(warning, reading.warning);
  }
}

// What documents a variable, as it is shown.
TEST(Reading, TakesDocumentationOfTheRunsLanguage) {
  const Folder folder;
  const std::string path = folder.Write(
      "w.xml",
      "<codeBook xml:lang='fr'><dataDscr><var name='a'><notes type='x'>no</notes><notes> n\n 1 "
      "</notes><qstn><preQTxt>All</preQTxt><qstnLit xml:lang='en'>Why?</qstnLit><qstnLit "
      "xml:lang='sv'>Va?</qstnLit></qstn><txt><p>one</p><p>two</p></txt><universe xml:lang='sv'>u"
      "</universe><txt>3</txt><concept> </concept></var></dataDscr></codeBook>");
  const std::pair<std::string, std::string> kReadings[] = {
      {"en", R"({"qstn":["All Why?"],"txt":["one two","3"],"notes":["n 1"]})"},
      {"", R"({"qstn":["All Why? Va?"],"universe":["u"],"txt":["one two","3"],"notes":["n 1"]})"}};
  for (const auto& [language, documentation] : kReadings) {
    const auto opened = velahost::OpenCodebook(path, velahost::OpenFor::Showing, language);
    EXPECT_EQ(DictionaryJson(opened)["variables"][0]["documentation"].dump(), documentation);
  }
}

// A variable's element, and its type and print format: a string's type is its width.
TEST(Reading, TakesTypesAndFormatsFromWhereTheyStand) {
  const std::string longest(256, 'x');
  const std::pair<std::string, std::string> kReadings[] = {
      {"<location/><location width='5'/><varFormat type='character' formatname='A8'/>", "5 A5"},
      {"<varFormat type='character' formatname='hex24'>A3</varFormat>", "12 HEX24"},
      {"<varFormat type='character' formatname='F8'>A7</varFormat>", "7 A7"},
      {"<varFormat type='character'/><notes type='VELA:printFormat'>A9</notes>", "9 A9"},
      {"<location width='4'/><varFormat type='character'/>", "4 null"},
      {"<varFormat type='character' formatname='A32768'/>", "255 null"},
      {"<invalrng><item VALUE='" + longest + "'/></invalrng><varFormat type='character'/>",
       "256 null"},
      {"<varFormat formatname=' date9 '>F8.2</varFormat>", "0 DATE9"},
      {"<varFormat formatname='F'>f8.2</varFormat>", "0 F8.2"},
      {"<varFormat formatname='A8'>HEX4</varFormat>", "0 null"},
      {"<location width='8'/><varFormat formatname='F8.'>F0</varFormat>", "0 null"},
      {"<varFormat formatname='F8'/><notes type='VELA:printFormat'>N3</notes>", "0 N3"}};
  for (const auto& [elements, reading] : kReadings) {
    const velahost::CodebookFile opened =
        velahost::OpenCodebook("w",
                               velahost::Bytes("<codeBook><dataDscr><var name='a'>" + elements +
                                               "</var></dataDscr></codeBook>"),
                               std::nullopt);
    const auto variable = DictionaryJson(opened.dictionary)["variables"][0];
    const auto& print = variable["print"];
    std::string format = "null";
    if (!print.is_null()) {
      format = print["type"].get<std::string>() + print["width"].dump();
      if (print["decimals"] != 0) format += "." + print["decimals"].dump();
    }
    EXPECT_EQ(variable["type"].dump() + " " + format, reading) << elements;
  }
}

TEST(Reading, WarnsOnceAFileOfWhatIsNotTaken) {
  const Folder folder;
  const std::string path = folder.Write(
      "w.xml",
      "<?xml version='1.0' encoding='UTF-16'?><codeBook><dataDscr>\n"
      "<var name='a'><invalrng><range/><range/></invalrng></var>\n"
      "<var name='b'><catgry missing='Y'><catValu>DK</catValu></catgry></var>\n"
      "<var name='c'><invalrng><range minExclusive='1'/></invalrng></var>\n<var/>\n"
      "<var name='s'><invalrng><range/></invalrng><catgry><catValu>long</catValu><labl>l</labl>"
      "</catgry><varFormat type='character' formatname='A2'/></var>\n"
      "<var name='t'><invalrng><range max='x'/></invalrng><catgry><labl>l</labl></catgry><catgry>"
      "<labl>m</labl></catgry></var></dataDscr></codeBook>");
  std::vector<std::string> warnings;
  for (const auto& warning : velahost::OpenCodebook(path).warnings) {
    warnings.push_back(velahost::Render(warning));
  }
  EXPECT_EQ(
      warnings,
      (std::vector<std::string>{
          path +
              ": 4 variables with missing values that a variable cannot have (a, c, s...): a "
              "second range, a range of strings, a bound that is excluded or no number, or a "
              "value longer than the string. They stay in the file and count as none. Write them "
              "as single values and one range...",
          path + ": 1 variable with labels for values that are longer than the variable (s). These "
                 "labels stay in the file and do not count. Shorten the values, or widen the "
                 "variable...",
          path + ": 2 categories with a label and no value (t). They stay in the file and do not "
                 "count. Give each a value (catValu)...",
          path + ": 1 variable without a name and an ID (line 5). They stay in the file and do not "
                 "count. Give each a name...",
          path + ": The first line says UTF-16, but the document is in single bytes. It is read as "
                 "UTF-8: let the first line say UTF-8..."}));
}

}  // namespace
