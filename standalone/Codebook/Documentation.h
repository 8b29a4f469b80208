#pragma once

#include <string>
#include <vector>

#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Codebook/Labels.h"
#include "standalone/Dictionary/Documentation.h"
#include "standalone/Xml/Document.h"
#include "standalone/Xml/Namespaces.h"
#include "standalone/Xml/NewElement.h"

// What documents variables and sets: questions, universes, notes and their like. It goes to another
// document as markup that stands for itself: in UTF-8, without a prefix, without IDs, references
// and comments, and with the declarations that elements of other namespaces in it need.

namespace velahost {

// The kinds of what documents a var and may be carried to another one. An element without text is
// as if absent.
DocumentationSet DocumentedIn(Element var);

// The elements of these kinds in a var. scope is the one around it.
std::vector<DocumentationElement> ReadDocumentation(const Document& document, Element var,
                                                    Namespaces::Scope scope,
                                                    DocumentationSet kinds);

// What documents a set, as markup.
std::vector<std::string> ReadSetDocumentation(const Document& document, Element varGrp,
                                              Namespaces::Scope scope);

// The elements of such markup for a place where the standard's elements have that prefix, with its
// colon.
std::vector<NewElement> NewDocumentation(const std::string& markup, const std::string& prefix);

// The texts of what documents a var, of each element one, in the order of their kinds. What states
// another language than the run's is left out.
std::vector<DocumentationText> DocumentationTexts(Element var, const Languages& languages);

}  // namespace velahost
