// Command text, through the splitter, every subcommand and its keywords, lists and file.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/Expect.h"
#include "host/Files.h"
#include "host/Output.h"
#include "host/Syntax.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Host/Host.h"
#include "standalone/Syntax/Tokenizer.h"

namespace {

using fuzz::Expect;

const std::string kSubcommands[] = {"FROM",     "SOURCE",  "TARGET", "NEWVARS",
                                    "FILEINFO", "VARINFO", ""};
const std::string kKeywords[] = {"VALLABELS", "VARLABEL", "ATTRIBUTES", "ALL", ""};
const std::string kListKeywords[] = {"VARIABLES", ""};

constexpr const char* kDocument = R"(<codeBook><dataDscr>
<var name="a"/><var name="B2"/><var name="x1"/><var name="x09"/><var name="to"/><var name="12"/>
<var name="&#xC4;pfel"/><var name="all"/><var name="y.z"/><var name="p#1"/></dataDscr></codeBook>)";

// The errors of the command that have been found.
std::size_t Errors() { return velahost::Host::Current().diagnostics.Errors(); }

void ReadTokens(TokenSequenceBase& tokens) {
  while (tokens.Kind() != TokenSequenceBase::KindEnd &&
         tokens.Delimiter() != TokenSequenceBase::DelimiterSlash) {
    const char* text = nullptr;
    int length = -1;
    tokens.Text(text, length);
    const std::string upper(text, static_cast<std::size_t>(length));
    tokens.StringValue(text, length);
    Expect(upper == std::string_view(text, static_cast<std::size_t>(length)), "two texts");
    Expect(!TokenString(tokens).empty(), "an empty token");
    UserCaseFileSpec file;
    if (!file.Init(tokens, false)) Expect(!file.ErrorText().empty(), "a failure without a reason");
    tokens.Next();
  }
}

void ReadKeywords(ParsedCommand& command, const std::string& name, const std::string* keywords) {
  const std::size_t before = Errors();
  KeywordSubcommand subcommand(command, name, keywords);
  Expect(subcommand.HasErrors() == (Errors() > before), "errors that are not told");
  for (const std::string* keyword = keywords; !keyword->empty(); ++keyword) {
    const bool given = subcommand.Tokens(*keyword) != 0;
    Expect(given == (subcommand.Value(*keyword) != " NO"), "a value without a keyword");
    if (given) KeywordMatch(subcommand.Value(*keyword).c_str(), "REPLACE");
  }
}

void ReadLists(ParsedCommand& command, const std::string& name, const VELA_DataSource& file) {
  KeywordSubcommand subcommand(command, name, kListKeywords);
  for (const int column : subcommand.ExistingVariables(file)) {
    Expect(column >= 0 && column < file.ColumnCount(), "a column that is not there");
  }
  for (const VELA_DataSource* const mayHave :
       {&file, static_cast<const VELA_DataSource*>(nullptr)}) {
    for (const VelaVarName& variable : subcommand.MixedVariables(mayHave)) {
      const std::string_view text = variable.Text();
      Expect(!text.empty() && text.size() <= 64, "no name: " + std::string(text));
    }
  }
}

void ReadCommand(const VELA_DataSource& file) {
  ParsedCommand command(kSubcommands);
  for (const std::string* name = kSubcommands; !name->empty(); ++name) {
    if (command.Seek(*name)) ReadTokens(command.TokenSequence());
    ReadKeywords(command, *name, kKeywords);
    ReadLists(command, *name, file);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const velahost::CodebookFile opened =
      velahost::OpenCodebook("codebook", velahost::Bytes(kDocument), std::nullopt);
  std::vector<velahost::Command> commands =
      velahost::SplitCommands({reinterpret_cast<const char*>(data), size});
  Expect(!commands.empty(), "no command");
  velahost::Host host;
  host.SetWorking(opened);
  for (velahost::Command& command : commands) {
    Expect(command.tokens.back().kind == velahost::Token::End, "a command without an end");
    host.SetCommand(std::move(command));
    ReadCommand(host.Working());
  }
  return 0;
}
