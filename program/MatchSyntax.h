#pragma once

#include <optional>
#include <string>
#include <vector>

#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Matching/Matching.h"

namespace applydic {

// The files of a match, as the user names them, and their dictionaries.
struct MatchFiles {
  const std::string& oldName;
  const std::string& newName;
  const velahost::Dictionary& oldFile;
  const velahost::Dictionary& newFile;
  const std::optional<std::string>& language;  // of the labels, if the user names one
};

// What speaks for a proposal and what against it, as one text: reasons and rivals.
std::string ReasonText(const velahost::Proposal& proposal, const MatchFiles& files);

// Returns the proposals as a file of commands, to be read by people and run by `applydic apply -f`:
// one on a line, in their order, with the reasons behind it as a comment. Those that are not
// certain are comments themselves, and so are those whose names cannot stand in a command. Throws
// Failure where the old file's name cannot.
std::string SyntaxText(const velahost::Matches& matches, const MatchFiles& files);

}  // namespace applydic
