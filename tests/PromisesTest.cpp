#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "host/Files.h"
#include "tests/HostRun.h"

// What the library promises to every host and the standalone one does not look at: arguments that
// are always the same, the order in which a message is put together, no trust in letter case.
//
// The operations below stand in for the host's, since what a program defines comes before what its
// libraries define. They note what they are given and go on to the host's own.

namespace {

bool mindsCase = false;  // of the look-up by name
std::string calls;       // on messages, as far as they were built

template <typename Operation>
Operation* OfHost(const char* symbol) {
  return reinterpret_cast<Operation*>(dlsym(RTLD_NEXT, symbol));
}

}  // namespace

int VELA_DataSource::FindVarIndex(const char* name, int mode) const {
  EXPECT_EQ(mode, 0);
  static auto* const find = OfHost<int(const VELA_DataSource*, const char*, int)>(
      "_ZNK15VELA_DataSource12FindVarIndexEPKci");
  const int column = find(this, name, mode);
  return column >= 0 && mindsCase && GetVariable(column).GetName() != std::string(name) ? -1
                                                                                        : column;
}

bool UserCaseFileSpec::Init(const TokenSequenceBase& tokens, bool flag) {
  EXPECT_FALSE(flag);
  static auto* const init = OfHost<bool(UserCaseFileSpec*, const TokenSequenceBase&, bool)>(
      "_ZN16UserCaseFileSpec4InitERK17TokenSequenceBaseb");
  return init(this, tokens, flag);
}

bool DatasourceAttributes::Merge(const DatasourceAttributes& other, bool flag) {
  EXPECT_TRUE(flag);
  static auto* const merge = OfHost<bool(DatasourceAttributes*, const DatasourceAttributes&, bool)>(
      "_ZN20DatasourceAttributes5MergeERKS_b");
  return merge(this, other, flag);
}

void ProcedureDataSource::ActiveDataSource(VELA_DataSource& dataSource, bool first, bool second) {
  EXPECT_TRUE(!first && second);
  static auto* const activate = OfHost<void(ProcedureDataSource*, VELA_DataSource&, bool, bool)>(
      "_ZN19ProcedureDataSource16ActiveDataSourceER15VELA_DataSourcebb");
  activate(this, dataSource, first, second);
}

#define STRING_NAME "NSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE"

// The constructors, as what they are called by: a text that is passed by value is the caller's.
extern "C" void MakeString(BpString* made, std::string* text,
                           bool isMessage) asm("_ZN8BpStringC1E" STRING_NAME "b");
void MakeString(BpString* made, std::string* text, bool isMessage) {
  calls += isMessage ? "String " : "string ";
  static auto* const make =
      OfHost<void(BpString*, std::string*, bool)>("_ZN8BpStringC1E" STRING_NAME "b");
  make(made, text, isMessage);
}

extern "C" void MakeComposite(BpComposite* made, const std::string& text,
                              bool isMessage) asm("_ZN11BpCompositeC1ERK" STRING_NAME "b");
void MakeComposite(BpComposite* made, const std::string& text, bool isMessage) {
  calls += isMessage ? "Composite " : "composite ";
  static auto* const make =
      OfHost<void(BpComposite*, const std::string&, bool)>("_ZN11BpCompositeC1ERK" STRING_NAME "b");
  make(made, text, isMessage);
}

namespace {

constexpr const char* kWorking =
    "<codeBook><dataDscr><var name='a'/><var name='b'><catgry><catValu>y</catValu><labl>Y</labl>"
    "</catgry><varFormat type='character' formatname='A8'/></var><var name='c'/></dataDscr>"
    "</codeBook>";
constexpr const char* kSource =
    "<codeBook><fileDscr><notes type='VELA:attribute' subject='x'>1</notes></fileDscr><dataDscr>"
    "<var name='A'><notes type='VELA:attribute' subject='x'>1</notes></var><var name='B' "
    "wgt='wgt'><catgry><catValu>x</catValu><labl>X</labl></catgry>"
    "<varFormat type='character' formatname='A9'/></var><var name='C'><varFormat "
    "type='character'/></var></dataDscr></codeBook>";

class Promises : public testing::Test {
 protected:
  Promises() : hosted_(folder_.Write("w.xml", kWorking)) { folder_.Write("s.xml", kSource); }
  void Run(const std::string& command) {
    hosted_.Run(Replaced(command, "SRC", "'" + folder_.At("s.xml") + "'"));
  }

  const Folder folder_;
  Hosted hosted_;
};

TEST_F(Promises, TellWhichTextsAreMessages) {
  // A capital tells that the text is a message.
  const std::pair<const char*, const char*> kRows[] = {
      {"NEWVARS", "String error "},
      {"FROM", "String error "},
      {"FROM SRC PASSWORD", "String error "},
      {"FROM 5", "string error Composite string add finish error "},
      {"FROM SRC x", "Composite string add finish error "},
      {"FROM SRC /VARINFO VALLABELS=X", "Composite String add String add finish error "},
      {"FROM SRC /VARINFO ROLE=X", "Composite String add String add finish error "},
      {"FROM SRC /SOURCE VARIABLES", "Composite string add finish error "},
      {"FROM SRC /SOURCE VARIABLES=A B /TARGET VARIABLES=a", "String error "},
      {"FROM SRC /VARINFO WIDTH LEVEL", "Composite add finish error "},
      {"FROM 'none.xml'", "String error "}};
  for (const auto& [command, expected] : kRows) {
    calls.clear();
    const Watch watch([](const std::string& operation) {
      if (operation == "BpComposite::Add") calls += "add ";
      if (operation == "BpComposite::Finish") calls += "finish ";
      if (operation == "BpError") calls += "error ";
    });
    Run(command);
    EXPECT_EQ(calls, expected) << command;
  }
}

TEST_F(Promises, HoldOfArgumentsThatAreAlwaysTheSame) {
  Run("FROM SRC /NEWVARS /VARINFO ATTRIBUTES=MERGE /FILEINFO ATTRIBUTES=MERGE WEIGHT");
  EXPECT_EQ(hosted_.Json()["file"]["attributes"].size(), 1U);
  EXPECT_EQ(hosted_.Json()["file"]["weight"], "b");
}

TEST_F(Promises, BeginEveryPassAndReadNoListThatIsNotThere) {
  bool begun = false;
  const Watch watch([&](const std::string& operation) {
    EXPECT_TRUE(begun || operation != "VELA_ValueLabelMap::GetNextPair");
    if (operation == "VELA_ValueLabelMap::Reset") begun = true;
    if (operation == "VELA_ValueLabelMap::VELA_ValueLabelMap") begun = false;
    EXPECT_NE(operation, "KeywordSubcommand::ExistingVariables");
  });
  Run("FROM SRC /VARINFO VALLABELS=MERGE");
  EXPECT_EQ(hosted_.Json()["variables"][1]["valueLabels"].size(), 2U);
}

TEST_F(Promises, AddANameOnceAlsoWhereLetterCaseCounts) {
  mindsCase = true;
  Run("FROM SRC /NEWVARS /SOURCE VARIABLES=A /TARGET VARIABLES=New new NEW");
  mindsCase = false;
  EXPECT_TRUE(hosted_.host.diagnostics.All().empty());
  const auto variables = hosted_.Json()["variables"];
  ASSERT_EQ(variables.size(), 4U) << variables;
  EXPECT_EQ(variables[3]["name"], "New");
}

}  // namespace
