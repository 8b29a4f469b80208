#include "host/Dictionary.h"

#include "standalone/Host/Calls.h"
#include "standalone/Host/Host.h"

using velahost::Called;
using velahost::Host;
using velahost::Released;

// The legacy dictionary has no index of its own here.
void VELA_FortranDictionary::ReIndex() { Called("VELA_FortranDictionary::ReIndex"); }

VELA_FortranDictionary* global_dicptr_() {
  Called("global_dicptr_");
  VELA_FortranDictionary& legacy = Host::Current().legacy;
  return legacy.dataSource == nullptr ? nullptr : &legacy;
}

void setcurrentweightvar_(const std::int64_t* position) {
  Called("setcurrentweightvar_");
  Host::Current().legacyWeight = *position;
}

// The store does not go into the dictionary here: the library writes it there itself, next.
void SetActiveDataSource(VELA_DataSource* store, int /*mode*/) {
  Called("SetActiveDataSource");
  Host::Current().active = store;
}

// The context has nothing of its own: what it tells stands in the host.
struct ProcedureDataSource::Impl {};

ProcedureDataSource::ProcedureDataSource() { Called("ProcedureDataSource::ProcedureDataSource"); }

ProcedureDataSource::~ProcedureDataSource() {
  Released("ProcedureDataSource::~ProcedureDataSource");
}

bool ProcedureDataSource::FatalError() const {
  Called("ProcedureDataSource::FatalError");
  return Host::Current().diagnostics.FatalError();
}

bool ProcedureDataSource::Transforms() const {
  Called("ProcedureDataSource::Transforms");
  return Host::Current().hasPendingTransformations;
}

void ProcedureDataSource::ActiveDataSource(VELA_DataSource& dataSource, bool /*first*/,
                                           bool /*second*/) {
  Called("ProcedureDataSource::ActiveDataSource");
  Host::Current().active = &dataSource;
}
