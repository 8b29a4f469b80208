#include <utility>
#include <vector>

#include "host/Data.h"
#include "host/Output.h"
#include "standalone/Host/Calls.h"
#include "standalone/Host/Host.h"
#include "standalone/Host/HostAccess.h"
#include "standalone/Host/Variables.h"
#include "standalone/Syntax/Diagnostics.h"

using velahost::Called;
using velahost::Released;

static_assert(static_cast<int>(velahost::Severity::TransferWarning) == BpLevelTransferWarning);
static_assert(static_cast<int>(velahost::Severity::Failure) == BpLevelFailure);
static_assert(velahost::kShowMessage == BpShowMessage);

struct BpCellText::Impl {
  std::string text;
  bool isMessage = false;
  std::vector<std::string> arguments;  // of a composite
};

BpCellText::BpCellText(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}

BpCellText::~BpCellText() = default;

BpString::BpString(std::string text, bool isMessage)
    : BpCellText((Called("BpString::BpString"),
                  std::make_unique<Impl>(Impl{std::move(text), isMessage, {}}))) {}

BpString::~BpString() { Released("BpString::~BpString"); }

BpVariable::BpVariable(const VELA_Variable& variable, Show /*show*/)
    : BpCellText(
          (Called("BpVariable::BpVariable"),
           std::make_unique<Impl>(Impl{HostAccess::Of(variable).now->name.String(), false, {}}))) {}

BpVariable::~BpVariable() { Released("BpVariable::~BpVariable"); }

BpComposite::BpComposite(const std::string& text, bool isMessage)
    : BpCellText((Called("BpComposite::BpComposite"),
                  std::make_unique<Impl>(Impl{text, isMessage, {}}))) {}

BpComposite::~BpComposite() { Released("BpComposite::~BpComposite"); }

void BpComposite::Add(const BpCellText& cell) {
  Called("BpComposite::Add");
  impl_->arguments.push_back(cell.impl_->text);
}

// There is nothing left to do: the placeholders are filled when the cell is issued.
void BpComposite::Finish() { Called("BpComposite::Finish"); }

void BpError(const BpCellText& cell, BpErrorShow show, BpErrorLevel level) {
  Called("BpError");
  const BpCellText::Impl& impl = *cell.impl_;
  const velahost::Message message{impl.text, impl.arguments};
  velahost::Host& host = velahost::Host::Current();
  velahost::Diagnostic diagnostic{message, impl.isMessage ? velahost::Render(message) : impl.text,
                                  show, static_cast<velahost::Severity>(level)};
  diagnostic.place = std::exchange(host.placeOfFailure, std::nullopt);
  diagnostic.fileLine = std::exchange(host.lineOfFailure, {});
  host.diagnostics.Issue(std::move(diagnostic));
}

// A frame has nothing of its own: the host keeps the titles of those that are open.
struct BpProcedure::Impl {};

BpProcedure::BpProcedure(std::string title, int /*kind*/) {
  Called("BpProcedure::BpProcedure");
  velahost::Host::Current().openFrames.push_back(std::move(title));
}

BpProcedure::~BpProcedure() {
  Released("BpProcedure::~BpProcedure");
  velahost::Host::Current().openFrames.pop_back();
}
