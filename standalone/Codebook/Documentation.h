#pragma once

#include "standalone/Text/Text.h"
#include "standalone/Xml/Document.h"
#include "standalone/Xml/Namespaces.h"
#include "standalone/Xml/NewElement.h"

// What documents the question of a variable: qstn, universe, txt and their like. It goes with a
// variable that is added to another document.

namespace velahost {

// The documentation among the children of a var, in UTF-8, without a prefix, without IDs and
// references, and with the declarations that elements of other namespaces in it need. Empty if
// there is none. scope is the one around the var.
Text ReadDocumentation(const Document& document, Element var, Namespaces::Scope scope);

// Adds the elements of such a documentation to a new var, as markup of a document with that layout.
void AddDocumentation(const Text& documentation, const Layout& layout, NewElement& var);

}  // namespace velahost
