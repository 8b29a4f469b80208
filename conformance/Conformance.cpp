#include <velawapd/Data.h>
#include <velawapd/Dictionary.h>
#include <velawapd/Exceptions.h>
#include <velawapd/Output.h>
#include <velawapd/conformance/Conformance.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

namespace conformance {
namespace {

int failures = 0;
const char* running = "";

void Check(bool holds, const char* demand) {
  if (holds) return;
  ++failures;
  std::printf("FAILED  %s: %s\n", running, demand);
}

// What the host is asked to make for each test, by column.
enum Column : int { kNumber, kWide, kNarrow, kBare };

VELA_DataSource& Open() {
  OpenWorking({{"Number", 0, "A number", {{"1", "one"}, {"2", "two"}}, {"9"}, {{"Unit", "Person"}}},
               {"Wide", 8, "A string", {{"AB", "a and b"}, {"C", "c"}}, {"XY"}},
               {"narrow", 2, {}, {}, {}},
               {"bare", 0, {}, {}, {}}});
  return *global_dicptr_()->dataSource;
}

// The text at an address that the library would read: so many bytes.
std::string BytesAt(const OBS* value, int width) {
  return {reinterpret_cast<const char*>(value), static_cast<std::size_t>(width)};
}

bool IsText(const char* text, const char* expected) {
  return text != nullptr && std::strcmp(text, expected) == 0;
}

// The missing values of a string variable, each as the library would read it.
std::vector<std::string> MissingOf(const VELA_Variable& variable) {
  const OBS* cells[3] = {};
  const int count = std::abs(variable.GetMissingValues(cells[0], cells[1], cells[2]));
  std::vector<std::string> values;
  values.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) values.push_back(BytesAt(cells[i], variable.GetType()));
  return values;
}

void SetMissingOf(const VELA_Variable& from, VELA_Variable& to) {
  const OBS* cells[3] = {};
  const int count = from.GetMissingValues(cells[0], cells[1], cells[2]);
  to.SetMissingValues(count, cells[0], cells[1], cells[2]);
}

using Pairs = std::vector<std::pair<std::string, std::string>>;

// The pairs of a set of strings, in order.
Pairs StringPairs(const VELA_VLImplPointer& set) {
  VELA_ValueLabelMap view(set);
  view.Reset();
  Pairs pairs;
  std::string value;
  const char* label = nullptr;
  while (view.GetNextPair(value, label) != 0) pairs.emplace_back(value, label);
  return pairs;
}

void ReadsWhatWasMade() {
  const VELA_DataSource& file = Open();
  Check(file.ColumnCount() == 4, "ColumnCount is the number of variables");
  Check(IsText(file.GetVariable(kNumber).GetName(), "Number"), "GetName gives the name as spelled");
  Check(file.GetVariable(kNumber).GetType() == 0, "a number has the type 0");
  Check(file.GetVariable(kWide).GetType() == 8, "a string has its width as its type");
  Check(IsText(file.GetVariable(kWide).GetLabel(), "A string"), "GetLabel gives the label");
  Check(file.GetVariable(kBare).GetLabel() == nullptr, "GetLabel gives null without a label");
  Check(!file.GetVariable(kBare).GetValueLabels(), "the handle is null without value labels");
  Check(file.GetVariable(kNumber).GetAttributes().Size() == 1, "attributes are counted");
  Check(file.GetLabel() == nullptr, "a file without a label gives null");
  Check(file.GetWeightVarIndex() == -1, "a file without a weight gives -1");
  for (int column = 0; column < file.ColumnCount(); ++column) {
    Check(file.ObsIndex(column) >= 0, "ObsIndex counts from 0");
  }
}

void NamesAgree() {
  VELA_DataSource& file = Open();
  for (int column = 0; column < file.ColumnCount(); ++column) {
    const VELA_Variable& variable = file.GetVariable(column);
    std::string upper = variable.GetName();
    const std::size_t size = upper.size();
    Check(VELAMBstrupr_A(upper.data()) == upper.data(), "VELAMBstrupr_A returns the text");
    Check(std::strcmp(upper.c_str(), variable.GetUpperCaseName()) == 0,
          "GetUpperCaseName is what VELAMBstrupr_A makes of the name");
    Check(std::strlen(upper.c_str()) <= size, "an upper-case name takes no more bytes");
    Check(file.FindVarIndex(variable.GetName(), 0) == column, "FindVarIndex finds each name");
  }
  Check(file.FindVarIndex("absent", 0) == -1, "FindVarIndex gives -1 for no variable");
  file.GetVariable(kBare).SetName("Renamed");
  Check(IsText(file.GetVariable(kBare).GetName(), "Renamed"), "SetName renames");
  Check(file.FindVarIndex("Renamed", 0) == kBare, "FindVarIndex knows a new name");
  Check(file.FindVarIndex("bare", 0) == -1, "FindVarIndex forgets an old name");

  char buffer[5] = {'?', '?', '?', '?', '?'};
  Check(VELAMBzstncpy_A(buffer, "abcdef", 4) == buffer, "VELAMBzstncpy_A returns the buffer");
  Check(IsText(buffer, "abc"), "VELAMBzstncpy_A cuts to the bound, the zero byte included");
  Check(buffer[4] == '?', "VELAMBzstncpy_A writes nothing behind the bound");
  Check(IsText(VELAMBzstncpy_A(buffer, "a", 4), "a"), "VELAMBzstncpy_A copies a short text whole");
}

// The library hands over cells without their width. A host that takes the width of the variable
// that is set reads past a narrower cell.
void CellsKnowTheirWidth() {
  VELA_DataSource& file = Open();
  VELA_Variable& wide = file.GetVariable(kWide);
  VELA_Variable& narrow = file.GetVariable(kNarrow);
  Check(MissingOf(wide) == std::vector<std::string>{"XY      "},
        "a missing value is filled with blanks to the variable's width");
  SetMissingOf(wide, narrow);
  Check(MissingOf(narrow) == std::vector<std::string>{"XY"},
        "a missing value of a wider variable is cut to the width");
  SetMissingOf(wide, wide);
  Check(MissingOf(wide) == std::vector<std::string>{"XY      "},
        "SetMissingValues accepts what GetMissingValues of the same variable gave");

  // A set of width 2 goes to a variable of width 8, and back.
  SetMissingOf(narrow, wide);
  Check(MissingOf(wide) == std::vector<std::string>{"XY      "},
        "a missing value of a narrower variable is filled with blanks, from its own bytes alone");
  const OBS* none[3] = {};
  wide.SetMissingValues(0, none[0], none[1], none[2]);
  Check(MissingOf(wide).empty(), "a count of 0 takes the missing values away");

  VELA_Variable& number = file.GetVariable(kNumber);
  VELA_Variable& bare = file.GetVariable(kBare);
  SetMissingOf(number, bare);
  const OBS* cells[3] = {};
  Check(bare.GetMissingValues(cells[0], cells[1], cells[2]) ==
            number.GetMissingValues(cells[0], cells[1], cells[2]),
        "the count of missing values is copied as it is");
}

void SettersAcceptWhatReadersGave() {
  VELA_DataSource& file = Open();
  VELA_Variable& variable = file.GetVariable(kWide);
  variable.SetLabel(variable.GetLabel());
  Check(IsText(variable.GetLabel(), "A string"), "SetLabel accepts the variable's own label");
  const Pairs before = StringPairs(variable.GetValueLabels());
  variable.SetValueLabels(variable.GetValueLabels());
  Check(StringPairs(variable.GetValueLabels()) == before,
        "SetValueLabels accepts the variable's own handle");
  VELA_Variable& number = file.GetVariable(kNumber);
  number.SetAttributes(number.GetAttributes());
  Check(number.GetAttributes().Size() == 1, "SetAttributes accepts the variable's own attributes");
  variable.SetLabel("");
  Check(IsText(variable.GetLabel(), ""), "an empty label is a label");

  file.SetLabel("A file");
  file.SetLabel(file.GetLabel());
  Check(IsText(file.GetLabel(), "A file"), "SetLabel accepts the file's own label");
  file.SetWeightVar(kNumber);
  Check(file.GetWeightVarIndex() == kNumber, "SetWeightVar sets the weight");
  variable.SetDisplayWidth(12);
  Check(variable.GetDisplayWidth() == 12, "SetDisplayWidth sets the width");
}

void ViewsShareSets() {
  VELA_DataSource& file = Open();
  VELA_Variable& wide = file.GetVariable(kWide);
  VELA_Variable& narrow = file.GetVariable(kNarrow);
  const Pairs before = StringPairs(wide.GetValueLabels());
  Check(before == Pairs{{"AB      ", "a and b"}, {"C       ", "c"}},
        "a set gives its pairs in order, values as the bytes of its type");

  VELA_ValueLabelMap view(wide.GetValueLabels());
  Check(view.Size() == 2 && view.Type() == 8, "a view knows the set's size and type");
  view.Reset();
  std::string value;
  const char* label = nullptr;
  const OBS* cell = nullptr;
  Check(view.GetNextPair(cell, label) != 0 && BytesAt(cell, 8) == "AB      ",
        "the cell of a pair is the bytes of its value");
  const ObsValue asked(8, cell, 8);
  Check(IsText(view.GetLabel(asked), "a and b"), "GetLabel finds the label of an equal value");
  Check(view.GetNextPair(value, label) != 0 && value == "C       ",
        "GetLabel does not move the cursor");
  Check(view.GetNextPair(value, label) == 0, "GetNextPair gives 0 behind the last pair");
  view.Reset();
  Check(view.GetNextPair(value, label) != 0 && value == "AB      ", "Reset begins anew");

  // The set lives as long as the view, and nobody else sees what a view adds.
  VELA_ValueLabelMap kept(wide.GetValueLabels());
  wide.SetValueLabels(VELA_VLImplPointer());
  Check(!wide.GetValueLabels(), "a null handle takes the labels away");
  Check(kept.Size() == 2, "a view keeps the set alive");
  wide.SetValueLabels(kept);
  VELA_ValueLabelMap adding(wide.GetValueLabels());
  adding.GetNextPair(cell, label);
  const ObsValue wider(8, cell, 8);
  Check(kept.GetLabel(wider) != nullptr, "ObsValue copies the value");
  // A value that the set has no label for: the missing one.
  const OBS* missing[3] = {};
  wide.GetMissingValues(missing[0], missing[1], missing[2]);
  Check(adding.GetLabel(missing[0]) == nullptr, "GetLabel gives null for a value without a label");
  adding.AddPair(missing[0], "x and y");
  Check(adding.Size() == 3 && IsText(adding.GetLabel(missing[0]), "x and y"),
        "AddPair adds a pair");
  Check(StringPairs(wide.GetValueLabels()) == before, "AddPair gives the view a set of its own");
  Check(kept.Size() == 2, "AddPair leaves other views as they are");
  wide.SetValueLabels(adding);
  Check(StringPairs(wide.GetValueLabels()).size() == 3, "SetValueLabels takes a view's set");

  narrow.SetValueLabels(wide.GetValueLabels());
  Check(StringPairs(narrow.GetValueLabels()) ==
            Pairs{{"AB", "a and b"}, {"C ", "c"}, {"XY", "x and y"}},
        "a set of another width is kept at the variable's own");
  Check(StringPairs(wide.GetValueLabels())[0].first == "AB      ",
        "a set of another width stays as it is for others");

  VELA_ValueLabelMap empty{VELA_VLImplPointer()};
  Check(empty.Size() == 0 && empty.GetNextPair(cell, label) == 0, "a null handle is an empty view");
}

void ValuesAreConverted() {
  VELA_DataSource& file = Open();
  const OBS* cells[3] = {};
  file.GetVariable(kWide).GetMissingValues(cells[0], cells[1], cells[2]);
  const ObsValue cut(2, cells[0], 8);
  Check(BytesAt(cut, 2) == "XY", "ObsValue cuts a string to the width");
  const ObsValue filled(6, cut, 2);
  Check(BytesAt(filled, 6) == "XY    ", "ObsValue fills a string with blanks");

  const VELA_VLImplPointer wide = file.GetVariable(kWide).GetValueLabels();
  file.GetVariable(kNarrow).SetValueLabels(wide);
  const VELA_ValueLabelMap view(wide);
  const VELA_ValueLabelMap narrow(file.GetVariable(kNarrow).GetValueLabels());
  const OBS* cell = nullptr;
  const char* label = nullptr;
  Check(view.GetNextPair(cell, label) != 0 &&
            IsText(narrow.GetLabel(ObsValue(2, cell, 8)), "a and b"),
        "a converted value is found in a set of its new type");
}

void AttributesAreValues() {
  VELA_DataSource& file = Open();
  VELA_Variable& number = file.GetVariable(kNumber);
  VELA_Variable& bare = file.GetVariable(kBare);
  DatasourceAttributes merged(bare.GetAttributes());
  Check(merged.Size() == 0, "a variable without attributes has none");
  Check(merged.Merge(number.GetAttributes(), true), "Merge tells that the set changed");
  Check(merged.Size() == 1 && bare.GetAttributes().Size() == 0, "a copy of a set is independent");
  Check(!merged.Merge(number.GetAttributes(), true), "Merge tells that the set did not change");
  bare.SetAttributes(merged);
  Check(bare.GetAttributes().Size() == 1, "SetAttributes replaces the attributes");
}

void CopiesAreIndependent() {
  VELA_DataSource& file = Open();
  VELA_Variable& variable = file.GetVariable(kWide);
  VELA_Variable copy(variable);
  copy.NewID();
  copy.SetName("Copy");
  copy.SetLabel("Another");
  copy.SetValueLabels(VELA_VLImplPointer());
  SetMissingOf(file.GetVariable(kNarrow), copy);
  Check(IsText(variable.GetName(), "Wide") && IsText(variable.GetLabel(), "A string") &&
            StringPairs(variable.GetValueLabels()).size() == 2 && MissingOf(variable).size() == 1,
        "what is set in a copy stays in the copy");
  variable.SetLabel("Changed");
  Check(IsText(copy.GetLabel(), "Another"), "what is set in the original stays there");
  Check(file.FindVarIndex("Copy", 0) == -1, "a copy is not part of the file");
}

void StoresKeepWhatTheyHave() {
  VELA_DataSource& file = Open();
  auto* const store = new DEDataStore(&file);  // the host owns it from here on
  SetActiveDataSource(store, 1);
  global_dicptr_()->dataSource = store;
  Check(global_dicptr_()->dataSource == store, "the dictionary has the store");
  Check(dynamic_cast<DEDataStore*>(global_dicptr_()->dataSource) == store,
        "a store is told at run time");
  Check(dynamic_cast<DEDataStore*>(&file) == nullptr, "a file that was opened is no store");
  Check(store->ColumnCount() == 4, "a store has the variables of its base");

  store->GetVariable(kBare).SetLabel("In the store");
  Check(file.GetVariable(kBare).GetLabel() == nullptr, "the base stays as it is");
  Check(file.ColumnCount() == 4 && IsText(file.GetVariable(kWide).GetName(), "Wide"),
        "the base lives as long as the run");

  const VELA_Variable* const first = &store->GetVariable(kNumber);
  const char* const name = first->GetName();
  const char* const upperCaseName = first->GetUpperCaseName();
  VELA_Variable added(file.GetVariable(kWide));
  constexpr int kMany = 1000;
  for (int i = 0; i < kMany; ++i) {
    added.NewID();
    added.SetName(("Added" + std::to_string(i)).c_str());
    store->InsertVariable(static_cast<unsigned>(store->ColumnCount()), added);
  }
  Check(store->ColumnCount() == 4 + kMany, "InsertVariable adds a column");
  Check(first == &store->GetVariable(kNumber), "a reference to a variable stays valid");
  Check(name == first->GetName() && upperCaseName == first->GetUpperCaseName(),
        "pointers to names stay valid");
  Check(store->FindVarIndex("Added7", 0) == 11, "FindVarIndex finds what was inserted");
  added.SetLabel("Later");
  Check(IsText(store->GetVariable(4).GetLabel(), "A string"), "what is inserted is a copy");
  Check(file.ColumnCount() == 4, "the base gets no variable");
  global_dicptr_()->ReIndex();
}

void SetsAreKeptOrNone() {
  VELA_DataSource& file = Open();
  VariableSet set;
  set.name = "Both";
  set.members = {"Number", "Wide"};
  SaveVariableSets({set}, file, VarSetsVariableSets);
  const std::vector<VariableSet> kept = VariableSets(file, VarSetsVariableSets);
  const bool isKept = kept.size() == 1 && kept[0].GetName(VariableSet::AsStored) == "Both" &&
                      kept[0].members == set.members;
  Check(kept.empty() || isKept, "a host keeps the sets that are saved, or has none at all");
  Check(VariableSets(file, VarSetsMrSets).empty(), "sets of one kind are none of the other");
  SaveVariableSets({}, file, VarSetsVariableSets);
  Check(VariableSets(file, VarSetsVariableSets).empty(), "an empty list takes all sets away");

  Check(GetDocuments(file).empty(), "a file without documents has none");
  SaveDocuments({}, file);
  std::vector<DSDocument> none;
  DeDup(none);
  Check(none.empty(), "DeDup adds nothing");
}

void ErrorsEndTheCommand() {
  Open();
  const ProcedureDataSource context;
  Check(!context.FatalError(), "a command begins without an error");
  BpError(BpString("A warning of the tests", false), BpShowMessage, BpLevelWarning);
  Check(!context.FatalError(), "a warning is no error");
  BpComposite message("^1: an error of the tests\\: ^2...", true);
  {
    const BpVariable variable(global_dicptr_()->dataSource->GetVariable(kWide),
                              BpVariable::ShowDefault);
    message.Add(variable);  // the cell goes before the message is issued
  }
  message.Add(BpString("x", true));
  message.Finish();
  BpError(message, BpShowMessage, BpLevelError);
  Check(context.FatalError(), "a diagnostic of level 3 sets the fatal-error state");
  Open();
  Check(!context.FatalError(), "the fatal-error state begins anew with the next command");

  bool isCaught = false;
  try {
    throw ErrorText("A text");
  } catch (const ErrorText& error) {
    const ErrorText copy(error);
    isCaught = copy.message == "A text";
  }
  Check(isCaught, "an ErrorText is caught by its type, with its message");
}

struct Test {
  const char* name;
  void (*run)();
};
constexpr Test kTests[] = {
    {"ReadsWhatWasMade", ReadsWhatWasMade},
    {"NamesAgree", NamesAgree},
    {"CellsKnowTheirWidth", CellsKnowTheirWidth},
    {"SettersAcceptWhatReadersGave", SettersAcceptWhatReadersGave},
    {"ViewsShareSets", ViewsShareSets},
    {"ValuesAreConverted", ValuesAreConverted},
    {"AttributesAreValues", AttributesAreValues},
    {"CopiesAreIndependent", CopiesAreIndependent},
    {"StoresKeepWhatTheyHave", StoresKeepWhatTheyHave},
    {"SetsAreKeptOrNone", SetsAreKeptOrNone},
    {"ErrorsEndTheCommand", ErrorsEndTheCommand},
};

}  // namespace
}  // namespace conformance

int main() {
  using namespace conformance;
  for (const Test& test : kTests) {
    running = test.name;
    std::fflush(stdout);
    const int before = failures;
    try {
      test.run();
    } catch (const ErrorText& error) {
      Check(false, ("threw: " + error.message).c_str());
    } catch (const std::exception& error) {
      Check(false, (std::string("threw: ") + error.what()).c_str());
    }
    if (failures == before) std::printf("passed  %s\n", test.name);
  }
  std::printf("%d failures\n", failures);
  return failures == 0 ? 0 : 1;
}
