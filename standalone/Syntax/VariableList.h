#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "standalone/Dictionary/VariableNames.h"
#include "standalone/Syntax/Diagnostics.h"
#include "standalone/Syntax/Tokenizer.h"

namespace velahost {

// A list of variables as it stands in a command: names, "a TO b" and ALL. What is wrong is reported
// and left out.
class VariableList {
 public:
  // The tokens of the list without the one that ends it, in the named subcommand; where the
  // variables are looked for, for advice. The tokens and the diagnostics live as long as this
  // object.
  VariableList(std::span<const Token> tokens, std::string subcommand, std::string where,
               Diagnostics& diagnostics)
      : tokens_(tokens),
        subcommand_(std::move(subcommand)),
        where_(std::move(where)),
        diagnostics_(diagnostics) {}

  // The columns of the variables listed, in list order, each as often as it is named.
  std::vector<int> Columns(const VariableNames& variables);
  // The names listed, in list order; those that are no variables yet are names too. Null stands
  // for no variables.
  std::vector<std::string> Names(const VariableNames* variables);

  // Whether anything was reported.
  bool HasErrors() const { return hasErrors_; }

 private:
  // One entry: a name, a range of two, or ALL, which has no name.
  struct Entry {
    const Token* first = nullptr;
    const Token* last = nullptr;  // of a range
  };

  // The next entry; nothing at the end.
  std::optional<Entry> Next();
  // The last end of a range, whose TO is the current token; null, reported, when it is none.
  const Token* TakeLast();
  // Reports the current TO as out of place and passes over it.
  void FailTo();
  // The column that a name stands for; nothing, reported, when there is none.
  std::optional<int> Column(const Token& name, const VariableNames& variables);
  void AddColumns(const Entry& entry, const VariableNames& variables, std::vector<int>& columns);
  void AddNames(const Entry& entry, const VariableNames* variables,
                std::vector<std::string>& names);
  // Whether the list holds more than a list can; reports it.
  bool IsTooLong(std::size_t listed);
  // Adds the names of one stem with ascending numbers.
  void AddNumbered(const Entry& range, std::vector<std::string>& names);
  bool IsKeyword(std::size_t position, const char* keyword) const;
  // What to do about a name that no variable has.
  std::string AdviceOn(const Token& name, const VariableNames& variables);
  void Fail(const Token& at, const std::string& text,
            const std::vector<std::string_view>& arguments, const std::string& advice = "");

  std::span<const Token> tokens_;
  std::string subcommand_;
  std::string where_;
  Diagnostics& diagnostics_;
  std::size_t position_ = 0;
  bool hasErrors_ = false;
  std::size_t suggestions_ = 0;  // that were looked for
};

}  // namespace velahost
