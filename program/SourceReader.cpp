#include "program/SourceReader.h"

#include <optional>
#include <utility>

#include "program/Output.h"
#include "program/Progress.h"
#include "standalone/Parallel/Beside.h"
#include "standalone/Syntax/Subcommands.h"

namespace applydic {
namespace {

velahost::CodebookFile OpenToRead(const std::string& specification, const std::string& language) {
  return velahost::OpenCodebook(specification, velahost::OpenFor::Reading, language);
}

}  // namespace

SourceReader::SourceReader(const std::vector<velahost::Command>& commands, std::string language)
    : firstLanguage_(std::move(language)) {
  for (const velahost::Command& command : commands) {
    if (const std::optional<std::string> source = velahost::SourceNamedIn(command)) {
      ++sources_[*source].commandsLeft;
    }
  }
  std::optional<std::string> source = velahost::SourceNamedIn(commands.front());
  if (!source) return;
  first_ = std::move(*source);
  reading_ = velahost::RunBeside(OpenToRead, first_, firstLanguage_);
}

std::shared_ptr<const velahost::CodebookFile> SourceReader::Open(const std::string& specification,
                                                                 const std::string& language) {
  Source& source = sources_[specification];
  if (!source.file) {
    source.file = std::make_shared<const velahost::CodebookFile>(Read(specification, language));
    opened_.push_back(source.file->identity);
  }
  std::shared_ptr<const velahost::CodebookFile> file = source.file;
  if (source.commandsLeft > 0) --source.commandsLeft;
  if (source.commandsLeft == 0) source.file = nullptr;
  return file;
}

velahost::CodebookFile SourceReader::Read(const std::string& specification,
                                          const std::string& language) {
  const bool isFirst = reading_.valid() && specification == first_ && language == firstLanguage_;
  const Progress::Stage stage("Reading " + MakeVisible(specification));
  return isFirst ? reading_.get() : OpenToRead(specification, language);
}

}  // namespace applydic
