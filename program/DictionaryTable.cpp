#include "program/DictionaryTable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "program/Listing.h"
#include "program/Output.h"
#include "program/PropertyText.h"

namespace applydic {
namespace {

using velahost::Variable;

constexpr std::size_t kColumns = 4;
constexpr std::array<const char*, kColumns> kTitles = {"Name", "Type", "Label", "Values"};
constexpr std::size_t kGap = 2;        // between columns
constexpr std::size_t kCellLines = 4;  // that a cell takes at most

using Widths = std::array<std::size_t, kColumns>;
using Cells = std::array<std::vector<std::string>, kColumns>;  // of a row, each in lines

std::string ShortTypeText(const Variable& variable) {
  if (variable.print) return *PropertyText(variable, velahost::Property::Print);
  if (variable.IsNumeric()) return "number";
  return variable.hasStatedWidth ? "string " + std::to_string(variable.type) : "string";
}

// Stands for the blank behind a value, where no line is broken. No text for people has it.
constexpr char kNoBreak = '\1';

// The pairs of a variable's value labels; not all of those that fill more than so many columns.
std::string ValuesText(const Variable& variable, std::size_t width) {
  std::string text;
  if (!variable.valueLabels) return text;
  for (const velahost::ValueLabel& pair : *variable.valueLabels) {
    if (text.size() / 4 > width) break;  // a character has at most four bytes
    if (!text.empty()) text += ", ";
    const std::string label = MakeVisible(pair.label);
    const std::string value = LabelledValueText(pair, variable.IsNumeric());
    text += value;
    if (label == value || pair.label == pair.string) continue;
    text += kNoBreak;
    text += label;
  }
  return text;
}

// Folds a text into at most so many lines, the last one cut.
std::vector<std::string> FoldInto(std::size_t most, std::string_view text, std::size_t width) {
  if (text.empty()) return {};
  std::vector<std::string> lines = Fold(text, width);
  if (lines.size() <= most) return lines;
  lines.resize(most);
  lines.back() = Cut(lines.back() + " …", width);
  return lines;
}

std::vector<std::string> ValueLines(const Variable& variable, std::size_t width) {
  const bool hasMissing = !variable.missing.Empty();
  const std::size_t most = kCellLines - (hasMissing ? 1 : 0);
  std::vector<std::string> lines = FoldInto(most, ValuesText(variable, (most + 1) * width), width);
  for (std::string& line : lines) std::replace(line.begin(), line.end(), kNoBreak, ' ');
  if (!hasMissing) return lines;
  for (std::string& line : FoldInto(2, "missing: " + MissingText(variable.missing), width)) {
    lines.push_back(std::move(line));
  }
  return lines;
}

Cells CellsOf(const Variable& variable, const Widths& widths) {
  const std::string label = variable.label ? MakeVisible(*variable.label) : "";
  return {Fold(MakeVisible(variable.name), widths[0]), Fold(ShortTypeText(variable), widths[1]),
          FoldInto(kCellLines, label, widths[2]), ValueLines(variable, widths[3])};
}

// The first two columns are as wide as what they hold, within bounds; label and values share the
// rest, and what one does not need the other has.
Widths WidthsFor(const velahost::Dictionary& dictionary, std::size_t page) {
  Widths needed = {WidthOf(kTitles[0]), WidthOf(kTitles[1]), WidthOf(kTitles[2]),
                   WidthOf(kTitles[3])};
  for (const auto& variable : dictionary.variables) {
    needed[0] = std::max(needed[0], WidthOf(MakeVisible(variable->name)));
    needed[1] = std::max(needed[1], WidthOf(ShortTypeText(*variable)));
    if (variable->label) needed[2] = std::max(needed[2], WidthOf(MakeVisible(*variable->label)));
    const std::size_t values = WidthOf(ValuesText(*variable, page));
    const std::size_t missing =
        variable->missing.Empty() ? 0 : WidthOf("missing: " + MissingText(variable->missing));
    needed[3] = std::max({needed[3], values, missing});
  }
  Widths widths = {std::min(needed[0], page / 3), std::min<std::size_t>(needed[1], 12), 0, 0};
  const std::size_t rest = page - widths[0] - widths[1] - (kColumns - 1) * kGap;
  widths[2] = std::min(needed[2], std::max(rest / 2, rest - std::min(rest, needed[3])));
  widths[3] = std::min(needed[3], rest - widths[2]);
  return widths;
}

class TableWriter {
 public:
  TableWriter(const Widths& widths, bool hasColor, const velahost::ByteSink& sink)
      : widths_(widths), hasColor_(hasColor), sink_(sink) {}

  void WriteTitles() {
    Cells cells;
    for (std::size_t i = 0; i < kColumns; ++i) cells[i] = {kTitles[i]};
    WriteRow(cells);
    std::string rule;
    for (std::size_t i = 0; i < kColumns; ++i) {
      if (i > 0) rule += std::string(kGap, ' ');
      for (std::size_t column = 0; column < widths_[i]; ++column) rule += "─";
    }
    sink_(rule + "\n");
  }

  // The name stands out where there is colour.
  void WriteRow(const Cells& cells) {
    std::size_t height = 0;
    for (const auto& lines : cells) height = std::max(height, lines.size());
    for (std::size_t i = 0; i < height; ++i) WriteLine(cells, i);
  }

 private:
  void WriteLine(const Cells& cells, std::size_t place) {
    std::string line;
    std::size_t blanks = 0;  // before the next text
    for (std::size_t column = 0; column < kColumns; ++column) {
      const auto& lines = cells[column];
      const std::string& text = place < lines.size() ? lines[place] : std::string();
      if (!text.empty()) {
        line.append(blanks, ' ');
        line += column == 0 && hasColor_ ? Bold(text) : text;
        blanks = 0;
      }
      blanks += widths_[column] - std::min(widths_[column], WidthOf(text)) + kGap;
    }
    sink_(line + "\n");
  }

  const Widths widths_;
  const bool hasColor_;
  const velahost::ByteSink& sink_;
};

}  // namespace

void WriteDictionaryTable(const velahost::Dictionary& dictionary, const Page& page,
                          const velahost::ByteSink& sink) {
  if (dictionary.variables.empty()) return;
  const Widths widths = WidthsFor(dictionary, *page.width);
  TableWriter table(widths, page.hasColor, sink);
  table.WriteTitles();
  for (const auto& variable : dictionary.variables) table.WriteRow(CellsOf(*variable, widths));
}

}  // namespace applydic
