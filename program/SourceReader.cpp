#include "program/SourceReader.h"

#include <optional>
#include <utility>

#include "program/Output.h"
#include "program/Progress.h"
#include "standalone/Syntax/Subcommands.h"

namespace applydic {
namespace {

velahost::CodebookFile OpenToRead(const std::string& specification, const std::string& language) {
  return velahost::OpenCodebook(specification, velahost::OpenFor::Reading, language);
}

}  // namespace

SourceReader::SourceReader(const velahost::Command& first, std::string language)
    : firstLanguage_(std::move(language)) {
  std::optional<std::string> source = velahost::SourceNamedIn(first);
  if (!source) return;
  first_ = std::move(*source);
  reading_ = std::async(OpenToRead, first_, firstLanguage_);
}

velahost::CodebookFile SourceReader::Open(const std::string& specification,
                                          const std::string& language) {
  const bool isFirst = reading_.valid() && specification == first_ && language == firstLanguage_;
  const Progress::Stage stage("Reading " + MakeVisible(specification));
  velahost::CodebookFile file = isFirst ? reading_.get() : OpenToRead(specification, language);
  opened_.push_back(file.identity);
  return file;
}

}  // namespace applydic
