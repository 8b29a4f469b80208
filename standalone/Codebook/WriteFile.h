#pragma once

#include <optional>
#include <string>

#include "standalone/Codebook/ElementEditor.h"
#include "standalone/Codebook/NewElement.h"
#include "standalone/Data/DataSource.h"

namespace velahost {

// Edits a fileDscr so that it reads as the file's label, documents and custom attributes are now,
// where they differ from what was read. The caller finishes the editor.
void WriteFile(const VELA_DataSource::Impl& file, const XmlTree& tree, XmlTree::Node fileDscr,
               ElementEditor& editor);

// A fileDscr for a document that has none, with the name of the weight variable if a note must say
// it.
NewElement NewFile(const FileProperties& properties, const std::optional<std::string>& weight);

}  // namespace velahost
