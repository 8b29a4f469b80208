#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Codebook/Labels.h"
#include "standalone/Text/Text.h"
#include "standalone/Xml/Parser.h"

namespace velahost {

// Reads a codebook as the events of its parse come. The codeBook may be the document's root or
// stand in a wrapper, of which nothing is read. The reader keeps the codeBook, its children and
// those of dataDscr; of each fileDscr, varGrp and var it keeps what is in it too, unless the
// codebook is only a source.
class CodebookReader final : public XmlHandler {
 public:
  // Reads a whole document, with the labels in the language; an empty one is none. The namespace of
  // the codeBook, whatever it is, is made the vocabulary's in the parser's namespaces. They and the
  // text live as long as this object.
  CodebookReader(std::string_view text, OpenFor use, const std::string& language,
                 Namespaces& namespaces);
  // Reads parts of a document, one after the other, that stand in a dataDscr that is open already;
  // scope is the one inside it.
  CodebookReader(std::string_view text, OpenFor use, const velahost::Languages& languages,
                 Namespaces::Scope scope);

  // Throws XmlError for a second codeBook.
  void Start(const XmlStart& start) override;
  bool ReadsText(ElementName /*element*/) const override { return false; }
  void End(std::size_t begin, std::size_t end) override;
  void Text(std::string_view /*text*/) override {}

  // What was read since the start, or since the last call. An element that is open is begun in one
  // reading and ended in another.
  Reading Take();

  // Throws XmlError if no codeBook has been read.
  void RequireCodebook() const;
  // The languages of the labels as far as they are known.
  const velahost::Languages& Languages() const { return labels_.Languages(); }

  // Whether a variable ended right before the position, and nothing but its dataDscr is open.
  // REQUIRES: what stands from the position on has not been parsed.
  bool StandsAfterVariable(std::size_t position) const;
  // The scope inside the innermost element that is open.
  Namespaces::Scope Scope() const { return stack_.back().scope; }
  // The bytes of the last variable's end tag; both are 0 if none had one.
  struct Tag {
    std::size_t begin = 0;
    std::size_t end = 0;
  };
  Tag VariableEnd() const { return variableEnd_; }

 private:
  // An open element that is kept.
  struct Open {
    ElementPlace place;
    ElementName name;
    bool beginsHere;  // in what Take will give
    Namespaces::Scope scope;
  };

  void StartCodebook(const XmlStart& start);
  [[noreturn]] void RefuseSecond(const XmlStart& start) const;
  std::string LineOf(std::size_t position) const;
  bool Keeps() const;
  bool IsGathered(ElementName name) const;
  void ReadGathered(ElementPlace place);
  void DropAllButCarried(ElementPlace place);

  Namespaces* namespaces_ = nullptr;  // null for parts, which have no root
  DocumentText text_;
  OpenFor use_;
  Reading reading_;
  TextArena texts_;
  LabelReader labels_;
  VariablePool variables_;
  std::vector<Open> stack_;
  std::size_t gatheredDepth_ = 0;  // of the fileDscr, varGrp or var that is open; 0 if none is
  std::size_t passedOver_ = 0;     // open elements that are not kept
  std::size_t outside_ = 0;        // open elements around the codeBook
  std::string rootName_;           // of the document
  std::optional<std::size_t> codebookBegin_;
  Tag variableEnd_;
};

}  // namespace velahost
