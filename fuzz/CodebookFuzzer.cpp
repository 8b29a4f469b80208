// A document through the reader. What is saved without a change has the bytes that were read; what
// is saved as a new document's dictionary comes back from there.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "fuzz/Expect.h"
#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/OpenCodebook.h"
#include "standalone/Data/DataSource.h"

namespace {

void ReadAndSave(const std::string& text, const std::optional<std::string>& id) {
  const velahost::OpenedCodebook read = velahost::OpenCodebookText("read", text, id);
  const std::string saved = velahost::WriteCodebook(*read.dataSource);
  fuzz::Expect(saved == text, "other bytes are saved");
  const velahost::OpenedCodebook again = velahost::OpenCodebookText("saved", saved, id);
  fuzz::ExpectSameDictionary(*read.dataSource, *again.dataSource);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  try {
    ReadAndSave(text, std::nullopt);
    const velahost::OpenedCodebook read = velahost::OpenCodebookText("read", text, std::nullopt);
    ReadAndSave(text, HostAccess::Of(*read.dataSource).document->files.back().id);
  } catch (const velahost::CodebookError& error) {
    fuzz::Expect(error.what()[0] != '\0', "a refusal without a reason");
  }
  return 0;
}
