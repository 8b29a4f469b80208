#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/Data.h"
#include "host/Dictionary.h"
#include "standalone/Codebook/OpenCodebook.h"
#include "standalone/Files/SourceAhead.h"
#include "standalone/Output/Diagnostics.h"
#include "standalone/Syntax/Tokenizer.h"

namespace velahost {

// The state of the standalone host: the working file, the command being run and its diagnostics.
// One at a time; the host operations work on the one that exists.
class Host {
 public:
  Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;
  ~Host();

  // The host that exists. REQUIRES: there is one.
  static Host& Current();

  // Makes the data source the working file.
  void SetWorking(std::unique_ptr<VELA_DataSource> dataSource);
  // The working file as it is now: the store, once NEWVARS has made one.
  VELA_DataSource& Working() const { return *dictionary.dataSource; }

  // Sets the command that the next call of applydic_ runs. The fatal-error state starts anew with
  // it; the diagnostics so far are kept.
  void SetCommand(Command next);

  // Makes room for one more data source to own. A store calls it before it is constructed and Own
  // when it is, so that nothing fails between its construction and the change of owner.
  void ReserveOwned();
  // Takes the data source over, until this host is destroyed. REQUIRES: ReserveOwned was called for
  // it.
  void Own(VELA_DataSource* dataSource) noexcept;

  // What the library reads the working file from and writes the store into.
  VELA_FortranDictionary dictionary;
  // The data source that was declared active last: by SetWorking, SetActiveDataSource or
  // ProcedureDataSource::ActiveDataSource.
  VELA_DataSource* active = nullptr;
  // The command that is run; it stays while it is parsed.
  Command command = {{Token()}};
  Diagnostics diagnostics;
  // The source that the program had opened ahead of the command, if it did.
  std::optional<SourceAhead> sourceAhead;
  // The files that were opened as sources.
  std::vector<FileIdentity> sourcesRead;
  // Whether transformations are pending: a switch for tests.
  bool pendingTransformations = false;
  // What the legacy dictionary was told last: the position of the weight in the case record, from
  // 1; 0 when it was told none.
  std::int64_t legacyWeight = 0;
  // How often the legacy dictionary was brought up to date.
  int reIndexed = 0;
  // The frames open in the output, by title.
  std::vector<std::string> openFrames;

 private:
  std::vector<std::unique_ptr<VELA_DataSource>> dataSources_;
};

}  // namespace velahost
