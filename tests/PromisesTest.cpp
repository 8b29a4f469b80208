#include <dlfcn.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/Files.h"
#include "host/Output.h"
#include "tests/HostRun.h"

// What the library promises to every host and the standalone one does not look at: arguments that
// are always the same, the order in which a message is put together, no trust in letter case.
//
// The operations below stand in for the host's, since what a program defines comes before what its
// libraries define. They note what they are given and go on to the host's own.

namespace {

bool mindsCase = false;            // of the look-up by name
bool hasSource = true;             // of a source file: whether it has a data source
std::string calls;                 // on messages as they are built, and on sets
std::set<std::string> operations;  // whose arguments were looked at

// Expects of an argument that it is as promised.
void Expect(const char* operation, bool asPromised) {
  EXPECT_TRUE(asPromised) << operation;
  operations.insert(operation);
}

template <typename Operation>
Operation* OfHost(const char* symbol) {
  return reinterpret_cast<Operation*>(dlsym(RTLD_NEXT, symbol));
}

}  // namespace

int VELA_DataSource::FindVarIndex(const char* name, int mode) const {
  Expect("FindVarIndex", mode == 0);
  static auto* const find = OfHost<int(const VELA_DataSource*, const char*, int)>(
      "_ZNK15VELA_DataSource12FindVarIndexEPKci");
  const int column = find(this, name, mode);
  return column >= 0 && mindsCase && GetVariable(column).GetName() != std::string(name) ? -1
                                                                                        : column;
}

bool UserCaseFileSpec::Init(const TokenSequenceBase& tokens, bool flag) {
  Expect("Init", !flag);
  static auto* const init = OfHost<bool(UserCaseFileSpec*, const TokenSequenceBase&, bool)>(
      "_ZN16UserCaseFileSpec4InitERK17TokenSequenceBaseb");
  return init(this, tokens, flag);
}

bool DatasourceAttributes::Merge(const DatasourceAttributes& other, bool flag) {
  Expect("Merge", flag);
  static auto* const merge = OfHost<bool(DatasourceAttributes*, const DatasourceAttributes&, bool)>(
      "_ZN20DatasourceAttributes5MergeERKS_b");
  return merge(this, other, flag);
}

void ProcedureDataSource::ActiveDataSource(VELA_DataSource& dataSource, bool first, bool second) {
  Expect("ActiveDataSource", !first && second);
  static auto* const activate = OfHost<void(ProcedureDataSource*, VELA_DataSource&, bool, bool)>(
      "_ZN19ProcedureDataSource16ActiveDataSourceER15VELA_DataSourcebb");
  activate(this, dataSource, first, second);
}

void SetActiveDataSource(VELA_DataSource* store, int mode) {
  Expect("SetActiveDataSource", mode == 1);
  static auto* const set =
      OfHost<void(VELA_DataSource*, int)>("_Z19SetActiveDataSourceP15VELA_DataSourcei");
  set(store, mode);
}

std::string VariableSet::GetName(ChangeCase changeCase) const {
  Expect("GetName", changeCase == AsStored);
  static auto* const get = OfHost<std::string(const VariableSet*, ChangeCase)>(
      "_ZNK11VariableSet7GetNameB5cxx11ENS_10ChangeCaseE");
  return get(this, changeCase);
}

void SaveVariableSets(const std::vector<VariableSet>& sets, VELA_DataSource& dataSource,
                      VarSetsType type) {
  calls += type == VarSetsMrSets ? "mrsets " : "varsets ";
  static auto* const save = OfHost<decltype(SaveVariableSets)>(
      "_Z16SaveVariableSetsRKSt6vectorI11VariableSetSaIS0_EER15VELA_DataSource11VarSetsType");
  save(sets, dataSource, type);
}

VELA_DataSource* UserInputCaseFile::DataSource() {
  static auto* const get =
      OfHost<VELA_DataSource*(UserInputCaseFile*)>("_ZN17UserInputCaseFile10DataSourceEv");
  return hasSource ? get(this) : nullptr;
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

extern "C" void MakeVariable(
    BpVariable* made, const VELA_Variable& variable,
    BpVariable::Show show) asm("_ZN10BpVariableC1ERK13VELA_VariableNS_4ShowE");
void MakeVariable(BpVariable* made, const VELA_Variable& variable, BpVariable::Show show) {
  Expect("BpVariable", show == BpVariable::ShowDefault);
  static auto* const make = OfHost<void(BpVariable*, const VELA_Variable&, BpVariable::Show)>(
      "_ZN10BpVariableC1ERK13VELA_VariableNS_4ShowE");
  make(made, variable, show);
}

extern "C" void MakeProcedure(BpProcedure* made, std::string* title,
                              int kind) asm("_ZN11BpProcedureC1E" STRING_NAME "i");
void MakeProcedure(BpProcedure* made, std::string* title, int kind) {
  Expect("BpProcedure", *title == "Apply Dictionary" && kind == 2);
  static auto* const make =
      OfHost<void(BpProcedure*, std::string*, int)>("_ZN11BpProcedureC1E" STRING_NAME "i");
  make(made, title, kind);
}

namespace {

constexpr const char* kWorking =
    "<codeBook><dataDscr><varGrp name='g'/><var name='a'/><var "
    "name='b'><catgry><catValu>y</catValu><labl>Y</labl>"
    "</catgry><varFormat type='character' formatname='A8'/></var><var name='c'/></dataDscr>"
    "</codeBook>";
constexpr const char* kSource =
    "<codeBook><fileDscr><notes type='VELA:attribute' subject='x'>1</notes></fileDscr><dataDscr>"
    "<varGrp name='h'/><var name='A'><notes type='VELA:attribute' subject='x'>1</notes></var><var "
    "name='B' "
    "wgt='wgt'><catgry><catValu>x</catValu><labl>X</labl></catgry>"
    "<varFormat type='character' formatname='A9'/></var><var name='C'><varFormat "
    "type='character'/></var><var name='D'/></dataDscr></codeBook>";

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
      {"FROM SRC /SOURCE VARIABLES=D", "String error "},
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
  operations.clear();
  Run("FROM SRC /NEWVARS /VARINFO ATTRIBUTES=MERGE /FILEINFO ALL");
  EXPECT_EQ(operations,
            (std::set<std::string>{"ActiveDataSource", "BpProcedure", "BpVariable", "FindVarIndex",
                                   "GetName", "Init", "Merge", "SetActiveDataSource"}));
}

TEST_F(Promises, KeepTheOrderOfTheItemsOfTheFile) {
  calls.clear();
  const Watch watch([](const std::string& operation) {
    if (operation == "SaveDocuments") calls += "documents ";
    if (operation == "VELA_DataSource::GetLabel") calls += "label ";
    if (operation == "VELA_DataSource::SetWeightVar") calls += "weight ";
    if (operation == "VELA_DataSource::GetAttributes") calls += "attributes ";
  });
  Run("FROM SRC /VARINFO /FILEINFO ALL ATTRIBUTES=REPLACE");
  EXPECT_EQ(calls, "documents label mrsets varsets weight attributes attributes ");
}

TEST_F(Promises, ReadNoListAndChangeNothingOfASourceWithoutADataSource) {
  const auto before = hosted_.Json();
  const auto& diagnostics = hosted_.host.diagnostics.All();
  hasSource = false;
  Run("FROM SRC /SOURCE VARIABLES=no /TARGET VARIABLES=no /NEWVARS");
  EXPECT_TRUE(diagnostics.empty());
  Run("FROM SRC /SOURCE VARIABLES=no /VARINFO VALLABELS=X");
  EXPECT_EQ(diagnostics.size(), 1U) << "the parse goes on";
  hasSource = true;
  EXPECT_EQ(hosted_.Json(), before);
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
  const auto& diagnostics = hosted_.host.diagnostics.All();
  mindsCase = true;
  Run("FROM SRC /NEWVARS /SOURCE VARIABLES=A /TARGET VARIABLES=New new NEW");
  EXPECT_TRUE(diagnostics.empty());
  Run("FROM SRC /NEWVARS /SOURCE VARIABLES=A /TARGET VARIABLES=A");
  mindsCase = false;
  ASSERT_EQ(diagnostics.size(), 1U) << "the store has it in another case, and refuses";
  EXPECT_EQ(diagnostics[0].level, velahost::Severity::Failure);
  const auto variables = hosted_.Json()["variables"];
  ASSERT_EQ(variables.size(), 4U) << variables;
  EXPECT_EQ(variables[3]["name"], "New");
}

}  // namespace
