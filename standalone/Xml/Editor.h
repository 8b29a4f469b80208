#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Xml/Document.h"
#include "standalone/Xml/Edits.h"
#include "standalone/Xml/NewElement.h"

namespace velahost {

// Makes changes to the elements of a document, as edits of its text.
class Editor {
 public:
  // Both live as long as this object.
  Editor(const Document& document, const Layout& layout);
  Editor(const Editor&) = delete;
  Editor& operator=(const Editor&) = delete;

  void SetAttribute(Element element, std::string_view name, std::string_view value);
  void RemoveAttribute(Element element, std::string_view name);
  // Replaces all that stands between the element's tags.
  void SetText(Element element, std::string_view text);
  // Removes the element with the white space that its line begins with.
  void Remove(Element element);
  // Inserts an element where the vocabulary has it: after the last child of its name, else after
  // the last child that should stand before it. REQUIRES: the children of the parent are kept.
  void Insert(Element parent, const NewElement& element);
  // Inserts an element right after a child of the parent, on a line like its.
  void InsertAfter(Element parent, Element sibling, const NewElement& element);

  // All changes. The editor is of no use afterwards.
  Edits Take() &&;

 private:
  struct Insertion {
    Element parent;
    Element after;  // null: first in the parent
    std::size_t rank;
    ElementName name;
    // Where its markup stands in inserted_: of one element, or of several of a name.
    std::size_t begin;
    std::size_t end;
  };
  Element PlaceFor(Element parent, ElementName name) const;
  std::string LeadIn(Element parent, Element after) const;
  void WriteInsertions();
  void OpenSelfClosing(Element element, std::string_view content);

  const Document& document_;
  const Layout& layout_;
  Edits edits_;
  std::vector<Insertion> insertions_;
  std::string prefix_;    // where the last insertion goes, with the colon
  std::string lead_;      // likewise
  std::string inserted_;  // the markup of all insertions, in the order in which they were made
};

// Removes, keeps and inserts elements so that the wanted ones stand there in their order. Elements
// that are there are kept as far as they stand in that order: what is inserted goes after all of
// its name, so once one is inserted, none of those that are left can follow it.
// matches(element, item) tells whether an element reads as an item, keep(element, item) is called
// for one that stays, and make(item) gives a new one.
template <class Items, class Matches, class Keep, class Make>
void WriteInOrder(Element parent, const std::vector<Element>& present, const Items& wanted,
                  Matches matches, Keep keep, Make make, Editor& editor) {
  auto next = present.begin();
  bool hasInserted = false;
  for (const auto& item : wanted) {
    auto kept = hasInserted ? present.end() : next;
    while (kept != present.end() && !matches(*kept, item)) ++kept;
    if (kept == present.end()) {
      editor.Insert(parent, make(item));
      hasInserted = true;
      continue;
    }
    while (next != kept) editor.Remove(*next++);
    keep(*kept, item);
    ++next;
  }
  while (next != present.end()) editor.Remove(*next++);
}

}  // namespace velahost
