#pragma once

#include <velawapd/Data.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// What the dictionaries of this host are made of: a plain struct for each class that the library
// calls. Your host puts a pointer to its own dictionary here.

// A value. The library sees the bytes of a string at the address of its cell, and nothing else. It
// hands cells back without their width, so a cell must know it: here it stands behind the bytes.
struct OBS {
  static constexpr int kWidest = 64;
  std::array<char, kWidest> bytes;  // of a string, filled with blanks
  int width;                        // of a string; 0 for a number
  double number;
};
OBS NumberCell(double number);
OBS StringCell(int width, const std::string& text);
// The value as one of another width: a string is filled with blanks or cut.
OBS WithWidth(const OBS& cell, int width);
bool SameValue(const OBS& a, const OBS& b);

// A set of value labels. Handles share it, so it is not changed once a variable has it.
class VELA_VLImpl {
 public:
  int type = 0;
  std::vector<std::pair<OBS, std::string>> pairs;
};

struct DatasourceAttributes::Impl {
  std::vector<std::pair<std::string, std::string>> values;  // by name
};

struct Format {
  VELA_Variable::FormatType type = static_cast<VELA_Variable::FormatType>(0);
  int width = 0;
  int decimals = 0;
};

struct VELA_Variable::Impl {
  std::string name;
  std::string upperCaseName;
  int type = 0;
  std::optional<std::string> label;
  VELA_VLImplPointer valueLabels;
  int missingCount = 0;
  std::array<OBS, 3> missing = {};
  Format print;
  Format write;
  int level = VELA_Variable_Enumerations::NoLevel;
  int role = 0;
  int alignment = 0;
  short displayWidth = 0;
  DatasourceAttributes attributes;
  long long identity = 0;
};

struct VELA_DataSource::Impl {
  // Variables stay where they are when others are added.
  std::vector<std::unique_ptr<VELA_Variable>> variables;
  std::optional<std::string> label;
  int weight = -1;
  DatasourceAttributes attributes;
};

// The way from an object to what it is made of.
class HostAccess {
 public:
  template <class Object>
  static auto& Of(Object& object) {
    return *object.impl_;
  }
  static auto& SetOf(VELA_VLImplPointer& handle) { return handle.set_; }
  static const auto& SetOf(const VELA_VLImplPointer& handle) { return handle.set_; }
};

// The copies of variables that a data source is made of.
VELA_DataSource::Impl CopyOf(const VELA_DataSource::Impl& other);
