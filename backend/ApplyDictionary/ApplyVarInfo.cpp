#include "backend/ApplyDictionary/ApplyVarInfo.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include "backend/ApplyDictionary/ApplyDictionarySpec.h"
#include "backend/ApplyDictionary/ReportCell.h"
#include "host/Data.h"
#include "host/Output.h"

namespace {

// Issues a warning in whose text "^1" shows the variable.
void WarnVariable(const char* text, const VELA_Variable& variable) {
  ReportCell<BpVariable>(BpLevelTransferWarning, text, variable, BpVariable::ShowDefault);
}

bool IsString(const VELA_Variable& variable) { return variable.GetType() != 0; }

// REQUIRES: the variable is a string.
std::size_t StringWidth(const VELA_Variable& variable) {
  return static_cast<std::size_t>(variable.GetType());
}

// Whether values of the source may not fit the target. REQUIRES: both are numeric or both strings.
bool IsNarrower(const VELA_Variable& target, const VELA_Variable& source) {
  return target.GetType() < source.GetType();
}

// Whether the value loses more than trailing blanks when it is cut to the width, in bytes.
bool IsTooLong(std::string_view value, std::size_t width) {
  // In a value of blanks alone nothing is found, and the sum wraps to 0.
  return value.find_last_not_of(' ') + 1 > width;
}

// Whether a value of the source's label set does not fit the width.
bool ValueLabelsTooLong(std::size_t width, const VELA_Variable& source) {
  if (!IsString(source)) return false;
  VELA_ValueLabelMap labels(source.GetValueLabels());
  labels.Reset();
  std::string value;
  const char* label = nullptr;
  while (labels.GetNextPair(value, label) != 0) {
    // Only the bytes of the source's own width count. The values of the set may be narrower.
    if (IsTooLong(std::string_view(value).substr(0, StringWidth(source)), width)) return true;
  }
  return false;
}

void ApplyLabel(const VELA_Variable& source, VELA_Variable& target) {
  // An empty label is a label; null is none.
  if (const char* const label = source.GetLabel(); label != nullptr) target.SetLabel(label);
}

// The width of a format on the target. A string has its own, in characters of the format.
int FormatWidth(const VELA_Variable& target, VELA_Variable::FormatType type, int sourceWidth) {
  if (!IsString(target)) return sourceWidth;
  return type == VELA_Variable::FormatHexString ? 2 * target.GetType() : target.GetType();
}

void ApplyFormats(const VELA_Variable& source, VELA_Variable& target) {
  VELA_Variable::FormatType type{};
  int width = 0;
  int decimals = 0;
  source.GetFormat(type, width, decimals);
  target.SetFormat(type, FormatWidth(target, type, width), decimals);
  source.GetWriteFormatEx(type, width, decimals);
  target.SetWriteFormat(type, FormatWidth(target, type, width), decimals);
}

void ApplyLevel(const VELA_Variable& source, VELA_Variable& target) {
  const VELA_Variable_Enumerations::MeasurementLevel level = source.GetMeasurementLevel();
  if (level != VELA_Variable_Enumerations::NoLevel) target.SetMeasurementLevel(level);
}

// Whether one of the source's missing values does not fit the width. REQUIRES: source is a string.
bool MissingValuesTooLong(std::span<const OBS* const> values, std::size_t width,
                          const VELA_Variable& source) {
  return std::any_of(values.begin(), values.end(), [&](const OBS* value) {
    // The cell of a string is its bytes, filled with blanks.
    const std::string_view bytes(reinterpret_cast<const char*>(value), StringWidth(source));
    return IsTooLong(bytes, width);
  });
}

void ApplyMissing(const VELA_Variable& source, VELA_Variable& target) {
  const OBS* values[3] = {};
  const int count = source.GetMissingValues(values[0], values[1], values[2]);
  if (count == 0) return;
  // The meaning of the sign is the host's. It does not change how many there are.
  const auto valueCount = static_cast<std::size_t>(std::abs(count));
  if (IsNarrower(target, source) &&
      MissingValuesTooLong(std::span(values, valueCount), StringWidth(target), source)) {
    WarnVariable("^1: Missing values not applied: some values too long...", target);
    return;
  }
  target.SetMissingValues(count, values[0], values[1], values[2]);
}

// Adds the source's labels for values that the target has none for; the target's own stay.
void MergeValueLabels(const VELA_Variable& source, VELA_Variable& target) {
  VELA_ValueLabelMap sourceLabels(source.GetValueLabels());
  VELA_ValueLabelMap targetLabels(target.GetValueLabels());
  // An empty set has no type that values could be converted to.
  if (targetLabels.Size() == 0) {
    target.SetValueLabels(source.GetValueLabels());
    return;
  }
  sourceLabels.Reset();
  const OBS* value = nullptr;
  const char* label = nullptr;
  while (sourceLabels.GetNextPair(value, label) != 0) {
    const ObsValue converted(targetLabels.Type(), value, sourceLabels.Type());
    if (targetLabels.GetLabel(converted) == nullptr) targetLabels.AddPair(converted, label);
  }
  target.SetValueLabels(targetLabels);
}

void ApplyValueLabels(const VELA_Variable& source, VELA_Variable& target, ApplyMode mode) {
  if (mode == ApplyNone || !source.GetValueLabels()) return;
  // In both modes all labels are applied or none, even when the target labels the value itself.
  if (IsNarrower(target, source) && ValueLabelsTooLong(StringWidth(target), source)) {
    WarnVariable("^1: Labels not applied: some values too long...", target);
    return;
  }
  if (mode == ApplyReplace) {
    target.SetValueLabels(source.GetValueLabels());
  } else {
    MergeValueLabels(source, target);
  }
}

void ApplyWidth(const VELA_Variable& source, VELA_Variable& target) {
  const short width = source.GetDisplayWidth();
  if (width == 0) return;
  if (IsString(target) && width < target.GetDisplayWidth()) {
    WarnVariable("^1: Column width not applied: could truncate values...", target);
    return;
  }
  target.SetDisplayWidth(width);
}

void ApplyAttributes(const VELA_Variable& source, VELA_Variable& target, ApplyMode mode) {
  if (mode == ApplyReplace) {
    if (source.GetAttributes().Size() != 0) target.SetAttributes(source.GetAttributes());
  } else if (mode == ApplyMerge) {
    DatasourceAttributes merged(target.GetAttributes());
    if (merged.Merge(source.GetAttributes(), true)) target.SetAttributes(merged);
  }
}

}  // namespace

void ApplyVarInfo(const VELA_Variable& source, VELA_Variable& target,
                  const ApplyDictionarySpec& record) {
  if (record.varLabel) ApplyLabel(source, target);
  if (IsString(source) != IsString(target)) {
    if (SelectsMoreThanLabel(record)) {
      WarnVariable("^1: Only variable label applied. Numeric in one file...", target);
    }
    return;
  }
  // From here on both are numeric or both strings. The order is that of the warnings.
  if (record.varAlignment) target.SetAlignment(source.GetAlignment());
  if (record.varFormats) ApplyFormats(source, target);
  if (record.varLevel) ApplyLevel(source, target);
  if (record.varMissing) ApplyMissing(source, target);
  if (record.varRole) target.SetRole(source.GetRole());
  ApplyValueLabels(source, target, record.varValLabels);
  if (record.varWidth) ApplyWidth(source, target);
  ApplyAttributes(source, target, record.varAttributes);
}
