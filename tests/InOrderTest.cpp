#include "standalone/Parallel/InOrder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace velahost {
namespace {

constexpr std::size_t kMany = 1000;

std::vector<std::size_t> FirstPlaces(std::size_t count) {
  std::vector<std::size_t> places;
  for (std::size_t place = 0; place < count; ++place) places.push_back(place);
  return places;
}

TEST(InOrder, GivesResultsInTheirOrderHoweverLongEachTakes) {
  for (const std::size_t count : {std::size_t{0}, std::size_t{1}, kMany}) {
    std::vector<std::size_t> taken;
    InOrder made(count, [](std::size_t place) {
      volatile std::size_t work = place % 7 == 0 ? 20000 : 0;
      while (work > 0) work = work - 1;
      return place;
    });
    made.TakeAll([&](std::size_t place) { taken.push_back(place); });
    EXPECT_EQ(taken, FirstPlaces(count));
  }
}

// What stands before the failure has been taken, and nothing after it.
TEST(InOrder, ThrowsAFailureWhenItsTurnComes) {
  std::vector<std::size_t> taken;
  const auto make = [](std::size_t place) {
    if (place >= kMany / 2) throw std::runtime_error(std::to_string(place));
    return place;
  };
  try {
    InOrder(kMany, make).TakeAll([&](std::size_t place) { taken.push_back(place); });
    FAIL() << "nothing was thrown";
  } catch (const std::runtime_error& failure) {
    EXPECT_EQ(failure.what(), std::to_string(kMany / 2));
  }
  EXPECT_EQ(taken, FirstPlaces(kMany / 2));
}

TEST(InOrder, EndsWhereTakingFails) {
  const auto make = [](std::size_t place) { return place; };
  const auto take = [](std::size_t place) {
    if (place == 3) throw std::runtime_error("full");
  };
  EXPECT_THROW(InOrder(kMany, make).TakeAll(take), std::runtime_error);
}

}  // namespace
}  // namespace velahost
