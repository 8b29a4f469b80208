// Runs a fuzzer on the files of a folder, as a test.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "fuzz/Expect.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  fuzz::Expect(argc == 2, "a folder is to be named");
  for (const auto& file : std::filesystem::directory_iterator(argv[1])) {
    std::cout << file.path().filename().string() << std::endl;  // shows which one ends it
    std::ifstream input(file.path(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(input), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
  return 0;
}
