#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Codebook/Encoding.h"

namespace velahost {

// Changes to the bytes of a text: stretches that are replaced, at positions in the text as it is.
class Edits {
 public:
  explicit Edits(Encoding encoding) : encoding_(encoding) {}

  // Replaces the bytes from begin to end by a text in UTF-8; an empty stretch is an insertion.
  // Insertions at one position stand in the order in which they were made, before a stretch
  // replaced there. A stretch within another is dropped with it; they do not overlap otherwise.
  void Replace(std::size_t begin, std::size_t end, std::string utf8);
  // The same with bytes of the document's encoding.
  void ReplaceBytes(std::size_t begin, std::size_t end, std::string bytes);

  // Adds those changes of others that begin from begin on and before end. REQUIRES: the others have
  // been sorted.
  void TakeOver(const Edits& others, std::size_t begin, std::size_t end);
  // Brings the changes into the order of the text.
  void Sort();

  bool Empty() const { return edits_.empty(); }
  // The bytes of the text from begin to end with the changes in them.
  // REQUIRES: no change reaches past begin or end.
  std::string Apply(std::string_view text, std::size_t begin, std::size_t end);

 private:
  struct Edit {
    std::size_t begin;
    std::size_t end;
    std::string bytes;
  };

  Encoding encoding_;
  std::vector<Edit> edits_;
};

}  // namespace velahost
