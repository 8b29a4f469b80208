#include "standalone/Dictionary/Documentation.h"

#include <array>
#include <cstddef>

namespace velahost {

const char* NameOf(Documentation kind) {
  // By the value of the enumerator.
  static constexpr std::array<const char*, kItemCount<Documentation>> kNames = {
      "imputation", "security", "embargo",  "respUnit", "anlysUnit", "qstn",
      "universe",   "txt",      "codInstr", "concept",  "notes"};
  return kNames[static_cast<std::size_t>(kind)];
}

}  // namespace velahost
