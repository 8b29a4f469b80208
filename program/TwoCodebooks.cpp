#include "program/TwoCodebooks.h"

#include <future>
#include <utility>

#include "program/Input.h"
#include "program/Output.h"
#include "program/Progress.h"
#include "standalone/Parallel/Beside.h"
#include "standalone/Text/Message.h"

namespace applydic {
namespace {

using velahost::CodebookFile;

CodebookFile Open(const std::string& specification, const std::string& language) {
  return OpenFileOrInput(specification, velahost::OpenFor::Showing, language);
}

}  // namespace

// The older one is opened in the language that the newer one seems to have, and once more in the
// rare case that it has another.
TwoCodebooks OpenBoth(const std::string& before, const std::string& now,
                      const std::optional<std::string>& language) {
  const Progress::Stage stage("Reading " + MakeVisible(before) + " and " + MakeVisible(now));
  velahost::CodebookBytes bytes = ReadFileOrInput(now);
  const std::string guess = language.value_or(bytes.GuessLanguage());
  if (IsInput(before)) {  // it can be read once, so when its language is known
    CodebookFile newer =
        velahost::OpenCodebook(std::move(bytes), velahost::OpenFor::Showing, language);
    CodebookFile older = Open(before, newer.language);
    return {std::move(older), std::move(newer)};
  }
  std::future<CodebookFile> reading = velahost::RunBeside(Open, before, guess);
  CodebookFile newer =
      velahost::OpenCodebook(std::move(bytes), velahost::OpenFor::Showing, language);
  CodebookFile older = reading.get();
  if (newer.language != guess) older = Open(before, newer.language);
  return {std::move(older), std::move(newer)};
}

void WriteWarningsOf(const TwoCodebooks& files) {
  for (const CodebookFile* const file : {&files.before, &files.now}) {
    for (const velahost::Message& warning : file->warnings) {
      WriteWarning(velahost::Render(warning));
    }
  }
}

}  // namespace applydic
