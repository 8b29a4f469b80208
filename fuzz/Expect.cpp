#include "fuzz/Expect.h"

#include <cstddef>
#include <cstdlib>
#include <iostream>

#include "standalone/Dictionary/Changes.h"

namespace fuzz {
namespace {

template <typename Set>
void ExpectNone(const Set& differing, const std::string& of) {
  Expect(
      differing.Empty(),
      "not the same " + std::string(differing.Empty() ? "" : differing.Names()[0]) + " of " + of);
}

}  // namespace

void Expect(bool holds, const std::string& what) {
  if (holds) return;
  std::cerr << "Expected otherwise: " << what << std::endl;
  std::abort();
}

void ExpectSameDictionary(const velahost::Dictionary& a, const velahost::Dictionary& b) {
  Expect(a.variables.size() == b.variables.size(), "not as many variables");
  for (std::size_t i = 0; i < a.variables.size(); ++i) {
    const velahost::Variable& variable = *a.variables[i];
    const velahost::Variable& other = *b.variables[i];
    const std::string name = variable.name.String();
    Expect(variable.name == other.name, name + " is now " + other.name.String());
    Expect(variable.hasStatedWidth == other.hasStatedWidth, "not as stated a width of " + name);
    if (variable.type != other.type) {
      // What a string counts as goes with its longest value, where its width is not stated.
      const bool mayDiffer = !variable.IsNumeric() && !other.IsNumeric() && !other.hasStatedWidth;
      Expect(mayDiffer, "not the same type of " + name);
      continue;
    }
    ExpectNone(Differing(variable, other), name);
  }
  ExpectNone(Differing(a.file, b.file), "the file");
}

}  // namespace fuzz
