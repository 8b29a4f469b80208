#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Matching/Evidence.h"
#include "standalone/Matching/Profiles.h"
#include "standalone/Matching/RenameRule.h"

namespace velahost {

// The names of two variables, as they are spelled.
struct NamePair {
  std::string_view oldName;
  std::string_view newName;
};

// The rule by which one became the other, if there is one, and how many other pairs it explains.
struct Explanation {
  const RenameRule* rule = nullptr;
  std::size_t others = 0;
};

// Says in plain words what speaks for a pair, and what against it, the names first.
std::vector<std::string> ReasonsFor(const Evidence& evidence, const NamePair& names,
                                    const Explanation& explanation, const Profile& oldProfile,
                                    const Profile& newProfile);

}  // namespace velahost
