#pragma once

#include <cstddef>

#include "standalone/Codebook/ReadCodebook.h"

namespace velahost {

// A part has about so many bytes: what is read of it and the parser's copy fit into a processor's
// cache.
inline constexpr std::size_t kPartSize = std::size_t{1} << 18;

// Reads the document of a reading's codebook, which has nothing but its path and text. A large
// document is cut into parts, between variables, that are read on as many threads as the machine
// has; the document's parser leaves them out. False if the document could not be cut there, which
// shows only when the parts are read, or if anything is wrong with it: what has been read is of no
// use then, and ReadWhole says what is wrong. Throws CodebookError and XmlError as ReadWhole does
// where nothing had been cut yet. partSize is for tests.
bool ReadInParts(CodebookReading& reading, std::size_t partSize = kPartSize);

// The same from end to end. Throws CodebookError and XmlError.
void ReadWhole(CodebookReading& reading);

}  // namespace velahost
