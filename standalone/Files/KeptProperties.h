#pragma once

#include <string>
#include <vector>

#include "standalone/Files/SaveTarget.h"

namespace velahost {

// Gives an open file what the one that it will replace has besides its bytes: extended attributes
// (user.*, and of security.* what labels a file), owner and group, access list and permissions.
// Where the group or the list cannot be kept, another group gets no more than everyone does.
// Returns what the system did not let it keep, such as "the owner". Throws CallFailure if the
// permissions cannot be set: the file may then be open to others.
// REQUIRES: target.isThere.
std::vector<std::string> KeepProperties(const SaveTarget& target, int file);

}  // namespace velahost
