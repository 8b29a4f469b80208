#include "standalone/Text/Numbers.h"

#include <fast_float/fast_float.h>
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <system_error>

namespace velahost {
namespace {

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// A positive number: its digits, the first and the last not 0, with a point after the first one,
// times ten to the exponent.
struct Decimal {
  std::string digits;
  int exponent;
};

// The fewest digits that are read as the number again.
Decimal ShortestDecimal(double number) {
  const std::string written = fmt::format("{}", number);  // "123.45" or "1.2345e-07"
  const std::size_t e = std::min(written.find('e'), written.size());
  const std::size_t point = std::min(written.find('.'), e);
  std::string digits;
  std::copy_if(written.data(), written.data() + e, std::back_inserter(digits), IsDigit);
  const std::size_t first = digits.find_first_not_of('0');
  digits = digits.substr(first, digits.find_last_not_of('0') + 1 - first);

  int exponent = 0;
  const bool isSmall = written.substr(e).starts_with("e-");
  if (e < written.size()) {
    std::from_chars(written.data() + e + 2, written.data() + written.size(), exponent);
  }
  const int behindFirst = static_cast<int>(point) - 1 - static_cast<int>(first);
  return {std::move(digits), (isSmall ? -exponent : exponent) + behindFirst};
}

}  // namespace

std::optional<double> ReadNumber(std::string_view text) {
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.remove_prefix(1);
  if (text.empty() || (!IsDigit(text.front()) && text.front() != '.')) return std::nullopt;

  double number = 0;
  const char* const end = text.data() + text.size();
  const auto result = fast_float::from_chars(text.data(), end, number);
  if (result.ptr != end || result.ec == std::errc::invalid_argument) return std::nullopt;
  // Out of range it is infinite or, where it is too small, 0.
  if (!std::isfinite(number)) return std::nullopt;
  if (number == 0) return 0.0;
  return isNegative ? -number : number;
}

std::string WriteNumber(double number) {
  constexpr double kMostWhole = 1e15;  // up to here every whole number is a double
  if (std::abs(number) < kMostWhole && number == std::trunc(number)) {
    return std::to_string(static_cast<long long>(number));
  }
  auto [digits, exponent] = ShortestDecimal(std::abs(number));
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
