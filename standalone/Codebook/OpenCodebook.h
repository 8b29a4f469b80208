#pragma once

#include <sys/types.h>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/Data.h"

namespace velahost {

// A codebook that cannot be opened, read, accepted or saved. what() names the file, the place where
// there is one, the reason, and what to do where that is not plain.
class CodebookError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Which file it is, however its path is spelled.
struct FileIdentity {
  dev_t device = 0;
  ino_t inode = 0;

  bool operator==(const FileIdentity&) const = default;
};

// Something in a codebook that was not taken into the dictionary: a message text with placeholders
// and what fills them.
struct ReadingWarning {
  std::string text;
  std::vector<std::string> arguments;
};

struct OpenedCodebook {
  std::unique_ptr<VELA_DataSource> dataSource;
  std::string path;  // of the document, without #ID
  FileIdentity identity;
  std::vector<ReadingWarning> warnings;
};

// What a codebook is opened for. One that may be written holds its elements as trees, which takes
// two or three times the room of the document.
enum class OpenFor { Reading, Writing };

// Opens the data file that the specification names: a path, which means the document's first data
// file, or path#ID. Throws CodebookError.
OpenedCodebook OpenCodebook(const std::string& specification, OpenFor use = OpenFor::Writing);

// The same from the bytes of a document: the data file of that ID, or the first. The path is what
// messages name; the document has no identity.
OpenedCodebook OpenCodebookText(const std::string& path, std::string text,
                                const std::optional<std::string>& id,
                                OpenFor use = OpenFor::Writing);

// Takes the bytes of a document, piece by piece, in order.
using ByteSink = std::function<void(std::string_view bytes)>;

// Writes the document of a data source that OpenCodebook gave for writing, or of a store over it,
// with every change since then; what was not changed stays byte for byte. The data source stays as
// it is. What the sink throws passes on.
void WriteCodebook(const VELA_DataSource& dataSource, const ByteSink& sink);
// The same as one text.
std::string WriteCodebook(const VELA_DataSource& dataSource);

}  // namespace velahost
