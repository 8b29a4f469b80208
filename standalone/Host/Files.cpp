#include "host/Files.h"

#include <fmt/format.h>

#include <memory>
#include <utility>

#include "host/Exceptions.h"
#include "host/Syntax.h"
#include "standalone/Files/File.h"
#include "standalone/Host/Calls.h"
#include "standalone/Host/CommandTokens.h"
#include "standalone/Host/DataSources.h"
#include "standalone/Host/Host.h"
#include "standalone/Text/Message.h"

using velahost::Called;
using velahost::CodebookFile;
using velahost::Released;
using velahost::Token;

struct UserCaseFileSpec::Impl {
  std::string file;  // as OpenCodebook takes it; empty when no file is named
  bool isWorkingFile = false;
  std::string error;                   // why the last Init failed
  velahost::TextPlace place = {1, 1};  // of the file in the command
};

UserCaseFileSpec::UserCaseFileSpec() {
  Called("UserCaseFileSpec::UserCaseFileSpec");
  impl_ = std::make_unique<Impl>();
}

UserCaseFileSpec::~UserCaseFileSpec() { Released("UserCaseFileSpec::~UserCaseFileSpec"); }

bool UserCaseFileSpec::Init(const TokenSequenceBase& tokens, bool /*flag*/) {
  Called("UserCaseFileSpec::Init");
  const auto& sequence = dynamic_cast<const velahost::CommandTokens&>(tokens);
  const Token& token = sequence.Current();
  Impl read;
  read.isWorkingFile = token.Is('*');
  if (token.kind == Token::String) read.file = token.Text();
  const bool isNamed = read.isWorkingFile || !read.file.empty();
  read.place = {token.line, token.column};
  if (!isNamed) {
    velahost::Host::Current().placeOfFailure = read.place;
    read.error =
        fmt::format("Expect a quoted file name or * after FROM. Found {} (line {}, column {})...",
                    sequence.AtEnd() ? "the end of the subcommand" : sequence.Shown(), token.line,
                    token.column);
  }
  *impl_ = std::move(read);
  return isNamed;
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
  return impl_->isWorkingFile;
}

struct UserInputCaseFile::Impl {
  std::unique_ptr<VELA_DataSource> dataSource;  // null when the working file is the source
};

namespace {

std::shared_ptr<const CodebookFile> OpenSource(const std::string& file, velahost::TextPlace place) {
  velahost::Host& host = velahost::Host::Current();
  try {
    return host.openSource(file);
  } catch (const velahost::FileError& error) {
    host.placeOfFailure = place;
    host.lineOfFailure = error.line;
    throw ErrorText(velahost::EscapeMessage(error.what()));
  }
}

}  // namespace

UserInputCaseFile::UserInputCaseFile(const UserCaseFileSpec& spec,
                                     ProcedureDataSource* /*context*/) {
  Called("UserInputCaseFile::UserInputCaseFile");
  impl_ = std::make_unique<Impl>();
  velahost::Reach& reach = velahost::Host::Current().reach;
  reach.SetSource(nullptr);
  if (spec.impl_->isWorkingFile) return;

  const std::shared_ptr<const CodebookFile> file = OpenSource(spec.impl_->file, spec.impl_->place);
  reach.SetSource(file);
  velahost::Host::Current().ReportWarningsOf(file);
  impl_->dataSource =
      std::make_unique<VELA_DataSource>(std::make_unique<VELA_DataSource::Impl>(file));
}

UserInputCaseFile::~UserInputCaseFile() { Released("UserInputCaseFile::~UserInputCaseFile"); }

VELA_DataSource* UserInputCaseFile::DataSource() {
  Called("UserInputCaseFile::DataSource");
  return impl_->dataSource.get();
}
