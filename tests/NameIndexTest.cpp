#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "backend/ApplyDictionary/FastFindDataSource.h"
#include "tests/HostRun.h"

namespace {

// How often memory was taken.
std::atomic<long> allocations = 0;

}  // namespace

#if !defined(__SANITIZE_ADDRESS__)  // whose own operators see more than a count
// Not inlined: the compiler would see one half of a pair and warn that free does not match new.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}
#endif

namespace {

// A store of numeric variables of those names.
DEDataStore& StoreOf(velahost::Host& host, const std::vector<std::string>& names) {
  velahost::CodebookFile file;
  for (const std::string& name : names) {
    auto variable = std::make_shared<velahost::Variable>();
    variable->SetName(name);
    file.names.Add(*variable);
    file.dictionary.variables.push_back(std::move(variable));
  }
  host.SetWorking(std::move(file));
  return *new DEDataStore(&host.Working());  // the host owns it
}

// Letters of two bytes: one whose capital has two as well, one whose capital has three and so is
// left as it is, one whose capital has one.
const std::string kTwo = "\u00E9";
const std::string kGrows = "\u0250";
const std::string kShrinks = "\u212A";

TEST(NameIndex, FindsNamesWithoutRegardToCase) {
  const std::string n64(64, 'n');
  const std::string m63(63, 'm');
  const std::string upper63(63, 'M');
  // The names in file order, each with the spellings that find it. Of 65 bytes a letter does not
  // fit, whole or in part; what is behind the bound does not count.
  const std::vector<std::pair<std::string, std::vector<std::string>>> kNames = {
      {"b", {"b", "B"}},
      {"a_1", {"A_1"}},
      {"A_", {"a_"}},
      {kTwo + "t" + kTwo, {"\u00C9T\u00C9", "\u00E9T\u00C9"}},
      {kGrows + "x", {kGrows + "X", "\u2C6FX"}},
      {n64, {std::string(64, 'N'), n64 + "cut off"}},
      {m63 + kTwo, {m63, m63 + kTwo, upper63 + "\u00C9more"}},
      {Repeated(kGrows, 32), {Repeated(kGrows, 32), Repeated(kGrows, 33)}},
      {"q" + kShrinks, {"QK", "qk", "Q" + kShrinks}},
      {Repeated(kTwo, 32), {Repeated("\u00C9", 40)}}};
  // A dotless i is no i.
  const std::vector<std::string> kNone = {
      "",        "a",  "bb",          "\xC3",    std::string("\xFF") + "b",
      "q\u0131", "QI", n64.substr(1), m63 + "e", Repeated(kGrows, 31)};
  std::vector<std::string> names;
  names.reserve(std::size(kNames));
  for (const auto& [name, spellings] : kNames) names.push_back(name);
  velahost::Host host;
  DEDataStore& store = StoreOf(host, names);
  const FastFindDataSource index(store);
  EXPECT_EQ(static_cast<VELA_DataSource*>(index), &store);
  const auto check = [&](const std::string& name, int column) {
    EXPECT_EQ(index.FindVarIndex(name.c_str()), column) << name;
    EXPECT_EQ(store.FindVarIndex(name.c_str(), 0), column) << name << ", by the host's own look-up";
  };
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    for (const std::string& spelling : kNames[i].second) check(spelling, static_cast<int>(i));
  }
  for (const std::string& name : kNone) check(name, -1);
}

TEST(NameIndex, IsBuiltByTheFirstLookUpAndKeptUntilRefresh) {
  velahost::Host host;
  DEDataStore& store = StoreOf(host, {"b", "a", "c"});
  FastFindDataSource index(store);
  int namesRead = 0;
  const Watch watch([&](const std::string& operation) {
    namesRead += operation.ends_with("GetUpperCaseName") ? 1 : 0;
  });
  EXPECT_EQ(namesRead, 0);
  EXPECT_EQ(index.FindVarIndex("x"), -1);
  EXPECT_EQ(namesRead, 3);
  EXPECT_EQ(index.FindVarIndex("A"), 1);
  VELA_Variable added(store.GetVariable(0));
  added.SetName("x");
  store.InsertVariable(3, added);
  EXPECT_EQ(index.FindVarIndex("X"), -1) << "added after the index was built";
  EXPECT_EQ(namesRead, 3);
  index.Refresh();
  EXPECT_EQ(namesRead, 3);
  EXPECT_EQ(index.FindVarIndex("X"), 3);
  EXPECT_EQ(namesRead, 7);
}

TEST(NameIndex, OfAnEmptyDataSourceFindsNothing) {
  velahost::Host host;
  DEDataStore& store = StoreOf(host, {});
  const FastFindDataSource index(store);
  for (const char* name : {"", "a", "a"}) EXPECT_EQ(index.FindVarIndex(name), -1);
}

TEST(NameIndex, LooksUpWithoutHeapMemory) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "nothing is counted";
#endif
  std::vector<std::string> names;
  names.reserve(1000);
  for (int i = 0; i < 1000; ++i) names.push_back("Variable_" + std::to_string(i) + kTwo);
  velahost::Host host;
  DEDataStore& store = StoreOf(host, names);
  // The host makes a variable when it is asked for.
  for (int column = 0; column < store.ColumnCount(); ++column) store.GetVariable(column);
  const FastFindDataSource index(store);
  const std::string tooLong(1000, 'x');
  const long before = allocations;
  EXPECT_EQ(index.FindVarIndex("VARIABLE_0\u00C9"), 0);
  const long built = allocations;
  EXPECT_GT(built, before) << "nothing is counted";
  EXPECT_LE(built - before, 2) << "the entries and what sorts them are made in one piece each";
  int found = 0;
  for (const std::string& name : names) found += index.FindVarIndex(name.c_str()) >= 0 ? 1 : 0;
  found += index.FindVarIndex(tooLong.c_str());
  EXPECT_EQ(allocations, built);
  EXPECT_EQ(found, 1000 - 1);
}

}  // namespace
