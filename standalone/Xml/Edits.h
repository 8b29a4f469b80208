#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Xml/Encoding.h"

namespace velahost {

// Changes to the bytes of a text: stretches that are replaced, at positions in the text as it is.
class Edits {
 public:
  explicit Edits(Encoding encoding) : encoding_(encoding) {}

  // Replaces the bytes from begin to end by a text in UTF-8; an empty stretch is an insertion.
  // Insertions at one position stand in the order in which they were made, before a stretch
  // replaced there. A stretch within another is dropped with it; they do not overlap otherwise.
  void Replace(std::size_t begin, std::size_t end, std::string_view utf8);
  // The same with bytes of the document's encoding.
  void ReplaceBytes(std::size_t begin, std::size_t end, std::string_view bytes);

  // Adds all changes of others, after those that are there.
  void Add(const Edits& others) { AddBetween(others, 0, static_cast<std::size_t>(-1)); }
  // The same with those only that begin from begin on and before end.
  void AddBetween(const Edits& others, std::size_t begin, std::size_t end);

  // The bytes of the text from begin to end with the changes in them.
  // REQUIRES: no change reaches past begin or end.
  std::string Apply(std::string_view text, std::size_t begin, std::size_t end) const;

 private:
  struct Edit {
    std::size_t begin;
    std::size_t end;
    std::size_t bytesBegin;  // of what stands there then, in bytes_
    std::size_t bytesEnd;
  };

  std::string_view BytesOf(const Edit& edit) const {
    return std::string_view(bytes_).substr(edit.bytesBegin, edit.bytesEnd - edit.bytesBegin);
  }

  Encoding encoding_;
  std::string bytes_;        // of all changes, in the order in which they were made
  std::vector<Edit> edits_;  // likewise
};

}  // namespace velahost
