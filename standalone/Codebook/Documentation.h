#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "standalone/Codebook/NewElement.h"

namespace velahost {

class Codebook;

// What documents the question of a variable, for a new variable in another document: the elements
// that say so (qstn, universe, txt and their like) in UTF-8, without a prefix, without IDs and
// references, and with the declarations that elements of other namespaces in them need. Empty if
// there are none.
std::string DocumentationOf(const Codebook& codebook, std::size_t place);

// The elements of such a documentation, each as markup of a document with that layout.
std::vector<NewElement> DocumentationElements(const std::string& documentation,
                                              const Layout& layout);

}  // namespace velahost
