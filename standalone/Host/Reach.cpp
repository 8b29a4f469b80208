#include "standalone/Host/Reach.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace velahost {

void Reach::SetSource(std::shared_ptr<const CodebookFile> file) {
  command_.hasSource = true;
  command_.file = std::move(file);
}

void Reach::SetList(const std::string& subcommand, const std::vector<int>& columns) {
  (subcommand == "SOURCE" ? command_.source : command_.target) = columns;
}

void Reach::EndCommand(const VariableNames& working) {
  const Said& said = command_;
  const bool hasTargets = !said.target.empty() || !said.targetNames.empty();
  if (!said.source.empty() && hasTargets) {
    PairWithTargets(working);
  } else {
    PairByName(working);
  }
  command_ = {};  // the source is not needed any more
}

std::vector<std::size_t> Reach::NotReached(std::size_t count) const {
  std::vector<std::size_t> columns;
  for (std::size_t column = 0; column < count; ++column) {
    if (column >= isReached_.size() || !isReached_[column]) columns.push_back(column);
  }
  return columns;
}

std::vector<Text> Reach::NotPaired() const {
  std::vector<Text> names;
  for (const OfSource& source : sources_) {
    for (const auto& [column, name] : source.isNotFound) names.push_back(name);
  }
  return names;
}

void Reach::PairWithTargets(const VariableNames& working) {
  for (const int column : command_.target) MarkReached(column);
  for (const std::string& name : command_.targetNames) MarkReached(working.Find(name));
  OfSource* const source = Source();
  if (source == nullptr) return;
  const int column = command_.source.front();
  source->isCarried[static_cast<std::size_t>(column)] = true;
  source->isNotFound.erase(column);
}

void Reach::PairByName(const VariableNames& working) {
  const VariableNames& names = command_.file ? command_.file->names : working;
  std::vector<int> columns = command_.source.empty() ? command_.target : command_.source;
  if (columns.empty()) {
    columns.resize(static_cast<std::size_t>(names.Count()));
    std::iota(columns.begin(), columns.end(), 0);
  }
  OfSource* const source = Source();
  for (const int column : columns) {
    const int found = working.FindUpperCase(names.UpperCaseAt(column));
    MarkReached(found);
    if (source == nullptr) continue;
    if (found >= 0) {
      source->isCarried[static_cast<std::size_t>(column)] = true;
      source->isNotFound.erase(column);
    } else if (!source->isCarried[static_cast<std::size_t>(column)]) {
      source->isNotFound.emplace(column, names.At(column));
    }
  }
}

void Reach::MarkReached(int column) {
  if (column < 0) return;
  const auto place = static_cast<std::size_t>(column);
  if (place >= isReached_.size()) isReached_.resize(place + 1);
  isReached_[place] = true;
}

Reach::OfSource* Reach::Source() {
  if (!command_.file) return nullptr;
  const CodebookFile& file = *command_.file;
  const auto found = std::find_if(sources_.rbegin(), sources_.rend(), [&](const OfSource& source) {
    return source.path == file.path && source.place == file.place;
  });
  if (found != sources_.rend()) return &*found;
  return &sources_.emplace_back(OfSource{
      file.path, file.place, std::vector<bool>(static_cast<std::size_t>(file.names.Count())), {}});
}

}  // namespace velahost
