#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/Data.h"
#include "standalone/Data/HostAccess.h"

// A data source as the standalone host holds it.

namespace velahost {

class Codebook;

// What a command can change of a file besides its variables.
struct FileProperties {
  std::optional<std::string> label;
  std::vector<DSDocument> documents;
  int weight = -1;  // a column
  DatasourceAttributes attributes;
  std::array<std::vector<VariableSet>, 2> sets;  // by VarSetsType

  FileProperties() = default;
  FileProperties(const FileProperties& other);
  FileProperties& operator=(const FileProperties&) = delete;
};

// Whether two lists hold documents of the same texts in the same order.
bool SameDocuments(const std::vector<DSDocument>& a, const std::vector<DSDocument>& b);
// Whether two collections hold the same sets in the same order: their names, labels and members.
// What a set is for does not count: a file keeps that of a set that it has already.
bool SameSets(const std::vector<VariableSet>& a, const std::vector<VariableSet>& b);

// The properties' names in the account of a command, in their order there.
inline constexpr std::array<const char*, 6> kFilePropertyNames = {
    "label", "documents", "weight", "attributes", "mrsets", "varsets"};

// The names of the properties in which the two differ, in that order.
std::vector<const char*> DifferingProperties(const FileProperties& a, const FileProperties& b);

}  // namespace velahost

struct VELA_DataSource::Impl {
  std::deque<VELA_Variable> variables;  // a deque: variables stay where they are when one is added
  velahost::FileProperties now;
  // The file's properties as they were read, from the first change on; null while nothing was set.
  std::unique_ptr<velahost::FileProperties> before;

  // The document that the file was read from, and the file's place among the document's files; null
  // of a data source that was not read from one.
  std::shared_ptr<const velahost::Codebook> document;
  std::size_t place = 0;
  // The number of variables that were read; those behind them have been added.
  std::size_t readCount = 0;

  Impl() = default;
  // A copy: of the variables with their `before`, the file's properties and the place in the
  // document.
  Impl(const Impl& other);
  Impl& operator=(const Impl&) = delete;

  velahost::FileProperties& Change();
  const velahost::FileProperties& AsRead() const { return before ? *before : now; }

  // The column of the variable of that name, without regard to case, or -1. The first call builds
  // an index; each takes constant time and no heap memory but the index's. Not for several threads.
  int Find(std::string_view name) const;
  // Adds a variable at the end. REQUIRES: no variable has its name.
  void Add(std::unique_ptr<VELA_Variable::Impl> variable);

 private:
  void BuildIndex() const;

  mutable std::unordered_map<std::string_view, int> columns_;  // by upper-case name
  mutable bool isIndexed_ = false;                             // whether columns_ is there and good
};
