#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "standalone/Xml/Document.h"
#include "standalone/Xml/Namespaces.h"
#include "standalone/Xml/NewElement.h"
#include "standalone/Xml/Vocabulary.h"

// Elements that are carried from one document to another, as markup in UTF-8 that stands for
// itself: without comments, IDs and references, and with the declarations that elements of other
// namespaces in it need.

namespace velahost {

struct CarriedElement {
  ElementName name = kOtherElement;
  // Which prefix the standard's elements have is left open: see NewCarried.
  std::string markup;
};

// Copies the children of an element that are taken and have a text, of those that are kept. Notes
// with a type are never taken. scope is the one around the element.
std::vector<CarriedElement> CarryChildren(const Document& document, Element parent,
                                          Namespaces::Scope scope,
                                          const std::function<bool(ElementName child)>& takes);

// What the standard's elements are called in an element of a document.
struct MarkupPlace {
  std::string prefix;        // with its colon
  std::string namespaceUri;  // empty for none
};
// The place in the last of the elements, each of which stands in the one before, from the root on.
MarkupPlace PlaceIn(const Document& document, const std::vector<Element>& path);

// Carried markup as a new element at a place.
NewElement NewCarried(const MarkupPlace& place, const std::string& carried);

// Why carried markup cannot stand in a document, as the rest of a sentence about it; nothing if it
// can. Names of elements and attributes cannot be written as references to characters.
std::optional<std::string> WhyNotIn(const Document& document, const std::string& carried);

}  // namespace velahost
