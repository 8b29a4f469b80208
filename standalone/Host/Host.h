#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/Data.h"
#include "host/Dictionary.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Host/Reach.h"
#include "standalone/Syntax/Diagnostics.h"
#include "standalone/Syntax/Tokenizer.h"

namespace velahost {

// The standalone host: the working file, the command that is run on it, and its diagnostics. The
// operations that host/ declares work on the one host that exists; a host runs one command at a
// time.
class Host {
 public:
  Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;
  ~Host();

  // The host that exists. REQUIRES: there is one.
  static Host& Current();

  // Makes the file the working file, and reports what was not read of it, at level 1.
  void SetWorking(CodebookFile file);
  // The file that was given last to SetWorking, as it was read.
  const CodebookFile& WorkingFile() const { return *workingFile_; }
  // The working file's dictionary as it is now.
  velahost::Dictionary WorkingDictionary() const;
  // The working file as the library sees it: the store, once NEWVARS has made one.
  VELA_DataSource& Working() const { return *legacy.dataSource; }

  // Sets the command that the next call of applydic_ runs. The fatal-error state starts anew with
  // it; the diagnostics so far are kept.
  void SetCommand(Command next);
  const Command& CurrentCommand() const { return command_; }
  // How far the commands reach that have been run.
  const Reach& ReachOfRun();

  // Makes room for one more data source to own. A store calls it before it is constructed and Own
  // when it is, so that nothing fails between its construction and the change of owner.
  void ReserveOwned();
  // Takes the data source over, until this host is destroyed. REQUIRES: ReserveOwned was called for
  // it.
  void Own(VELA_DataSource* dataSource) noexcept;

  // Opens the file that FROM names, with its labels in the working file's language; it throws
  // FileError. A program may put a way of its own here.
  std::function<std::shared_ptr<const CodebookFile>(const std::string& specification)> openSource;

  // Reports what was not read of a source, at level 1: once, however many commands open it.
  void ReportWarningsOf(const std::shared_ptr<const CodebookFile>& source);

  Diagnostics diagnostics;
  // The place in the command of a failure that the library is about to report, and the line of the
  // file that it is about.
  std::optional<TextPlace> placeOfFailure;
  MarkedLine lineOfFailure;
  // Whether the command seems to be about variables alone, and still carries the weight over: it is
  // noted then that the weight has changed.
  bool notesWeight = false;

  // The label that GetLabel of a variable gave last. A label is set by its text alone, and its
  // languages come along when it is the very text that was given.
  struct GivenLabel {
    Text text;
    LabelLanguages languages;
  };
  GivenLabel givenLabel;

  // What a set of variables says besides what the library carries of it. A set refers to its own by
  // its place here, from 1; they live until the next command is set.
  struct GivenSet {
    std::shared_ptr<const CodebookFile> file;  // that the set was read from; may be null
    VariableSet set;                           // without members
  };
  std::vector<GivenSet> givenSets;

  // What the current command says of the variables that it is for.
  Reach reach;

  // What the library and the host have between them besides data sources.
  VELA_FortranDictionary legacy;      // the legacy dictionary
  std::int64_t legacyWeight = 0;      // its weight: a position in the case record, from 1; 0: none
  VELA_DataSource* active = nullptr;  // the data source that was declared active last
  bool hasPendingTransformations = false;
  std::vector<std::string> openFrames;  // in the output, by title

 private:
  std::shared_ptr<const CodebookFile> workingFile_;
  Command command_ = {{Token()}};  // it stays while it is parsed
  std::vector<std::unique_ptr<VELA_DataSource>> dataSources_;
  std::vector<std::weak_ptr<const CodebookFile>> reported_;  // sources with warnings
};

}  // namespace velahost
