#include "standalone/Codebook/Codebook.h"

#include <iterator>
#include <utility>

#include "standalone/Codebook/Elements.h"

namespace velahost {
namespace {

// Moves items to the end of a list; their elements now stand after so many others.
template <class Item>
void AppendItems(std::vector<Item>& items, std::vector<Item>&& next, ElementPlace before) {
  for (Item& item : next) item.place += before;
  items.insert(items.end(), std::make_move_iterator(next.begin()),
               std::make_move_iterator(next.end()));
}

}  // namespace

void Reading::Reserve(const std::vector<Reading>& next) {
  std::size_t elementCount = elements.size();
  std::size_t variableCount = variables.size();
  for (const Reading& part : next) {
    elementCount += part.elements.size();
    variableCount += part.variables.size();
  }
  elements.reserve(elementCount + elementCount / 64);  // the rest of the document is small
  variables.reserve(variableCount + variableCount / 64);
}

void Reading::Append(Reading&& next) {
  if (elements.empty()) {
    *this = std::move(next);
    return;
  }
  const auto before = static_cast<ElementPlace>(elements.size());
  for (const End& end : next.ends) {
    ElementExtent& element = elements[open.back()];
    element.contentEnd = end.contentEnd;
    element.end = end.end;
    element.count = before + end.elementsBefore - open.back();
    open.pop_back();
  }
  elements.insert(elements.end(), next.elements.begin(), next.elements.end());
  AppendItems(files, std::move(next.files), before);
  AppendItems(variables, std::move(next.variables), before);
  AppendItems(groups, std::move(next.groups), before);
  for (const ElementPlace place : next.open) open.push_back(before + place);
  if (!labelLanguage) labelLanguage = std::move(next.labelLanguage);
  languages.hasOldName |= next.languages.hasOldName;
}

MarkupPlace Codebook::PlaceAround(Element description) const {
  if (!description) return PlaceIn(document, {document.Root()});
  return PlaceIn(document, {document.Root(), description});
}

Element Codebook::DescriptionAround(Element child) const {
  for (const Element description : document.Root().All(element::dataDscr)) {
    const bool isAround =
        !child || (description.Begin() < child.Begin() && child.End() <= description.End());
    if (isAround) return description;
  }
  return {};
}

}  // namespace velahost
