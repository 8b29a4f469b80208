#include "program/SourceReader.h"

#include <optional>
#include <utility>

#include "standalone/Syntax/Subcommands.h"

namespace applydic {
namespace {

velahost::CodebookFile OpenToRead(const std::string& specification) {
  return velahost::OpenCodebook(specification, velahost::OpenFor::Reading);
}

}  // namespace

SourceReader::SourceReader(const velahost::Command& first) {
  std::optional<std::string> source = velahost::SourceNamedIn(first);
  if (!source) return;
  first_ = std::move(*source);
  reading_ = std::async(OpenToRead, first_);
}

velahost::CodebookFile SourceReader::Open(const std::string& specification) {
  const bool isFirst = reading_.valid() && specification == first_;
  velahost::CodebookFile file = isFirst ? reading_.get() : OpenToRead(specification);
  opened_.push_back(file.identity);
  return file;
}

}  // namespace applydic
