#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Codebook/XmlParser.h"

namespace velahost {

// Elements of a document with all that is in them: attributes, where each element stands, and the
// texts that a dictionary is read from. It is filled by the events of a parse, one whole element
// after the other, and needs neither the parser nor the document afterwards.
class XmlTree {
 public:
  using Node = int;
  static constexpr Node kNone = -1;

  void Clear();
  // The events, from an element's start to its end. Throws XmlError if there are more than 4 GB of
  // attributes or text.
  void Start(const XmlStart& start);
  void End(std::size_t begin, std::size_t end);
  void Text(std::string_view text);
  // The elements whose text is kept.
  static bool ReadsText(Element element);
  // Whether the end of the last element has come.
  bool Complete() const { return open_ == kNone && !nodes_.empty(); }

  std::size_t ElementCount() const { return nodes_.size(); }
  // The bytes of the texts and attributes.
  std::size_t TextSize() const { return texts_.size() + attributeTexts_.size(); }
  // The last of the outermost elements.
  Node Root() const { return root_; }
  Element ElementOf(Node node) const { return At(node).element; }
  Node Parent(Node node) const { return At(node).parent; }
  Node FirstChild(Node node) const { return At(node).firstChild; }
  Node Next(Node node) const { return At(node).next; }
  // The first child that is the element, or kNone; and the next after a node.
  Node Find(Node parent, Element element) const;
  Node FindNext(Node node, Element element) const;
  // All children that are the element.
  std::vector<Node> FindAll(Node parent, Element element) const;

  // The text of the element with that of all elements in it, as it stands.
  // REQUIRES: ReadsText(ElementOf(node)).
  std::string_view Text(Node node) const;
  // An attribute's value; nothing if the element does not have it.
  std::optional<std::string_view> Attribute(Node node, std::string_view name) const;
  // The number of its attributes, and the name of one.
  std::size_t AttributeCount(Node node) const { return At(node).attributeCount; }
  std::string_view AttributeName(Node node, std::size_t index) const;

  // Where it stands in the document: the element, and what is between its tags. An element without
  // an end tag has no content: it begins and ends at the element's end.
  std::size_t Begin(Node node) const { return At(node).begin; }
  std::size_t End(Node node) const { return At(node).end; }
  std::size_t ContentBegin(Node node) const { return At(node).contentBegin; }
  std::size_t ContentEnd(Node node) const { return At(node).contentEnd; }
  bool HasEndTag(Node node) const { return At(node).contentEnd != At(node).end; }

 private:
  using Offset = std::uint32_t;  // in texts_ or attributeTexts_
  // A codebook that may be written holds one of these for each element that it reads.
  struct NodeData {
    Element element;
    Node parent;
    Node firstChild = kNone;
    Node next = kNone;
    std::size_t begin;
    std::size_t contentBegin;
    std::size_t contentEnd = 0;
    std::size_t end = 0;
    Offset textBegin;
    Offset textEnd = 0;
    Offset firstAttribute;
    Offset attributeCount;
  };
  struct AttributeData {
    Offset begin;  // of the name in attributeTexts_
    Offset valueBegin;
    Offset end;
  };
  static Offset OffsetAt(std::size_t size);
  const NodeData& At(Node node) const { return nodes_[static_cast<std::size_t>(node)]; }
  NodeData& At(Node node) { return nodes_[static_cast<std::size_t>(node)]; }

  std::vector<NodeData> nodes_;
  std::vector<AttributeData> attributes_;
  std::string texts_;           // of all elements, in document order
  std::string attributeTexts_;  // names and values of all attributes
  Node root_ = kNone;
  Node open_ = kNone;
  std::vector<Node> lastChildren_;  // so far, of the open elements
};

}  // namespace velahost
