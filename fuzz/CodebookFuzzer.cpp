// A document through the reader, which finds the same in it in parts and as a whole. What is saved
// without a change has the bytes that were read; what is saved as a new document's dictionary comes
// back from there.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

#include "fuzz/Expect.h"
#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Codebook/Parts.h"
#include "standalone/Files/File.h"
#include "tests/ReadingDescription.h"

namespace {

using velahost::Bytes;
using velahost::CodebookFile;

// Returns the ID of the document's last file.
std::string ReadAndSave(const std::string& text, const std::optional<std::string>& id) {
  const CodebookFile read = velahost::OpenCodebook("read", Bytes(text), id);
  const std::string saved = velahost::WriteCodebook(read, read.dictionary);
  fuzz::Expect(saved == text, "other bytes are saved");
  const CodebookFile again = velahost::OpenCodebook("saved", Bytes(saved), id);
  fuzz::ExpectSameDictionary(read.dictionary, again.dictionary);
  return read.codebook->files.back().id.String();
}

// What has been read, or that it was refused: of what is not well formed, the column depends on the
// pieces in which it was parsed. In parts of a few elements, which may turn out to be none: then
// nothing is said.
std::string Outcome(const std::string& text, bool inParts) {
  constexpr std::size_t kPartSize = 100;
  try {
    if (!inParts) return DescriptionOf(velahost::ReadWhole(text, velahost::OpenFor::Writing, ""));
    const auto reading = velahost::ReadInParts(text, velahost::OpenFor::Writing, "", kPartSize);
    return reading ? DescriptionOf(*reading) : std::string();
  } catch (const std::runtime_error&) {
    return "refused";
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::string inParts = Outcome(text, true);
  fuzz::Expect(inParts.empty() || inParts == Outcome(text, false), "parts read as something else");
  try {
    ReadAndSave(text, ReadAndSave(text, std::nullopt));
  } catch (const velahost::FileError& error) {
    fuzz::Expect(error.what()[0] != '\0', "a refusal without a reason");
  }
  return 0;
}
