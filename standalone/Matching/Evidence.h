#pragma once

#include <cstddef>
#include <optional>

#include "standalone/Matching/Profiles.h"
#include "standalone/Matching/ValueSets.h"

namespace velahost {

// What speaks for and against that a variable of the new file comes from one of the old. Weights
// are logarithms of odds: they add up, 0 says nothing, and ln 9 makes nine to one.
struct Evidence {
  std::optional<double> label;     // how alike the labels are, where both have one
  std::optional<double> question;  // the same of the questions
  std::optional<ValueSets::Agreement> values;
  bool sameType = true;
  double content = 0;  // the weight of these

  double name = 0;                  // the weight of the names
  std::optional<std::size_t> rule;  // by which one name becomes the other, as most others do
  double order = 0;                 // the weight of the places in the files

  double WithoutOrder() const { return content + name; }
  double Weight() const { return WithoutOrder() + order; }
};

// From where on labels and questions are told as being much alike.
inline constexpr double kMuchAlike = 0.6;

// Compares what two variables say, leaving names and places aside.
Evidence CompareContent(Profiles& profiles, Column oldColumn, Column newColumn);

// What names count that no rule explains, by their parts.
double WeightOfNames(const Profile& a, const Profile& b);

}  // namespace velahost
