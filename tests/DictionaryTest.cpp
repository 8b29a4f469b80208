#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "standalone/Dictionary/ValueLabels.h"
#include "standalone/Dictionary/VariableNames.h"

// What is found among few and among many.

namespace {

using velahost::Text;
using velahost::ValueLabels;

TEST(Dictionary, FindsEveryValueAndNameAtEverySize) {
  ValueLabels numbers(0);
  ValueLabels strings(9);
  velahost::VariableNames names;
  for (int size = 0; size < 70; ++size) {
    const std::string name = "v" + std::to_string(size);
    numbers.Add({size * 0.5, Text(), Text(name)});
    strings.Add({0, Text(name), Text(name)});
    velahost::Variable variable;
    variable.SetName(name);
    names.Add(variable);
    for (int i = 0; i <= size; ++i) {
      const std::string known = "v" + std::to_string(i);
      ASSERT_NE(numbers.Find(i * 0.5), nullptr) << i << " of " << size;
      EXPECT_EQ(numbers.Find(i * 0.5)->label, known);
      ASSERT_NE(strings.Find(known + "  "), nullptr) << i << " of " << size;
      EXPECT_EQ(strings.PlaceOf(strings.Find(known)), static_cast<std::size_t>(i));
      EXPECT_EQ(names.Find("V" + std::to_string(i)), i);
    }
    EXPECT_EQ(numbers.Find(-1), nullptr);
    EXPECT_EQ(strings.Find("v"), nullptr);
    EXPECT_EQ(names.Find("v"), -1);
  }
}

TEST(Dictionary, CutsValuesToANarrowerWidthAndKeepsTheFirst) {
  const auto wide = std::make_shared<ValueLabels>(4);
  wide->Add({0, Text("ab"), Text("first")});
  wide->Add({0, Text("abcd"), Text("second")});
  wide->Add({0, Text("c de"), Text("third")});
  const velahost::SharedValueLabels narrow = AtWidth(wide, 2);
  ASSERT_EQ(narrow->Size(), 2U);
  EXPECT_EQ(narrow->Find("ab")->label, "first");
  EXPECT_EQ(narrow->Find("c")->label, "third");
}

}  // namespace
