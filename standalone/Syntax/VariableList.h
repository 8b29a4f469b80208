#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/Data.h"
#include "standalone/Syntax/Tokenizer.h"

namespace velahost {

// A list of variables as it stands in a command: names, "a TO b" and ALL. What is wrong is reported
// and left out.
class VariableList {
 public:
  // The tokens of the list without the one that ends it, in the named subcommand. They live as long
  // as this object.
  VariableList(std::span<const Token> tokens, std::string subcommand)
      : tokens_(tokens), subcommand_(std::move(subcommand)) {}

  // The columns of the variables listed, in list order, each as often as it is named.
  std::vector<int> Columns(const VELA_DataSource& dataSource);
  // The names listed, in list order; those that the data source does not have are names too. A null
  // data source has none.
  std::vector<std::string> Names(const VELA_DataSource* dataSource);

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
  std::optional<int> Column(const Token& name, const VELA_DataSource& dataSource);
  void AddColumns(const Entry& entry, const VELA_DataSource& dataSource, std::vector<int>& columns);
  void AddNames(const Entry& entry, const VELA_DataSource* dataSource,
                std::vector<std::string>& names);
  // Whether the list holds more than a list can; reports it.
  bool IsTooLong(std::size_t listed);
  // Adds the names of one stem with ascending numbers.
  void AddNumbered(const Entry& range, std::vector<std::string>& names);
  bool IsWord(std::size_t position, const char* word) const;
  void Fail(const Token& at, const std::string& text,
            const std::vector<std::string_view>& arguments);

  std::span<const Token> tokens_;
  std::string subcommand_;
  std::size_t position_ = 0;
  bool hasErrors_ = false;
};

}  // namespace velahost
