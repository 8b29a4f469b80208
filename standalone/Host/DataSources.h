#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "host/Data.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Dictionary/VariableNames.h"

// A data source as the library sees it.

struct VELA_DataSource::Impl {
  velahost::FileItems items;
  // What the reading operation of the attributes returns a reference to; made when it is asked for.
  mutable std::unique_ptr<DatasourceAttributes> attributes;

  // The file that its sets were read from; null for none.
  std::shared_ptr<const velahost::CodebookFile> readFrom;

  // The data source of a file as it was read. Its variables are made when they are asked for: a
  // command that names one variable of a large file takes no longer than on a small one.
  explicit Impl(const std::shared_ptr<const velahost::CodebookFile>& file);
  // A copy of another one as it is now.
  Impl(const Impl& other);
  Impl& operator=(const Impl&) = delete;

  std::size_t Count() const { return count_; }
  // The variable at a column; it stays where it is. REQUIRES: column < Count().
  VELA_Variable& At(std::size_t column);
  // What the variable at a column says now. REQUIRES: column < Count().
  const std::shared_ptr<const velahost::Variable>& Now(std::size_t column) const;

  // The dictionary as it is now.
  velahost::Dictionary DictionaryNow() const;
  // The names of the variables; they live until one is added or renamed.
  const velahost::VariableNames& Names() const;
  // Adds a variable at the end. REQUIRES: no variable has its name.
  void Add(std::unique_ptr<VELA_Variable::Impl> variable);
  // A variable has been renamed.
  void ForgetNames();

 private:
  void Append(std::unique_ptr<VELA_Variable::Impl> variable);

  // Variables in blocks, so that they stay where they are when one is added, and so that a large
  // file of which a command names one takes no room for the others. A variable of the file that was
  // not asked for yet is not there, and neither is a block of none but such.
  static constexpr std::size_t kBlockSize = 256;
  using Block = std::array<std::optional<VELA_Variable>, kBlockSize>;
  const VELA_Variable* Made(std::size_t column) const;
  std::optional<VELA_Variable>& PlaceOf(std::size_t column);

  std::vector<std::unique_ptr<Block>> blocks_;
  std::size_t count_ = 0;

  // The file that it was made for, whose names hold as long as no variable is added or renamed;
  // null once one was.
  std::shared_ptr<const velahost::CodebookFile> namesOf_;
  mutable std::optional<velahost::VariableNames> names_;  // otherwise; made when they are asked for
};
