#pragma once

#include <string>
#include <string_view>

#include "host/Data.h"
#include "standalone/Text/Text.h"

// Value cells of the standalone host: a number's cell is a double, a string's its bytes with a zero
// byte after them. So a string's cell tells where it ends: who is told no width reads up to the
// zero byte and never past it. No value holds a zero byte.

namespace velahost {

// The cell of a number; it lives as long as the number.
const OBS* CellOf(const double& number);
// The cell of a string; it lives as long as the string is unchanged.
const OBS* CellOf(const std::string& text);

double NumberIn(const OBS* cell);
// The string in the cell, of at most that width, without the blanks at its end.
std::string_view StringIn(const OBS* cell, int width);
// The text at the given width in bytes: filled with blanks or cut.
std::string AtWidth(std::string_view text, int width);

}  // namespace velahost
