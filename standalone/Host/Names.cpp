#include <cstddef>
#include <cstring>
#include <string_view>

#include "host/Data.h"
#include "standalone/Host/Calls.h"
#include "standalone/Text/Utf8.h"

char* VELAMBzstncpy_A(char* buffer, const char* text, std::size_t bound) {
  velahost::Called("VELAMBzstncpy_A");
  if (bound == 0) return buffer;
  // No character is longer than four bytes, so this much of the text shows where to cut it.
  const std::string_view beginning(text, strnlen(text, bound + 3));
  const std::string_view cut = velahost::CutToBytes(beginning, bound - 1);
  std::memmove(buffer, cut.data(), cut.size());
  buffer[cut.size()] = '\0';
  return buffer;
}

char* VELAMBstrupr_A(char* text) {
  velahost::Called("VELAMBstrupr_A");
  velahost::UpperCaseInPlace(text);
  return text;
}
