#pragma once

#include <string>
#include <string_view>

namespace applydic {

// What the command APPLY DICTIONARY is, for a terminal of 80 columns: its subcommands, keywords and
// rules, with examples.
std::string CommandHelp();

// Messages with what happened, why, and what to do: all of them, or those that contain the text,
// whatever its case, or the one that it is. Throws Failure where there is none.
std::string MessagesHelp(std::string_view text);

}  // namespace applydic
