#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "standalone/Xml/Document.h"
#include "standalone/Xml/Edits.h"

// The IDs of a document, and what refers to them.

namespace velahost {

// The IDs of a document, for new ones. The document is read through when the first is asked for.
class DocumentIds {
 public:
  // The document lives as long as this object.
  explicit DocumentIds(const Document& document) : document_(document) {}

  // An ID made from a name that the document does not have, nor refers to.
  std::string Make(std::string_view name);

 private:
  void Collect();

  const Document& document_;
  bool isCollected_ = false;
  std::unordered_set<std::string> ids_;
  std::unordered_map<std::string, int> lastNumbers_;  // after each name that was numbered
};

// An attribute somewhere in a document that refers to sets, and what is left of it without some.
struct Reference {
  std::size_t begin;  // the start tag that it stands in
  std::size_t end;
  std::string attribute;
  std::string left;  // empty: the attribute goes
};

// The attributes in the document that refer to sets of the IDs, in document order. The document is
// read through, unless there are no IDs.
std::vector<Reference> FindReferences(const Document& document,
                                      const std::unordered_set<std::string>& ids);

// Edits the start tag so that what is left stands there.
void WriteReference(const Document& document, const Reference& reference, Edits& edits);

}  // namespace velahost
