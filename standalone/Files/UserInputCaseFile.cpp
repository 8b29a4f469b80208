#include <utility>

#include "host/Exceptions.h"
#include "host/Files.h"
#include "standalone/Codebook/OpenCodebook.h"
#include "standalone/Files/UserCaseFileSpec.h"
#include "standalone/Host.h"
#include "standalone/HostCalls.h"
#include "standalone/Output/Diagnostics.h"

struct UserInputCaseFile::Impl {
  std::unique_ptr<VELA_DataSource> dataSource;  // null when the working file is the source
};

namespace {

velahost::OpenedCodebook Open(const std::string& file) {
  try {
    if (auto& ahead = velahost::Host::Current().sourceAhead) {
      if (auto opened = ahead->Take(file)) return std::move(*opened);
    }
    return velahost::OpenCodebook(file, velahost::OpenFor::Reading);
  } catch (const velahost::CodebookError& error) {
    throw ErrorText(velahost::EscapeMessage(error.what()));
  }
}

}  // namespace

UserInputCaseFile::UserInputCaseFile(const UserCaseFileSpec& spec,
                                     ProcedureDataSource* /*context*/) {
  velahost::Called("UserInputCaseFile::UserInputCaseFile");
  impl_ = std::make_unique<Impl>();
  if (spec.impl_->workingFile) return;

  velahost::OpenedCodebook opened = Open(spec.impl_->file);
  velahost::Host::Current().sourcesRead.push_back(opened.identity);
  for (const velahost::ReadingWarning& warning : opened.warnings) {
    velahost::Report(BpShowMessage, BpLevelTransferWarning, warning.text, warning.arguments);
  }
  impl_->dataSource = std::move(opened.dataSource);
}

UserInputCaseFile::~UserInputCaseFile() {
  velahost::Released("UserInputCaseFile::~UserInputCaseFile");
}

VELA_DataSource* UserInputCaseFile::DataSource() {
  velahost::Called("UserInputCaseFile::DataSource");
  return impl_->dataSource.get();
}
