#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <shared_mutex>

#include "standalone/Data/Variable.h"

namespace velahost {
namespace {

// The format types that have been asked for. A type is its name's place in the list, from 1; a
// deque, so that a name stays where it is.
struct FormatTypes {
  std::shared_mutex mutex;
  std::deque<std::string> names = {"A", "HEX"};
  std::map<std::string, std::size_t, std::less<>> places = {{"A", 1}, {"HEX", 2}};
};

FormatTypes& Types() {
  static FormatTypes types;
  return types;
}

}  // namespace

VELA_Variable::FormatType FormatTypeNamed(std::string_view name) {
  FormatTypes& types = Types();
  {
    const std::shared_lock reading(types.mutex);
    const auto found = types.places.find(name);
    if (found != types.places.end()) return static_cast<VELA_Variable::FormatType>(found->second);
  }
  const std::unique_lock writing(types.mutex);
  // Another thread may have made the type meanwhile: its place stays then.
  const auto [place, isNew] = types.places.try_emplace(std::string(name), types.names.size() + 1);
  if (isNew) types.names.emplace_back(name);
  return static_cast<VELA_Variable::FormatType>(place->second);
}

const std::string& NameOf(VELA_Variable::FormatType type) {
  FormatTypes& types = Types();
  const std::shared_lock reading(types.mutex);
  return types.names[static_cast<std::size_t>(type) - 1];
}

}  // namespace velahost
