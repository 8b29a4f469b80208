#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "tests/HostRun.h"

// The bytes of saved files: what a command changed is written, and every other byte stays.

namespace {

// A document, a command, and what differs in the document that is saved. "SRC" in the command is
// the source's path.
struct Saving {
  const char* name;
  std::string working;
  std::string source;
  std::string command;
  std::vector<std::pair<std::string, std::string>> changes;  // from, which stands there once; to
  std::string id = {};                                       // of the data file, with its "#"
};

void PrintTo(const Saving& saving, std::ostream* out) { *out << saving.name; }

// A document of variables, each on lines of its own from the fifth line on.
std::string Document(const std::string& variables, const std::string& fileDscr = "") {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<codeBook xmlns=\"ddi:codebook:2_5\">\n"
         "  <fileDscr ID=\"F1\">" +
         fileDscr + "</fileDscr>\n  <dataDscr>\n" + variables + "  </dataDscr>\n</codeBook>\n";
}

std::string Changed(std::string text, const Saving& saving) {
  for (const auto& [from, to] : saving.changes) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    EXPECT_EQ(text.rfind(from), at) << "must stand there once: " << from;
    text = Replaced(text, from, to);
  }
  return text;
}

void CheckSaving(const Saving& saving) {
  const Folder folder;
  const std::string working = folder.Write("working.xml", saving.working) + saving.id;
  const std::string source = folder.Write("source.xml", saving.source);
  std::string saved;
  nlohmann::ordered_json held;
  std::string language;
  {
    Hosted hosted(working);
    EXPECT_EQ(hosted.Saved(), saving.working) << "unchanged";
    hosted.Run(Replaced(saving.command, "SRC", "'" + source + "'"));
    for (const auto& diagnostic : hosted.host.diagnostics.All()) {
      EXPECT_LT(diagnostic.level, velahost::Severity::Error) << diagnostic.shown;
    }
    saved = hosted.Saved();
    held = hosted.Json();
    language = hosted.host.WorkingFile().language;
  }
  EXPECT_EQ(saved, Changed(saving.working, saving));
  // What was held in memory comes back, and once more nothing changes.
  folder.Write("working.xml", saved);
  const velahost::CodebookFile again =
      velahost::OpenCodebook(working, velahost::OpenFor::Writing, language);
  EXPECT_EQ(WithSortedSets(DictionaryJson(again.dictionary)).dump(1), WithSortedSets(held).dump(1));
  EXPECT_EQ(velahost::WriteCodebook(again, again.dictionary), saved);
}

class SavedBytes : public testing::TestWithParam<Saving> {};

TEST_P(SavedBytes, AreTheDocumentsWithTheChanges) { CheckSaving(GetParam()); }

// A source of one variable A with a label and a label for 1, as most rows need it.
const std::string kSource = Document(
    "<var name=\"A\"><labl>N&amp;w</labl><catgry><catValu>1</catValu><labl>one</labl></catgry>"
    "</var>");
constexpr const char* kLabelsOnly = "FROM SRC /VARINFO VARLABEL VALLABELS";
constexpr const char* kVarLabel = "FROM SRC /VARINFO VARLABEL";
constexpr const char* kAdd = "FROM SRC /VARINFO VARLABEL /NEWVARS";

const Saving kKinds[] = {
    {"LabelsIndented",
     Document("    <var name=\"a\">\n      <varFormat/>\n    </var>\n"),
     kSource,
     kLabelsOnly,
     {{"      <varFormat/>",
       "      <labl level=\"variable\">N&amp;w</labl>\n      <catgry>\n        "
       "<catValu>1</catValu>\n"
       "        <labl level=\"category\">one</labl>\n      </catgry>\n      <varFormat/>"}}},
    {"SecondOfSeveralFiles",
     "<codeBook>\n<fileDscr ID='F1'/>\n<fileDscr ID='F2'/>\n<dataDscr>\n<var name='a' "
     "files='F1'/>\n"
     "<var name='b'><location fileid='F2'/></var>\n<var name='b'/>\n</dataDscr>\n</codeBook>",
     Document("<var name='A'/><var name='B'><labl>L</labl></var>"),
     kAdd,
     {{"<location fileid='F2'/></var>",
       "<location fileid='F2'/><labl level=\"variable\">L</labl></var>\n<var ID=\"V1\" "
       "name=\"A\">\n"
       "  <location fileid=\"F2\"/>\n  <varFormat type=\"numeric\"/>\n</var>"}},
     "#F2"},
    {"Prefix",
     "<d:codeBook xmlns:d=\"ddi:codebook:2_6\">\n\t<d:dataDscr>\n\t\t<d:var name=\"a\"/>\n"
     "\t</d:dataDscr>\n</d:codeBook>\n",
     kSource,
     kLabelsOnly,
     {{"<d:var name=\"a\"/>",
       "<d:var name=\"a\">\n\t\t\t<d:labl level=\"variable\">N&amp;w</d:labl>\n\t\t\t<d:catgry>\n"
       "\t\t\t\t<d:catValu>1</d:catValu>\n\t\t\t\t<d:labl "
       "level=\"category\">one</d:labl>\n\t\t\t</d:catgry>\n"
       "\t\t</d:var>"}}},
    {"PrefixThatIsNotAscii",
     "<?xml version='1.0' encoding='ISO-8859-1'?>\n<\xE9:codeBook xmlns:\xE9='ddi:codebook:2_5'>"
     "<\xE9:dataDscr><\xE9:var name='a'/></\xE9:dataDscr></\xE9:codeBook>",
     kSource,
     kVarLabel,
     {{"<\xE9:var name='a'/>",
       "<\xE9:var name='a'><\xE9:labl level=\"variable\">N&amp;w</\xE9:labl></\xE9:var>"}}},
    {"OldNamespaceWithDoctypeAndEntities",
     "<?xml version='1.0'?>\n<!DOCTYPE codeBook SYSTEM 'Version1-2-2.dtd' [\n<!ATTLIST var x CDATA "
     "#IMPLIED>\n]>\n<codeBook xmlns='http://www.icpsr.umich.edu/DDI'>\n<dataDscr>\n"
     "<var name='a'><labl>Caf&eacute;</labl><txt>&eacute;</txt></var>\n</dataDscr>\n</codeBook>\n",
     kSource,
     kVarLabel,
     {{"Caf&eacute;", "N&amp;w"}}},
    {"CrLfWithByteOrderMark",
     "\xEF\xBB\xBF<codeBook>\r\n <dataDscr>\r\n  <var name=\"a\">\r\n  </var>\r\n </dataDscr>\r\n"
     "</codeBook>\r\n",
     Document("<var name='A'><labl>L</labl></var>", "<notes>one\ntwo</notes>"),
     "FROM SRC /VARINFO VARLABEL /FILEINFO DOCUMENTS",
     {{"<codeBook>", "<codeBook>\r\n <fileDscr>\r\n  <notes>one\r\ntwo</notes>\r\n </fileDscr>"},
      {"<var name=\"a\">\r\n", "<var name=\"a\">\r\n   <labl level=\"variable\">L</labl>\r\n"}}},
    {"Latin1LacksACharacter",
     "<?xml version='1.0' encoding='iso-8859-1'?>\n<codeBook><dataDscr><var name='a'><labl>\xE9"
     "</labl></var></dataDscr></codeBook>",
     Document("<var name='A'><labl>\u00FC \u20AC</labl></var>"),
     kVarLabel,
     {{"<labl>\xE9<", "<labl>\xFC &#8364;<"}}},
    {"Ascii",
     "<?xml version='1.0' encoding='US-ASCII'?><codeBook><dataDscr><var name='a' nature='x'/>"
     "</dataDscr></codeBook>",
     Document("<var name='A'><labl>\u00E9\U0001F600</labl></var>"),
     kVarLabel,
     {{"nature='x'/>", "nature='x'><labl level=\"variable\">&#233;&#128512;</labl></var>"}}},
    {"SeveralLabelsInSeveralLanguages",
     Document("<var name='a'><labl xml:lang='fr'>A</labl><labl xml:lang='en'>B</labl><catgry>"
              "<catValu>01</catValu><labl xml:lang='fr'>un</labl><labl xml:lang='en'/></catgry>"
              "<catgry><catValu>2</catValu><labl>x</labl><labl xml:lang='FR-ca'>y</labl><labl "
              "xml:lang='en'>stays</labl></catgry></var>\n"),
     kSource,
     kLabelsOnly,
     {{"'fr'>A<", "'fr'>N&amp;w<"},
      {"'fr'>un<", "'fr'>one<"},
      {"<labl>x</labl><labl xml:lang='FR-ca'>y</labl>", ""}}},
    {"CategoryWithoutLabelAndOneTwice",
     Document("<var name='a'><labl/><catgry><catValu> 1 </catValu></catgry><catgry><labl>of no "
              "value</labl></catgry><catgry><catValu>DK</catValu><labl>no number</labl></catgry>"
              "<catgry><catValu>1.0</catValu><labl>eins</labl></catgry></var>"),
     kSource,
     kLabelsOnly,
     {{"<labl/>", "<labl>N&amp;w</labl>"}, {"eins", "one"}}},
    {"QuotesCdataCommentsAndInstructionsStay",
     "<codeBook><!-- <var name=\"a\"> --><?go on?>\n<dataDscr><![CDATA[ <var> ]]><var\n\tname = "
     "'a' "
     "nature='a>\"b' ><!-- c --><labl><![CDATA[old]]><!-- d --></labl><txt>t<![CDATA[>\n  ]]>\n"
     "</txt></var\n></dataDscr></codeBook ><!-- end -->",
     Document("<var name='A' nature='percent'><labl>New \"]]&gt;\"</labl></var>"),
     "FROM SRC /VARINFO VARLABEL LEVEL",
     {{"<![CDATA[old]]><!-- d -->", "New \"]]&gt;\""}, {"'a>\"b'", "'interval'"}}},
    {"SelfClosingOnOneLine",
     "<codeBook><dataDscr><var name='a' /></dataDscr></codeBook>",
     Document("<var name='A' nature='ordinal'><labl>L</labl><notes type='VELA:role'>both</notes>"
              "</var>"),
     "FROM SRC /VARINFO VARLABEL LEVEL ROLE",
     {{"name='a' /></dataDscr>",
       "name='a' nature=\"ordinal\" ><labl level=\"variable\">L</labl><notes type=\"VELA:role\" "
       "level=\"variable\">both"
       "</notes></var></dataDscr>"}}},
};

// What of a variable is changed, in a document that has it already.
const Saving kProperties[] = {
    {"CategoriesGoOrStay",
     Document(
         "    <var name='a'>\n"
         "      <catgry><catValu>1</catValu><labl>one</labl></catgry>\n"
         "      <catgry ID='C2'><catValu>2</catValu><labl>goes</labl></catgry>\n"
         "      <catgry><catValu>3</catValu><labl>x</labl><catStat>5</catStat></catgry>\n"
         "      <catgry missing='Y'><catValu>4</catValu><labl>x</labl></catgry>\n"
         "      <catgry country='X'><catValu>5</catValu><labl>x</labl></catgry>\n"
         "      <catgry><catValu>2.0</catValu><labl>goes too</labl><labl xml:lang='fr'>va</labl>"
         "</catgry>\n    </var>\n"),
     kSource,
     "FROM SRC /VARINFO VALLABELS",
     {{"\n      <catgry ID='C2'><catValu>2</catValu><labl>goes</labl></catgry>", ""},
      {"3</catValu><labl>x</labl>", "3</catValu>"},
      {"4</catValu><labl>x</labl>", "4</catValu>"},
      {"5</catValu><labl>x</labl>", "5</catValu>"},
      {"\n      <catgry><catValu>2.0</catValu><labl>goes too</labl><labl "
       "xml:lang='fr'>va</labl></catgry>",
       ""}}},
    {"ReferencesToACategoryThatGoes",
     Document("<var name='a'><catgryGrp catgry='C1 C2'/>"
              "<catgry ID='C1'><catValu>1</catValu><labl>one</labl></catgry>"
              "<catgry ID='C2'><catValu>2</catValu><labl>goes</labl></catgry></var>"),
     kSource,
     "FROM SRC /VARINFO VALLABELS",
     {{"'C1 C2'", "'C1'"}, {"<catgry ID='C2'><catValu>2</catValu><labl>goes</labl></catgry>", ""}}},
    {"LabelsKeepTheFormerCategoriesPlaces",
     Document(
         "<var name='a'><catgry><catValu>3</catValu><labl>c</labl></catgry>\n<catgry><catValu>1"
         "</catValu><labl>a</labl></catgry>\n<notes/></var>"),
     Document("<var name='A'><catgry><catValu>1</catValu><labl>a</labl></catgry><catgry><catValu>2"
              "</catValu><labl>b</labl></catgry><catgry><catValu>3</catValu><labl>C</labl></catgry>"
              "</var>"),
     "FROM SRC /VARINFO VALLABELS",
     {{"<labl>c<", "<labl>C<"},
      {"<labl>a</labl></catgry>",
       "<labl>a</labl></catgry>\n<catgry>\n  <catValu>2</catValu>\n  <labl "
       "level=\"category\">b</labl>\n</catgry>"}}},
    {"MissingValuesReplacedAndFlagsFollow",
     Document("    <var name='a'>\n      <invalrng UNITS='INT'><item VALUE='SYSMISS'/><item "
              "VALUE='1'/><item VALUE=' 7.0 '/><key>k</key></invalrng>\n"
              "      <invalrng><item VALUE='3'/></invalrng>\n"
              "      <catgry missing='Y'><catValu>1</catValu></catgry>\n"
              "      <catgry  missing = \"N\" ID='C'><catValu>-5</catValu></catgry>\n"
              "      <catgry missing='Y'><catValu>.</catValu></catgry>\n"
              "      <catgry missing='Y'><catValu>9.5</catValu></catgry>\n    </var>\n"),
     Document("<var name='A'><invalrng><range max='-1'/><item VALUE='9.50'/><item VALUE='7'/>"
              "<item VALUE='8'/><item VALUE='SYSMISS'/></invalrng></var>"),
     "FROM SRC /VARINFO MISSING",
     {{"<item VALUE='1'/><item VALUE=' 7.0 '/><key>k</key>",
       "<item VALUE=' 7.0 '/><item VALUE=\"9.5\"/><item VALUE=\"8\"/><key>k</key>"},
      {"UNITS='INT'>", "UNITS='INT'><range max=\"-1\"/>"},
      {"\n      <invalrng><item VALUE='3'/></invalrng>", ""},
      {"<catgry missing='Y'><catValu>1<", "<catgry><catValu>1<"},
      {"missing = \"N\"", "missing = \"Y\""}}},
    {"MissingValuesInTheirPlace",
     Document("<var name='s'><location width='5'/><qstn/><universe/><catgry><catValu/></catgry>"
              "<varFormat type='character'/></var>"),
     Document("<var name='S'><invalrng><item VALUE=''/><item VALUE='a &quot;&lt;'/></invalrng>"
              "<varFormat type='character' formatname='A5'/></var>"),
     "FROM SRC /VARINFO MISSING",
     {{"<qstn/>", "<qstn/><invalrng><item VALUE=\"\"/><item VALUE=\"a &quot;&lt;\"/></invalrng>"},
      {"<catgry>", "<catgry missing=\"Y\">"}}},
    {"WidthThatIsNotStatedStaysSo",
     Document("<var name='s'><catgry><catValu>abcdef</catValu><labl>x</labl></catgry>"
              "<varFormat type='character' formatname='HEX7'/></var>"),
     Document("<var name='S'><catgry><catValu>Wednesday</catValu><labl>y</labl></catgry>"
              "<varFormat type='character' formatname='A9'/></var>"),
     "FROM SRC /VARINFO VALLABELS FORMATS",
     {{"<catgry><catValu>abcdef</catValu><labl>x</labl></catgry>",
       "<catgry><catValu>Wednesday</catValu><labl level=\"category\">y</labl></catgry>"}}},
    {"FlagsAndSpellingsOfNewCategories",
     Document("<var name='a'><invalrng><item VALUE='9'/></invalrng><catgry><catValu>1.0</catValu>"
              "<labl/></catgry><catgry><catValu>5</catValu><labl>x</labl><!-- kept --></catgry>"
              "</var>"),
     Document(
         "<var name='A'><catgry><catValu>01</catValu><labl>one</labl></catgry><catgry><catValu>"
         "02</catValu><labl>two</labl></catgry><catgry><catValu>09</catValu><labl>none</labl>"
         "</catgry></var>"),
     "FROM SRC /VARINFO VALLABELS",
     {{"<labl/>", "<labl>one</labl>"},
      {"<labl>x</labl>", ""},
      {"kept --></catgry>",
       "kept --></catgry><catgry><catValu>02</catValu><labl level=\"category\">two</labl></catgry>"
       "<catgry missing=\"Y\"><catValu>09</catValu><labl level=\"category\">none</labl>"
       "</catgry>"}}},
    {"FormatsWhereTheyAreRead",
     Document("<var name='a'><varFormat formatname='F'>F8.2</varFormat></var>"
              "<var name='b'><varFormat formatname='date.other'>F8</varFormat></var>"
              "<var name='c'><varFormat formatname='date'>a date</varFormat></var>"
              "<var name='d'><varFormat formatname='A3'/><notes type='VELA:printFormat'>F3</notes>"
              "</var><var name='e'><varFormat formatname='F4'/></var><var name='f'><varFormat "
              "formatname='A9'>F9</varFormat></var><var name='g'/>\n"),
     Document(
         "<var name='A'><varFormat>comma9.2</varFormat></var><var name='B'><varFormat>N4"
         "</varFormat></var><var name='C'><varFormat>F6</varFormat></var><var name='D'>"
         "<varFormat>F5</varFormat></var><var name='E'/><var name='F'><varFormat>F2</varFormat>"
         "</var><var name='G'><varFormat>F1</varFormat></var>"),
     "FROM SRC /VARINFO FORMATS",
     {{"'F'>F8.2<", "'COMMA'>COMMA9.2<"},
      {">F8<", ">N4<"},
      {"a date</varFormat>",
       "a date</varFormat><notes type=\"VELA:printFormat\" level=\"variable\">F6</notes>"},
      {">F3<", ">F5<"},
      {">F9<", ">F2<"},
      {"<var name='g'/>", "<var name='g'><varFormat type=\"numeric\" formatname=\"F1\"/></var>"}}},
    {"DocumentationThatIsLacking",
     Document(
         "<var name='a'><labl>x</labl><universe/><txt>own</txt><notes type='x'>t</notes></var>"),
     Document(
         "<var name='A'><qstn ID='Q1' var='A' qstn='Q1'>Why? <!-- c --><qstnLit>So</qstnLit></qstn>"
         "<qstn>Again</qstn><universe access='U'>all</universe>"
         "<txt>other</txt><concept/><notes>n1</notes><notes "
         "type='y'>t</notes><notes>n2</notes></var>"),
     "FROM SRC /VARINFO ATTRIBUTES",
     {{"<labl>x</labl>", "<labl>x</labl><qstn>Why? <qstnLit>So</qstnLit></qstn><qstn>Again</qstn>"},
      {"<universe/>", "<universe/><universe>all</universe>"},
      {"t</notes>", "t</notes><notes>n1</notes><notes>n2</notes>"}}},
    {"FormatsAndNotes",
     Document("    <var name='a' dcml='1'>\n      <varFormat schema='other'/>\n"
              "      <notes type='VELA:columnWidth'> 5\n</notes><notes>kept</notes>\n"
              "      <notes type='VELA:alignment'>left</notes>\n    </var>\n"),
     Document("<var name='A' dcml='2' intrvl='contin' rectype='2'><location width='9'/>"
              "<varFormat formatname='comma9.2'/><notes type='VELA:writeFormat'>F7"
              "</notes><notes type='VELA:columnWidth'>6</notes></var>"),
     "FROM SRC /VARINFO FORMATS WIDTH ALIGNMENT",
     {{"schema='other'", "schema='other' formatname=\"COMMA9.2\""},
      {"> 5\n<", ">6<"},
      {"\n      <notes type='VELA:alignment'>left</notes>",
       "\n      <notes type=\"VELA:writeFormat\" level=\"variable\">F7</notes>"}}},
    {"LevelsThatSayScaleAlready",
     Document("<var name='a' nature='ratio'/><var name='b' nature='other'/>"),
     Document("<var name='A' nature='interval'/><var name='B' nature='percent'/>"),
     "FROM SRC /VARINFO LEVEL",
     {{"'other'", "'interval'"}}},
    {"NamespaceOfTheRootsOwn",
     "<codeBook xmlns='urn:own' xmlns:o='urn:other'><dataDscr><o:var name='b'/><var "
     "name='a'><o:labl>o"
     "</o:labl></var></dataDscr></codeBook>",
     kSource,
     kVarLabel,
     {{"<var name='a'>", "<var name='a'><labl level=\"variable\">N&amp;w</labl>"}}},
    {"OrderAmongCategoriesWithoutLabels",
     Document("<var name='a'><catgry><catValu>3</catValu></catgry><catgry><catValu>1</catValu>"
              "</catgry><catgry><catValu>2</catValu><labl>b</labl></catgry></var>\n"),
     Document("<var name='A'><catgry><catValu>4</catValu><labl>d</labl></catgry><catgry><catValu>1"
              "</catValu><labl>a</labl></catgry><catgry><catValu>3</catValu><labl>c</labl></catgry>"
              "</var>"),
     "FROM SRC /VARINFO VALLABELS=MERGE",
     {{"3</catValu>", "3</catValu><labl level=\"category\">c</labl>"},
      {"1</catValu>", "1</catValu><labl level=\"category\">a</labl>"},
      {"<labl>b</labl></catgry>",
       "<labl>b</labl></catgry><catgry><catValu>4</catValu><labl "
       "level=\"category\">d</labl></catgry>"}}},
    {"FlagsThatSayTheSameAlready",
     Document("<var name='a'><labl>\n  two\n  lines </labl><catgry missing='Y'><catValu>9</catValu>"
              "</catgry><catgry missing='Y'><catValu>SYSMISS</catValu></catgry><catgry missing='Y'>"
              "<catValu>8</catValu></catgry></var><var name='b'/>\n"),
     Document("<var name='A'><labl>two lines</labl><invalrng><item VALUE='08'/><item VALUE='9'/>"
              "<item VALUE='SYSMISS'/></invalrng></var><var name='B' nature='nominal'/>"),
     "FROM SRC /VARINFO VARLABEL MISSING LEVEL",
     {{"name='b'", "name='b' nature=\"nominal\""}}},
    {"SysmissAmongFlagsAlone",
     Document("<var name='a'><catgry missing='Y'><catValu>SYSMISS</catValu></catgry><catgry "
              "missing='Y'><catValu>1</catValu></catgry></var>\n"),
     Document("<var name='A'><invalrng><range min='90'/><item VALUE='1.5'/></invalrng></var>"),
     "FROM SRC /VARINFO MISSING",
     {{"<var name='a'>",
       "<var name='a'><invalrng><range min=\"90\"/><item VALUE=\"1.5\"/></invalrng>"},
      {"<catgry missing='Y'><catValu>1<", "<catgry><catValu>1<"}}},
    {"FlagsOfAStringOfOneByte",
     Document("<var name='a'><catgry missing='Y'><catValu>x</catValu></catgry><varFormat "
              "type='character' formatname='A1'/></var>\n"),
     Document("<var name='A'><invalrng><item VALUE='y'/></invalrng><varFormat type='character' "
              "formatname='A1'/></var>"),
     "FROM SRC /VARINFO MISSING",
     {{"<catgry missing='Y'>", "<invalrng><item VALUE=\"y\"/></invalrng><catgry>"}}},
    {"FileAttributesInANewDescription",
     "<codeBook><dataDscr><var name='a'/></dataDscr></codeBook>",
     Document("<var name='A'/>",
              "<notes type='VELA:attribute' subject='X'>1</notes><notes type='VELA:attribute' "
              "subject='X'>2</notes>"),
     "FROM SRC /FILEINFO ATTRIBUTES",
     {{"<codeBook>",
       "<codeBook><fileDscr><notes type=\"VELA:attribute\" level=\"file\" subject=\"X\">1"
       "</notes><notes type=\"VELA:attribute\" level=\"file\" subject=\"X\">2</notes>"
       "</fileDscr>"}}},
    {"AttributesInOtherSpellings",
     Document("<var name='a'><notes type='VELA:attribute' subject='COL'>1</notes>"
              "<notes type='VELA:attribute' subject='col'>2</notes></var>"),
     Document("<var name='A'><notes type='VELA:attribute' subject='Size'>9</notes>"
              "<notes type='VELA:attribute' subject='Col'>3</notes></var>"),
     "FROM SRC /VARINFO ATTRIBUTES=MERGE",
     {{"2</notes>",
       "2</notes><notes type=\"VELA:attribute\" level=\"variable\" subject=\"Size\">9</notes>"}}},
    {"AttributesReplaced",
     Document("<var name='a'><notes type='VELA:attribute' subject='X'>1</notes>\n"
              "<notes type='VELA:attribute' subject='X'>2</notes>\n"
              "<notes type='VELA:attribute' subject='Y'>3</notes></var>"),
     Document("<var name='A'><notes type='VELA:attribute' subject='X'>2</notes>"
              "<notes type='VELA:attribute' subject='X'>1</notes></var>"),
     "FROM SRC /VARINFO ATTRIBUTES",
     {{"<notes type='VELA:attribute' subject='X'>1</notes>", ""},
      {"\n<notes type='VELA:attribute' subject='Y'>3</notes>",
       "\n<notes type=\"VELA:attribute\" level=\"variable\" subject=\"X\">1</notes>"}}},
};

// What is added, and what belongs to the file.
const Saving kFileAndNew[] = {
    {"NewVariableWithItsDocumentation",
     "<?xml version='1.0' encoding='ISO-8859-1'?>\n<d:codeBook xmlns:d='ddi:codebook:2_5'>\n"
     "  <d:fileDscr ID='Q1'/>\n  <d:dataDscr>\n    <d:var ID='V1' name='z'/>\n    <d:notes/>\n"
     "  </d:dataDscr>\n</d:codeBook>\n",
     "<codeBook xmlns='http://www.icpsr.umich.edu/DDI'>\n<dataDscr><var ID='V1' name='Q1' "
     "files='F' "
     "dcml='2' intrvl='discrete'><location width='5'/><labl>\u20AC</labl><security>s</security>"
     "<qstn ID='q' sdatrefs='S1' seqNo='1'><qstnLit xml:lang='fr'>\u00E9 &lt; <Link refs='q'>l"
     "</Link><!-- c --><h:b xmlns:h='urn:h' h:x='1' y='2'>B</h:b></qstnLit></qstn><valrng/>"
     "<sumStat type='mean'>2</sumStat><concept vocab='v'>c</concept><verStmt/></var></dataDscr>"
     "</codeBook>",
     kAdd,
     {{"name='z'/>",
       "name='z'/>\n    <d:var ID=\"V2\" name=\"Q1\" intrvl=\"discrete\">\n"
       "      <d:labl level=\"variable\">&#8364;</d:labl>\n      <d:security>s</d:security>\n"
       "      <d:qstn seqNo=\"1\"><d:qstnLit xml:lang=\"fr\">\xE9 &lt; l<h:b xmlns:h=\"urn:h\" "
       "y=\"2\">B</h:b></d:qstnLit></d:qstn>\n      <d:concept vocab=\"v\">c</d:concept>\n"
       "      <d:varFormat type=\"numeric\"/>\n    </d:var>"}}},
    {"NewVariableWithAllThatIsItsOwn",
     Document("    <var ID='B' name='a'/>\n"),
     Document("<var name='b b' nature='ordinal' wgt='wgt'><invalrng><item VALUE='x'/></invalrng>"
              "<catgry><catValu>x</catValu><labl>L</labl></catgry><varFormat type='character' "
              "formatname='HEX4'/><notes type='VELA:writeFormat'>A2</notes><notes type='VELA:role'>"
              "split</notes><notes type='VELA:attribute' subject='&quot;'>&lt;</notes></var>"),
     "FROM SRC /NEWVARS",
     {{"name='a'/>",
       "name='a'/>\n    <var ID=\"b_b\" name=\"b b\" wgt=\"wgt\" nature=\"ordinal\">\n"
       "      <invalrng>\n        <item VALUE=\"x\"/>\n      </invalrng>\n"
       "      <catgry missing=\"Y\">\n        <catValu>x</catValu>\n        <labl "
       "level=\"category\">L</labl>\n"
       "      </catgry>\n      <varFormat type=\"character\" formatname=\"HEX4\"/>\n"
       "      <notes type=\"VELA:writeFormat\" level=\"variable\">A2</notes>\n"
       "      <notes type=\"VELA:role\" level=\"variable\">split</notes>\n"
       "      <notes type=\"VELA:attribute\" level=\"variable\" subject=\"&quot;\">&lt;</notes>\n"
       "    </var>"}}},
    {"NewVariableFromADocumentWithEntities",
     "<codeBook><dataDscr/></codeBook>",
     "<!DOCTYPE codeBook SYSTEM 'x.dtd'><codeBook><dataDscr><var "
     "name='A&x;B'><txt>&eacute;</txt></var>"
     "</dataDscr></codeBook>",
     kAdd,
     {{"<dataDscr/>",
       "<dataDscr>\n  <var ID=\"V1\" name=\"A&amp;x;B\">\n    <txt>&amp;eacute;</txt>\n"
       "    <varFormat type=\"numeric\"/>\n  </var>\n</dataDscr>"}}},
    {"NewVariablesWhereThereAreNone",
     "<codeBook><fileDscr ID='F1'/><fileDscr ID='F2'/><dataDscr>\n<varGrp name='g'/>\n<nCube/>\n"
     "</dataDscr></codeBook>",
     Document(
         "<var name='S'><location width='4'/><varFormat type='character'/></var><var name='T'>"
         "<varFormat type='character'/></var><var name='N'><varFormat formatname='date'/></var>"),
     "FROM SRC /NEWVARS",
     {{"<varGrp name='g'/>",
       "<varGrp name='g'/>\n<var ID=\"V1\" name=\"S\" files=\"F2\">\n  <varFormat "
       "type=\"character\" formatname=\"A4\"/>\n</var>\n<var ID=\"V2\" name=\"T\" "
       "files=\"F2\">\n  <varFormat type=\"character\"/>\n</var>\n<var ID=\"V3\" name=\"N\" "
       "files=\"F2\">\n  <varFormat type=\"numeric\"/>\n</var>"}},
     "#F2"},
    {"VariablesOfSeveralFilesAndOfNone",
     "<codeBook><fileDscr ID='F1'/><fileDscr ID='F2'/><dataDscr><var name='b' files='F3'/><var "
     "name='b' files='F2'/><var ID='c' name=' '/><var name='a' files='F2 "
     "F1'/></dataDscr></codeBook>",
     Document("<var name='A' nature='nominal'/><var name='B' nature='nominal'/><var name='C' "
              "nature='nominal'/><var name='D'/>"),
     "FROM SRC /VARINFO LEVEL /NEWVARS",
     {{"'F3'", "'F3' nature=\"nominal\""},
      {"name=' '", "name=' ' nature=\"nominal\""},
      {"'F2 F1'/>",
       "'F2 F1' nature=\"nominal\"/><var ID=\"D\" name=\"D\" files=\"F1\"><varFormat "
       "type=\"numeric\"/></var>"}}},
    {"SetNamedByALabelInOneOfItsLanguages",
     Document("<varGrp ID='G' var='V'><labl xml:lang='fr'>s</labl><labl>t</labl></varGrp><var "
              "ID='V' name='a'><labl xml:lang='fr'>x</labl></var>\n"),
     Document("<varGrp name='s' var='V'><labl>L</labl></varGrp><var ID='V' name='A'/>"),
     "FROM SRC /FILEINFO VARSETS",
     {{"ID='G' var='V'", "ID='G' var='V' name=\"s\""}, {"'fr'>s<", "'fr'>L<"}}},
    {"IdsOfNames",
     Document("    <var ID='B' name='B'/>\n"),
     Document("<var name='1 \u00B5'/><var name='b!'/><var name='b?'/>"),
     kAdd,
     {{"name='B'/>",
       "name='B'/>\n    <var ID=\"V1__\" name=\"1 \u00B5\">\n      <varFormat "
       "type=\"numeric\"/>\n    </var>\n    <var ID=\"b_\" name=\"b!\">\n      <varFormat "
       "type=\"numeric\"/>\n    </var>\n    <var ID=\"b__2\" name=\"b?\">\n      <varFormat "
       "type=\"numeric\"/>\n    </var>"}}},
    {"IdsWithANumber",
     "<codeBook><fileDscr ID='F1'/><dataDscr><varGrp ID='VG11F1' name='p' var='v0012'/><varGrp "
     "ID='VG12F1' name='q' var='v0012'/>\n<var ID='v0990' name='x' files=' F1 '/>\n<var ID='v0012' "
     "name='a' files=' F1 '/></dataDscr></codeBook>",
     "<codeBook><dataDscr><varGrp name='r' var='N'/><var ID='N' name='n' intrvl='contin' "
     "wgt-var='W X'>"
     "<imputation>i</imputation></var><var ID='W' name='X'/></dataDscr></codeBook>",
     "FROM SRC /FILEINFO VARSETS /NEWVARS",
     {{"ID='VG12F1' name='q' var='v0012'/>",
       "ID='VG12F1' name='q' var='v0012'/><varGrp ID=\"VG13F1\" type=\"other\" name=\"r\" "
       "var=\"v0991\"/>"},
      {"name='a' files=' F1 '/>",
       "name='a' files=' F1 '/>\n<var ID=\"v0991\" name=\"n\" files=\" F1 \" wgt-var=\"v0990\" "
       "intrvl=\"contin\">\n  <imputation>i</imputation>\n  <varFormat type=\"numeric\"/>\n"
       "</var>"}}},
    {"LabelsInAllLanguages",
     "<codeBook xml:lang='fi'><dataDscr><var name='a'><labl>Ikä</labl></var>\n<var name='b'><labl "
     "xml-lang='en'>B</labl></var></dataDscr></codeBook>",
     "<codeBook><dataDscr><var name='A'><labl xml:lang='en'>Age</labl></var><var "
     "name='B'><labl>none"
     "</labl><labl xml:lang='fi-FI'>Bee</labl></var><var name='C'><labl "
     "xml:lang='en'>C</labl><labl "
     "xml:lang='FI'>See</labl></var></dataDscr></codeBook>",
     kAdd,
     {{"'en'>B</labl>", "'en'>B</labl><labl level=\"variable\">Bee</labl>"},
      {"</var></dataDscr>",
       "</var>\n<var ID=\"V1\" name=\"C\">\n  <labl level=\"variable\">See</labl>\n  <labl "
       "level=\"variable\" xml-lang=\"en\">C</labl>\n  <varFormat type=\"numeric\"/>\n</var>"
       "</dataDscr>"}}},
    {"WrapperAndWindows1252AndPrefixOnAVariable",
     "<?xml version='1.0' encoding='Windows-1252'?>\n<record xmlns='urn:oai'><!-- <codeBook> -->"
     "<dataDscr><var name='a'><labl/></var></dataDscr><codeBook "
     "xmlns='ddi:codebook:2_5'><d:dataDscr xmlns='urn:o' xmlns:d='ddi:codebook:2_5'><d:var "
     "name='a'/></d:dataDscr></codeBook></record>",
     Document("<var name='A'><labl>\u20AC \u0416</labl></var>"),
     kVarLabel,
     {{"<d:var name='a'/>",
       "<d:var name='a'><d:labl level=\"variable\">\x80 &#1046;</d:labl></d:var>"}}},
    {"Utf16InName",
     "<?xml version='1.0' encoding='utf-16'?>\n<codeBook><dataDscr><var "
     "name='a'><labl>\u00E9</labl>"
     "</var></dataDscr></codeBook>",
     kSource,
     kVarLabel,
     {{"\u00E9", "N&amp;w"}}},
    {"NoContainersAtAll",
     "<codeBook/>",
     Document("<var name='A'/>", "<fileTxt><fileCont>L</fileCont></fileTxt>"),
     "FROM SRC /NEWVARS /FILEINFO FILELABEL",
     {{"<codeBook/>",
       "<codeBook>\n  <fileDscr>\n    <fileTxt>\n      <fileCont>L</fileCont>\n    </fileTxt>\n"
       "  </fileDscr>\n  <dataDscr>\n    <var ID=\"V1\" name=\"A\">\n"
       "      <varFormat type=\"numeric\"/>\n    </var>\n  </dataDscr>\n"
       "</codeBook>"}}},
    {"ContainersInTheirPlaces",
     "<codeBook>\n <stdyDscr/>\n <otherMat/>\n</codeBook>",
     Document("<varGrp name='G' type='multipleResp' var='V'><labl>g</labl></varGrp><var ID='V' "
              "name='A'/>",
              "<fileTxt><fileCont>f</fileCont></fileTxt>"),
     "FROM SRC /NEWVARS /FILEINFO FILELABEL MRSETS",
     {{" <stdyDscr/>",
       " <stdyDscr/>\n <fileDscr>\n   <fileTxt>\n     <fileCont>f</fileCont>\n   </fileTxt>\n "
       "</fileDscr>\n"
       " <dataDscr>\n   <varGrp ID=\"VG1\" type=\"multipleResp\" name=\"G\" var=\"V1\">\n"
       "     <labl>g</labl>\n   </varGrp>\n   <var ID=\"V1\" name=\"A\">\n"
       "     <varFormat type=\"numeric\"/>\n   </var>\n </dataDscr>"}}},
    {"LabelAmongTheFilesTexts",
     Document("", "<fileTxt><fileName>n</fileName><fileStrc/></fileTxt><locMap/>"),
     Document("", "<fileTxt><fileCont>\n  A  label\n</fileCont></fileTxt>"),
     "FROM SRC /FILEINFO FILELABEL",
     {{"</fileName>", "</fileName><fileCont>A label</fileCont>"}}},
    {"Documents",
     Document("",
              "\n    <notes>one</notes>\n    <notes type='x'>no document</notes>\n"
              "    <notes> two  lines\n of it </notes>\n  "),
     Document(
         "", "<notes><![CDATA[two  lines]]>\n of it</notes><notes/><notes>three &amp;\n 3</notes>"),
     "FROM SRC /FILEINFO DOCUMENTS=REPLACE",
     {{"\n    <notes>one</notes>", ""},
      {" of it </notes>", " of it </notes>\n    <notes>three &amp;\n 3</notes>"}}},
    {"WeightByTheAttributeAlone",
     Document("<var name='a'/><var name='b'/>"),
     Document("<var name='B' wgt='wgt'/>"),
     "FROM SRC /VARINFO VARLABEL",
     {{"name='b'", "name='b' wgt=\"wgt\""}}},
    {"WeightByANote",
     Document("<var name='a' wgt='wgt'/><var name='b' wgt='not-wgt'/>", "<notes>d</notes>"),
     Document("<var name='B' wgt='wgt'/>"),
     "FROM SRC /VARINFO VARLABEL",
     {{"'not-wgt'", "'wgt'"},
      {"<notes>d</notes>",
       "<notes>d</notes><notes type=\"VELA:weight\" level=\"file\">b</notes>"}}},
    {"WeightInANoteThatIsThere",
     Document("<var name='a'/><var name='b' wgt='wgt'/>", "<notes type='VELA:weight'>A</notes>"),
     Document("<var name='B' wgt='wgt'/>"),
     "FROM SRC /VARINFO VARLABEL",
     {{"'VELA:weight'>A<", "'VELA:weight'>b<"}}},
    {"SetsKeptRemovedAdded",
     Document(
         "    <varGrp ID='G1' name='one' type='section' var='A O'/>\n"
         "    <varGrp ID='G2' varGrp='G3 G1'><labl>two</labl><notes/></varGrp>\n"
         "    <varGrp ID='G3' name='three' var='A'/>\n    <varGrp name='m' type='multipleResp' "
         "varGrp='G3'/>\n    <varGrp ID='G4' name='three'/>\n    <var ID='A' name='a' files='F1'/>"
         "<var name='b'/>\n    <var ID='O' name='o' files='F1'/>\n"),
     Document("<varGrp name='two' type='subject' var='B X'><labl>L2</labl></varGrp><varGrp ID='N' "
              "var='A' varGrp='T N'><labl>new</labl><universe>u</universe><txt>t</txt></varGrp>"
              "<varGrp ID='T' name='one' var='B A'/>"
              "<var ID='A' name='A'/><var ID='B' name='B'/><var ID='X' name='X'/>"),
     "FROM SRC /FILEINFO VARSETS=REPLACE",
     {{"var='A O'/>", "var='b A'/>"},
      {"ID='G2' varGrp='G3 G1'><labl>two</labl>",
       "ID='G2' varGrp='G1' name=\"two\" var=\"b\"><labl>L2</labl>"},
      {"\n    <varGrp ID='G3' name='three' var='A'/>", ""},
      {" varGrp='G3'/>\n    <varGrp ID='G4' name='three'/>",
       "/>\n    <varGrp ID=\"G5\" type=\"other\" var=\"A\" varGrp=\"G1 G5\">\n      <labl>new"
       "</labl>\n      <txt>t</txt>\n      <universe>u</universe>\n    </varGrp>"},
      {"<var name='b'/>", "<var name='b' ID=\"b\"/>"}}},
    {"ReferencesToASetThatGoes",
     Document("<varGrp ID='G' name='s' var='V'/><varGrp ID='H' name='m' type='multipleResp'><txt>"
              "<Link refs='H  G'>l</Link></txt></varGrp><var ID='V' name='a'><txt><Link "
              "refs='G V'>l</Link></txt></var>"),
     kSource,
     "FROM SRC /VARINFO LEVEL /FILEINFO VARSETS=REPLACE",
     {{"\n<varGrp ID='G' name='s' var='V'/>", ""}, {"'H  G'", "'H'"}, {"'G V'", "'V'"}}},
    {"SetsOfOtherFilesStay",
     "<codeBook><fileDscr ID='F1'/><fileDscr ID='F2'/><dataDscr><varGrp ID='G1' name='s' var='V1 "
     "V2'/>"
     "<varGrp ID='G2' name='s' var='V2'/><var ID='V1' name='a' files='F1'/><var ID='V2' name='a' "
     "files='F2'/><var ID='V3' name='b' files='F1'/></dataDscr></codeBook>",
     Document("<varGrp name='s' var='B'/><var ID='B' name='B'/>"),
     "FROM SRC /FILEINFO VARSETS",
     {{"'V1 V2'", "'V3 V2'"}}},
    {"SetsWithoutMembersOfTheSecondFile",
     "<codeBook><fileDscr ID='F1'/><fileDscr ID='F2'/><dataDscr><varGrp ID='G' name='s' var='V W'/>"
     "<var ID='W' name='w' files='F1'/><var ID='V' name='a' files='F2'/></dataDscr></codeBook>",
     Document("<varGrp name='s' var='B'/><varGrp name='t' var='B'/><var ID='B' name='B'/>"),
     "FROM SRC /FILEINFO VARSETS",
     {{"name='s' var='V W'/>",
       "name='s' var='W'><notes type=\"VELA:file\" level=\"varGrp\">F2</notes></varGrp><varGrp "
       "ID=\"t\" type=\"other\" name=\"t\"><notes type=\"VELA:file\" level=\"varGrp\">F2"
       "</notes></varGrp>"}},
     "#F2"},
};

// What is as long as a document, in the variable that changes: more than is fed to the parser at
// once.
TEST(SavedLargeBytes, AreTheDocumentsWithTheChanges) {
  const std::string large = std::string(500'000, 'm') + "\u00E9" + std::string(500'000, 'n');
  const std::string other = std::string(1'000'000, 'o') + "&amp;";
  const Saving kLarge[] = {
      {"AttributeBesideTheChange",
       Document("<var name='a' x='" + large + "'/>"),
       kSource,
       kVarLabel,
       {{"n'/>", "n'>\n  <labl level=\"variable\">N&amp;w</labl>\n</var>"}}},
      {"AttributeThatChanges",
       Document("<var name='a' nature='" + large + "' x='y'/>"),
       Document("<var name='A' nature='nominal'/>"),
       "FROM SRC /VARINFO LEVEL",
       {{large, "nominal"}}},
      {"Label",
       Document("<var name='a'><labl>" + large + "</labl><txt/></var>"),
       kSource,
       kVarLabel,
       {{large, "N&amp;w"}}},
      {"NewLabel",
       Document("<var name='a'><txt/></var>"),
       Document("<var name='A'><labl>" + other + "</labl></var>"),
       kVarLabel,
       {{"<txt/>", "<labl level=\"variable\">" + other + "</labl><txt/>"}}},
      {"CategoryLabel",
       Document("<var name='a'><catgry><catValu>1</catValu><labl>" + large +
                "</labl></catgry><catgry><catValu>2</catValu><labl/><txt>" + other +
                "</txt></catgry></var>"),
       kSource,
       "FROM SRC /VARINFO VALLABELS",
       {{large, "one"}}},
      {"EverythingAround",
       Document("<var name='a'" + std::string(1'000'000, ' ') + "><!--" + other +
                "--><labl>x</labl><txt><![CDATA[" + large + "]]></txt><?p " + other +
                "?><foreign>" + other + "</foreign></var>"),
       kSource,
       kVarLabel,
       {{"<labl>x", "<labl>N&amp;w"}}}};
  for (const Saving& saving : kLarge) {
    const testing::ScopedTrace trace(__FILE__, __LINE__, saving.name);
    CheckSaving(saving);
  }
}

std::string NameOf(const testing::TestParamInfo<Saving>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Kinds, SavedBytes, testing::ValuesIn(kKinds), NameOf);
INSTANTIATE_TEST_SUITE_P(Properties, SavedBytes, testing::ValuesIn(kProperties), NameOf);
INSTANTIATE_TEST_SUITE_P(FileAndNew, SavedBytes, testing::ValuesIn(kFileAndNew), NameOf);

}  // namespace
