#pragma once

#include "host/Data.h"

// Gives the working file the union of both collections of sets of the kind, sorted ascending by
// name as GetName returns it, byte by byte. All sets of the source stay as they are. The working
// file's own sets stay where the source has none of that name, and only the first of several with
// one name.
//
// Without a source, and when the working file is its own source, nothing is read or saved.
// Exceptions of the host pass through; nothing is saved then.
void MergeVariableSets(VELA_DataSource& working, const VELA_DataSource* source, VarSetsType type);
