#include "backend/ApplyDictionary/FastFindDataSource.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "host/Data.h"

namespace {

// A name of 64 bytes, the longest that there is, and its end.
constexpr std::size_t kNameBufferSize = 65;

// The first bytes of a name as a number that orders as they do. A shorter name is filled with zero
// bytes. It tells most pairs of names apart without a look at the names, which lie all over the
// host's memory.
std::uint64_t BeginningOf(const char* name) {
  std::uint64_t beginning = 0;
  for (std::size_t i = 0; i < sizeof beginning; ++i) {
    beginning = beginning << 8 | static_cast<unsigned char>(*name);
    if (*name != '\0') ++name;
  }
  return beginning;
}

// An entry of the index while it is sorted.
struct SortedEntry {
  std::uint64_t beginning;  // of the name
  std::pair<const char*, unsigned int> entry;
};

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
  std::vector<SortedEntry> sorted;
  sorted.reserve(static_cast<std::size_t>(columnCount));
  for (int column = 0; column < columnCount; ++column) {
    const char* const name = dataSource->GetVariable(column).GetUpperCaseName();
    sorted.push_back({BeginningOf(name), {name, static_cast<unsigned int>(column)}});
  }
  std::sort(sorted.begin(), sorted.end(), [](const SortedEntry& a, const SortedEntry& b) {
    return a.beginning != b.beginning ? a.beginning < b.beginning : NameLess()(a.entry, b.entry);
  });
  entries.reserve(sorted.size());
  for (const SortedEntry& next : sorted) entries.push_back(next.entry);
}
