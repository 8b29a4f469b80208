#pragma once

struct ApplyDictionarySpec;
class BpProcedure;
class VELA_DataSource;

// Carries out the command: pairs variables of the source with variables of the working file,
// applies the selected properties to each pair, adds new variables at the end of the working file,
// and then applies the file-level items.
//
// Variables are paired in one of three forms:
// - with targetNames, the first source variable onto each name; a name that the host's look-up does
//   not find in the working file becomes a new variable like it;
// - with sourceVars and targetVars, the first source variable onto each target, whatever its name;
// - otherwise by name without regard to case: sourceVars, or targetVars if that is empty, or all
//   variables of the source if both are. With newVars those without a namesake are added; otherwise
//   they are passed over in silence. When nothing was paired or added though a property is
//   selected, a warning of level 2 is issued.
//
// No two variables of one name are added, in whatever case: the second is passed over in silence.
//
// record is only read. source is not null, and may be the same data source as working. With newVars
// working is a DEDataStore; when it must take a variable and is none, std::bad_cast is thrown.
// procedure is the open frame, as for Parse; nothing is written to it. Exceptions of the host
// pass through, and what was changed stays changed.
void Apply(ApplyDictionarySpec& record, VELA_DataSource& working, const VELA_DataSource* source,
           BpProcedure& procedure);
