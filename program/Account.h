#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "host/Data.h"
#include "standalone/Output/Diagnostics.h"

namespace applydic {

// What a run changed in the working file's dictionary.
struct Changes {
  struct OfVariable {
    std::string variable;
    std::vector<const char*> properties;  // of velahost::kPropertyNames, in their order
  };

  std::vector<OfVariable> changed;  // in file order
  std::vector<std::string> added;   // the same
  std::vector<const char*> file;    // of velahost::kFilePropertyNames, in their order
};

// What differs between the data source as it was read and as it is now.
Changes ChangesOf(const VELA_DataSource& dataSource);

// The account of a run for people; written is the path where the codebook was written, none for a
// dry run.
std::string AccountText(const Changes& changes, const std::optional<std::string>& written);

// The outcome of a run as the object of `applydic apply --json`, an interface like
// DictionaryJson's. After an error there are no changes and nothing is written.
nlohmann::ordered_json OutcomeJson(const std::vector<velahost::Diagnostic>& diagnostics,
                                   const Changes& changes,
                                   const std::optional<std::string>& written);

}  // namespace applydic
