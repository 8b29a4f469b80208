#include "tests/cases/RewriteOutcomes.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace cases {
namespace {

constexpr std::size_t kColumns = 100;
constexpr std::string_view kSameLine = "; ";

// An item of an outcome with what stands between it and the one before: the end of the line, with
// comments and empty lines, or what parts items on one line.
struct Item {
  std::string before;
  std::string text;
};

// The text of an outcome, from the end of the line with the dashes to the next case.
struct Outcome {
  std::vector<Item> items;
  std::string after;
};

Outcome Split(const std::string& text) {
  Outcome outcome;
  std::size_t end = 0;  // of the last item
  for (std::size_t line = text.find('\n'); line != std::string::npos;) {
    const std::size_t next = text.find('\n', line + 1);
    const std::string whole = text.substr(line + 1, next - line - 1);
    std::size_t at = line + 1 + std::min(whole.find_first_not_of(' '), whole.size());
    const std::size_t last = line + 1 + whole.find_last_not_of(' ') + 1;
    line = next;
    if (whole.starts_with("##")) continue;
    while (at < last) {
      const std::size_t stop = std::min(text.find(kSameLine, at), last);
      outcome.items.push_back({text.substr(end, at - end), text.substr(at, stop - at)});
      end = stop;
      at = stop + kSameLine.size();
    }
  }
  outcome.after = text.substr(end);
  return outcome;
}

// What stands between two items once the one between them is taken out: comments stay.
std::string Without(const std::string& removed, const std::string& next) {
  const std::size_t line = removed.rfind('\n');
  if (line == std::string::npos) return next;
  return next == kSameLine ? removed : removed.substr(0, line) + next;
}

std::string Replaced(const std::string& text, const Lines& now) {
  Outcome outcome = Split(text);
  std::vector<Item>& items = outcome.items;
  const auto isSame = [](const Item& item, const std::string& line) { return item.text == line; };
  const auto [first, firstNow] =
      std::mismatch(items.begin(), items.end(), now.begin(), now.end(), isSame);
  const auto [last, lastNow] = std::mismatch(items.rbegin(), std::reverse_iterator(first),
                                             now.rbegin(), std::reverse_iterator(firstNow), isSame);
  // What differs takes the places that are there, one after the other; more gets lines of its own.
  std::vector<Item> result(items.begin(), first);
  auto old = first;
  for (auto line = firstNow; line != lastNow.base(); ++line) {
    std::string before = old == last.base() ? "\n" : (old++)->before;
    const bool isFull = !result.empty() && before == kSameLine &&
                        result.back().text.size() + line->size() > kColumns;
    result.push_back({isFull ? "\n" : before, *line});
  }
  std::string removed = std::string(kSameLine);
  for (; old != last.base(); ++old) removed = Without(removed, old->before);
  if (last != items.rbegin()) {
    last.base()->before = Without(removed, last.base()->before);
    result.insert(result.end(), last.base(), items.end());
  } else {
    outcome.after = Without(removed, outcome.after);
  }
  std::string written;
  for (const Item& item : result) written += item.before + item.text;
  return written + outcome.after;
}

std::string ReadText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void WriteText(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  if (!(file << text) || !file.flush()) throw std::runtime_error(path + ": cannot be written");
}

// The text with the outcome of the case whose title is on a line.
std::string WithOutcome(const std::string& text, int title, const Lines& outcome) {
  std::size_t begin = 0;
  for (int line = 1; line < title; ++line) begin = text.find('\n', begin) + 1;
  begin = text.find("\n----", begin) + std::string_view("\n----").size();
  const std::size_t end = std::min(text.find("\n# ", begin), text.size());
  return text.substr(0, begin) + Replaced(text.substr(begin, end - begin), outcome) +
         text.substr(end);
}

bool ReadsAs(const std::string& path, const std::vector<Case>& wanted) {
  const std::vector<Case> read = ReadCaseFile(path);
  return std::equal(
      read.begin(), read.end(), wanted.begin(), wanted.end(),
      [](const Case& a, const Case& b) { return a.title == b.title && a.outcome == b.outcome; });
}

}  // namespace

void RewriteOutcomes(const std::string& path, const Outcomes& outcomes) {
  std::vector<Case> wanted = ReadCaseFile(path);
  for (Case& one : wanted) {
    if (const auto found = outcomes.find(one.line); found != outcomes.end()) {
      one.outcome = found->second;
    }
  }
  const std::string before = ReadText(path);
  std::string now = before;
  for (const auto& [title, outcome] : outcomes) now = WithOutcome(now, title, outcome);
  WriteText(path, now);
  if (ReadsAs(path, wanted)) return;
  WriteText(path, before);
  throw std::runtime_error(path + ": an outcome cannot be written in the form of case files");
}

}  // namespace cases
