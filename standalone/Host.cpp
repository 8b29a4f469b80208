#include "standalone/Host.h"

#include <cassert>
#include <utility>

namespace velahost {
namespace {

Host* current = nullptr;

}  // namespace

Host::Host() {
  assert(current == nullptr);
  current = this;
}

Host::~Host() {
  while (!dataSources_.empty()) dataSources_.pop_back();
  current = nullptr;
}

Host& Host::Current() {
  assert(current != nullptr);
  return *current;
}

void Host::SetWorking(std::unique_ptr<VELA_DataSource> dataSource) {
  ReserveOwned();
  Own(dataSource.release());
  dictionary.dataSource = dataSources_.back().get();
  active = dictionary.dataSource;
}

void Host::SetCommand(Command next) {
  command = std::move(next);
  diagnostics.BeginCommand();
}

void Host::ReserveOwned() { dataSources_.reserve(dataSources_.size() + 1); }

void Host::Own(VELA_DataSource* dataSource) noexcept { dataSources_.emplace_back(dataSource); }

}  // namespace velahost
