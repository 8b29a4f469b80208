#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Xml/Encoding.h"
#include "standalone/Xml/Namespaces.h"

namespace velahost {

// A document as it was read: from its text alone, which must not change.
struct DocumentReading {
  Reading reading;
  Namespaces namespaces;
  Encoding encoding;
  bool saysUtf16 = false;  // in bytes that are none
};

// Throws XmlError if no document begins with these bytes.
void CheckStart(std::string_view first);

// Reads a document: in parts if it is large and can be cut, else from end to end. The labels are
// those in the language, where an empty one is none; where no language is given, in that of the
// document's first label of a variable. Throws XmlError.
DocumentReading ReadDocument(std::string_view text, OpenFor use,
                             const std::optional<std::string>& language);

// A part has about so many bytes: what is read of it and the parser's copy fit into a processor's
// cache.
inline constexpr std::size_t kPartSize = std::size_t{1} << 18;

// Reads a document on as many threads as the machine has: it is cut into parts between variables,
// and the parser of the document leaves them out. A small one is read from end to end on the way.
// Nothing if a cut did not fall between elements, which shows only when the parts are read, or if
// anything else is wrong with the document after it was cut: ReadWhole says what. Throws XmlError
// for what is wrong before that. partSize is for tests.
std::optional<DocumentReading> ReadInParts(std::string_view text, OpenFor use,
                                           const std::string& language,
                                           std::size_t partSize = kPartSize);

// Reads a document from end to end. Throws XmlError.
DocumentReading ReadWhole(std::string_view text, OpenFor use, const std::string& language);

}  // namespace velahost
