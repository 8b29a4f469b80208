#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <map>
#include <new>
#include <set>
#include <string>
#include <vector>

#include "host/Exceptions.h"
#include "host/Output.h"
#include "program/Show.h"
#include "tests/HostRun.h"

// Every host call fails once. A run without a fault shows the calls and, at the start of each, the
// state of the host; a run in which a call fails must leave the state of that moment.

namespace {

constexpr const char* kWorking =
    "<codeBook><fileDscr><notes>d</notes><notes type='VELA:attribute' "
    "subject='F'>1</notes></fileDscr>"
    "<dataDscr><varGrp name='g' var='V'/><var ID='V' name='a'><catgry><catValu>1</catValu><labl>x"
    "</labl></catgry></var><var name='s'><labl>old</labl><catgry><catValu>a</catValu><labl>x</labl>"
    "</catgry><varFormat type='character' formatname='A2'/><notes type='VELA:columnWidth'>9</notes>"
    "</var></dataDscr></codeBook>";
constexpr const char* kSource =
    "<codeBook><fileDscr><fileTxt><fileCont>L</fileCont></fileTxt><notes>e</notes><notes "
    "type='VELA:"
    "attribute' subject='G'>1</notes></fileDscr><dataDscr><varGrp name='h' var='V'/><varGrp "
    "name='m' "
    "type='multipleResp' var='V'/><var ID='V' name='A' wgt='wgt' nature='ordinal'><labl>A</labl>"
    "<invalrng><item VALUE='9'/></invalrng><catgry><catValu>1</catValu><labl>one</labl></catgry>"
    "<catgry><catValu>2</catValu><labl>two</labl></catgry><varFormat formatname='F3'/><notes type="
    "'VELA:columnWidth'>5</notes><notes type='VELA:role'>both</notes><notes type='VELA:attribute' "
    "subject='B'>1</notes></var><var name='S'><labl>S</labl><invalrng><item "
    "VALUE='abc'/></invalrng>"
    "<catgry><catValu>abc</catValu><labl>y</labl></catgry><varFormat type='character' "
    "formatname='A4'"
    "/><notes type='VELA:columnWidth'>5</notes></var><var name='N'/></dataDscr></codeBook>";

const char* const kCommands[] = {
    "FROM SRC PASSWORD='p' /NEWVARS",
    "FROM SRC /FILEINFO ALL /VARINFO ALL VALLABELS=MERGE ATTRIBUTES=MERGE",
    "FROM SRC /NEWVARS /SOURCE VARIABLES=A /TARGET VARIABLES=a x y X /FILEINFO WEIGHT FILELABEL",
    "FROM SRC /FILEINFO DOCUMENTS=REPLACE MRSETS=REPLACE VARSETS=REPLACE ATTRIBUTES=REPLACE",
    "FROM * /SOURCE VARIABLES=a /TARGET VARIABLES=a s /VARINFO VALLABELS=MERGE",
    "FROM SRC /SOURCE VARIABLES=N /NEWVARS /VARINFO FORMATS /FILEINFO WEIGHT",
    "FROM SRC /SOURCE VARIABLES=N /FILEINFO WEIGHT",
    "FROM 5 PASSWORD /SOURCE VARIABLES",
    "FROM SRC /SOURCE VARIABLES /VARINFO VALLABELS=X LEVEL=1",
    "FROM 'none.xml'",
};

enum class Fault { kErrorText, kBadAlloc, kOther };
struct OtherException {};

// One run of a command, in which the call at the given place fails.
class FaultyRun {
 public:
  // The order in which the objects of a run are released.
  static inline const std::vector<std::string> kInOrder = {
      "ProcedureDataSource", "UserInputCaseFile", "BpProcedure", "UserCaseFileSpec"};
  // In place of a place: none fails.
  static constexpr std::size_t kNoFault = static_cast<std::size_t>(-1);
  static constexpr std::size_t kKeepStates = static_cast<std::size_t>(-2);

  FaultyRun(Hosted& hosted, const std::string& command, std::size_t place, Fault fault)
      : hosted_(hosted), diagnosticsBefore_(hosted.host.diagnostics.All().size()) {
    bool hasOpened = false;
    hosted.host.openSource = [&hasOpened](const std::string& file) {
      auto opened = std::make_shared<const velahost::CodebookFile>(velahost::OpenCodebook(file));
      hasOpened = true;
      return opened;
    };
    const Watch watch(
        [&](const std::string& operation) {
          released_.resize(calls.size() + 1, endsContext_);
          calls.push_back(operation);
          if (place == kKeepStates) states.push_back(State());
          if (calls.size() - 1 == place) Throw(fault);
          if (const std::string object = Constructed(operation); !object.empty()) ++alive[object];
        },
        [&](const std::string& operation) {
          const std::string object = operation.substr(0, operation.find("::~"));
          if (const auto it = alive.find(object); it != alive.end()) --it->second;
          if (object == "ProcedureDataSource") endsContext_ = true;
          if (std::find(kInOrder.begin(), kInOrder.end(), object) != kInOrder.end()) {
            ended.push_back(object);
          }
        });
    try {
      hosted.Run(command);
    } catch (const std::bad_alloc&) {
      passedOn = "bad_alloc";
    } catch (const OtherException&) {
      passedOn = "other";
    } catch (const ErrorText& error) {
      passedOn = error.message;
    }
    // A file that could not be opened never was.
    if (!hasOpened && alive["UserInputCaseFile"] == 1) {
      alive["UserInputCaseFile"] = 0;
    }
  }

  // What the host holds, without what was released.
  std::string State() const {
    const velahost::Host& host = hosted_.host;
    return applydic::DictionaryText(hosted_.host.WorkingDictionary(), NoDocumentation) +
           " active " + (host.active == &hosted_.host.Working() ? "working" : "other") +
           " weight " + std::to_string(host.legacyWeight) + " messages " +
           std::to_string(host.diagnostics.All().size() - diagnosticsBefore_);
  }
  // The messages of this run.
  std::vector<std::string> Messages() const {
    std::vector<std::string> messages;
    const auto& all = hosted_.host.diagnostics.All();
    for (std::size_t i = diagnosticsBefore_; i < all.size(); ++i) messages.push_back(all[i].shown);
    return messages;
  }
  // Whether an ErrorText of the call at the place is caught.
  bool IsCaught(std::size_t place) const {
    const auto dictionary = std::find(calls.begin(), calls.end(), "global_dicptr_");
    return place >= static_cast<std::size_t>(dictionary - calls.begin()) && !released_[place];
  }

  std::vector<std::string> calls;
  std::vector<std::string> states;   // at the start of each call, of a run without a fault
  std::map<std::string, int> alive;  // objects of the run that are not released, by class
  std::vector<std::string> ended;    // those of kInOrder, as they were released
  std::string passedOn;              // the exception that came through

 private:
  // The class whose object the operation makes, of those that only the library makes.
  static std::string Constructed(const std::string& operation) {
    static const std::set<std::string> classes = {
        "UserCaseFileSpec",  "BpProcedure",       "ProcedureDataSource",
        "UserInputCaseFile", "ParsedCommand",     "KeywordSubcommand",
        "BpString",          "BpComposite",       "BpVariable",
        "ObsValue",          "VELA_ValueLabelMap"};
    const std::string name = operation.substr(0, operation.find("::"));
    return operation == name + "::" + name && classes.contains(name) ? name : "";
  }

  [[noreturn]] static void Throw(Fault fault) {
    if (fault == Fault::kErrorText) throw ErrorText("the call failed");
    if (fault == Fault::kBadAlloc) throw std::bad_alloc();
    throw OtherException();
  }

  Hosted& hosted_;
  const std::size_t diagnosticsBefore_;
  bool endsContext_ = false;
  std::vector<bool> released_;  // at each call, whether the context was released by then
};

class FaultCommands : public testing::Test {
 protected:
  FaultCommands() : working_(folder_.Write("working.xml", kWorking)) {
    folder_.Write("source.xml", kSource);
  }
  std::string WithSource(const std::string& command) const {
    return Replaced(command, "SRC", "'" + folder_.At("source.xml") + "'");
  }

  const Folder folder_;
  const std::string working_;
};

class Faults : public FaultCommands, public testing::WithParamInterface<const char*> {};

TEST_P(Faults, AtEveryCallEndTheRunAsTheyShould) {
  const std::string command = WithSource(GetParam());
  std::vector<std::string> calls;
  std::vector<std::string> states;
  std::vector<std::string> messages;
  std::vector<bool> caught;
  std::string outcome;
  {
    Hosted hosted(working_);
    const FaultyRun run(hosted, command, FaultyRun::kKeepStates, Fault::kOther);
    calls = run.calls;
    states = run.states;
    messages = run.Messages();
    outcome = applydic::DictionaryText(hosted.host.WorkingDictionary(), NoDocumentation);
    for (std::size_t i = 0; i < calls.size(); ++i) caught.push_back(run.IsCaught(i));
  }
  for (std::size_t i = 0; i < calls.size(); ++i) {
    for (const Fault fault : {Fault::kErrorText, Fault::kBadAlloc, Fault::kOther}) {
      SCOPED_TRACE(command + ": call " + std::to_string(i) + ", " + calls[i] + ", fault " +
                   std::to_string(static_cast<int>(fault)));
      Hosted hosted(working_);
      FaultyRun run(hosted, command, i, fault);
      const bool isCaught = fault == Fault::kErrorText && caught[i];
      const char* const thrown[] = {"the call failed", "bad_alloc", "other"};
      EXPECT_EQ(run.passedOn, isCaught ? "" : thrown[static_cast<int>(fault)]);
      std::string state = states[i];
      if (isCaught) {
        const auto& last = hosted.host.diagnostics.All().back();
        EXPECT_EQ(last.shown, "the call failed");
        EXPECT_EQ(last.level, velahost::Severity::Failure);
        EXPECT_EQ(last.show, BpShowMessage);
        const std::size_t count = state.rfind(' ') + 1;
        const int diagnostics = std::stoi(state.substr(count)) + 1;
        state.erase(count).append(std::to_string(diagnostics));
      }
      EXPECT_EQ(run.State(), state) << "changed further, or not as far";
      EXPECT_TRUE(hosted.host.openFrames.empty());
      for (const auto& [object, count] : run.alive) EXPECT_EQ(count, 0) << object;
      auto place = FaultyRun::kInOrder.begin();
      for (const std::string& object : run.ended) {
        place = std::find(place, FaultyRun::kInOrder.end(), object);
        EXPECT_NE(place, FaultyRun::kInOrder.end()) << object << " is released too late";
      }
      if (fault != static_cast<Fault>(i % 3)) continue;
      const FaultyRun next(hosted, command, FaultyRun::kNoFault, fault);
      EXPECT_EQ(next.Messages(), messages) << "the next command";
      EXPECT_EQ(applydic::DictionaryText(hosted.host.WorkingDictionary(), NoDocumentation), outcome)
          << "the next command";
      if (HasFailure()) return;
    }
  }
}
INSTANTIATE_TEST_SUITE_P(Commands, Faults, testing::ValuesIn(kCommands));

// The operations that symbols_imported.txt lists as imported, by the names that the host gives
// them.
std::set<std::string> ImportedOperations() {
  std::set<std::string> operations;
  std::ifstream file(TESTS_FOLDER "/symbols_imported.txt");
  for (std::string line; std::getline(file, line);) {
    const bool isOperation = !line.empty() && line[0] != '#' && line[0] != '?' &&
                             line.find('~') == std::string::npos && !line.starts_with("typeinfo");
    if (!isOperation) continue;
    line.erase(line.find('(') == std::string::npos ? line.size() : line.find('('));
    if (const std::size_t at = line.find("OBS const*"); at != std::string::npos) {
      line.replace(at, std::string::npos, "const OBS*");
    }
    operations.insert(line);
  }
  return operations;
}

TEST_F(FaultCommands, ReachEveryOperationThatTheLibraryCalls) {
  std::set<std::string> missing = ImportedOperations();
  EXPECT_GT(missing.size(), 80U);
  for (const char* const command : kCommands) {
    Hosted hosted(working_);
    const FaultyRun run(hosted, WithSource(command), FaultyRun::kNoFault, Fault::kOther);
    for (const std::string& operation : run.calls) missing.erase(operation);
  }
  EXPECT_EQ(missing, std::set<std::string>());
}

}  // namespace
