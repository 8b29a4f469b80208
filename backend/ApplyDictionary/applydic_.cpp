// The run never goes on without a dictionary, so the assertion below holds in a release build too.
#undef NDEBUG
#include <cassert>
#include <memory>

#include "backend/ApplyDictionary/Apply.h"
#include "backend/ApplyDictionary/ApplyDictionarySpec.h"
#include "backend/ApplyDictionary/Parse.h"
#include "host/Data.h"
#include "host/Dictionary.h"
#include "host/EntryPoint.h"
#include "host/Exceptions.h"
#include "host/Files.h"
#include "host/Output.h"

namespace {

// What the host's frame and its active data source are given; their meaning is the host's.
constexpr int kProcedureKind = 2;
constexpr int kActiveStoreMode = 1;

// Replaces the working data source by a store over it, and returns the store.
VELA_DataSource* ReplaceByStore(const VELA_DataSource* working) {
  // Bare on purpose: the host owns the store from its construction on.
  auto* const store = new DEDataStore(working);
  SetActiveDataSource(store, kActiveStoreMode);
  // Asked again: the host may have made another dictionary current when it took the store.
  global_dicptr_()->dataSource = store;
  return store;
}

// Parses the command and, unless that failed, carries it out. sourceFile stays open for the caller,
// who releases it after the context.
void Run(ApplyDictionarySpec& record, BpProcedure& procedure, VELA_FortranDictionary& dictionary,
         ProcedureDataSource& context, std::unique_ptr<UserInputCaseFile>& sourceFile) {
  VELA_DataSource* working = dictionary.dataSource;
  Parse(record, procedure, *working, sourceFile, context);
  if (context.FatalError()) return;

  // Chosen before the store is made: when the working file is its own source, the source stays the
  // data source that was working before.
  const VELA_DataSource* source = sourceFile->DataSource();
  if (source == nullptr) source = working;

  if (record.newVars && dynamic_cast<DEDataStore*>(working) == nullptr) {
    working = ReplaceByStore(working);
  }
  Apply(record, *working, source, procedure);

  if (!record.newVars || context.FatalError()) return;
  dictionary.ReIndex();
  context.ActiveDataSource(*working, false, true);
}

}  // namespace

extern "C" void applydic_() {
  // Released in reverse order: the context before an error is reported, then the source file, the
  // frame and the record.
  ApplyDictionarySpec record;
  BpProcedure procedure("Apply Dictionary", kProcedureKind);
  std::unique_ptr<UserInputCaseFile> sourceFile;
  try {
    VELA_FortranDictionary* const globalDicptr = global_dicptr_();
    assert(globalDicptr);
    ProcedureDataSource context;
    Run(record, procedure, *globalDicptr, context, sourceFile);
  } catch (const ErrorText& error) {
    BpError(BpString(error.message, true), BpShowMessage, BpLevelFailure);
  }
}
