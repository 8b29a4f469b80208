#include "backend/ApplyDictionary/FastFindDataSource.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "host/Data.h"

namespace {

// A name of 64 bytes, the longest that there is, and its end.
constexpr std::size_t kNameBufferSize = 65;

}  // namespace

FastFindDataSource::FastFindDataSource(VELA_DataSource& dataSource)
    : data_(std::make_unique<Data>(Data{&dataSource, {}})) {}

FastFindDataSource::~FastFindDataSource() = default;

FastFindDataSource::operator VELA_DataSource*() const { return data_->dataSource; }

void FastFindDataSource::Refresh() { data_->entries.clear(); }

int FastFindDataSource::FindVarIndex(const char* name) const {
  if (data_->entries.empty()) data_->IndexNames();

  char buffer[kNameBufferSize];
  VELAMBzstncpy_A(buffer, name, sizeof buffer);
  const std::pair<const char*, unsigned int> key(VELAMBstrupr_A(buffer), 0);

  const auto& entries = data_->entries;
  const auto found = std::lower_bound(entries.begin(), entries.end(), key, NameLess());
  if (found == entries.end() || NameLess()(key, *found)) return -1;
  return static_cast<int>(found->second);
}

bool FastFindDataSource::NameLess::operator()(const std::pair<const char*, unsigned int>& a,
                                              const std::pair<const char*, unsigned int>& b) const {
  return std::strcmp(a.first, b.first) < 0;
}

void FastFindDataSource::Data::IndexNames() const {
  const int columnCount = dataSource->ColumnCount();
  entries.reserve(static_cast<std::size_t>(columnCount));
  for (int column = 0; column < columnCount; ++column) {
    entries.emplace_back(dataSource->GetVariable(column).GetUpperCaseName(),
                         static_cast<unsigned int>(column));
  }
  std::sort(entries.begin(), entries.end(), NameLess());
}
