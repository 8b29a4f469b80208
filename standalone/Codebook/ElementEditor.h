#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/Edits.h"
#include "standalone/Codebook/NewElement.h"
#include "standalone/Codebook/XmlTree.h"

namespace velahost {

// The line end and indentation that stand before a position in a text, from the last line end on;
// empty if something else than white space, or no line end, stands there.
std::string_view LeadBefore(std::string_view text, std::size_t position);
// The same with all the white space before the position.
std::string_view SpaceBefore(std::string_view text, std::size_t position);

// The layout of a document: its prefix, its indentation and its line ends.
Layout LayoutOf(const Codebook& codebook);

// A start tag as it stands in a text.
class StartTag {
 public:
  // tag is the whole tag, from "<" to ">".
  explicit StartTag(std::string_view tag);

  std::string_view Name() const { return name_; }
  bool SelfClosing() const { return selfClosing_; }

  struct Attribute {
    std::string_view name;
    std::size_t begin;  // of the white space before the name, from the tag's begin
    std::size_t valueBegin;
    std::size_t valueEnd;
    char quote;
  };
  const Attribute* Find(std::string_view name) const;
  // Where a further attribute is inserted, from the tag's begin.
  std::size_t AttributesEnd() const { return attributesEnd_; }

 private:
  std::string_view name_;
  std::vector<Attribute> attributes_;
  std::size_t attributesEnd_ = 0;
  bool selfClosing_ = false;
};

// Changes to the elements of a tree, made as edits of the document's text.
class ElementEditor {
 public:
  ElementEditor(const Codebook& codebook, const Layout& layout, const XmlTree& tree, Edits& edits);
  ElementEditor(const ElementEditor&) = delete;
  ElementEditor& operator=(const ElementEditor&) = delete;

  void SetAttribute(XmlTree::Node node, std::string_view name, std::string_view value);
  void RemoveAttribute(XmlTree::Node node, std::string_view name);
  // Replaces all that is between the element's tags.
  void SetText(XmlTree::Node node, std::string_view text);
  // Removes the element with the white space that its line begins with.
  void Remove(XmlTree::Node node);
  // Replaces the whole element.
  void Replace(XmlTree::Node node, const NewElement& element);
  // Inserts an element where the standard has it: after the last child of its kind, else after the
  // last child that should stand before it.
  void Insert(XmlTree::Node parent, const NewElement& element);
  // Writes what was inserted. Called once, last.
  void Finish();

 private:
  struct Insertion {
    XmlTree::Node parent;
    XmlTree::Node after;  // kNone: first in the parent
    std::size_t rank;
    Element element;
    std::string lead;
    std::string markup;  // of one element, or of several of a kind
  };
  XmlTree::Node PlaceFor(XmlTree::Node parent, Element element) const;
  std::string LeadIn(XmlTree::Node parent, XmlTree::Node after) const;
  std::string_view Tag(XmlTree::Node node) const;
  void OpenSelfClosing(XmlTree::Node node, const std::string& content);

  const Codebook& codebook_;
  const Layout& layout_;
  const XmlTree& tree_;
  Edits& edits_;
  std::vector<Insertion> insertions_;
};

}  // namespace velahost
