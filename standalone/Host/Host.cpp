#include "standalone/Host/Host.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "standalone/Host/DataSources.h"
#include "standalone/Host/HostAccess.h"

namespace velahost {
namespace {

Host* current = nullptr;

}  // namespace

Host::Host()
    : openSource([this](const std::string& specification) {
        return std::make_shared<const CodebookFile>(
            OpenCodebook(specification, OpenFor::Reading, WorkingFile().language));
      }) {
  assert(current == nullptr);
  current = this;
}

// The last one first: a store may be made over one that was there before.
Host::~Host() {
  while (!dataSources_.empty()) dataSources_.pop_back();
  current = nullptr;
}

Host& Host::Current() {
  assert(current != nullptr);
  return *current;
}

void Host::SetWorking(CodebookFile file) {
  workingFile_ = std::make_shared<const CodebookFile>(std::move(file));
  ReserveOwned();
  Own(new VELA_DataSource(std::make_unique<VELA_DataSource::Impl>(workingFile_)));
  legacy.dataSource = dataSources_.back().get();
  active = legacy.dataSource;
  for (const Message& warning : workingFile_->warnings) {
    diagnostics.Report(Severity::TransferWarning, warning);
  }
}

void Host::ReportWarningsOf(const std::shared_ptr<const CodebookFile>& source) {
  if (source->warnings.empty()) return;
  const bool isReported =
      std::any_of(reported_.begin(), reported_.end(),
                  [&source](const auto& reported) { return reported.lock() == source; });
  if (isReported) return;
  reported_.push_back(source);
  for (const Message& warning : source->warnings) {
    diagnostics.Report(Severity::TransferWarning, warning);
  }
}

Dictionary Host::WorkingDictionary() const { return HostAccess::Of(Working()).DictionaryNow(); }

const Reach& Host::ReachOfRun() {
  if (reach.IsInCommand()) reach.EndCommand(HostAccess::Of(Working()).Names());
  return reach;
}

void Host::SetCommand(Command next) {
  if (reach.IsInCommand()) reach.EndCommand(HostAccess::Of(Working()).Names());
  command_ = std::move(next);
  givenSets.clear();
  diagnostics.BeginCommand();
}

void Host::ReserveOwned() { dataSources_.reserve(dataSources_.size() + 1); }

void Host::Own(VELA_DataSource* dataSource) noexcept { dataSources_.emplace_back(dataSource); }

}  // namespace velahost
