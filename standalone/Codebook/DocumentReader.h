#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/ReadCodebook.h"
#include "standalone/Codebook/XmlParser.h"
#include "standalone/Codebook/XmlTree.h"

namespace velahost {

// Reads a document as its events come: each fileDscr, varGrp and var is gathered in a tree and
// read, and the tree is kept if the codebook may be written; of everything else only the place is
// kept.
class DocumentReader : public XmlHandler {
 public:
  // Reads a whole document into a reading whose codebook has its path and text.
  explicit DocumentReader(CodebookReading& reading);
  // Reads what stands in a dataDscr that is open already; scope is the one inside it. What is found
  // goes into a reading of its own.
  DocumentReader(CodebookReading& reading, Namespaces::Scope scope);

  void Start(const XmlStart& start) override;
  bool ReadsText(Element element) const override { return inTree_ && XmlTree::ReadsText(element); }
  void End(std::size_t begin, std::size_t end) override;
  void Text(std::string_view text) override { tree_->Text(text); }

  // Whether a variable ended right before the position, and nothing but its dataDscr is open.
  // REQUIRES: what stands behind the position has not been parsed.
  bool StandsBehindVariable(std::size_t position) const;
  // The scope inside the innermost element that is open.
  Namespaces::Scope Scope() const { return scopes_.back(); }
  // The bytes of the last variable's end tag; both are 0 if none had one.
  struct Tag {
    std::size_t begin = 0;
    std::size_t end = 0;
  };
  Tag VariableEnd() const { return variableEnd_; }

 private:
  void StartRoot(const XmlStart& start);
  void StartTree(const XmlStart& start);
  void ReadTree(const Codebook::Place& place);

  CodebookReading& reading_;
  Codebook& codebook_;
  XmlTree read_;            // for elements that are not kept
  XmlTree* tree_ = &read_;  // where elements are gathered: that, or the last of the codebook's
  bool inTree_ = false;
  std::size_t depth_ = 0;
  // Of the open elements, to depth 3.
  std::vector<Namespaces::Scope> scopes_;
  std::vector<Element> path_;
  std::vector<std::size_t> begins_;
  Tag variableEnd_;
};

}  // namespace velahost
