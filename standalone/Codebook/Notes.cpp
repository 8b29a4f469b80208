#include "standalone/Codebook/Notes.h"

#include <map>
#include <utility>
#include <vector>

#include "standalone/Codebook/Elements.h"
#include "standalone/Text/Utf8.h"
#include "standalone/Xml/Markup.h"

namespace velahost {
namespace {

NewElement NewAttributeNote(ElementName parent, const Text& name, const Text& value) {
  NewElement note = NewNote(parent, kAttributeNote, value.String());
  note.attributes.emplace_back("subject", name.String());
  return note;
}

std::string LevelOf(ElementName parent) {
  if (parent == element::fileDscr) return "file";
  return parent == element::varGrp ? "varGrp" : "variable";
}

// The name of the attribute that a note holds a value of; empty for any other note.
std::string AttributeNameIn(Element note) {
  if (note.Attribute("type").View() != kAttributeNote) return {};
  return Collapse(note.Attribute("subject"));
}

}  // namespace

std::string LineOf(Element element) { return Collapse(element.Text()); }

Element FindNote(Element parent, std::string_view type) {
  Element placeholder;
  for (const Element note : parent.All(element::notes)) {
    if (note.Attribute("type").View() != type) continue;
    if (HasText(note.Content())) return note;
    if (!placeholder) placeholder = note;
  }
  return placeholder;
}

NewElement NewNote(ElementName parent, std::string_view type, std::string text) {
  return {.element = element::notes,
          .attributes = {{"type", std::string(type)}, {"level", LevelOf(parent)}},
          .text = std::move(text)};
}

void WriteNote(Element parent, std::string_view type, const std::optional<std::string>& text,
               Editor& editor) {
  if (text) {
    const Element note = FindNote(parent, type);
    if (!note) {
      editor.Insert(parent, NewNote(parent.Name(), type, *text));
    } else if (LineOf(note) != *text) {
      editor.SetText(note, *text);
    }
    return;
  }
  for (const Element note : parent.All(element::notes)) {
    if (note.Attribute("type").View() == type) editor.Remove(note);
  }
}

CustomAttributes ReadAttributes(Element parent, TextArena& texts) {
  CustomAttributes attributes;
  AttributeIndex index(attributes);
  for (const Element note : parent.All(element::notes)) {
    const std::string name = AttributeNameIn(note);
    if (!name.empty()) index.AddValue(texts.Add(name), texts.AddCollapsed(note.Text()));
  }
  return attributes;
}

void WriteAttributes(const CustomAttributes& attributes, Element parent, Editor& editor) {
  // The notes of each attribute, under the spelling of its first.
  std::map<std::string, std::vector<Element>, std::less<>> notes;
  std::map<std::string, std::string> spellings;
  for (const Element note : parent.All(element::notes)) {
    const std::string name = AttributeNameIn(note);
    if (name.empty()) continue;
    notes[spellings.emplace(UpperCase(name), name).first->second].push_back(note);
  }
  for (const Attribute& attribute : attributes) {
    std::vector<Element> present;
    if (const auto known = notes.find(attribute.name.View()); known != notes.end()) {
      present = std::move(known->second);
      notes.erase(known);
    }
    bool hasSpelling = false;
    WriteInOrder(
        parent, present, attribute.values,
        [](Element note, const Text& value) { return LineOf(note) == value.View(); },
        [&](Element note, const Text& /*value*/) {
          // The first note gives the attribute its spelling.
          const bool gives = !std::exchange(hasSpelling, true);
          if (gives && AttributeNameIn(note) != attribute.name.View()) {
            editor.SetAttribute(note, "subject", attribute.name);
          }
        },
        [&](const Text& value) { return NewAttributeNote(parent.Name(), attribute.name, value); },
        editor);
  }
  for (const auto& [name, gone] : notes) {
    for (const Element note : gone) editor.Remove(note);
  }
}

void AddAttributes(const CustomAttributes& attributes, NewElement& parent) {
  for (const Attribute& attribute : attributes) {
    for (const Text& value : attribute.values) {
      parent.children.push_back(NewAttributeNote(parent.element, attribute.name, value));
    }
  }
}

}  // namespace velahost
