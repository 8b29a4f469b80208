#include "standalone/Text/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace velahost {
namespace {

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// For a well-formed decimal without a sign that is outside double's range: whether it underflows.
// It does when its first digit that is not zero stands after the decimal point.
bool IsTooSmall(std::string_view decimal) {
  const std::size_t mantissaEnd = std::min(decimal.find_first_of("eE"), decimal.size());
  const std::string_view mantissa = decimal.substr(0, mantissaEnd);
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const std::size_t first = mantissa.find_first_not_of("0.");
  if (first == std::string_view::npos) return true;

  std::string_view digits = decimal.substr(std::min(mantissaEnd + 1, decimal.size()));
  const bool isNegative = digits.starts_with('-');
  if (!digits.empty() && !IsDigit(digits.front())) digits.remove_prefix(1);
  long long exponent = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
  if (result.ec == std::errc::result_out_of_range) return isNegative;
  const auto distance = static_cast<long long>(point) - static_cast<long long>(first);
  return distance + (isNegative ? -exponent : exponent) <= 0;
}

}  // namespace

std::optional<double> ReadNumber(std::string_view text) {
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.remove_prefix(1);
  if (text.empty() || (!IsDigit(text.front()) && text.front() != '.')) return std::nullopt;

  double number = 0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  if (result.ptr != end || result.ec == std::errc::invalid_argument) return std::nullopt;
  if (result.ec == std::errc::result_out_of_range) {
    if (!IsTooSmall(text)) return std::nullopt;
    return 0.0;
  }
  if (!std::isfinite(number)) return std::nullopt;
  if (number == 0) return 0.0;
  return isNegative ? -number : number;
}

std::string WriteNumber(double number) {
  constexpr double kMostWhole = 1e15;  // up to here every whole number is a double
  if (std::abs(number) < kMostWhole && number == std::trunc(number)) {
    return std::to_string(static_cast<long long>(number));
  }
  // The shortest digits come as "d.ddde-07"; they are laid out anew around the decimal point.
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, std::abs(number),
                                    std::chars_format::scientific);
  const std::string_view written(buffer, static_cast<std::size_t>(result.ptr - buffer));
  const std::size_t e = written.find('e');
  std::string digits(1, written[0]);
  if (e > 2) digits += written.substr(2, e - 2);
  int exponent = 0;
  std::from_chars(buffer + e + 2, result.ptr, exponent);
  if (written[e + 1] == '-') exponent = -exponent;

  constexpr int kLeastPlain = -6;
  constexpr int kMostPlain = 20;
  const int count = static_cast<int>(digits.size());
  std::string text = number < 0 ? "-" : "";
  if (exponent < kLeastPlain || exponent > kMostPlain) {
    if (count > 1) digits.insert(1, 1, '.');
    text += digits + (exponent < 0 ? "e-" : "e+") + std::to_string(std::abs(exponent));
  } else if (exponent < 0) {
    text += "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  } else if (count <= exponent + 1) {
    text += digits + std::string(static_cast<std::size_t>(exponent + 1 - count), '0');
  } else {
    text += digits.insert(static_cast<std::size_t>(exponent) + 1, 1, '.');
  }
  return text;
}

std::optional<int> ReadInteger(std::string_view text, int least, int most) {
  if (text.empty() || !std::all_of(text.begin(), text.end(), IsDigit)) return std::nullopt;
  int number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || number < least || number > most) return std::nullopt;
  return number;
}

}  // namespace velahost
