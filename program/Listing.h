#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "program/Terminal.h"
#include "standalone/Files/File.h"

namespace applydic {

// How a text stands out, in colour or by a sign before it.
enum class Mark : std::uint8_t { None, Added, Removed };

// The text in lines of at most so many columns; words longer than that are broken. At least one
// line. The text is safe for one line of a terminal.
std::vector<std::string> Fold(std::string_view text, std::size_t width);
// The text cut to so many columns, with "…" at its end if anything was cut.
std::string Cut(std::string_view text, std::size_t width);
// The text with blanks behind it up to so many columns.
std::string Pad(std::string_view text, std::size_t width);

// The text in bold type.
std::string Bold(std::string_view text);

// A whole number for people to read: 19,990.
std::string CountText(std::size_t count);

// Lays out titles and items below them, an item with its name in a column of its own, and gives the
// lines to a sink. All texts are safe for one line of a terminal. What the sink throws passes on.
class Listing {
 public:
  // A long text is folded to the page's width, or if it is brief cut to one line.
  enum class Texts : std::uint8_t { Whole, Brief };

  // nameWidth: the columns in which the names of items stand, with the space behind them.
  Listing(Page page, velahost::ByteSink sink, std::size_t nameWidth, Texts texts = Texts::Whole);

  // The lines that have been written.
  std::size_t LineCount() const { return lines_; }
  bool IsBrief() const { return texts_ == Texts::Brief; }

  void Title(std::string_view text);
  void BlankLine() { Put("\n"); }
  // A text of its own, folded to the page; and one of several texts with ", " between them, always
  // folded, between texts. Continued lines are indented.
  void Line(std::string_view text);
  void List(std::string_view start, const std::vector<std::string>& texts, std::string_view end);
  // An item; and one of several texts, whose name stands before the first. An item without a text
  // is not listed.
  void Item(std::string_view name, std::string_view text);
  void Items(std::string_view name, const std::vector<std::string>& texts);
  // A text with a sign before it, without a name.
  void Marked(Mark mark, std::string_view text);
  // An item of a difference, with a sign before its text.
  void Marked(std::string_view name, Mark mark, std::string_view text);
  // An item that was `before` and is `now`, either of which may be absent: on one line if it fits.
  // label stands before both.
  void Change(std::string_view name, const std::optional<std::string>& before,
              const std::optional<std::string>& now, const std::string& label = "");

 private:
  std::size_t LongestLine() const;
  // Writes a text in lines: the name, in so many columns, and the sign stand before the first.
  void Write(std::string_view name, std::size_t nameWidth, std::string_view sign, Mark mark,
             std::string_view text);
  std::string Painted(Mark mark, std::string_view text) const;
  void Put(std::string_view line);

  Page page_;
  velahost::ByteSink sink_;
  std::size_t nameWidth_;
  Texts texts_;
  std::size_t lines_ = 0;
};

}  // namespace applydic
