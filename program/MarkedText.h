#pragma once

#include <string>
#include <string_view>

#include "standalone/Syntax/Diagnostics.h"
#include "standalone/Text/Message.h"

namespace applydic {

// The line of a text that a place is in, indented, and below it a mark under the place: two lines
// for a terminal, each with a line feed. Of a long line the part around the place. Empty where the
// text has no such place, or nothing but blanks there.
std::string MarkedText(std::string_view text, velahost::TextPlace place);
// The same of a line; empty for none.
std::string MarkedText(const velahost::MarkedLine& line);

}  // namespace applydic
