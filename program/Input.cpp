#include "program/Input.h"

#include <unistd.h>

#include <cstddef>

namespace applydic {

bool IsInput(const std::string& specification) {
  const std::string path = specification.substr(0, specification.find('#'));
  return path == "-" || path == "/dev/stdin";
}

velahost::CodebookBytes ReadFileOrInput(const std::string& specification) {
  if (!IsInput(specification)) return velahost::ReadCodebook(specification);
  std::optional<std::string> id;
  const std::size_t hash = specification.find('#');
  if (hash != std::string::npos) id = specification.substr(hash + 1);
  return velahost::ReadCodebook(STDIN_FILENO, "standard input", id);
}

velahost::CodebookFile OpenFileOrInput(const std::string& specification, velahost::OpenFor use,
                                       const std::optional<std::string>& language) {
  return velahost::OpenCodebook(ReadFileOrInput(specification), use, language);
}

}  // namespace applydic
