#include "standalone/Files/UserCaseFileSpec.h"

#include <fmt/format.h>

#include <utility>

#include "host/Syntax.h"
#include "standalone/HostCalls.h"
#include "standalone/Syntax/CommandTokens.h"

using velahost::Called;
using velahost::Token;

UserCaseFileSpec::UserCaseFileSpec() {
  Called("UserCaseFileSpec::UserCaseFileSpec");
  impl_ = std::make_unique<Impl>();
}

UserCaseFileSpec::~UserCaseFileSpec() { velahost::Released("UserCaseFileSpec::~UserCaseFileSpec"); }

bool UserCaseFileSpec::Init(const TokenSequenceBase& tokens, bool /*flag*/) {
  Called("UserCaseFileSpec::Init");
  const auto& sequence = dynamic_cast<const velahost::CommandTokens&>(tokens);
  const Token& token = sequence.Current();
  Impl read;
  read.workingFile = token.Is('*');
  if (token.kind == Token::String) read.file = token.Text();
  const bool named = read.workingFile || !read.file.empty();
  if (!named) {
    read.error =
        fmt::format("Expect a quoted file name or * after FROM. Found {} (line {}, column {})...",
                    sequence.AtEnd() ? "the end of the subcommand" : sequence.Shown(), token.line,
                    token.column);
  }
  *impl_ = std::move(read);
  return named;
}

std::string UserCaseFileSpec::ErrorText() const {
  Called("UserCaseFileSpec::ErrorText");
  return impl_->error;
}

// Codebooks are not encrypted: the password is not needed, so it is not kept.
void UserCaseFileSpec::Password(const std::string& /*password*/) {
  Called("UserCaseFileSpec::Password");
}

bool UserCaseFileSpec::IsWorkingFile() const {
  Called("UserCaseFileSpec::IsWorkingFile");
  return impl_->workingFile;
}
