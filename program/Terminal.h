#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace applydic {

// Whether to write in colour.
enum class ColorWhen : std::uint8_t { Auto, Always, Never };

// What text for people is laid out for.
struct Page {
  // In columns; nothing where lines are as long as they are: what is not a terminal has no width.
  std::optional<std::size_t> width;
  bool hasColor = false;
};

// The page that standard output is, or for isAside standard error. A terminal has the width that
// COLUMNS says, else its own. ColorWhen::Auto is colour on a terminal, unless the user has set
// NO_COLOR or the terminal is a dumb one.
Page PageOfOutput(ColorWhen color, bool isAside = false);

}  // namespace applydic
