#pragma once

#include <string>

struct ApplyDictionarySpec;
class ParsedCommand;
class VELA_DataSource;

// SOURCE VARIABLES and TARGET VARIABLES. A list that is read takes the place of the field's
// contents, also when the host has reported errors in it. The keyword VARIABLES with nothing behind
// it is issued at level 3, unless the host has reported an error there already. An absent
// subcommand changes nothing.

// Reads the subcommand, "SOURCE" or "TARGET", as variables that the data source has: their columns
// go into record.sourceVars or record.targetVars. A null data source changes nothing either, in
// silence: that it could not be opened is reported elsewhere.
void ParseVariableIndices(ParsedCommand& command, ApplyDictionarySpec& record,
                          const VELA_DataSource* dataSource, const std::string& subcommandName);

// Reads TARGET as names for variables of the working file, which it may have or not, into
// record.targetNames.
void ParseTargetNames(ParsedCommand& command, ApplyDictionarySpec& record,
                      const VELA_DataSource* working);
