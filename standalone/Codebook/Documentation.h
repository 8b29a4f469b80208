#pragma once

#include <vector>

#include "standalone/Codebook/CarriedMarkup.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Codebook/Labels.h"
#include "standalone/Dictionary/Documentation.h"
#include "standalone/Dictionary/Variable.h"
#include "standalone/Xml/Document.h"
#include "standalone/Xml/Editor.h"
#include "standalone/Xml/Namespaces.h"

// What documents variables and sets: questions, universes, notes and their like.

namespace velahost {

// Whether an element of that name may document a var or a set.
bool MayBeCarried(ElementName name);

// The kinds of what documents a var and may be carried to another one. An element without text is
// as if absent.
DocumentationSet DocumentedIn(Element var);

// The elements of these kinds in a var. scope is the one around it.
std::vector<DocumentationElement> ReadDocumentation(const Document& document, Element var,
                                                    Namespaces::Scope scope,
                                                    DocumentationSet kinds);

// The elements that document a set.
std::vector<CarriedElement> ReadSetDocumentation(const Document& document, Element varGrp,
                                                 Namespaces::Scope scope);

// Adds to a var what has been brought of the kinds that it lacked when it was read.
void WriteDocumentation(Element var, const Variable& read, const Variable& now,
                        const MarkupPlace& place, Editor& editor);

// The texts of what documents a var, of each element one, in the order of their kinds. What states
// another language than the run's is left out.
std::vector<DocumentationText> DocumentationTexts(Element var, const Languages& languages);

}  // namespace velahost
