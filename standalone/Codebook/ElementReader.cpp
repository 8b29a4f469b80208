#include "standalone/Codebook/ElementReader.h"

namespace velahost {

ElementReader::ElementReader(const Codebook& codebook)
    : codebook_(codebook),
      namespaces_(codebook.namespaces),
      parser_(namespaces_, *this, codebook.encoding) {}

const XmlTree& ElementReader::Read(const Codebook::Place& place) {
  tree_.Clear();
  parser_.ParseElement(codebook_.Bytes(place), place.begin, place.scope);
  return tree_;
}

}  // namespace velahost
