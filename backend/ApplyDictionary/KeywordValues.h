#pragma once

#include <string>

#include "backend/ApplyDictionary/ApplyDictionarySpec.h"

class KeywordSubcommand;

// Keywords of a subcommand, read with their values. The keyword is spelled as in the subcommand's
// keyword table, and so shown in messages. A wrong value is issued at level 3.

// Reads a keyword that takes no value. Returns whether it is there, also when it has a value.
bool KeywordFlag(KeywordSubcommand& subcommand, const std::string& keyword);

// Reads a keyword that takes MERGE or REPLACE. Returns ApplyNone when it is not there, bareMode
// when it has no value, and ApplyNone when it has any other value.
ApplyMode KeywordMode(KeywordSubcommand& subcommand, const std::string& keyword,
                      ApplyMode bareMode);
