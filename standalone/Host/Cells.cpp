#include "standalone/Host/Cells.h"

#include <cstring>

#include "standalone/Text/Utf8.h"

namespace velahost {

const OBS* CellOf(const double& number) { return reinterpret_cast<const OBS*>(&number); }

const OBS* CellOf(const std::string& text) { return reinterpret_cast<const OBS*>(text.c_str()); }

double NumberIn(const OBS* cell) {
  double number = 0;
  std::memcpy(&number, cell, sizeof number);
  return number;
}

std::string_view StringIn(const OBS* cell, int width) {
  const auto* const text = reinterpret_cast<const char*>(cell);
  return TrimTrailingBlanks({text, strnlen(text, static_cast<std::size_t>(width))});
}

std::string AtWidth(std::string_view text, int width) {
  const auto bytes = static_cast<std::size_t>(width);
  std::string filled;
  filled.reserve(bytes);
  filled = text.substr(0, bytes);
  filled.resize(bytes, ' ');
  return filled;
}

}  // namespace velahost
