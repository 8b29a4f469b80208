#pragma once

#include <vector>

#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/Edits.h"
#include "standalone/Codebook/NewElement.h"

namespace velahost {

// Inserts an element behind a place, on a line like its.
void InsertAfter(const Codebook& codebook, const Codebook::Place& place, const NewElement& element,
                 const Layout& layout, Edits& edits);
// Inserts an element before a place, on a line like its.
void InsertBefore(const Codebook& codebook, const Codebook::Place& place, const NewElement& element,
                  const Layout& layout, Edits& edits);
// Inserts elements into a container where the standard has them: behind the last of their kind,
// else behind the last child that should stand before them. Called once for a container.
void InsertInto(const Codebook& codebook, const Codebook::Container& container,
                const std::vector<NewElement>& elements, const Layout& layout, Edits& edits);

}  // namespace velahost
