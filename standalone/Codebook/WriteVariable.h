#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "standalone/Codebook/ElementEditor.h"
#include "standalone/Codebook/NewElement.h"
#include "standalone/Data/Variable.h"

namespace velahost {

// Edits the var element of a variable so that it reads as the variable is now. What reads so
// already is not touched. The caller finishes the editor.
void WriteVariable(const VELA_Variable::Impl& variable, const XmlTree& tree, XmlTree::Node var,
                   ElementEditor& editor);

// The var element of a variable that has been added.
NewElement NewVariable(const VELA_Variable::Impl& variable, const std::string& id,
                       const std::string& fileId, bool weights, const Layout& layout);

// A note of the host's own, and one that holds a value of a custom attribute, for an element.
NewElement NewNote(Element parent, std::string_view type, std::string text);
NewElement NewAttributeNote(Element parent, const std::string& name, const std::string& value);

// Sets the first note of the type to a text, makes one where there is none, or removes all of them.
void WriteNote(const XmlTree& tree, XmlTree::Node parent, std::string_view type,
               const std::optional<std::string>& text, ElementEditor& editor);

// Edits the notes of an element so that they read as the attributes.
void WriteAttributes(const DatasourceAttributes& attributes, const XmlTree& tree,
                     XmlTree::Node parent, ElementEditor& editor);

}  // namespace velahost
