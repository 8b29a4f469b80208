#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Text/Hash.h"
#include "standalone/Xml/Document.h"
#include "standalone/Xml/Edits.h"

// The IDs of a document, and what refers to them.

namespace velahost {

class Codebook;

// The kinds of elements that are given IDs: var and varGrp.
enum class IdKind : std::uint8_t { Variable, Set };

// The IDs of a document, for new ones. The document is read through when the first is asked for.
class DocumentIds {
 public:
  // The codebook lives as long as this object.
  explicit DocumentIds(const Codebook& codebook) : codebook_(codebook) {}

  // An ID for an element of that name that the document does not have, nor refers to. It is made as
  // the document's last one of the kind is: from the name, or with the next number.
  std::string Make(IdKind kind, std::string_view name);

 private:
  // IDs that differ in a number alone.
  struct Numbering {
    std::string before;
    std::string after;
    std::size_t digits = 1;  // at least so many
    std::uint64_t last = 0;
  };
  // How the document makes the IDs of a kind; nothing: from names.
  using Habit = std::optional<Numbering>;

  void Collect();
  Habit HabitOf(IdKind kind) const;
  std::string MakeFromName(std::string_view name);

  const Codebook& codebook_;
  bool isCollected_ = false;
  TextSet ids_;
  TextMap<int> lastNumbers_;                    // after each name that was numbered
  std::array<std::optional<Habit>, 2> habits_;  // by kind; found when they are asked for
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
std::vector<Reference> FindReferences(const Document& document, const TextSet& ids);

// Edits the start tag so that what is left stands there.
void WriteReference(const Document& document, const Reference& reference, Edits& edits);

}  // namespace velahost
