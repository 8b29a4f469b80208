#include <velawapd/Data.h>
#include <velawapd/Dictionary.h>
#include <velawapd/EntryPoint.h>
#include <velawapd/Exceptions.h>
#include <velawapd/Files.h>
#include <velawapd/Output.h>
#include <velawapd/Syntax.h>

#include <cstddef>

// The layout of what the library makes and reads itself. A compiler or a flag that lays it out
// otherwise than that of the library cannot be used with it, and a change here is a new version of
// the interface.

static_assert(VELAWAPD_INTERFACE_VERSION == 1);
static_assert(sizeof(void*) == 8);

namespace {

// What the library makes as locals or on the heap is a pointer to what the host has of it.
template <class... Classes>
constexpr bool kArePointers = ((sizeof(Classes) == sizeof(void*)) && ...);
static_assert(kArePointers<ObsValue, DatasourceAttributes, VELA_Variable, VELA_ValueLabelMap,
                           VELA_DataSource::Extension, BpString, BpVariable, BpComposite,
                           BpProcedure, ParsedCommand, KeywordSubcommand, VelaVarName,
                           UserCaseFileSpec, UserInputCaseFile, ProcedureDataSource>);
// With virtual operations, their table comes first.
static_assert(sizeof(VELA_DataSource) == 2 * sizeof(void*));
static_assert(sizeof(DEDataStore) == sizeof(VELA_DataSource));
static_assert(sizeof(TokenSequenceBase) == sizeof(void*));
// Shared pointers are two.
static_assert(sizeof(VELA_VLImplPointer) == 2 * sizeof(void*));
static_assert(sizeof(DSDocument) == 2 * sizeof(void*));

static_assert(sizeof(VELA_FortranDictionary) == sizeof(void*));
static_assert(offsetof(VELA_FortranDictionary, dataSource) == 0);

// The library copies sets field by field, and reads the message of an error.
static_assert(offsetof(VariableSet, reference) == 0);
static_assert(offsetof(VariableSet, flags) == 8);
static_assert(offsetof(VariableSet, name) == 8 + sizeof(std::vector<bool>));
static_assert(offsetof(VariableSet, members) ==
              offsetof(VariableSet, name) + 3 * sizeof(std::string));
static_assert(sizeof(VariableSet) ==
              offsetof(VariableSet, members) + sizeof(std::vector<std::string>));
static_assert(sizeof(ErrorText) == sizeof(void*) + sizeof(std::string));

// Numbers that the library knows.
static_assert(VELA_Variable_Enumerations::NoLevel == 0);
static_assert(VELA_Variable::FormatString == 1 && VELA_Variable::FormatHexString == 2);
static_assert(VarSetsVariableSets == 0 && VarSetsMrSets == 1);
static_assert(TokenSequenceBase::KindEnd == 1 && TokenSequenceBase::KindName == 2 &&
              TokenSequenceBase::KindString == 4);
static_assert(TokenSequenceBase::DelimiterEquals == 3 && TokenSequenceBase::DelimiterSlash == 11);
static_assert(BpShowMessage == 2 && BpShowFileMessage == 3);
static_assert(BpLevelTransferWarning == 1 && BpLevelWarning == 2 && BpLevelError == 3 &&
              BpLevelFailure == 4);

}  // namespace
