#pragma once

#include <functional>
#include <string>
#include <vector>

#include "standalone/Codebook/Codebook.h"
#include "standalone/Codebook/DocumentIds.h"
#include "standalone/Codebook/Edits.h"
#include "standalone/Codebook/NewElement.h"
#include "standalone/Data/DataSource.h"

namespace velahost {

// What the writing of sets needs of the writer of the document.
struct SetWriting {
  const VELA_DataSource::Impl& file;
  const Codebook& codebook;
  const Layout& layout;
  DocumentIds& ids;
  Edits& edits;
  // The ID of the variable at a column, as it will be.
  std::function<std::string(int column)> variableId;
};

// Edits the varGrp elements of the file so that they read as its sets of the kind are now, and
// takes references to those that go out of the others. Returns the elements that have no place
// among those that stay: they go where the standard has them.
std::vector<NewElement> WriteSets(const SetWriting& writing);

}  // namespace velahost
