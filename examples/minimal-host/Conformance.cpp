#include <velawapd/conformance/Conformance.h>

#include <cstdlib>

#include "Host.h"
#include "Model.h"

// What the tests that come with the library need of this host: a file to work on.

namespace {

OBS CellOf(const std::string& text, int type) {
  return type == 0 ? NumberCell(std::atof(text.c_str())) : StringCell(type, text);
}

std::unique_ptr<VELA_Variable> VariableOf(const conformance::Sample& sample) {
  auto impl = std::make_unique<VELA_Variable::Impl>();
  impl->name = sample.name;
  impl->type = sample.type;
  impl->label = sample.label;
  if (!sample.valueLabels.empty()) {
    auto labels = std::make_shared<VELA_VLImpl>();
    labels->type = sample.type;
    for (const auto& [value, label] : sample.valueLabels) {
      labels->pairs.emplace_back(CellOf(value, sample.type), label);
    }
    HostAccess::SetOf(impl->valueLabels) = labels;
  }
  for (const std::string& value : sample.missing) {
    impl->missing[static_cast<std::size_t>(impl->missingCount++)] = CellOf(value, sample.type);
  }
  auto attributes = std::make_unique<DatasourceAttributes::Impl>();
  attributes->values = sample.attributes;
  impl->attributes = DatasourceAttributes(std::move(attributes));
  return std::make_unique<VELA_Variable>(std::move(impl));
}

}  // namespace

void conformance::OpenWorking(const std::vector<Sample>& samples) {
  auto file = std::make_unique<VELA_DataSource::Impl>();
  for (const Sample& sample : samples) file->variables.push_back(VariableOf(sample));
  TheHost().before.clear();
  TheHost().working = std::make_unique<VELA_DataSource>(std::move(file));
  TheHost().hasError = false;
}
