#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "tests/HostRun.h"

// The dictionary as JSON, of files that are large.

namespace {

constexpr int kMany = 2000;

velahost::Dictionary DictionaryWithVariables(int count) {
  std::string text = "<codeBook><dataDscr>";
  for (int i = 0; i < count; ++i) text += "<var name='v" + std::to_string(i) + "'/>";
  text += "</dataDscr></codeBook>";
  return velahost::OpenCodebook("many", velahost::Bytes(text), std::nullopt).dictionary;
}

TEST(DictionaryJson, IsHeldOneVariableAtATime) {
  const velahost::Dictionary dictionary = DictionaryWithVariables(kMany);
  std::size_t pieces = 0;
  std::size_t longest = 0;
  applydic::WriteDictionaryJson(dictionary, NoDocumentation, [&](std::string_view piece) {
    ++pieces;
    longest = std::max(longest, piece.size());
  });
  EXPECT_GE(pieces, static_cast<std::size_t>(kMany));
  EXPECT_LT(longest, 1000U) << "of one variable";
}

TEST(DictionaryJson, IsLaidOutAsOneObject) {
  for (const int count : {0, 1, 3}) {
    const velahost::Dictionary dictionary = DictionaryWithVariables(count);
    const std::string text = DictionaryJsonText(dictionary);
    EXPECT_EQ(text, nlohmann::ordered_json::parse(text).dump(2) + "\n");
  }
}

// If each attribute were looked for among those before it, this would take longer than a test may,
// with the sanitizers at least.
TEST(DictionaryJson, TakesAttributesWithoutLookingForThem) {
  constexpr int kAttributes = 200'000;
  velahost::Dictionary dictionary = DictionaryWithVariables(1);
  for (int i = 0; i < kAttributes; ++i) {
    dictionary.file.attributes.push_back(
        {velahost::Text(std::to_string(i)), {velahost::Text("value")}});
  }
  const std::string text = DictionaryJsonText(dictionary);
  std::size_t at = 0;
  for (int i = 0; i < kAttributes && at != std::string::npos; ++i) {
    at = text.find("\"" + std::to_string(i) + "\": [\n", at);
  }
  EXPECT_NE(at, std::string::npos) << "in their order";
}

}  // namespace
