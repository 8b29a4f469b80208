#include "fuzz/Expect.h"

#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <vector>

#include "standalone/Data/DataSource.h"
#include "standalone/Data/Variable.h"

namespace fuzz {
namespace {

void ExpectNone(const std::vector<const char*>& differing, const std::string& of) {
  Expect(differing.empty(),
         "not the same " + std::string(differing.empty() ? "" : differing[0]) + " of " + of);
}

}  // namespace

void Expect(bool holds, const std::string& what) {
  if (holds) return;
  std::cerr << "Expected otherwise: " << what << std::endl;
  std::abort();
}

void ExpectSameDictionary(const VELA_DataSource& a, const VELA_DataSource& b) {
  const VELA_DataSource::Impl& inA = HostAccess::Of(a);
  const VELA_DataSource::Impl& inB = HostAccess::Of(b);
  Expect(inA.variables.size() == inB.variables.size(), "not as many variables");
  for (std::size_t i = 0; i < inA.variables.size(); ++i) {
    const VELA_Variable::Impl& variable = HostAccess::Of(inA.variables[i]);
    const VELA_Variable::Impl& other = HostAccess::Of(inB.variables[i]);
    Expect(variable.name == other.name, variable.name + " is now " + other.name);
    Expect(variable.type == other.type, "not the same type of " + variable.name);
    ExpectNone(velahost::DifferingProperties(variable.now, other.now), variable.name);
  }
  ExpectNone(velahost::DifferingProperties(inA.now, inB.now), "the file");
}

}  // namespace fuzz
