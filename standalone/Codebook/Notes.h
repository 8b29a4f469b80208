#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "standalone/Dictionary/Attributes.h"
#include "standalone/Text/Text.h"
#include "standalone/Xml/Document.h"
#include "standalone/Xml/Editor.h"
#include "standalone/Xml/NewElement.h"

// The notes of the host's own, which hold what the standard has no place for. A note is a child
// `notes` of a var or a fileDscr, known by its type.

namespace velahost {

inline constexpr std::string_view kPrintFormatNote = "VELA:printFormat";
inline constexpr std::string_view kWriteFormatNote = "VELA:writeFormat";
inline constexpr std::string_view kColumnWidthNote = "VELA:columnWidth";
inline constexpr std::string_view kRoleNote = "VELA:role";
inline constexpr std::string_view kAlignmentNote = "VELA:alignment";
inline constexpr std::string_view kAttributeNote = "VELA:attribute";
inline constexpr std::string_view kWeightNote = "VELA:weight";
inline constexpr std::string_view kFileNote = "VELA:file";

// The text of an element with every run of white space as one blank, as labels, names and values
// are read.
std::string LineOf(Element element);

// The first note of a type that has a text, else the first; null when there is none.
Element FindNote(Element parent, std::string_view type);

// A note for an element of that name.
NewElement NewNote(ElementName parent, std::string_view type, std::string text);

// Sets the first note of the type to a text, makes one where there is none, or removes all of them.
void WriteNote(Element parent, std::string_view type, const std::optional<std::string>& text,
               Editor& editor);

// The custom attributes in the notes of an element.
CustomAttributes ReadAttributes(Element parent, TextArena& texts);
// Edits the notes of an element so that they read as the attributes.
void WriteAttributes(const CustomAttributes& attributes, Element parent, Editor& editor);
// Adds the notes of the attributes to a new element.
void AddAttributes(const CustomAttributes& attributes, NewElement& parent);

}  // namespace velahost
