#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "host/Data.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Dictionary/Attributes.h"
#include "standalone/Dictionary/Documentation.h"

// Custom attributes as the library sees them. What documents a variable goes with them: each kind
// of it counts as one more attribute.

namespace velahost {

// Kinds of what documents a variable, and where it is read when it is carried to another one.
struct DocumentationPart {
  DocumentationSet kinds;
  std::shared_ptr<const CodebookFile> file;  // with the variable at the column; may be null
  std::size_t column = 0;
  std::shared_ptr<const Brought> brought;  // what the variable has been given; may be null
};

// The elements of the kinds.
std::vector<DocumentationElement> ElementsOf(const DocumentationPart& part);

// Adds to elements that documented a variable in its file those that it has been given: of these
// kinds, except the kinds that are there.
void AddGiven(std::vector<DocumentationElement>& elements, const Brought& given,
              DocumentationSet kinds);

// Takes out, with a warning that names the variable or set, what cannot stand in the document of
// the file that it is brought into; a null file takes everything.
void LeaveOut(std::vector<DocumentationElement>& elements, const CodebookFile* into,
              const std::string& name);
void LeaveOut(std::vector<std::string>& markup, const CodebookFile* into, const std::string& name);

}  // namespace velahost

struct DatasourceAttributes::Impl {
  velahost::CustomAttributes attributes;
  std::vector<velahost::DocumentationPart> documentation;  // no kind twice
};
