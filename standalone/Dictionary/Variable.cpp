#include "standalone/Dictionary/Variable.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

// By the value of the enumerator.
constexpr std::array<const char*, 4> kLevelNames = {nullptr, "nominal", "ordinal", "scale"};
constexpr std::array<const char*, 6> kRoleNames = {"input", "target",    "both",
                                                   "none",  "partition", "split"};
constexpr std::array<const char*, 3> kAlignmentNames = {"left", "right", "center"};

template <class Enumeration, std::size_t n>
std::optional<Enumeration> Named(const std::array<const char*, n>& names, std::string_view name) {
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) return std::nullopt;
  return static_cast<Enumeration>(found - names.begin());
}

}  // namespace

const char* NameOf(Level level) { return kLevelNames[static_cast<std::size_t>(level)]; }

const char* NameOf(Role role) { return kRoleNames[static_cast<std::size_t>(role)]; }

const char* NameOf(Alignment alignment) {
  return kAlignmentNames[static_cast<std::size_t>(alignment)];
}

std::optional<Role> RoleNamed(std::string_view name) { return Named<Role>(kRoleNames, name); }

std::optional<Alignment> AlignmentNamed(std::string_view name) {
  return Named<Alignment>(kAlignmentNames, name);
}

void Variable::SetName(std::string_view newName) {
  Text cut(CutToBytes(newName, kNameBytes));
  Text upper(UpperCase(cut));
  name = std::move(cut);
  upperCaseName = upper == name ? name : std::move(upper);
}

}  // namespace velahost
