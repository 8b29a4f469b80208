#include "standalone/Syntax/VariableList.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "standalone/Syntax/Subcommands.h"
#include "standalone/Syntax/SyntaxError.h"
#include "standalone/Text/Numbers.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

constexpr std::size_t kMostDigits = 9;
constexpr int kMostNumbers = 999'999'999;
constexpr int kMostNames = 100'000;
constexpr std::size_t kMostListed = 5'000'000;
// Each looks at all names of a file, and a list may have a thousand errors.
constexpr std::size_t kMostSuggestions = 20;

// A name with the number at its end.
struct NumberedName {
  std::string_view stem;
  std::string_view digits;
};

NumberedName SplitNumber(std::string_view name) {
  const std::size_t lastOfStem = name.find_last_not_of("0123456789");
  const std::size_t stem = lastOfStem == std::string_view::npos ? 0 : lastOfStem + 1;
  return {name.substr(0, stem), name.substr(stem)};
}

// A name's token; a number is one too where a variable is called so.
bool IsName(const Token& token) { return token.kind == Token::Name || token.kind == Token::Number; }

std::string_view NameIn(const Token& token) { return CutToBytes(token.typed, kNameBytes); }

// The column that the token names, or -1.
int Find(const VariableNames& variables, const Token& token) { return variables.Find(token.typed); }

}  // namespace

std::vector<int> VariableList::Columns(const VariableNames& variables) {
  std::vector<int> columns;
  position_ = 0;
  while (const std::optional<Entry> entry = Next()) {
    AddColumns(*entry, variables, columns);
    if (IsTooLong(columns.size())) break;
  }
  return columns;
}

std::vector<std::string> VariableList::Names(const VariableNames* variables) {
  std::vector<std::string> names;
  position_ = 0;
  while (const std::optional<Entry> entry = Next()) {
    AddNames(*entry, variables, names);
    if (IsTooLong(names.size())) break;
  }
  return names;
}

std::optional<VariableList::Entry> VariableList::Next() {
  while (position_ < tokens_.size()) {
    const Token& token = tokens_[position_];
    if (IsKeyword(position_, "TO")) {
      FailTo();
    } else if (!IsName(token)) {
      ++position_;
      Fail(token, "Unexpected ^1 in ^2 (line ^3, column ^4). Expect names, TO or ALL...",
           {token.typed, subcommand_});
    } else if (IsKeyword(position_++, "ALL")) {
      return Entry();
    } else if (!IsKeyword(position_, "TO")) {
      return Entry{&token, nullptr};
    } else if (const Token* last = TakeLast(); last != nullptr) {
      return Entry{&token, last};
    }
  }
  return std::nullopt;
}

const Token* VariableList::TakeLast() {
  const std::size_t last = position_ + 1;
  if (last == tokens_.size() || IsKeyword(last, "TO") || IsKeyword(last, "ALL")) {
    FailTo();
    return nullptr;
  }
  position_ = last;  // what is no name at all is reported there, itself
  return IsName(tokens_[last]) ? &tokens_[position_++] : nullptr;
}

void VariableList::FailTo() {
  Fail(tokens_[position_],
       "TO out of place in ^1 (line ^2, column ^3). Expect a name on either side...",
       {subcommand_});
  while (IsKeyword(position_, "TO")) ++position_;
}

std::optional<int> VariableList::Column(const Token& name, const VariableNames& variables) {
  const int column = Find(variables, name);
  if (column >= 0) return column;
  Fail(name, "Unknown variable ^1 in ^2 (line ^3, column ^4)...", {name.typed, subcommand_},
       AdviceOn(name, variables));
  return std::nullopt;
}

std::string VariableList::AdviceOn(const Token& name, const VariableNames& variables) {
  if (&name != tokens_.data()) {
    std::string advice = AdviceOnSeparator(name, *(&name - 1));
    if (!advice.empty()) return advice;
  }
  std::string advice = "There is none of that name in " + where_ + ".";
  if (++suggestions_ > kMostSuggestions) return advice;
  std::vector<std::string_view> names;
  names.reserve(static_cast<std::size_t>(variables.Count()));
  for (int column = 0; column < variables.Count(); ++column) names.push_back(variables.At(column));
  const std::string meant = DidYouMean(name.typed, names);
  return meant.empty() ? advice : advice + " " + meant;
}

void VariableList::AddColumns(const Entry& entry, const VariableNames& variables,
                              std::vector<int>& columns) {
  int from = 0;
  int to = variables.Count() - 1;
  if (entry.first != nullptr) {
    const std::optional<int> first = Column(*entry.first, variables);
    const std::optional<int> last = entry.last == nullptr ? first : Column(*entry.last, variables);
    if (!first || !last) return;
    if (*first > *last) {
      Fail(*entry.first, "Range ^1 TO ^2 in ^3 runs backwards (line ^4, column ^5)...",
           {entry.first->typed, entry.last->typed, subcommand_});
      return;
    }
    from = *first;
    to = *last;
  }
  for (int column = from; column <= to; ++column) columns.push_back(column);
}

void VariableList::AddNames(const Entry& entry, const VariableNames* variables,
                            std::vector<std::string>& names) {
  const bool isAll = entry.first == nullptr;
  const bool isRange = entry.last != nullptr;
  const auto exists = [variables](const Token& token) {
    return variables != nullptr && Find(*variables, token) >= 0;
  };

  if (isAll || (isRange && exists(*entry.first) && exists(*entry.last))) {
    if (variables == nullptr) return;
    std::vector<int> columns;
    AddColumns(entry, *variables, columns);
    for (const int column : columns) names.push_back(variables->At(column).String());
  } else if (isRange) {
    AddNumbered(entry, names);
  } else if (entry.first->kind == Token::Name || exists(*entry.first)) {
    names.emplace_back(NameIn(*entry.first));
  } else {
    Fail(*entry.first, "^1 in ^2 cannot be the name of a new variable (line ^3, column ^4)...",
         {entry.first->typed, subcommand_});
  }
}

// A short command may name the variables of a large file again and again.
bool VariableList::IsTooLong(std::size_t listed) {
  if (listed <= kMostListed) return false;
  Fail(tokens_[position_ - 1],
       "List in ^1 names more than 5000000 variables (line ^2, column ^3)...", {subcommand_});
  return true;
}

void VariableList::AddNumbered(const Entry& range, std::vector<std::string>& names) {
  const auto fail = [&](const std::string& what) {
    Fail(*range.first, "Range ^1 TO ^2 in ^3 " + what,
         {range.first->typed, range.last->typed, subcommand_});
  };
  const NumberedName first = SplitNumber(range.first->typed);
  const NumberedName last = SplitNumber(range.last->typed);
  if (range.first->kind != Token::Name || range.last->kind != Token::Name || first.digits.empty() ||
      last.digits.empty() || !EqualIgnoringCase(first.stem, last.stem)) {
    return fail(
        "cannot be made out (line ^4, column ^5). Expect two variables that exist, or new names "
        "that differ only in the number at their end...");
  }
  if (first.digits.size() > kMostDigits || last.digits.size() > kMostDigits) {
    return fail("has more than 9 digits in a number (line ^4, column ^5)...");
  }
  const int from = *ReadInteger(first.digits, 0, kMostNumbers);
  const int to = *ReadInteger(last.digits, 0, kMostNumbers);
  if (from > to) return fail("runs backwards (line ^4, column ^5)...");
  if (to - from >= kMostNames) return fail("has more than 100000 names (line ^4, column ^5)...");

  const std::size_t width = first.digits.size();
  if (first.stem.size() + std::max(width, std::to_string(to).size()) > kNameBytes) {
    return fail("has names of more than 64 bytes (line ^4, column ^5)...");
  }
  for (int number = from; number <= to; ++number) {
    names.push_back(fmt::format("{}{:0{}}", first.stem, number, width));
  }
}

bool VariableList::IsKeyword(std::size_t position, const char* keyword) const {
  return position < tokens_.size() && tokens_[position].IsKeyword(keyword);
}

void VariableList::Fail(const Token& at, const std::string& text,
                        const std::vector<std::string_view>& arguments, const std::string& advice) {
  hasErrors_ = true;
  ReportSyntaxError(diagnostics_, at, text, arguments, advice);
}

}  // namespace velahost
