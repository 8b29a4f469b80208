// A document through the reader, which finds the same in it in parts and as a whole. What is saved
// without a change has the bytes that were read; what is saved as a new document's dictionary comes
// back from there.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "fuzz/Expect.h"
#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/OpenCodebook.h"
#include "standalone/Codebook/ReadInParts.h"
#include "standalone/Data/DataSource.h"
#include "tests/ReadingDescription.h"

namespace {

void ReadAndSave(const std::string& text, const std::optional<std::string>& id) {
  const velahost::OpenedCodebook read = velahost::OpenCodebookText("read", text, id);
  const std::string saved = velahost::WriteCodebook(*read.dataSource);
  fuzz::Expect(saved == text, "other bytes are saved");
  const velahost::OpenedCodebook again = velahost::OpenCodebookText("saved", saved, id);
  fuzz::ExpectSameDictionary(*read.dataSource, *again.dataSource);
}

// What has been read, or that it was refused: of what is not well formed, the column depends on the
// pieces in which it was parsed. In parts of a few elements, which may turn out to be none: then
// nothing is said.
std::string Outcome(const std::string& text, bool inParts) {
  constexpr std::size_t kPartSize = 100;
  velahost::CodebookReading reading;
  reading.codebook = std::make_shared<velahost::Codebook>();
  reading.codebook->text = text;
  try {
    if (!inParts) {
      velahost::ReadWhole(reading);
    } else if (!velahost::ReadInParts(reading, kPartSize)) {
      return {};
    }
    return DescriptionOf(reading);
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
    ReadAndSave(text, std::nullopt);
    const velahost::OpenedCodebook read = velahost::OpenCodebookText("read", text, std::nullopt);
    ReadAndSave(text, HostAccess::Of(*read.dataSource).document->files.back().id);
  } catch (const velahost::CodebookError& error) {
    fuzz::Expect(error.what()[0] != '\0', "a refusal without a reason");
  }
  return 0;
}
