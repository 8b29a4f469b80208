#include <utility>
#include <vector>

#include "host/Data.h"
#include "host/Output.h"
#include "standalone/Data/Attributes.h"
#include "standalone/Data/HostAccess.h"
#include "standalone/Data/Variable.h"
#include "standalone/Host.h"
#include "standalone/HostCalls.h"
#include "standalone/Output/Diagnostics.h"

using velahost::Called;
using velahost::Released;

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
    : BpCellText((Called("BpVariable::BpVariable"),
                  std::make_unique<Impl>(Impl{HostAccess::Of(variable).name, false, {}}))) {}

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
  std::string message = impl.isMessage ? velahost::Render(impl.text, impl.arguments) : impl.text;
  velahost::Host::Current().diagnostics.Issue(
      {impl.text, impl.arguments, std::move(message), show, level});
}
