#pragma once

#include <cstddef>
#include <string>
#include <unordered_set>
#include <vector>

#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/Edits.h"

namespace velahost {

// An attribute somewhere in a document that refers to sets, and what is left of it without some.
struct SetReference {
  std::size_t begin;  // the start tag that it stands in
  std::size_t end;
  std::string attribute;
  std::string left;  // empty: the attribute goes
};

// The attributes in the document that refer to sets of the IDs, in document order. The document is
// read through.
std::vector<SetReference> FindSetReferences(const Codebook& codebook,
                                            const std::unordered_set<std::string>& ids);

// Edits the start tag so that what is left stands there.
void WriteSetReference(const Codebook& codebook, const SetReference& reference, Edits& edits);

}  // namespace velahost
