#include "standalone/Files/FileKind.h"

#include <algorithm>
#include <array>

#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

using namespace std::string_view_literals;

struct Signature {
  std::string_view bytes;
  const char* kind;
};
constexpr std::array kSignatures = {
    Signature{"\x1F\x8B"sv, "a file compressed by gzip"},
    Signature{"BZh"sv, "a file compressed by bzip2"},
    Signature{"\xFD"
              "7zXZ\0"sv,
              "a file compressed by xz"},
    Signature{"\x28\xB5\x2F\xFD"sv, "a file compressed by zstd"},
    Signature{"PK\3\4"sv, "a ZIP archive, or a document of an office program"},
    Signature{"7z\xBC\xAF\x27\x1C"sv, "a 7z archive"},
    Signature{"%PDF"sv, "a PDF document"}};

// What XML documents begin with in UTF-16, with a byte order mark or without.
constexpr std::array kUtf16 = {"\xFE\xFF"sv, "\xFF\xFE"sv, "<\0"sv, "\0<"sv};

bool IsBinary(std::string_view first) {
  return std::any_of(first.begin(), first.end(), [](char c) {
    return (c >= 0 && c < ' ' && !IsSpace(c) && c != '\f' && c != '\v') || c == 0x7F;
  });
}

// Whether the first lines have as many separators, one at least, of a kind.
bool IsTable(std::string_view first, char separator) {
  const std::size_t end = first.find('\n');
  if (end == std::string_view::npos) return false;
  const auto countIn = [separator](std::string_view line) {
    return std::count(line.begin(), line.end(), separator);
  };
  const std::string_view rest = first.substr(end + 1);
  const auto count = countIn(first.substr(0, end));
  return count > 0 && (rest.find('\n') == std::string_view::npos ||
                       countIn(rest.substr(0, rest.find('\n'))) == count);
}

}  // namespace

std::optional<std::string> KindOfOther(std::string_view first) {
  if (first.empty()) return "an empty file";
  const auto begins = [first](std::string_view bytes) { return first.starts_with(bytes); };
  const auto* const known =
      std::find_if(kSignatures.begin(), kSignatures.end(),
                   [&](const Signature& signature) { return begins(signature.bytes); });
  if (known != kSignatures.end()) return known->kind;
  if (std::any_of(kUtf16.begin(), kUtf16.end(), begins)) return std::nullopt;
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (begins(kByteOrderMark)) first.remove_prefix(kByteOrderMark.size());
  const std::string_view text = Trim(first);
  if (text.empty()) return "a file of white space alone";
  if (text.front() == '<') return std::nullopt;
  if (IsBinary(first)) return "a binary file";
  if (text.front() == '{' || text.front() == '[') return "a file of JSON";
  for (const char separator : {',', ';', '\t', '|'}) {
    if (IsTable(text, separator)) return "a table of values";
  }
  return "a file of plain text";
}

}  // namespace velahost
