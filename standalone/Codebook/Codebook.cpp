#include "standalone/Codebook/Codebook.h"

#include <algorithm>

namespace velahost {

std::size_t Codebook::LineOf(std::size_t position) const {
  // A line ends with a line feed, with a carriage return, or with both.
  std::size_t line = 1;
  for (std::size_t i = 0; i < position; ++i) {
    const bool beforeLineFeed = i + 1 < text.size() && text[i + 1] == '\n';
    if (text[i] == '\n' || (text[i] == '\r' && !beforeLineFeed)) ++line;
  }
  return line;
}

}  // namespace velahost
