#include "standalone/Host/Cells.h"

#include <cstring>
#include <new>

#include "standalone/Text/Utf8.h"

namespace velahost {

// The origin stands before the bytes. A string has a zero byte after them, so that it tells where
// it ends: no value holds one.

void Cell::Reserve(std::size_t bytes, Origin origin) {
  room_.resize(sizeof(Origin) + bytes);
  new (room_.data()) Origin(origin);
}

void Cell::SetNumber(double number, Origin origin) {
  Reserve(sizeof number, origin);
  std::memcpy(room_.data() + sizeof(Origin), &number, sizeof number);
}

void Cell::SetString(std::string_view text, int width, Origin origin) {
  const std::string filled = AtWidth(text, width);
  Reserve(filled.size() + 1, origin);
  std::memcpy(room_.data() + sizeof(Origin), filled.c_str(), filled.size() + 1);
}

const OBS* Cell::Address() const {
  return reinterpret_cast<const OBS*>(room_.data() + sizeof(Origin));
}

const Cell::Origin& OriginOf(const OBS* cell) {
  return *reinterpret_cast<const Cell::Origin*>(reinterpret_cast<const std::byte*>(cell) -
                                                sizeof(Cell::Origin));
}

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
