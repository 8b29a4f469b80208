#pragma once

// A look at the calls that arrive at the standalone host, for tests of call order and of faults.

namespace velahost {

// Called at the start of every host operation with its name ("VELA_Variable::SetLabel"); a
// constructor is named "BpProcedure::BpProcedure". What it throws leaves the operation before that
// has changed anything.
using CallObserver = void (*)(const char* operation);

// Called at the start of every destructor of a host class ("BpProcedure::~BpProcedure").
using ReleaseObserver = void (*)(const char* operation) noexcept;

// Null, as a program leaves them, means that nobody looks.
extern CallObserver callObserver;
extern ReleaseObserver releaseObserver;

// What every host operation does first.
inline void Called(const char* operation) {
  if (callObserver != nullptr) callObserver(operation);
}

// What every destructor of a host class does first.
inline void Released(const char* operation) noexcept {
  if (releaseObserver != nullptr) releaseObserver(operation);
}

}  // namespace velahost
