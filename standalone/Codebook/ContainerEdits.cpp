#include "standalone/Codebook/ContainerEdits.h"

#include <utility>

#include "standalone/Codebook/ElementEditor.h"
#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

// The lead of a first child: that of the child that stands first now, or one level deeper than the
// container's.
std::string LeadOfFirst(const Codebook& codebook, const Codebook::Container& container,
                        const Layout& layout) {
  std::size_t next = container.contentBegin;
  while (next < container.contentEnd && IsSpace(codebook.text[next])) ++next;
  if (next < container.contentEnd && codebook.text[next] == '<') {
    return std::string(LeadBefore(codebook.text, next));
  }
  const std::string_view lead = LeadBefore(codebook.text, container.begin);
  return (lead.empty() ? layout.newLine : std::string(lead)) + layout.unit;
}

// The child that a new one goes behind; null if none should stand before it.
const Codebook::Place* PlaceBefore(const Codebook::Container& container, Element newElement) {
  const Codebook::Place* place = nullptr;
  for (const Element element : ChildOrder(container.element)) {
    const bool same = element == newElement;
    const auto last = container.last.find(element);
    if (last != container.last.end() &&
        (same || place == nullptr || place->end < last->second.end)) {
      place = &last->second;
    }
    if (same) break;
  }
  return place;
}

// Puts markup before all that is in a container.
void InsertFirst(const Codebook& codebook, const Codebook::Container& container, std::string markup,
                 const Layout& layout, Edits& edits) {
  const std::string_view outer = LeadBefore(codebook.text, container.begin);
  if (container.contentBegin == container.contentEnd) {
    markup += outer.empty() ? layout.newLine : std::string(outer);
  }
  if (container.contentBegin != container.end) {
    edits.Replace(container.contentBegin, container.contentBegin, std::move(markup));
    return;
  }
  // The container has no end tag yet.
  const std::string_view tag = codebook.Bytes(container);
  const std::size_t slash = tag.rfind('/');
  std::string bytes = Encode(">" + markup + "</", codebook.encoding);
  bytes += StartTag(tag).Name();
  bytes += '>';
  edits.ReplaceBytes(container.begin + slash, container.end, std::move(bytes));
}

}  // namespace

void InsertAfter(const Codebook& codebook, const Codebook::Place& place, const NewElement& element,
                 const Layout& layout, Edits& edits) {
  const std::string lead(LeadBefore(codebook.text, place.begin));
  edits.Replace(place.end, place.end, lead + Render(element, layout, lead));
}

void InsertBefore(const Codebook& codebook, const Codebook::Place& place, const NewElement& element,
                  const Layout& layout, Edits& edits) {
  const std::string lead(LeadBefore(codebook.text, place.begin));
  const std::size_t position = place.begin - SpaceBefore(codebook.text, place.begin).size();
  edits.Replace(position, position, lead + Render(element, layout, lead));
}

void InsertInto(const Codebook& codebook, const Codebook::Container& container,
                const std::vector<NewElement>& elements, const Layout& layout, Edits& edits) {
  std::string first;
  const std::string lead = LeadOfFirst(codebook, container, layout);
  for (const NewElement& element : elements) {
    if (const Codebook::Place* before = PlaceBefore(container, element.element)) {
      InsertAfter(codebook, *before, element, layout, edits);
    } else {
      first += lead + Render(element, layout, lead);
    }
  }
  if (!first.empty()) InsertFirst(codebook, container, std::move(first), layout, edits);
}

}  // namespace velahost
