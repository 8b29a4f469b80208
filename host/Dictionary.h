#pragma once

#include <cstdint>
#include <memory>

class VELA_DataSource;

// The host's dictionary, the active data source and the context of a procedure.

// The host's legacy dictionary. The library reads the working file's data source from it. When it
// has made a store over that data source, it writes the store into it.
class VELA_FortranDictionary {
 public:
  // Brings the legacy dictionary up to date with the variables of the working data source. Called
  // when variables may have been added, on the dictionary that the run read first.
  void ReIndex();

  // The working file's data source, never null; owned by the host.
  VELA_DataSource* dataSource = nullptr;
};

extern "C" {

// The host's dictionary, owned by the host. Null means that there is no active dictionary. The host
// must not call applydic_ then: a failed assertion ends the process.
VELA_FortranDictionary* global_dicptr_();

// Sets the legacy dictionary's weight variable, given by the position of its value in the case
// record, from 1. The address is valid only during the call.
void setcurrentweightvar_(const std::int64_t* position);
}

// Tells the host that the store replaces the working data source. The host owns the store already,
// from its construction on. The library always passes 1 for the mode, whose meaning is the host's.
// Called before the store is written into the dictionary.
void SetActiveDataSource(VELA_DataSource* store, int mode);

// The context of the running procedure. The library makes it after it has read the dictionary, and
// destroys it at the end of the run, before it reports an ErrorText.
class ProcedureDataSource {
 public:
  ProcedureDataSource();
  ProcedureDataSource(const ProcedureDataSource&) = delete;
  ProcedureDataSource& operator=(const ProcedureDataSource&) = delete;
  ~ProcedureDataSource();

  // Whether an error that ends the procedure has been issued since the command began. Every
  // diagnostic of level 3 or more is such an error.
  bool FatalError() const;
  // Whether transformations are pending on the working file.
  bool Transforms() const;
  // Declares the data source active, when the run may have added variables. The library always
  // passes false and true, whose meaning is the host's.
  void ActiveDataSource(VELA_DataSource& dataSource, bool first, bool second);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
