#include <utility>

#include "host/Exceptions.h"
#include "standalone/Codebook/Documentation.h"
#include "standalone/Data/DataSource.h"
#include "standalone/Data/Variable.h"
#include "standalone/Host.h"
#include "standalone/HostCalls.h"
#include "standalone/Output/Diagnostics.h"

using velahost::Called;
using velahost::Released;

namespace {

// What a new column keeps of the variable: all that the variable says, nothing of the document that
// it was read from but what documents the question.
std::unique_ptr<VELA_Variable::Impl> ColumnOf(const VELA_Variable::Impl& variable) {
  auto column = std::make_unique<VELA_Variable::Impl>(variable);
  if (variable.document) {
    column->documentation = velahost::DocumentationOf(*variable.document, variable.place);
  }
  column->before = nullptr;
  column->document = nullptr;
  column->place = 0;
  column->categories = nullptr;
  return column;
}

std::unique_ptr<VELA_DataSource::Impl> ContentsOf(const VELA_DataSource& base) {
  velahost::Host::Current().ReserveOwned();
  return std::make_unique<VELA_DataSource::Impl>(HostAccess::Of(base));
}

}  // namespace

DEDataStore::DEDataStore(const VELA_DataSource* base)
    : VELA_DataSource((Called("DEDataStore::DEDataStore"), ContentsOf(*base))) {
  // Last, and it cannot fail: a store whose construction fails has no other owner.
  velahost::Host::Current().Own(this);
}

DEDataStore::~DEDataStore() { Released("DEDataStore::~DEDataStore"); }

void DEDataStore::InsertVariable(unsigned int position, const VELA_Variable& variable) {
  Called("DEDataStore::InsertVariable");
  VELA_DataSource::Impl& store = HostAccess::Of(*this);
  const VELA_Variable::Impl& inserted = HostAccess::Of(variable);
  if (position != store.variables.size()) {
    throw ErrorText("A variable can be inserted only behind the last one: " +
                    velahost::EscapeMessage(inserted.name) + "...");
  }
  if (store.Find(inserted.name) >= 0) {
    throw ErrorText("The working file has a variable of that name already: " +
                    velahost::EscapeMessage(inserted.name) + "...");
  }
  store.Add(ColumnOf(inserted));
}
