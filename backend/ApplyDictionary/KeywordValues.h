#pragma once

#include <string>

#include "backend/ApplyDictionary/ApplyDictionarySpec.h"

class KeywordSubcommand;

// Keywords of a subcommand, read with their values. The keyword is spelled as in the subcommand's
// keyword table, and so shown in messages. A wrong value is issued at level 3.

// Reads a keyword that takes no value: whether it is there. One with a value counts as there.
bool KeywordFlag(KeywordSubcommand& subcommand, const std::string& keyword);

// Reads a keyword that takes MERGE or REPLACE: ApplyNone when it is not there, bareMode when it
// stands without a value. With any other value it is not applied: ApplyNone.
ApplyMode KeywordMode(KeywordSubcommand& subcommand, const std::string& keyword,
                      ApplyMode bareMode);
