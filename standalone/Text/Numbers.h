#pragma once

#include <optional>
#include <string>
#include <string_view>

// Numbers as texts, without regard to locale.

namespace velahost {

// The finite decimal that the whole text is, with sign and exponent if any; nothing for any other
// text, white space around it included. A negative zero reads as zero; a decimal too small for a
// double reads as zero, one too large as nothing.
std::optional<double> ReadNumber(std::string_view text);

// The shortest decimal that reads back as the number: plain digits where the decimal point is near
// ("100000", "0.25", "1e+21", "1e-7"). REQUIRES: a finite number.
std::string WriteNumber(double number);

// The whole number, in plain digits only, that the text is, if it lies in the bounds.
std::optional<int> ReadInteger(std::string_view text, int least, int most);

}  // namespace velahost
