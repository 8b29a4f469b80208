#pragma once

#include "standalone/Codebook/ReadCodebook.h"

namespace velahost {

// Reads the document of a reading's codebook, which has nothing but its path and text. A large
// document is cut into parts, between variables, that are read on as many threads as the machine
// has; the document's parser leaves them out. False if the document could not be cut there, which
// shows only when the parts are read, or if anything is wrong with it: what has been read is of no
// use then, and ReadWhole says what is wrong. Throws CodebookError and XmlError as ReadWhole does
// where nothing had been cut yet.
bool ReadInParts(CodebookReading& reading);

// The same from end to end. Throws CodebookError and XmlError.
void ReadWhole(CodebookReading& reading);

}  // namespace velahost
