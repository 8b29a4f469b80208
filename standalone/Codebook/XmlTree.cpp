#include "standalone/Codebook/XmlTree.h"

#include <limits>

namespace velahost {

void XmlTree::Clear() {
  nodes_.clear();
  attributes_.clear();
  texts_.clear();
  attributeTexts_.clear();
  root_ = kNone;
  open_ = kNone;
  lastChildren_.clear();
}

void XmlTree::Start(const XmlStart& start) {
  const auto node = static_cast<Node>(nodes_.size());
  const Offset firstAttribute = OffsetAt(attributes_.size());
  for (const char* const* attribute = start.attributes; *attribute != nullptr; attribute += 2) {
    const Offset begin = OffsetAt(attributeTexts_.size());
    attributeTexts_ += attribute[0];
    const Offset valueBegin = OffsetAt(attributeTexts_.size());
    attributeTexts_ += attribute[1];
    attributes_.push_back({begin, valueBegin, OffsetAt(attributeTexts_.size())});
  }
  nodes_.push_back({.element = start.element,
                    .parent = open_,
                    .begin = start.begin,
                    .contentBegin = start.end,
                    .textBegin = OffsetAt(texts_.size()),
                    .firstAttribute = firstAttribute,
                    .attributeCount = OffsetAt(attributes_.size()) - firstAttribute});
  if (open_ == kNone) {
    root_ = node;
  } else {
    Node& last = lastChildren_.back();
    (last == kNone ? At(open_).firstChild : At(last).next) = node;
    last = node;
  }
  open_ = node;
  lastChildren_.push_back(kNone);
}

void XmlTree::End(std::size_t begin, std::size_t end) {
  NodeData& node = At(open_);
  node.contentEnd = begin;
  node.end = end;
  node.textEnd = OffsetAt(texts_.size());
  open_ = node.parent;
  lastChildren_.pop_back();
}

void XmlTree::Text(std::string_view text) { texts_ += text; }

XmlTree::Offset XmlTree::OffsetAt(std::size_t size) {
  if (size <= std::numeric_limits<Offset>::max()) return static_cast<Offset>(size);
  throw XmlError("the document has an element of more than 4 GB");
}

bool XmlTree::ReadsText(Element element) {
  return element == Element::labl || element == Element::catValu || element == Element::notes ||
         element == Element::fileCont;
}

XmlTree::Node XmlTree::Find(Node parent, Element element) const {
  const Node first = FirstChild(parent);
  return first == kNone || ElementOf(first) == element ? first : FindNext(first, element);
}

XmlTree::Node XmlTree::FindNext(Node node, Element element) const {
  for (node = Next(node); node != kNone; node = Next(node)) {
    if (ElementOf(node) == element) break;
  }
  return node;
}

std::vector<XmlTree::Node> XmlTree::FindAll(Node parent, Element element) const {
  std::vector<Node> found;
  for (Node node = Find(parent, element); node != kNone; node = FindNext(node, element)) {
    found.push_back(node);
  }
  return found;
}

std::string_view XmlTree::Text(Node node) const {
  const NodeData& data = At(node);
  return std::string_view(texts_).substr(data.textBegin, data.textEnd - data.textBegin);
}

std::optional<std::string_view> XmlTree::Attribute(Node node, std::string_view name) const {
  const NodeData& data = At(node);
  for (std::size_t i = 0; i < data.attributeCount; ++i) {
    const AttributeData& attribute = attributes_[data.firstAttribute + i];
    const std::string_view text(attributeTexts_);
    if (text.substr(attribute.begin, attribute.valueBegin - attribute.begin) == name) {
      return text.substr(attribute.valueBegin, attribute.end - attribute.valueBegin);
    }
  }
  return std::nullopt;
}

std::string_view XmlTree::AttributeName(Node node, std::size_t index) const {
  const AttributeData& attribute = attributes_[At(node).firstAttribute + index];
  return std::string_view(attributeTexts_)
      .substr(attribute.begin, attribute.valueBegin - attribute.begin);
}

}  // namespace velahost
