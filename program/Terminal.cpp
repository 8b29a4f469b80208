#include "program/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <string_view>

namespace applydic {
namespace {

constexpr std::size_t kUsualWidth = 80;
constexpr std::size_t kLeastWidth = 40;  // a listing needs as much

// The value of an environment variable; empty where there is none.
std::string_view Environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::size_t WidthOfTerminal(int descriptor) {
  const std::string_view columns = Environment("COLUMNS");
  std::size_t width = 0;
  std::from_chars(columns.data(), columns.data() + columns.size(), width);
  winsize size = {};
  if (width == 0 && ioctl(descriptor, TIOCGWINSZ, &size) == 0) width = size.ws_col;
  if (width == 0) return kUsualWidth;
  return width < kLeastWidth ? kLeastWidth : width;
}

bool HasColor(ColorWhen color, bool isTerminal) {
  if (color != ColorWhen::Auto) return color == ColorWhen::Always;
  return isTerminal && Environment("NO_COLOR").empty() && Environment("TERM") != "dumb";
}

}  // namespace

Page PageOfOutput(ColorWhen color, bool isAside) {
  const int descriptor = isAside ? STDERR_FILENO : STDOUT_FILENO;
  const bool isTerminal = isatty(descriptor) == 1;
  Page page;
  if (isTerminal) page.width = WidthOfTerminal(descriptor);
  page.hasColor = HasColor(color, isTerminal);
  return page;
}

}  // namespace applydic
