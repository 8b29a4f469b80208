#include "standalone/Text/Hash.h"

#include <xxhash.h>

#include <cstdint>
#include <random>

namespace velahost {
namespace {

std::uint64_t Seed() {
  static const std::uint64_t seed = [] {
    std::random_device device;
    return (std::uint64_t{device()} << 32) | device();
  }();
  return seed;
}

}  // namespace

std::size_t HashOf(std::string_view text) {
  return static_cast<std::size_t>(XXH3_64bits_withSeed(text.data(), text.size(), Seed()));
}

std::size_t HashOf(double number) {
  const double same = number == 0 ? 0 : number;
  return static_cast<std::size_t>(XXH3_64bits_withSeed(&same, sizeof same, Seed()));
}

}  // namespace velahost
