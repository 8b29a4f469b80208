#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "backend/ApplyDictionary/Apply.h"
#include "backend/ApplyDictionary/ApplyDictionarySpec.h"
#include "backend/ApplyDictionary/ApplyVarInfo.h"
#include "backend/ApplyDictionary/FastFindDataSource.h"
#include "host/Data.h"
#include "host/Output.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Host/DataSources.h"
#include "standalone/Host/Host.h"

// What runs in memory: Apply, the name index, and each beside what it is measured against.

namespace {

using Clock = std::chrono::steady_clock;

std::string NameOf(int number, char q) {
  const std::string digits = std::to_string(number);
  return q + std::string(digits.size() < 6 ? 6 - digits.size() : 0, '0') + digits +
         (q == 'Q' ? "_item" : "_ITEM");
}

velahost::Variable BareVariable(const std::string& name) {
  velahost::Variable variable;
  variable.SetName(name);
  variable.label = velahost::Text(name);
  variable.print = variable.write = {velahost::Text("F"), 8, 0};
  return variable;
}

velahost::Variable DescribedVariable(int number) {
  velahost::Variable variable = BareVariable(NameOf(number, 'Q'));
  auto labels = std::make_shared<velahost::ValueLabels>(0);
  double value = 0;
  for (const char* label : {"Strongly agree", "Agree", "Neither agree nor disagree", "Disagree",
                            "Strongly disagree", "No answer"}) {
    labels->Add({++value, velahost::Text(), velahost::Text(label)});
  }
  variable.label =
      velahost::Text("Question " + std::to_string(number) + ": agreement with the statement");
  variable.valueLabels = std::move(labels);
  variable.missing.numbers = {value};
  variable.level = velahost::Level::Ordinal;
  return variable;
}

void Add(velahost::Variable variable, velahost::CodebookFile& file) {
  file.names.Add(variable);
  file.dictionary.variables.push_back(
      std::make_shared<const velahost::Variable>(std::move(variable)));
}

// A described data source, and the names of a working file: the same in another case and order.
struct Dictionaries {
  explicit Dictionaries(int count) : workingOrder(static_cast<std::size_t>(count)) {
    std::iota(workingOrder.begin(), workingOrder.end(), 0);
    std::shuffle(workingOrder.begin(), workingOrder.end(), std::mt19937(1));
    auto file = std::make_shared<velahost::CodebookFile>();
    for (int i = 0; i < count; ++i) Add(DescribedVariable(i), *file);
    source = std::make_unique<VELA_DataSource>(std::make_unique<VELA_DataSource::Impl>(file));
  }

  // A working file to which nothing has been applied.
  velahost::CodebookFile Working() const {
    velahost::CodebookFile file;
    for (const int number : workingOrder) Add(BareVariable(NameOf(number, 'q')), file);
    return file;
  }

  std::unique_ptr<VELA_DataSource> source;
  std::vector<int> workingOrder;  // by column, the column in the source
};

// The dictionaries of the size that was asked for last.
const Dictionaries& DictionariesOf(int count) {
  static std::unique_ptr<Dictionaries> made;
  if (!made || made->source->ColumnCount() != count) made = std::make_unique<Dictionaries>(count);
  return *made;
}

// Times what is done by work(working file, source), each time on a new working file.
template <typename Work>
void TimeOnNewFiles(benchmark::State& state, Work work) {
  const Dictionaries& dictionaries = DictionariesOf(static_cast<int>(state.range(0)));
  while (state.KeepRunning()) {
    velahost::Host host;
    host.SetWorking(dictionaries.Working());
    const Clock::time_point begin = Clock::now();
    work(host.Working(), dictionaries);
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - begin).count());
  }
}

void BM_Apply(benchmark::State& state) {
  TimeOnNewFiles(state, [](VELA_DataSource& working, const Dictionaries& dictionaries) {
    ApplyDictionarySpec record;
    BpProcedure procedure("Apply Dictionary", 2);
    Apply(record, working, dictionaries.source.get(), procedure);
  });
}

// The same host calls in the same order, with the pairing known beforehand.
void BM_ApplyPaired(benchmark::State& state) {
  const Dictionaries& dictionaries = DictionariesOf(static_cast<int>(state.range(0)));
  std::vector<int> columns(dictionaries.workingOrder.size());  // by column in the source
  for (std::size_t i = 0; i < columns.size(); ++i) {
    columns[static_cast<std::size_t>(dictionaries.workingOrder[i])] = static_cast<int>(i);
  }
  TimeOnNewFiles(state, [&](VELA_DataSource& working, const Dictionaries& same) {
    const ApplyDictionarySpec record;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      ApplyVarInfo(same.source->GetVariable(static_cast<int>(i)), working.GetVariable(columns[i]),
                   record);
    }
  });
}

void BM_Index(benchmark::State& state) {
  TimeOnNewFiles(state, [](VELA_DataSource& working, const Dictionaries& dictionaries) {
    const FastFindDataSource index(working);
    const int count = dictionaries.source->ColumnCount();
    for (int i = 0; i < count; ++i) {
      benchmark::DoNotOptimize(index.FindVarIndex(dictionaries.source->GetVariable(i).GetName()));
    }
  });
}

// Building and look-ups by a hash table, upper-casing through the host as the index does.
void BM_IndexByHash(benchmark::State& state) {
  TimeOnNewFiles(state, [](VELA_DataSource& working, const Dictionaries& dictionaries) {
    const int count = working.ColumnCount();
    std::unordered_map<std::string, int> columns;
    columns.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) columns.emplace(working.GetVariable(i).GetUpperCaseName(), i);
    char buffer[65];
    for (int i = 0; i < count; ++i) {
      VELAMBzstncpy_A(buffer, dictionaries.source->GetVariable(i).GetName(), sizeof buffer);
      const auto found = columns.find(VELAMBstrupr_A(buffer));
      benchmark::DoNotOptimize(found == columns.end() ? -1 : found->second);
    }
  });
}

// One variable under so many new names.
void BM_Rename(benchmark::State& state) {
  const Dictionaries& dictionaries = DictionariesOf(1000);
  ApplyDictionarySpec record;
  record.newVars = true;
  record.sourceVars = {0};
  for (int i = 0; i < state.range(0); ++i) {
    record.targetNames.emplace_back(("new" + std::to_string(i)).c_str());
  }
  while (state.KeepRunning()) {
    velahost::Host host;
    host.SetWorking(dictionaries.Working());
    auto* const store = new DEDataStore(&host.Working());  // the host's from here on
    BpProcedure procedure("Apply Dictionary", 2);
    const Clock::time_point begin = Clock::now();
    Apply(record, *store, dictionaries.source.get(), procedure);
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - begin).count());
  }
}

BENCHMARK(BM_Apply)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000)->UseManualTime();
BENCHMARK(BM_ApplyPaired)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000)->UseManualTime();
BENCHMARK(BM_Index)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000)->UseManualTime();
BENCHMARK(BM_IndexByHash)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000)->UseManualTime();
BENCHMARK(BM_Rename)->Arg(1000)->Arg(10000)->UseManualTime();

}  // namespace

BENCHMARK_MAIN();
