#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/Data.h"
#include "standalone/Data/HostAccess.h"

// A variable as the standalone host holds it.

enum VELA_Variable_Enumerations::Role : int {
  RoleInput,
  RoleTarget,
  RoleBoth,
  RoleNone,
  RolePartition,
  RoleSplit
};
enum VELA_Variable_Enumerations::Alignment : int { AlignLeft, AlignRight, AlignCenter };

namespace velahost {

class Codebook;

using Enumerations = VELA_Variable_Enumerations;
using Level = Enumerations::MeasurementLevel;
using Role = Enumerations::Role;
using Alignment = Enumerations::Alignment;

// The levels besides NoLevel.
inline constexpr Level kNominal = static_cast<Level>(1);
inline constexpr Level kOrdinal = static_cast<Level>(2);
inline constexpr Level kScale = static_cast<Level>(3);

// The names of the enumerations' values in files and output; the level's is null for NoLevel.
const char* NameOf(Level level);
const char* NameOf(Role role);
const char* NameOf(Alignment alignment);
std::optional<Role> RoleNamed(std::string_view name);
std::optional<Alignment> AlignmentNamed(std::string_view name);

// A print or write format.
struct Format {
  VELA_Variable::FormatType type;
  int width;
  int decimals;

  bool operator==(const Format&) const = default;
};

// The format type of a name of upper-case letters: "A", "HEX", or a type of the host's own, which
// is made when it is asked for first. May be called from several threads.
VELA_Variable::FormatType FormatTypeNamed(std::string_view name);
// The name of a format type; it lives to the end of the program.
const std::string& NameOf(VELA_Variable::FormatType type);

// Missing values. The count is that of the host's interface: 1 to 3 single values; -2 a range (low,
// high); -3 a range and a value. An open end of a range is an infinite number.
struct MissingValues {
  int count = 0;
  std::array<double, 3> numbers = {};     // of a numeric variable
  std::vector<std::string> strings = {};  // of a string variable, each of its width

  bool operator==(const MissingValues&) const = default;
  // Whether a numeric or string value is one of them.
  bool Contains(double number) const;
  bool Contains(std::string_view text) const;  // text of the variable's width
};

// What a command can change of a variable.
struct VariableProperties {
  std::optional<std::string> label;
  VELA_VLImplPointer valueLabels;  // of the variable's type; null rather than empty
  MissingValues missing;
  Format print = {};
  Format write = {};
  short columnWidth = 0;
  Level level = Enumerations::NoLevel;
  Role role = Enumerations::RoleInput;
  Alignment alignment = Enumerations::AlignLeft;
  DatasourceAttributes attributes;

  VariableProperties() = default;
  VariableProperties(const VariableProperties& other);
  VariableProperties& operator=(const VariableProperties&) = delete;
};

// Whether two handles' sets hold the same pairs in the same order.
bool SameValueLabels(const VELA_VLImplPointer& a, const VELA_VLImplPointer& b);

// The properties' names in the account of a command, in their order there.
inline constexpr std::array<const char*, 10> kPropertyNames = {
    "label",       "valueLabels", "missing", "print",     "write",
    "columnWidth", "level",       "role",    "alignment", "attributes"};

// The names of the properties in which the two differ, in that order.
std::vector<const char*> DifferingProperties(const VariableProperties& a,
                                             const VariableProperties& b);

// A new identity, which no other variable has. May be called from several threads.
std::int64_t NewIdentity();

// A category of the variable's document whose value the variable can have.
struct Category {
  double number = 0;  // of a numeric variable
  std::string text;   // of a string variable, of its width
  std::optional<std::string> label;
};

// The categories of a variable's document in their order there.
using Categories = std::vector<Category>;

}  // namespace velahost

struct VELA_Variable::Impl {
  std::string name;
  std::string upperCaseName;
  int type = 0;
  std::int64_t identity = velahost::NewIdentity();
  velahost::VariableProperties now;
  // The properties as they were read, from the first change on; null while nothing was set.
  std::unique_ptr<velahost::VariableProperties> before;

  // The document that the variable was read from and its place among the document's variables; null
  // of a variable that has been added.
  std::shared_ptr<const velahost::Codebook> document;
  std::size_t place = 0;
  // The document's categories if they are more than the value labels that were read (categories
  // without a label, values that stand twice); null otherwise.
  std::shared_ptr<const velahost::Categories> categories;
  // Of a variable that has been added: what documents the question, as elements in the standard's
  // order without a prefix.
  std::string documentation;

  Impl() = default;
  // A copy of everything, what was read included; it belongs to no data source yet.
  Impl(const Impl& other);

  // Names the variable: the whole characters of the name that fit into kNameBytes.
  void SetName(std::string_view newName);

  // The properties to change; keeps what was read.
  velahost::VariableProperties& Change();
  // The properties as they were read.
  const velahost::VariableProperties& AsRead() const { return before ? *before : now; }

  // Whether the index of the data source that has the variable is good; null as long as no index
  // has the variable. A new name makes the index bad.
  mutable bool* isIndexed = nullptr;
};
