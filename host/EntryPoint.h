#pragma once

// The library itself.

// The version of the interface between the library and its host: of everything that the headers in
// this folder declare. It changes when a host must be changed, or only built again, to go on; the
// library's file name ends in it.
#define VELAWAPD_INTERFACE_VERSION 1

extern "C" {

// Runs one APPLY DICTIONARY command, which the host has read. The host calls it once per command,
// on one thread, with an active dictionary. What came of it, the host knows by the diagnostics that
// were issued.
//
// Everything that the run made is released when it returns, except a store, which is the host's. An
// ErrorText that the host throws while the frame is open is reported and ends the run; any other
// exception passes on to the host, as does an ErrorText of the report itself. What was changed
// before stays changed.
void applydic_();
}
