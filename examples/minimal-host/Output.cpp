#include <velawapd/Data.h>
#include <velawapd/Output.h>

#include <iostream>
#include <vector>

#include "Host.h"

// Output.h: diagnostics go to standard error, a line each.

struct BpCellText::Impl {
  std::string text;
  bool isMessage = false;
  std::vector<std::string> arguments;
};
BpCellText::BpCellText(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
BpCellText::~BpCellText() = default;

BpString::BpString(std::string text, bool isMessage)
    : BpCellText(std::make_unique<Impl>(Impl{std::move(text), isMessage, {}})) {}
BpString::~BpString() = default;
BpVariable::BpVariable(const VELA_Variable& variable, Show)
    : BpCellText(std::make_unique<Impl>(Impl{variable.GetName(), false, {}})) {}
BpVariable::~BpVariable() = default;
BpComposite::BpComposite(const std::string& text, bool isMessage)
    : BpCellText(std::make_unique<Impl>(Impl{text, isMessage, {}})) {}
BpComposite::~BpComposite() = default;
void BpComposite::Add(const BpCellText& cell) { impl_->arguments.push_back(cell.impl_->text); }
void BpComposite::Finish() {}

void BpError(const BpCellText& cell, BpErrorShow, BpErrorLevel level) {
  const auto& [text, isMessage, arguments] = *cell.impl_;
  std::string shown;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isMessage && text[i] == '\\' && i + 1 < text.size()) {
      shown += text[++i];
    } else if (isMessage && text[i] == '^' && i + 1 < text.size() && text[i + 1] >= '1' &&
               static_cast<std::size_t>(text[i + 1] - '1') < arguments.size()) {
      shown += arguments[static_cast<std::size_t>(text[++i] - '1')];
    } else {
      shown += text[i];
    }
  }
  std::cerr << (level >= BpLevelError ? "error: " : "warning: ") << shown << "\n";
  if (level >= BpLevelError) TheHost().hasError = true;
}

struct BpProcedure::Impl {};
BpProcedure::BpProcedure(std::string, int) {}
BpProcedure::~BpProcedure() = default;
