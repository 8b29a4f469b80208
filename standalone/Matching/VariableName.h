#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velahost {

// A run of letters or of digits in a name.
struct NamePart {
  std::size_t position = 0;  // in the name, in bytes
  std::size_t length = 0;
  bool isNumber = false;
  std::string text;  // of a number without the zeros that fill it up
};

// The parts of a name in upper case. What is neither letter nor digit separates them.
std::vector<NamePart> PartsOf(std::string_view upperCaseName);

// The name without what separates its parts and without the zeros that fill up numbers: the same
// for Q1, Q01 and Q_1, but another one for Q_1_1 and Q11.
std::string PlainName(const std::vector<NamePart>& parts);

// How alike two names are by their parts, from 0 to 1. Letters count more than numbers.
double NameSimilarity(const std::vector<NamePart>& a, const std::vector<NamePart>& b);

}  // namespace velahost
