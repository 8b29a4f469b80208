#pragma once

#include <memory>
#include <utility>
#include <vector>

class VELA_DataSource;

// Finds the variables of a data source by name, without regard to case.
//
// The first look-up sorts the names once. Each look-up after it is a bisection that takes no heap
// memory. The index points at the names that the host holds and copies none, so the data source
// must outlive it, and its variables must keep their names. Variables that are added later are not
// found until Refresh. Only one thread may use it at a time: look-ups are const, but the first one
// builds the index.
class FastFindDataSource {
 public:
  // Orders entries by the bytes of their names. The columns have no part in it.
  struct NameLess {
    bool operator()(const std::pair<const char*, unsigned int>& a,
                    const std::pair<const char*, unsigned int>& b) const;
  };

  struct Data {
    // The indexed data source; not owned.
    VELA_DataSource* dataSource = nullptr;
    // The upper-case name and the column of each variable, sorted by NameLess. Empty when it is not
    // built yet.
    mutable std::vector<std::pair<const char*, unsigned int>> entries;

    // Builds the entries. REQUIRES: there are none.
    void IndexNames() const;
  };

  // An index over the data source, of which nothing is read yet.
  explicit FastFindDataSource(VELA_DataSource& dataSource);
  FastFindDataSource(const FastFindDataSource&) = delete;
  FastFindDataSource& operator=(const FastFindDataSource&) = delete;
  ~FastFindDataSource();

  // The indexed data source.
  operator VELA_DataSource*() const;

  // Makes the next look-up build the index again, from the variables that are there then.
  void Refresh();

  // The column of the variable of that name, from 0, or -1. When several have the name, one of
  // them. The host's upper-case names must agree with its upper-casing of a text. Only as much of a
  // name counts as names in a file can hold.
  int FindVarIndex(const char* name) const;

 private:
  std::unique_ptr<Data> data_;
};
