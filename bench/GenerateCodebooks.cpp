#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <numeric>
#include <random>
#include <string>
#include <vector>

// generate_codebooks N FOLDER writes FOLDER/source.xml and FOLDER/working.xml, codebooks of N
// variables. In the source each has a label, six value labels, a missing value, a level and a
// documentation text. The working codebook has the same names in another case and a shuffled order,
// with bare labels. The same N gives the same bytes.

namespace {

constexpr const char* kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<codeBook xmlns=\"ddi:codebook:2_5\" version=\"2.5\">\n"
    "  <fileDscr ID=\"F1\">\n"
    "    <fileTxt><fileName>d.dat</fileName></fileTxt>\n"
    "  </fileDscr>\n"
    "  <dataDscr>\n";
constexpr const char* kTail = "  </dataDscr>\n</codeBook>\n";

struct Category {
  int value;
  const char* label;
};
constexpr Category kCategories[] = {
    {1, "Strongly agree"},    {2, "Agree"},    {3, "Neither agree nor disagree"}, {4, "Disagree"},
    {5, "Strongly disagree"}, {9, "No answer"}};

std::string SixDigits(int number) {
  const std::string digits = std::to_string(number);
  return digits.size() < 6 ? std::string(6 - digits.size(), '0') + digits : digits;
}

std::string Location(int number) {
  return "      <location StartPos=\"" + std::to_string(2 * number + 1) + "\" EndPos=\"" +
         std::to_string(2 * number + 2) + "\" width=\"2\"/>\n";
}

void WriteSourceVariable(std::ostream& out, int number) {
  out << "    <var ID=\"V" << number << "\" name=\"Q" << SixDigits(number)
      << "_item\" files=\"F1\" dcml=\"0\" intrvl=\"discrete\" nature=\"ordinal\">\n"
      << Location(number) << "      <labl>Question " << number
      << ": agreement with the statement</labl>\n"
         "      <invalrng><item VALUE=\"9\"/></invalrng>\n"
         "      <txt>Respondents were asked in wave "
      << number % 7
      << " how far they agree with the statement read to them by the interviewer.</txt>\n";
  for (const Category& category : kCategories) {
    out << "      <catgry>\n        <catValu>" << category.value << "</catValu>\n        <labl>"
        << category.label << "</labl>\n      </catgry>\n";
  }
  out << "      <varFormat type=\"numeric\" schema=\"other\"/>\n    </var>\n";
}

void WriteWorkingVariable(std::ostream& out, int number) {
  out << "    <var ID=\"W" << number << "\" name=\"q" << SixDigits(number)
      << "_ITEM\" files=\"F1\" dcml=\"0\" intrvl=\"discrete\">\n"
      << Location(number) << "      <labl>q" << number
      << "</labl>\n      <varFormat type=\"numeric\" schema=\"other\"/>\n    </var>\n";
}

template <typename WriteVariable>
bool WriteCodebook(const std::string& path, const std::vector<int>& numbers, WriteVariable write) {
  std::ofstream out(path, std::ios::binary);
  out << kHead;
  for (const int number : numbers) write(out, number);
  out << kTail << std::flush;
  return out.good();
}

}  // namespace

int main(int argc, char** argv) {
  const int count = argc == 3 ? std::atoi(argv[1]) : 0;
  if (count <= 0) {
    std::cerr << "Usage: generate_codebooks N FOLDER\n";
    return 2;
  }
  const std::string folder = argv[2];
  std::vector<int> numbers(static_cast<std::size_t>(count));
  std::iota(numbers.begin(), numbers.end(), 0);
  if (!WriteCodebook(folder + "/source.xml", numbers, WriteSourceVariable)) return 1;
  std::shuffle(numbers.begin(), numbers.end(), std::mt19937(1));
  if (!WriteCodebook(folder + "/working.xml", numbers, WriteWorkingVariable)) return 1;
  return 0;
}
