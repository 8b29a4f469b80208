#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/Exceptions.h"
#include "standalone/Host/Cells.h"
#include "standalone/Host/HostAccess.h"
#include "tests/HostRun.h"

// What the host sees of a run: the order of its calls, who lives how long, and what is shared.

namespace {

using Words = std::map<std::string, std::string>;

const Words kCalls = {{"UserCaseFileSpec::UserCaseFileSpec", "+record"},
                      {"BpProcedure::BpProcedure", "+frame"},
                      {"global_dicptr_", "dictionary"},
                      {"ProcedureDataSource::ProcedureDataSource", "+context"},
                      {"ParsedCommand::ParsedCommand", "+command"},
                      {"UserInputCaseFile::UserInputCaseFile", "+file"},
                      {"DEDataStore::DEDataStore", "+store"},
                      {"SetActiveDataSource", "setActive"},
                      {"DEDataStore::InsertVariable", "insert"},
                      {"VELA_Variable::SetLabel", "label"},
                      {"VELA_Variable::SetName", "name"},
                      {"VELA_Variable::NewID", "newId"},
                      {"VELA_FortranDictionary::ReIndex", "reIndex"},
                      {"ProcedureDataSource::ActiveDataSource", "active"},
                      {"BpError", "error"}};
const Words kReleases = {{"UserCaseFileSpec::~UserCaseFileSpec", "-record"},
                         {"BpProcedure::~BpProcedure", "-frame"},
                         {"ProcedureDataSource::~ProcedureDataSource", "-context"},
                         {"ParsedCommand::~ParsedCommand", "-command"},
                         {"UserInputCaseFile::~UserInputCaseFile", "-file"},
                         {"DEDataStore::~DEDataStore", "-store"}};

// Thrown where something happens, or issued there.
enum class Fault { kErrorText, kOther, kFatalError };

struct Ordering {
  const char* name;
  std::string commands;  // each but the last ended by a period and a line end
  std::string calls;     // of the last command
  std::string at = {};   // the word of the call that fails
  Fault fault = Fault::kErrorText;
};
void PrintTo(const Ordering& ordering, std::ostream* out) { *out << ordering.name; }

constexpr const char* kWorking =
    "<codeBook><dataDscr><var name='a'/><var name='w'/><var name='b'><catgry><catValu>1</catValu>"
    "<labl>b</labl></catgry></var></dataDscr></codeBook>";
constexpr const char* kSource =
    "<codeBook><dataDscr><var name='W' wgt='wgt'/><var name='A'><labl>L</labl><catgry><catValu>1"
    "</catValu><labl>one</labl></catgry></var><var "
    "name='N'><labl>N</labl></var></dataDscr></codeBook>";

// A hosted in a folder with a source.
struct Runner : Folder {
  Runner() : hosted(Write("working.xml", kWorking)) { Write("source.xml", kSource); }
  void operator()(const std::string& command) {
    hosted.Run(Replaced(command, "SRC", "'" + At("source.xml") + "'"));
  }
  velahost::Host& Host() { return hosted.host; }
  Hosted hosted;
};

class Order : public testing::TestWithParam<Ordering> {};

TEST_P(Order, OfCallsAndReleases) {
  const Ordering& ordering = GetParam();
  Runner run;
  std::string command = ordering.commands;
  if (const std::size_t end = command.find('\n'); end != std::string::npos) {
    run(command.substr(0, end));
    command.erase(0, end + 1);
  }
  std::string calls;
  bool failed = false;
  const auto note = [&](const Words& words, const std::string& operation) {
    const auto word = words.find(operation);
    if (word == words.end()) return false;
    calls += (calls.empty() ? "" : " ") + word->second;
    return std::exchange(failed, failed || word->second == ordering.at) != failed;
  };
  {
    const Watch watch(
        [&](const std::string& operation) {
          if (!note(kCalls, operation)) return;
          if (ordering.fault == Fault::kErrorText) throw ErrorText("fault");
          if (ordering.fault == Fault::kOther) throw std::runtime_error("other");
          velahost::Host::Current().diagnostics.Report(velahost::Severity::Error, {"fatal"});
        },
        [&](const std::string& operation) { note(kReleases, operation); });
    if (ordering.fault == Fault::kOther) {
      EXPECT_THROW(run(command), std::runtime_error);
    } else {
      run(command);
    }
  }
  EXPECT_EQ(calls, ordering.calls);
  EXPECT_TRUE(run.Host().openFrames.empty());
}

const std::string kStart = "+record +frame dictionary +context +command ";
const std::string kOpened = kStart + "+file -command ";
const std::string kClosed = "-context -file -frame -record";
const std::string kStore = "+store setActive dictionary ";

const Ordering kOrderings[] = {
    {"ByName", "FROM SRC", kOpened + "label " + kClosed},
    {"WorkingFile", "FROM * /VARINFO WIDTH", kOpened + kClosed},
    {"NewVars", "FROM SRC /NEWVARS /SOURCE VARIABLES=N A N",
     kOpened + kStore + "insert label reIndex active " + kClosed},
    {"NewNames", "FROM SRC /NEWVARS /SOURCE VARIABLES=A /TARGET VARIABLES=x a y",
     kOpened + kStore + "name newId insert label name newId insert reIndex active " + kClosed},
    {"NewVarsOfAStore", "FROM SRC /NEWVARS.\nFROM SRC /NEWVARS",
     kOpened + "label label reIndex active " + kClosed},
    {"WithoutNewVarsAStoreStays", "FROM SRC /NEWVARS.\nFROM SRC",
     kOpened + "label label " + kClosed},
    {"FromMissing", "NEWVARS", kStart + "error -command -context -frame -record"},
    {"ParseFails", "FROM SRC /VARINFO VALLABELS=X /NEWVARS",
     kStart + "+file error -command " + kClosed},
    {"FileCannotBeOpened", "FROM 'none.xml'",
     kStart + "+file -command -context error -frame -record"},
    {"ErrorTextInTheParse", "FROM SRC", kStart + "-context error -frame -record", "+command"},
    {"ErrorText", "FROM SRC", kOpened + "label -context error -file -frame -record", "label"},
    {"Other", "FROM SRC", kOpened + "label " + kClosed, "label", Fault::kOther},
    {"ErrorTextAfterTheStore", "FROM SRC /NEWVARS",
     kOpened + kStore + "label insert -context error -file -frame -record", "insert"},
    {"FatalErrorInApply", "FROM SRC /NEWVARS", kOpened + kStore + "label insert " + kClosed,
     "insert", Fault::kFatalError}};
INSTANTIATE_TEST_SUITE_P(All, Order, testing::ValuesIn(kOrderings),
                         [](const auto& param) { return std::string(param.param.name); });

TEST(Run, HandsTheStoreOverBeforeItStandsInTheDictionary) {
  Runner run;
  velahost::Host& host = run.Host();
  VELA_DataSource* const before = &host.Working();
  {
    const Watch watch([&](const std::string& operation) {
      if (operation == "SetActiveDataSource") {
        EXPECT_EQ(&host.Working(), before);
      }
      if (operation == "VELA_FortranDictionary::ReIndex") {
        EXPECT_NE(&host.Working(), before);
      }
    });
    run("FROM * /NEWVARS");
  }
  EXPECT_NE(&host.Working(), before);
  EXPECT_EQ(host.active, &host.Working());
  EXPECT_NE(dynamic_cast<DEDataStore*>(&host.Working()), nullptr);
}

TEST(RunDeathTest, AssertsADictionary) {
  const velahost::Host host;
  EXPECT_DEATH(applydic_(), "void applydic_\\(\\): Assertion `globalDicptr' failed");
}

TEST(Store, KeepsEveryPointerThroughInsertions) {
  Runner run;
  DEDataStore& store = *new DEDataStore(&run.Host().Working());  // the host owns it
  std::vector<std::pair<const VELA_Variable*, const char*>> held;
  for (int i = 0; i < 500; ++i) {
    held.emplace_back(&store.GetVariable(store.ColumnCount() - 1),
                      store.GetVariable(store.ColumnCount() - 1).GetUpperCaseName());
    VELA_Variable added(store.GetVariable(0));
    added.SetName(("n" + std::to_string(i)).c_str());
    store.InsertVariable(static_cast<unsigned>(store.ColumnCount()), added);
  }
  for (std::size_t i = 0; i < held.size(); ++i) {
    const auto column = static_cast<int>(i) + 2;
    EXPECT_EQ(&store.GetVariable(column), held[i].first);
    EXPECT_EQ(store.GetVariable(column).GetUpperCaseName(), held[i].second);
    EXPECT_EQ(store.FindVarIndex(held[i].second, 0), column);
  }
  EXPECT_EQ(run.Host().Working().ColumnCount(), 3) << "what it was made over stays as it is";
  VELA_Variable again(store.GetVariable(1));
  EXPECT_THROW(store.InsertVariable(static_cast<unsigned>(store.ColumnCount()), again), ErrorText);
  EXPECT_THROW(store.InsertVariable(0, again), ErrorText);
}

TEST(ValueLabels, AreSharedAndCopiedWhenWritten) {
  Runner run;
  run("FROM SRC /SOURCE VARIABLES=A /TARGET VARIABLES=a w");
  VELA_Variable& a = run.hosted.Variable("a");
  VELA_Variable& w = run.hosted.Variable("w");
  ASSERT_EQ(HostAccess::SetOf(a.GetValueLabels()), HostAccess::SetOf(w.GetValueLabels()));
  velahost::Cell two;
  velahost::Cell three;
  two.SetNumber(2, {});
  three.SetNumber(3, {});
  {
    VELA_ValueLabelMap labels(a.GetValueLabels());
    labels.AddPair(two.Address(), "two");
    EXPECT_EQ(VELA_ValueLabelMap(a.GetValueLabels()).Size(), 1) << "changed through a view";
    a.SetValueLabels(labels);
    labels.AddPair(three.Address(), "three");
  }
  EXPECT_EQ(VELA_ValueLabelMap(a.GetValueLabels()).Size(), 2);
  EXPECT_STREQ(VELA_ValueLabelMap(a.GetValueLabels()).GetLabel(two.Address()), "two");
  EXPECT_EQ(VELA_ValueLabelMap(w.GetValueLabels()).Size(), 1);
  // Merging into one of those who share a set, from the set that both had, changes only that one.
  run("FROM * /SOURCE VARIABLES=a /TARGET VARIABLES=b /VARINFO VALLABELS=MERGE");
  EXPECT_EQ(VELA_ValueLabelMap(run.hosted.Variable("b").GetValueLabels()).Size(), 2);
  EXPECT_EQ(VELA_ValueLabelMap(w.GetValueLabels()).Size(), 1);
}

TEST(Variable, IsSetFromWhatItSaysItself) {
  const Folder folder;
  Hosted hosted(folder.Write(
      "w.xml",
      "<codeBook><fileDscr><fileTxt><fileCont>a long label of the file</fileCont></fileTxt>"
      "<notes type='VELA:attribute' subject='A'>1</notes></fileDscr><dataDscr><var name='s'><labl>"
      "a long label of the variable</labl><invalrng><item VALUE='ab'/><item VALUE='cd'/></invalrng>"
      "<catgry><catValu>ab</catValu><labl>x</labl></catgry><varFormat type='character' "
      "formatname='A2'/><notes type='VELA:attribute' subject='A'>1</notes></var><var name='wide'>"
      "<varFormat type='character' formatname='A900'/></var></dataDscr></codeBook>"));
  VELA_DataSource& file = hosted.host.Working();
  VELA_Variable& s = hosted.Variable("s");
  file.SetLabel(file.GetLabel() + 7);
  s.SetLabel(s.GetLabel() + 7);
  file.SetAttributes(file.GetAttributes());
  s.SetAttributes(s.GetAttributes());
  s.SetValueLabels(s.GetValueLabels());
  const OBS* values[3] = {};
  ASSERT_EQ(s.GetMissingValues(values[0], values[1], values[2]), 2);
  hosted.Variable("wide").SetMissingValues(2, values[0], values[1], nullptr);
  s.SetMissingValues(2, values[0], values[1], nullptr);
  s.SetName(s.GetName());
  EXPECT_STREQ(file.GetLabel(), "label of the file");
  EXPECT_STREQ(s.GetLabel(), "label of the variable");
  const auto json = nlohmann::json::parse(hosted.Json()["variables"].dump());
  EXPECT_EQ(json[0]["missing"]["values"], (nlohmann::json{"ab", "cd"}));
  EXPECT_EQ(json[1]["missing"]["values"], (nlohmann::json{"ab", "cd"}));
  EXPECT_EQ(json[0]["attributes"], (nlohmann::json{{"A", {"1"}}}));
}

}  // namespace
