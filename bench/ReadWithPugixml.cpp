#include <pugixml.hpp>

// read_with_pugixml SOURCE DOCUMENT OUTPUT: the least that a program by a fast XML library would do
// for the same result. It parses both documents, white space kept, and writes the second.
int main(int argc, char** argv) {
  if (argc != 4) return 2;
  constexpr unsigned int kKeepSpace = pugi::parse_default | pugi::parse_ws_pcdata;
  pugi::xml_document source;
  pugi::xml_document document;
  if (!source.load_file(argv[1], kKeepSpace)) return 1;
  if (!document.load_file(argv[2], kKeepSpace)) return 1;
  return document.save_file(argv[3], "", pugi::format_raw) ? 0 : 1;
}
