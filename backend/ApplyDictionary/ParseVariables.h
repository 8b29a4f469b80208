#pragma once

#include <string>

struct ApplyDictionarySpec;
class ParsedCommand;
class VELA_DataSource;

// SOURCE VARIABLES and TARGET VARIABLES. A list that is read replaces what the field held, also
// when the host has reported errors in it. The keyword VARIABLES with nothing after it is reported
// at level 3, unless the host has reported an error there already. An absent subcommand changes
// nothing.

// Reads the subcommand, "SOURCE" or "TARGET", as variables that the data source has. Puts their
// columns into record.sourceVars or record.targetVars. A null data source changes nothing, and is
// not reported here: the host has reported that it could not be opened.
void ParseVariableIndices(ParsedCommand& command, ApplyDictionarySpec& record,
                          const VELA_DataSource* dataSource, const std::string& subcommandName);

// Reads TARGET into record.targetNames, as names of variables that the working file may have or
// not.
void ParseTargetNames(ParsedCommand& command, ApplyDictionarySpec& record,
                      const VELA_DataSource* working);
