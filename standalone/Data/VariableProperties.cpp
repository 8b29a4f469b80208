#include "standalone/Data/Attributes.h"
#include "standalone/Data/Differences.h"
#include "standalone/Data/ValueLabelSet.h"
#include "standalone/Data/Variable.h"

namespace velahost {

// Written out so that the handle and the attributes are copied inside the host, not by a host
// operation.
VariableProperties::VariableProperties(const VariableProperties& other)
    : label(other.label),
      missing(other.missing),
      print(other.print),
      write(other.write),
      columnWidth(other.columnWidth),
      level(other.level),
      role(other.role),
      alignment(other.alignment),
      attributes(HostAccess::CopyOf(other.attributes)) {
  HostAccess::Share(valueLabels, HostAccess::SharedOf(other.valueLabels));
}

bool SameValueLabels(const VELA_VLImplPointer& a, const VELA_VLImplPointer& b) {
  const VELA_VLImpl* const inA = HostAccess::Of(a);
  const VELA_VLImpl* const inB = HostAccess::Of(b);
  return inA == inB || (inA != nullptr && inB != nullptr && *inA == *inB);
}

std::vector<const char*> DifferingProperties(const VariableProperties& a,
                                             const VariableProperties& b) {
  const std::array<bool, kPropertyNames.size()> differs = {
      a.label != b.label,         !SameValueLabels(a.valueLabels, b.valueLabels),
      a.missing != b.missing,     a.print != b.print,
      a.write != b.write,         a.columnWidth != b.columnWidth,
      a.level != b.level,         a.role != b.role,
      a.alignment != b.alignment, !SameAttributes(a.attributes, b.attributes)};
  return NamesWhere(differs, kPropertyNames);
}

}  // namespace velahost
