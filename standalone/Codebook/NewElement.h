#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "standalone/Codebook/Elements.h"

namespace velahost {

// An element to be written, of the standard's namespace.
struct NewElement {
  Element element = Element::Other;
  std::vector<std::pair<std::string, std::string>> attributes;
  std::string text = {};
  std::vector<NewElement> children = {};
  // Markup of the whole element in place of all that, with the document's prefix.
  std::string markup = {};
};

// How a document is written.
struct Layout {
  std::string prefix;          // of element names, with its colon
  std::string unit;            // by which a child is indented more than its parent
  std::string newLine = "\n";  // what ends a line
};

// The element as markup in UTF-8. lead is the line end and indentation before it, which is not part
// of the result; without a line end in it everything stands on one line.
std::string Render(const NewElement& element, const Layout& layout, std::string_view lead);
// The same, added to markup.
void Append(std::string& markup, const NewElement& element, const Layout& layout,
            std::string_view lead);

}  // namespace velahost
