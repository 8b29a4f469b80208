#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "standalone/Codebook/Codebook.h"

namespace velahost {

// The IDs of a document, for new ones. The document is read through when the first is asked for.
class DocumentIds {
 public:
  explicit DocumentIds(const Codebook& codebook) : codebook_(codebook) {}

  // An ID made from a name that the document does not have, nor refers to.
  std::string Make(std::string_view name);

 private:
  void Collect();

  const Codebook& codebook_;
  bool collected_ = false;
  std::unordered_set<std::string> ids_;
  std::unordered_map<std::string, int> lastNumbers_;  // behind each name that was numbered
};

}  // namespace velahost
