#include "standalone/Codebook/Formats.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "standalone/Codebook/Categories.h"
#include "standalone/Codebook/Elements.h"
#include "standalone/Codebook/Missing.h"
#include "standalone/Codebook/Notes.h"
#include "standalone/Text/Numbers.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

// Where a print format stands.
enum class Place { Nowhere, Attribute, Text, Note };

struct StatedFormat {
  Format format;
  Place place = Place::Nowhere;
};

// The print format that a var states, in the first place that has one which numbers or strings can
// have.
StatedFormat ReadPrint(Element var, Element varFormat, bool isString, TextArena& texts) {
  const auto fits = [isString](const std::optional<Format>& format) {
    return format && format->IsOfStrings() == isString;
  };
  if (const Element note = FindNote(var, kPrintFormatNote)) {
    if (const auto format = ReadFormat(note.Text(), texts); fits(format))
      return {*format, Place::Note};
  }
  if (const auto format = ReadFormat(varFormat.Attribute("formatname"), texts); fits(format)) {
    return {*format, Place::Attribute};
  }
  if (const auto format = ReadFormat(varFormat.Text(), texts); fits(format)) {
    return {*format, Place::Text};
  }
  return {};
}

std::optional<Format> ReadWrite(Element var, TextArena& texts) {
  const Element note = FindNote(var, kWriteFormatNote);
  return note ? ReadFormat(note.Text(), texts) : std::nullopt;
}

bool IsString(Element varFormat) { return varFormat.Attribute("type").View() == "character"; }

// The width that the first location with one says; there may be one for each data file.
std::optional<int> ReadLocationWidth(Element var) {
  for (const Element location : var.All(element::location)) {
    const auto width = ReadInteger(Trim(location.Attribute("width")), kLeastWidth, kMostWidth);
    if (width) return width;
  }
  return std::nullopt;
}

// What a string counts as that states no width.
int UnstatedWidth(Element var) {
  const std::size_t longest = std::max(LongestCategory(var), LongestMissing(var));
  return static_cast<int>(std::clamp<std::size_t>(longest, kDefaultWidth, kMostWidth));
}

// What the note of the write format must say: nothing where it would say the print format.
std::optional<std::string> WriteFormatNote(const Variable& variable) {
  if (!variable.write || variable.write == variable.print) return std::nullopt;
  return TextOf(*variable.write);
}

// Whether a text is empty, or spells a format.
bool IsFreeForFormat(std::string_view text, TextArena& texts) {
  return Trim(text).empty() || ReadFormat(text, texts);
}

NewElement NewVarFormat(const Variable& variable) {
  NewElement varFormat{.element = element::varFormat};
  varFormat.attributes = {{"type", variable.IsNumeric() ? "numeric" : "character"}};
  if (variable.print) varFormat.attributes.emplace_back("formatname", TextOf(*variable.print));
  return varFormat;
}

void WritePrint(Element var, const Variable& now, Editor& editor) {
  if (!now.print) return;  // a format is set, and never taken away
  const Element varFormat = var.Child(element::varFormat);
  if (!varFormat) return editor.Insert(var, NewVarFormat(now));
  const std::string text = TextOf(*now.print);
  TextArena texts;
  const StatedFormat stated = ReadPrint(var, varFormat, IsString(varFormat), texts);
  const MarkupText name = varFormat.Attribute("formatname");
  Place place = stated.place;
  if (place == Place::Nowhere) {
    place = IsFreeForFormat(name, texts)               ? Place::Attribute
            : IsFreeForFormat(varFormat.Text(), texts) ? Place::Text
                                                       : Place::Note;
  }
  switch (place) {
    case Place::Attribute:
      return editor.SetAttribute(varFormat, "formatname", text);
    case Place::Text:
      editor.SetText(varFormat, text);
      // Some say the letters alone in the attribute, and the whole format in the text.
      if (stated.place == Place::Text && UpperCase(Trim(name)) == stated.format.letters.View()) {
        editor.SetAttribute(varFormat, "formatname", now.print->letters);
      }
      return;
    default:
      WriteNote(var, kPrintFormatNote, text, editor);
  }
}

}  // namespace

void ReadFormats(Element var, Variable& variable, TextArena& texts) {
  const Element varFormat = var.Child(element::varFormat);
  const bool isString = IsString(varFormat);
  const StatedFormat stated = ReadPrint(var, varFormat, isString, texts);
  std::optional<Format> print;
  if (stated.place != Place::Nowhere) print = stated.format;
  std::optional<Format> write = ReadWrite(var, texts);
  if (isString) {
    auto width = ReadLocationWidth(var);
    if (!width && print) width = print->StringWidth();
    if (!width && write) width = write->StringWidth();
    variable.hasStatedWidth = width.has_value();
    variable.type = width ? *width : UnstatedWidth(var);
  }
  // Where the width is not stated, nothing states a format of strings, but for a HEX of odd width.
  const bool hasFormats = !isString || variable.hasStatedWidth;
  if (hasFormats) {
    variable.print = FormatFor(print, variable.type);
    variable.write = FormatFor(write, variable.type);
  }
  if (!variable.write) variable.write = variable.print;
}

void WriteFormats(Element var, const Variable& now, PropertySet changed, Editor& editor) {
  if (changed.Has(Property::Print)) WritePrint(var, now, editor);
  if (changed.Has(Property::Print) || changed.Has(Property::Write)) {
    WriteNote(var, kWriteFormatNote, WriteFormatNote(now), editor);
  }
}

void AddFormats(const Variable& variable, NewElement& var) {
  var.children.push_back(NewVarFormat(variable));
  if (const auto note = WriteFormatNote(variable)) {
    var.children.push_back(NewNote(element::var, kWriteFormatNote, *note));
  }
}

}  // namespace velahost
