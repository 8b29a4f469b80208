#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

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
  Text files;                          // @files: IDs
  std::vector<Text> locations;         // each location/@fileid: one ID
  bool weights = false;                // wgt="wgt"
  bool missingNotRead = false;         // more or other missing values than the dictionary can hold
  bool longCategoriesNotRead = false;  // labels of values that are longer than the string
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

VariableReading ReadVariable(Element var, VariablePool& variables, TextArena& texts);

// Edits a var, which was read as `read`, so that it reads as the variable is now, which differs in
// the properties that have changed. What reads so already is not touched.
void WriteVariable(Element var, const Variable& read, const Variable& now, PropertySet changed,
                   Editor& editor);

// The var of a variable that has been added.
NewElement NewVariable(const Variable& variable, const std::string& id, const std::string& fileId,
                       bool weights, const Layout& layout);

}  // namespace velahost
