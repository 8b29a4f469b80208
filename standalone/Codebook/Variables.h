#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "standalone/Codebook/CarriedMarkup.h"
#include "standalone/Codebook/Labels.h"
#include "standalone/Dictionary/Changes.h"
#include "standalone/Dictionary/Variable.h"
#include "standalone/Text/Text.h"
#include "standalone/Xml/Document.h"
#include "standalone/Xml/Editor.h"
#include "standalone/Xml/NewElement.h"

// Variables: the var elements. What a var says in elements of its own is read and written by the
// sources of these.

namespace velahost {

// A variable as its element describes it.
struct VariableReading {
  std::shared_ptr<Variable> variable;  // of an empty name where there is neither a name nor an ID
  Text id;
  Text files;                   // @files: IDs
  std::vector<Text> locations;  // each location/@fileid: one ID
  bool weights = false;         // wgt="wgt"
  // What is not in the dictionary: missing values that no such variable can have, labels of values
  // that are longer than the string, and labels of no value.
  bool hasOtherMissing = false;
  bool hasTooLongCategory = false;
  std::size_t valuelessCategories = 0;
};

// Makes room for variables that are read together, so that they lie together.
class VariablePool {
 public:
  // A new variable; it lives as long as one of those that lie beside it.
  std::shared_ptr<Variable> Add();

 private:
  static constexpr std::size_t kInBlock = 64;
  using Block = std::array<Variable, kInBlock>;

  std::shared_ptr<Block> block_;
  std::size_t used_ = kInBlock;  // of the block
};

VariableReading ReadVariable(Element var, VariablePool& variables, LabelReader& labels,
                             TextArena& texts);

// Edits a var, which was read as `read`, so that it reads as the variable is now, which differs in
// the properties that have changed. What reads so already is not touched. place is that in the var.
void WriteVariable(Element var, const Variable& read, const Variable& now, PropertySet changed,
                   const Languages& languages, const MarkupPlace& place, Editor& editor);

// What the var of a variable that has been added says of its place in the document.
struct NewVariablePlace {
  std::string id;
  std::string files;         // as @files; may be empty
  std::string locationFile;  // the file that a location names; may be empty
  bool weights = false;
  std::vector<std::string> weightIds;  // of the variables by which it is weighted
  MarkupPlace markup;                  // around the var
};

// The var of a variable that has been added.
NewElement NewVariable(const Variable& variable, const NewVariablePlace& place,
                       const Languages& languages);

}  // namespace velahost
