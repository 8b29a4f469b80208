#pragma once

#include "host/Data.h"

// Gives the working file the union of both collections of sets of the kind, sorted ascending by
// name as GetName returns it, byte by byte. Where both have a set of one name the source's stands
// whole, and of the working file's own sets of one name the first; the source's sets all stay.
//
// Without a source, and when the working file is its own source, nothing is read or saved.
// Exceptions of the host pass through; nothing is saved then.
void MergeVariableSets(VELA_DataSource& working, const VELA_DataSource* source, VarSetsType type);
