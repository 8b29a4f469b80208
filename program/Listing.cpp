#include "program/Listing.h"

#include <algorithm>
#include <utility>

#include "program/Output.h"
#include "standalone/Text/Utf8.h"

namespace applydic {
namespace {

constexpr std::size_t kIndent = 2;
constexpr std::size_t kLeastText = 16;     // columns; a narrower page is overrun
constexpr std::size_t kLongestLine = 100;  // where the page has no width
constexpr std::string_view kArrow = " → ";
constexpr std::string_view kCut = "…";

constexpr const char* kBold = "\x1b[1m";
constexpr const char* kRed = "\x1b[31m";
constexpr const char* kGreen = "\x1b[32m";
constexpr const char* kPlain = "\x1b[0m";

// The longest beginning of a text that takes at most so many columns, but one character at least.
std::string_view BeginningOf(std::string_view text, std::size_t width) {
  std::size_t end = 0;
  for (std::size_t used = 0; end < text.size();) {
    const velahost::Character character = velahost::CharacterAt(text, end);
    used += velahost::ColumnsOf(character.code);
    if (used > width && end > 0) break;
    end += character.length;
  }
  return text.substr(0, end);
}

// The bytes of whole words, but the last one, in which two texts begin that are long.
std::size_t SameBeginning(std::string_view a, std::string_view b) {
  constexpr std::size_t kLong = 32;  // a beginning that is shorter is shown
  const auto [end, other] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
  auto same = static_cast<std::size_t>(end - a.begin());
  for (int words = 0; words < 2; ++words) {
    same = a.substr(0, same).rfind(' ');
    if (same == std::string_view::npos) return 0;
  }
  return same < kLong ? 0 : same;
}

const char* SignOf(Mark mark) {
  if (mark == Mark::None) return "  ";
  return mark == Mark::Added ? "+ " : "- ";
}

}  // namespace

std::vector<std::string> Fold(std::string_view text, std::size_t width) {
  std::vector<std::string> lines;
  while (true) {
    std::string_view line = BeginningOf(text, width);
    if (line.size() == text.size()) break;
    // Break at the last blank, which may be the one behind the line.
    const std::size_t blank = text.substr(0, line.size() + 1).rfind(' ');
    const bool isWord = blank == std::string_view::npos || blank == 0;
    if (!isWord) line = text.substr(0, blank);
    lines.emplace_back(line);
    text.remove_prefix(line.size() + (isWord ? 0 : 1));
  }
  lines.emplace_back(text);
  return lines;
}

std::string Cut(std::string_view text, std::size_t width) {
  if (BeginningOf(text, width).size() == text.size()) return std::string(text);
  return std::string(BeginningOf(text, width - 1)) + std::string(kCut);
}

std::string Pad(std::string_view text, std::size_t width) {
  std::string padded(text);
  const std::size_t used = WidthOf(text);
  if (used < width) padded.append(width - used, ' ');
  return padded;
}

std::string Bold(std::string_view text) { return kBold + std::string(text) + kPlain; }

std::string CountText(std::size_t count) {
  std::string text = std::to_string(count);
  for (std::size_t i = text.size(); i > 3; i -= 3) text.insert(i - 3, ",");
  return text;
}

Listing::Listing(Page page, velahost::ByteSink sink, std::size_t nameWidth, Texts texts)
    : page_(page), sink_(std::move(sink)), nameWidth_(nameWidth), texts_(texts) {}

void Listing::Title(std::string_view text) {
  for (const std::string& line :
       page_.width ? Fold(text, *page_.width) : std::vector{std::string(text)}) {
    Put((page_.hasColor ? Bold(line) : line) + "\n");
  }
}

void Listing::Line(std::string_view text) {
  if (!page_.width) return Put(std::string(text) + "\n");
  std::string indent;
  for (const std::string& line : Fold(text, LongestLine() - kIndent)) {
    Put(indent + line + "\n");
    indent = std::string(kIndent, ' ');
  }
}

void Listing::List(std::string_view start, const std::vector<std::string>& texts,
                   std::string_view end) {
  std::string line(start);
  std::size_t used = WidthOf(start);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::string_view behind = i + 1 < texts.size() ? "," : end;
    const std::size_t width = WidthOf(texts[i]) + WidthOf(behind);
    if (i > 0 && used + 1 + width > LongestLine()) {
      Put(line + "\n");
      line = std::string(2 * kIndent, ' ');
      used = line.size();
    } else if (i > 0) {
      line += ' ';
      ++used;
    }
    line += texts[i];
    line += behind;
    used += width;
  }
  Put(line + "\n");
}

void Listing::Item(std::string_view name, std::string_view text) {
  Write(name, nameWidth_, "", Mark::None, text);
}

void Listing::Items(std::string_view name, const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    Item(name, text);
    name = "";
  }
}

void Listing::Marked(Mark mark, std::string_view text) { Write("", 0, SignOf(mark), mark, text); }

void Listing::Marked(std::string_view name, Mark mark, std::string_view text) {
  Write(name, nameWidth_, SignOf(mark), mark, text);
}

void Listing::Change(std::string_view name, const std::optional<std::string>& before,
                     const std::optional<std::string>& now, const std::string& label) {
  if (before && now) {
    const std::size_t used =
        kIndent + nameWidth_ + kIndent + WidthOf(label + *before + *now) + WidthOf(kArrow);
    if (used <= LongestLine()) {
      Put(std::string(kIndent, ' ') + Pad(name, nameWidth_) + SignOf(Mark::None) + label +
          Painted(Mark::Removed, *before) + std::string(kArrow) + Painted(Mark::Added, *now) +
          "\n");
      return;
    }
  }
  // Texts that are cut must still differ.
  const std::size_t same = IsBrief() && before && now ? SameBeginning(*before, *now) : 0;
  const auto shown = [&](const std::string& text) {
    return label + (same > 0 ? std::string(kCut) + text.substr(same) : text);
  };
  if (before) {
    Marked(name, Mark::Removed, shown(*before));
    name = "";
  }
  if (now) Marked(name, Mark::Added, shown(*now));
}

std::size_t Listing::LongestLine() const { return page_.width.value_or(kLongestLine); }

void Listing::Write(std::string_view name, std::size_t nameWidth, std::string_view sign, Mark mark,
                    std::string_view text) {
  const std::size_t before = kIndent + nameWidth + sign.size();
  const std::size_t width = std::max(LongestLine(), before + kLeastText) - before;
  std::vector<std::string> lines;
  if (IsBrief()) {
    lines.push_back(Cut(text, width));
  } else if (page_.width) {
    lines = Fold(text, width);
  } else {
    lines.emplace_back(text);
  }
  for (const std::string& line : lines) {
    std::string start(sign);
    Put(std::string(kIndent, ' ') + Pad(name, nameWidth) + Painted(mark, start + line) + "\n");
    name = "";
    if (!sign.empty()) sign = "  ";
  }
}

std::string Listing::Painted(Mark mark, std::string_view text) const {
  if (!page_.hasColor || mark == Mark::None) return std::string(text);
  return (mark == Mark::Added ? kGreen : kRed) + std::string(text) + kPlain;
}

void Listing::Put(std::string_view line) {
  ++lines_;
  sink_(line);
}

}  // namespace applydic
