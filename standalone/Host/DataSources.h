#pragma once

#include <deque>
#include <memory>
#include <optional>

#include "host/Data.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Dictionary/Dictionary.h"
#include "standalone/Dictionary/VariableNames.h"

// A data source as the library sees it.

struct VELA_DataSource::Impl {
  // A deque: variables stay where they are when one is added.
  std::deque<VELA_Variable> variables;
  velahost::FileItems items;
  // What the reading operation of the attributes returns a reference to; made when it is asked for.
  mutable std::unique_ptr<DatasourceAttributes> attributes;

  // The file that its sets were read from; null for none.
  std::shared_ptr<const velahost::CodebookFile> readFrom;

  // The data source of a file as it was read.
  explicit Impl(const std::shared_ptr<const velahost::CodebookFile>& file);
  // A copy of another one as it is now.
  Impl(const Impl& other);
  Impl& operator=(const Impl&) = delete;

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

  // The file that it was made for, whose names hold as long as no variable is added or renamed;
  // null once one was.
  std::shared_ptr<const velahost::CodebookFile> namesOf_;
  mutable std::optional<velahost::VariableNames> names_;  // otherwise; made when they are asked for
};
