#pragma once

#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/XmlParser.h"
#include "standalone/Codebook/XmlTree.h"

namespace velahost {

// Reads single elements of a document again, as trees.
class ElementReader : private XmlHandler {
 public:
  explicit ElementReader(const Codebook& codebook);

  // The tree of the element at a place; it lives until the next call.
  const XmlTree& Read(const Codebook::Place& place);

 private:
  void Start(const XmlStart& start) override { tree_.Start(start); }
  bool ReadsText(Element element) const override { return XmlTree::ReadsText(element); }
  void End(std::size_t begin, std::size_t end) override { tree_.End(begin, end); }
  void Text(std::string_view text) override { tree_.Text(text); }

  const Codebook& codebook_;
  Namespaces namespaces_;
  XmlParser parser_;
  XmlTree tree_;
};

}  // namespace velahost
