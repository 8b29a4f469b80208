#include <iostream>

#include "Host.h"
#include "Model.h"

// Applies the dictionary of last year's file to this year's, both made here, and shows this year's
// before and after. The command may be given as an argument.

namespace {

std::unique_ptr<VELA_Variable> NewVariable(const std::string& name, int type,
                                           const std::string& label = "") {
  auto impl = std::make_unique<VELA_Variable::Impl>();
  impl->name = name;
  impl->type = type;
  if (!label.empty()) impl->label = label;
  return std::make_unique<VELA_Variable>(std::move(impl));
}

std::unique_ptr<VELA_DataSource> LastYear() {
  VELA_DataSource::Impl file;
  file.variables.push_back(NewVariable("Sex", 0, "Sex of the person"));
  file.variables.push_back(NewVariable("Region", 8, "Region of residence"));
  file.variables.push_back(NewVariable("Income", 0, "Yearly income"));
  VELA_Variable& sex = *file.variables[0];
  auto labels = std::make_shared<VELA_VLImpl>();
  labels->pairs = {{NumberCell(1), "Male"}, {NumberCell(2), "Female"}};
  HostAccess::SetOf(HostAccess::Of(sex).valueLabels) = labels;
  const OBS noAnswer = NumberCell(9);
  sex.SetMissingValues(1, &noAnswer, nullptr, nullptr);
  const OBS notStated = StringCell(8, "NONE");
  file.variables[1]->SetMissingValues(1, &notStated, nullptr, nullptr);
  return std::make_unique<VELA_DataSource>(
      std::make_unique<VELA_DataSource::Impl>(std::move(file)));
}

std::unique_ptr<VELA_DataSource> ThisYear() {
  VELA_DataSource::Impl file;
  file.variables.push_back(NewVariable("SEX", 0));
  file.variables.push_back(NewVariable("REGION", 2));
  return std::make_unique<VELA_DataSource>(
      std::make_unique<VELA_DataSource::Impl>(std::move(file)));
}

std::string ValueText(const OBS& cell) {
  if (cell.width == 0) return std::to_string(static_cast<int>(cell.number));
  return "'" + std::string(cell.bytes.data(), static_cast<std::size_t>(cell.width)) + "'";
}

void Show(const VELA_DataSource& file) {
  for (int column = 0; column < file.ColumnCount(); ++column) {
    const VELA_Variable& variable = file.GetVariable(column);
    const char* const label = variable.GetLabel();
    std::cout << "  " << variable.GetName() << ": " << (label == nullptr ? "no label" : label);
    const auto& impl = HostAccess::Of(variable);
    if (const auto& set = HostAccess::SetOf(impl.valueLabels)) {
      for (const auto& [value, text] : set->pairs)
        std::cout << ", " << ValueText(value) << " " << text;
    }
    for (int i = 0; i < std::abs(impl.missingCount); ++i) {
      std::cout << ", missing " << ValueText(impl.missing[static_cast<std::size_t>(i)]);
    }
    std::cout << "\n";
  }
}

}  // namespace

int main(int argc, char** argv) {
  TheHost().files["last year"] = LastYear();
  TheHost().working = ThisYear();
  std::cout << "Before\n";
  Show(*TheHost().working);
  const bool isDone = RunCommand(argc > 1 ? argv[1] : "FROM 'last year' /NEWVARS");
  std::cout << "After\n";
  Show(*TheHost().working);
  return isDone ? 0 : 1;
}
