#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "standalone/Xml/Document.h"
#include "standalone/Xml/Vocabulary.h"

namespace velahost {

// An element to be written, of the namespace of the element that it comes to stand in.
struct NewElement {
  ElementName element = kOtherElement;
  std::vector<std::pair<std::string, std::string>> attributes = {};
  std::string text = {};
  std::vector<NewElement> children = {};
  // Markup of the whole element in place of all that, with the prefix of its place.
  std::string markup = {};
};

// Brings the children into the vocabulary's order; those of one name stay in theirs.
void SortChildren(NewElement& element, const Vocabulary& vocabulary);

// How a document is written.
struct Layout {
  const Vocabulary* vocabulary = nullptr;
  std::string unit = "  ";     // by which a child is indented more than its parent
  std::string newLine = "\n";  // what ends a line
};

// The layout of a document: its line ends, and as a level's indentation the difference between an
// element and one that it stands in; either of them may be null.
Layout LayoutOf(const Document& document, Element outer, Element inner);

// The line end and indentation that stand before a position in a text, from the last line end on;
// empty if something else than white space, or no line end, stands there.
std::string_view LeadBefore(std::string_view text, std::size_t position);
// The same with all the white space before the position.
std::string_view SpaceBefore(std::string_view text, std::size_t position);

// Adds the element to markup in UTF-8. prefix is that of the vocabulary's elements there, with its
// colon; lead is the line end and indentation before it, which is not
// added; without a line end in it everything stands on one line.
void AppendElement(std::string& markup, const NewElement& element, const Layout& layout,
                   std::string_view prefix, std::string_view lead);

}  // namespace velahost
