// Writes the tables of CharacterCodes.cpp, on the machine that builds: reads names of encodings
// from standard input, and writes those that can be the encoding of a document, with the codes of
// their characters, to standard output.

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>

#include "standalone/Text/Utf8.h"
#include "standalone/Xml/CharacterCodes.h"

int main() {
  std::map<std::string, velahost::CharacterCodes> encodings;
  for (std::string name; std::cin >> name;) {
    name = velahost::UpperCase(name);
    if (const auto codes = velahost::FindCharacterCodes(name)) encodings.emplace(name, *codes);
  }
  if (encodings.empty()) {
    std::cerr << "write_character_codes: no encoding was named that a document can have\n";
    return EXIT_FAILURE;
  }
  std::map<velahost::CharacterCodes, std::size_t> places;
  std::cout << "constexpr std::uint16_t kCodes[][256] = {\n";
  for (const auto& [name, codes] : encodings) {
    if (!places.emplace(codes, places.size()).second) continue;
    std::cout << "{";
    for (const int code : codes) {
      if (code >= UINT16_MAX) {
        std::cerr << "write_character_codes: " << name << " has a character beyond 16 bits\n";
        return EXIT_FAILURE;
      }
      std::cout << (code < 0 ? "kNone" : std::to_string(code)) << ",";
    }
    std::cout << "},\n";
  }
  std::cout << "};\nconstexpr NamedEncoding kEncodings[] = {\n";
  for (const auto& [name, codes] : encodings) {
    std::cout << "{\"" << name << "\", " << places.at(codes) << "},\n";
  }
  std::cout << "};\n";
}
