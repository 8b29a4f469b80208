#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

// Tests for a host: whether its operations keep what the headers of the interface demand, as far as
// that can be seen from outside. They know nothing of what the host's classes are made of.
//
// To use them, define OpenWorking on your host, and link that, the host's operations and the
// sources in this folder into a program. It tells what fails, a line each, and ends with status 1
// then.

namespace conformance {

// A variable that the host is to make. Values are texts: of numbers, whole ones in digits.
struct Sample {
  std::string name;
  int type = 0;  // 0 for a number, else the width of a string in bytes
  std::optional<std::string> label;
  std::vector<std::pair<std::string, std::string>> valueLabels;      // values and their labels
  std::vector<std::string> missing;                                  // single values, at most three
  std::vector<std::pair<std::string, std::string>> attributes = {};  // names and values
};

// The host's: makes a file with these variables, and no label, weight, documents or sets of its
// own, the working file, and begins a new command. What the last call made may go. Afterwards
// global_dicptr_()->dataSource is the file, which is no store.
void OpenWorking(const std::vector<Sample>& samples);

}  // namespace conformance
