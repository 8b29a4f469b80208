#pragma once

#include <cstdint>
#include <memory>

class VELA_DataSource;

// The host's dictionary, the active data source and the context of a procedure.

// The host's legacy dictionary. The library reads the working file's data source from it and, after
// it has made a store over that data source, writes the store into it.
class VELA_FortranDictionary {
 public:
  // Brings the legacy dictionary up to date with the variables of the working data source. Called
  // after variables may have been added, on the dictionary that the run read first.
  void ReIndex();

  // The working file's data source, never null; owned by the host.
  VELA_DataSource* dataSource = nullptr;
};

extern "C" {

// The host's dictionary, owned by the host. Null means that there is no active dictionary: the host
// must not call applydic_ then, and the run ends the process by a failed assertion.
VELA_FortranDictionary* global_dicptr_();

// Sets the legacy dictionary's weight variable: the position of its value in the case record,
// from 1. The address is valid during the call only.
void setcurrentweightvar_(const std::int64_t* position);
}

// Tells the host that a store has taken the place of the working data source. The host owns the
// store already, from its construction on; what is 1 here is the host's. Called before the store is
// written into the dictionary.
void SetActiveDataSource(VELA_DataSource* store, int mode);

// The context of the running procedure: made after the dictionary was read, destroyed at the end of
// the run, before an ErrorText is reported.
class ProcedureDataSource {
 public:
  ProcedureDataSource();
  ProcedureDataSource(const ProcedureDataSource&) = delete;
  ProcedureDataSource& operator=(const ProcedureDataSource&) = delete;
  ~ProcedureDataSource();

  // Whether an error that ends the procedure has been issued since the command began: every
  // diagnostic of level 3 or more is one.
  bool FatalError() const;
  // Whether transformations are pending on the working file.
  bool Transforms() const;
  // Declares the data source active, after a run that may have added variables. The library passes
  // false and true; what they select is the host's.
  void ActiveDataSource(VELA_DataSource& dataSource, bool first, bool second);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
