#include "standalone/Codebook/Formats.h"

#include <algorithm>
#include <limits>
#include <string>

#include "standalone/Codebook/Categories.h"
#include "standalone/Codebook/Elements.h"
#include "standalone/Codebook/Missing.h"
#include "standalone/Codebook/Notes.h"
#include "standalone/Text/Numbers.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

std::optional<int> StatedLocationWidth(Element var) {
  const MarkupText width = var.Child(element::location).Attribute("width");
  return ReadInteger(Trim(width), kLeastWidth, kMostWidth);
}

std::optional<Format> StatedFormat(Element var, TextArena& texts) {
  return ReadFormat(var.Child(element::varFormat).Attribute("formatname"), texts);
}

// The width that location/@width or varFormat/@formatname says for a string.
std::optional<int> StatedStringWidth(Element var) {
  if (const auto width = StatedLocationWidth(var)) return width;
  TextArena texts;
  const auto format = StatedFormat(var, texts);
  return format ? format->StringWidth() : std::nullopt;
}

// The width of a string that states none.
int WidthOf(std::size_t longestValue) {
  if (longestValue == 0) return kDefaultWidth;
  return static_cast<int>(std::min<std::size_t>(longestValue, kMostWidth));
}

Format ReadPrintFormat(Element var, int type, TextArena& texts) {
  if (const auto format = FormatFor(StatedFormat(var, texts), type)) return *format;
  static const Text plain("F");
  const auto decimals =
      ReadInteger(Trim(var.Attribute("dcml")), 0, std::numeric_limits<short>::max());
  return {plain, StatedLocationWidth(var).value_or(kDefaultWidth), decimals.value_or(0)};
}

std::optional<std::string> WriteFormatNote(const Variable& variable) {
  if (variable.write == variable.print) return std::nullopt;
  return TextOf(variable.write);
}

// Whether a width that is read off the values would be another with the values as they will be.
bool WouldChangeWidth(Element var, const Variable& now, PropertySet changed,
                      std::size_t longestCategory) {
  if (now.IsNumeric() || StatedStringWidth(var)) return false;
  std::size_t longest = longestCategory;
  if (changed.Has(Property::Missing)) {
    for (const Text& value : now.missing.strings) longest = std::max(longest, value.Size());
  } else {
    longest = std::max(longest, LongestMissing(var));
  }
  const std::size_t width = longest == 0 ? kDefaultWidth : longest;
  return width != static_cast<std::size_t>(now.type);
}

}  // namespace

int ReadType(Element var) {
  const Element varFormat = var.Child(element::varFormat);
  if (varFormat.Attribute("type").View() != "character") return 0;
  if (const auto stated = StatedStringWidth(var)) return *stated;
  return WidthOf(std::max(LongestCategory(var), LongestMissing(var)));
}

void ReadFormats(Element var, Variable& variable, TextArena& texts) {
  variable.print = ReadPrintFormat(var, variable.type, texts);
  variable.write = variable.print;
  const Element note = FindNote(var, kWriteFormatNote);
  if (!note) return;
  const auto stated = ReadFormat(note.Text(), texts);
  if (!stated) return;
  variable.write = FormatFor(stated, variable.type).value_or(variable.print);
}

void WriteFormats(Element var, const Variable& now, PropertySet changed,
                  std::optional<std::size_t> longestCategory, Editor& editor) {
  const bool writesPrint = changed.Has(Property::Print);
  if (writesPrint || (longestCategory && WouldChangeWidth(var, now, changed, *longestCategory))) {
    const std::string name = TextOf(now.print);
    if (const Element varFormat = var.Child(element::varFormat)) {
      editor.SetAttribute(varFormat, "formatname", name);
    } else {
      NewElement added{.element = element::varFormat};
      added.attributes = {{"type", now.IsNumeric() ? "numeric" : "character"},
                          {"formatname", name}};
      editor.Insert(var, added);
    }
  }
  if (writesPrint || changed.Has(Property::Write)) {
    WriteNote(var, kWriteFormatNote, WriteFormatNote(now), editor);
  }
}

void AddFormats(const Variable& variable, NewElement& var) {
  var.children.push_back({.element = element::varFormat,
                          .attributes = {{"type", variable.IsNumeric() ? "numeric" : "character"},
                                         {"formatname", TextOf(variable.print)}}});
  if (const auto note = WriteFormatNote(variable)) {
    var.children.push_back(NewNote(element::var, kWriteFormatNote, *note));
  }
}

}  // namespace velahost
