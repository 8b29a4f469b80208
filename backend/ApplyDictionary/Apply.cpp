#include "backend/ApplyDictionary/Apply.h"

#include <cstddef>
#include <numeric>
#include <string>
#include <unordered_set>
#include <vector>

#include "backend/ApplyDictionary/ApplyDictionarySpec.h"
#include "backend/ApplyDictionary/ApplyFileInfo.h"
#include "backend/ApplyDictionary/ApplyVarInfo.h"
#include "backend/ApplyDictionary/FastFindDataSource.h"
#include "host/Data.h"
#include "host/Output.h"

namespace {

// The names of the variables that one call has added, in upper case. The name index does not have
// them, except that an index of no names is built again and then has the first. The host's own
// look-up may mind letter case.
class AddedNames {
 public:
  // Notes the variable's name; false when it is there already.
  bool Note(const VELA_Variable& variable) {
    return names_.insert(variable.GetUpperCaseName()).second;
  }

 private:
  std::unordered_set<std::string> names_;
};

void InsertAtEnd(const VELA_Variable& variable, VELA_DataSource& working) {
  auto& store = dynamic_cast<DEDataStore&>(working);
  store.InsertVariable(static_cast<unsigned int>(store.ColumnCount()), variable);
}

// Applies one source variable to each target name, which may be new.
void ApplyToNames(const ApplyDictionarySpec& record, VELA_DataSource& working,
                  const VELA_DataSource& source) {
  // It takes each new variable's name and identity in turn. Its name has no part in what is applied
  // to existing variables.
  VELA_Variable renamed(source.GetVariable(record.sourceVars.front()));
  AddedNames added;
  for (const VelaVarName& name : record.targetNames) {
    const int column = working.FindVarIndex(name.Text(), 0);
    if (column >= 0) {
      ApplyVarInfo(renamed, working.GetVariable(column), record);
      continue;
    }
    renamed.SetName(name.Text());
    if (!added.Note(renamed)) continue;
    renamed.NewID();
    InsertAtEnd(renamed, working);
  }
}

// Applies one source variable to each target, whatever their names.
void ApplyToTargets(const ApplyDictionarySpec& record, VELA_DataSource& working,
                    const VELA_DataSource& source) {
  const VELA_Variable& variable = source.GetVariable(record.sourceVars.front());
  for (const int column : record.targetVars) {
    ApplyVarInfo(variable, working.GetVariable(column), record);
  }
}

// The columns of the source to be paired by name, in order.
std::vector<int> Candidates(const ApplyDictionarySpec& record, const VELA_DataSource& source) {
  if (!record.sourceVars.empty()) return record.sourceVars;
  if (!record.targetVars.empty()) return record.targetVars;
  std::vector<int> columns(static_cast<std::size_t>(source.ColumnCount()));
  std::iota(columns.begin(), columns.end(), 0);
  return columns;
}

// Pairs the candidates with their namesakes in the working file; returns how many were paired or
// added.
int PairByName(const ApplyDictionarySpec& record, VELA_DataSource& working,
               const VELA_DataSource& source) {
  const std::vector<int> candidates = Candidates(record, source);
  const FastFindDataSource index(working);
  AddedNames added;
  int paired = 0;
  for (const int candidate : candidates) {
    const VELA_Variable& variable = source.GetVariable(candidate);
    const int column = index.FindVarIndex(variable.GetName());
    if (column >= 0) {
      ++paired;
      ApplyVarInfo(variable, working.GetVariable(column), record);
    } else if (record.newVars && added.Note(variable)) {
      ++paired;
      InsertAtEnd(variable, working);
    }
  }
  return paired;
}

void ApplyByName(const ApplyDictionarySpec& record, VELA_DataSource& working,
                 const VELA_DataSource& source) {
  if (PairByName(record, working, source) > 0) return;
  if (!record.varLabel && !SelectsMoreThanLabel(record)) return;
  BpError(BpString("No selected variables had matching names...", true), BpShowMessage,
          BpLevelWarning);
}

}  // namespace

void Apply(ApplyDictionarySpec& record, VELA_DataSource& working, const VELA_DataSource* source,
           BpProcedure& /*procedure*/) {
  if (!record.targetNames.empty()) {
    ApplyToNames(record, working, *source);
  } else if (!record.sourceVars.empty() && !record.targetVars.empty()) {
    ApplyToTargets(record, working, *source);
  } else {
    ApplyByName(record, working, *source);
  }
  ApplyFileInfo(record, working, source);
}
