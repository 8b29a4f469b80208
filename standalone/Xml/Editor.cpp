#include "standalone/Xml/Editor.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

// The place of an element in the order of its parent's children; after all of them if the order
// does not name it.
std::size_t RankIn(const Vocabulary& vocabulary, ElementName parent, ElementName child) {
  const auto order = vocabulary.ChildOrder(parent);
  return static_cast<std::size_t>(std::find(order.begin(), order.end(), child) - order.begin());
}

}  // namespace

Editor::Editor(const Document& document, const Layout& layout)
    : document_(document), layout_(layout), edits_(document.Encoding()) {}

void Editor::SetAttribute(Element element, std::string_view name, std::string_view value) {
  const StartTag tag(element.Tag());
  const std::size_t begin = element.Begin();
  if (const auto attribute = tag.Find(name)) {
    edits_.Replace(begin + attribute->valueBegin, begin + attribute->valueEnd,
                   EscapeAttribute(value, attribute->quote));
    return;
  }
  const std::size_t end = begin + tag.AttributesEnd();
  edits_.Replace(end, end, " " + std::string(name) + "=\"" + EscapeAttribute(value, '"') + "\"");
}

void Editor::RemoveAttribute(Element element, std::string_view name) {
  const StartTag tag(element.Tag());
  if (const auto attribute = tag.Find(name)) {
    const std::size_t begin = element.Begin();
    edits_.Replace(begin + attribute->begin, begin + attribute->valueEnd + 1, "");
  }
}

void Editor::SetText(Element element, std::string_view text) {
  std::string escaped;
  AppendText(escaped, text, layout_.newLine);
  if (element.HasEndTag()) {
    edits_.Replace(element.ContentBegin(), element.ContentEnd(), escaped);
  } else {
    OpenSelfClosing(element, escaped);
  }
}

void Editor::Remove(Element element) {
  const std::size_t space = SpaceBefore(document_.Text(), element.Begin()).size();
  edits_.Replace(element.Begin() - space, element.End(), "");
}

void Editor::Insert(Element parent, const NewElement& element) {
  const bool repeats = !insertions_.empty() && insertions_.back().parent == parent &&
                       insertions_.back().name == element.element;
  if (!repeats) {
    const Element after = PlaceFor(parent, element.element);
    const std::size_t rank = RankIn(*layout_.vocabulary, parent.Name(), element.element);
    prefix_ = parent.Prefix();
    lead_ = LeadIn(parent, after);
    insertions_.push_back(
        {parent, after, rank, element.element, inserted_.size(), inserted_.size()});
  }
  inserted_ += lead_;
  AppendElement(inserted_, element, layout_, prefix_, lead_);
  insertions_.back().end = inserted_.size();
}

void Editor::InsertAfter(Element parent, Element sibling, const NewElement& element) {
  const std::string lead(LeadBefore(document_.Text(), sibling.Begin()));
  std::string markup = lead;
  AppendElement(markup, element, layout_, parent.Prefix(), lead);
  edits_.Replace(sibling.End(), sibling.End(), markup);
}

Edits Editor::Take() && {
  WriteInsertions();
  return std::move(edits_);
}

// What goes to one place comes in the vocabulary's order there.
void Editor::WriteInsertions() {
  const auto placeOf = [](const Insertion& insertion) {
    return std::tuple(insertion.parent.Begin(), insertion.after ? insertion.after.End() : 0);
  };
  std::stable_sort(insertions_.begin(), insertions_.end(),
                   [placeOf](const Insertion& a, const Insertion& b) {
                     return std::pair(placeOf(a), a.rank) < std::pair(placeOf(b), b.rank);
                   });
  std::string markup;
  for (auto first = insertions_.begin(); first != insertions_.end();) {
    const Element parent = first->parent;
    const Element after = first->after;
    markup.clear();
    for (; first != insertions_.end() && first->parent == parent && first->after == after;
         ++first) {
      markup.append(inserted_, first->begin, first->end - first->begin);
    }
    if (after) {
      edits_.Replace(after.End(), after.End(), markup);
      continue;
    }
    // An empty element gets the line of its end tag too.
    const bool isEmpty = parent.ContentBegin() == parent.ContentEnd();
    if (isEmpty && !LeadIn(parent, after).empty()) {
      const std::string_view lead = LeadBefore(document_.Text(), parent.Begin());
      markup += lead.empty() ? std::string_view(layout_.newLine) : lead;
    }
    if (parent.HasEndTag()) {
      edits_.Replace(parent.ContentBegin(), parent.ContentBegin(), markup);
    } else {
      OpenSelfClosing(parent, markup);
    }
  }
}

Element Editor::PlaceFor(Element parent, ElementName name) const {
  const std::size_t rank = RankIn(*layout_.vocabulary, parent.Name(), name);
  Element same;
  Element before;
  for (const Element child : parent.All()) {
    if (child.Name() == name) same = child;
    if (RankIn(*layout_.vocabulary, parent.Name(), child.Name()) < rank) before = child;
  }
  return same ? same : before;
}

std::string Editor::LeadIn(Element parent, Element after) const {
  const std::string_view text = document_.Text();
  if (after) return std::string(LeadBefore(text, after.Begin()));
  const std::string_view lead = LeadBefore(text, parent.Begin());
  if (!layout_.vocabulary->BreaksLines(parent.Name())) {
    for (const Element first : parent.All()) return std::string(LeadBefore(text, first.Begin()));
    return lead.empty() ? std::string() : std::string(lead) + layout_.unit;
  }
  std::size_t next = parent.ContentBegin();
  while (next < parent.ContentEnd() && IsSpace(text[next])) ++next;
  if (next < parent.ContentEnd() && text[next] == '<') return std::string(LeadBefore(text, next));
  return (lead.empty() ? layout_.newLine : std::string(lead)) + layout_.unit;
}

void Editor::OpenSelfClosing(Element element, std::string_view content) {
  const std::string_view tag = element.Tag();
  std::string bytes = document_.Encoding().Encode(">" + std::string(content) + "</");
  bytes += StartTag(tag).Name();
  bytes += '>';
  edits_.ReplaceBytes(element.Begin() + tag.rfind('/'), element.End(), bytes);
}

}  // namespace velahost
