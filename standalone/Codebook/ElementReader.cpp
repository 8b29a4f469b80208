#include "standalone/Codebook/ElementReader.h"

namespace velahost {

ElementReader::ElementReader(const Codebook& codebook)
    : codebook_(codebook),
      namespaces_(codebook.namespaces),
      parser_(namespaces_, *this, codebook.encoding) {}

const XmlTree& ElementReader::Read(const Codebook::Place& place) {
  tree_.Clear();
  parser_.MoveTo(place.begin, place.scope);
  // Whole: of a token that comes in pieces expat may keep the last to itself until it is told that
  // nothing follows.
  parser_.Parse(codebook_.Bytes(place));
  return tree_;
}

}  // namespace velahost
