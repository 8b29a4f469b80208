#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/Data.h"
#include "standalone/Dictionary/Attributes.h"
#include "standalone/Dictionary/ValueLabels.h"
#include "standalone/Host/Attributes.h"

// The standalone host's way into what the classes of host/Data.h are made of. Nothing here is a
// host operation: what the host does by it is not shown to the observer of calls.
class HostAccess {
 public:
  static VELA_Variable::Impl& Of(VELA_Variable& variable) { return *variable.impl_; }
  static const VELA_Variable::Impl& Of(const VELA_Variable& variable) { return *variable.impl_; }
  static VELA_DataSource::Impl& Of(VELA_DataSource& dataSource) { return *dataSource.impl_; }
  static const VELA_DataSource::Impl& Of(const VELA_DataSource& dataSource) {
    return *dataSource.impl_;
  }

  // The set that a handle holds; null when there is none. A handle holds the dictionary's own set,
  // under a type that only the host knows.
  static velahost::SharedValueLabels SetOf(const VELA_VLImplPointer& handle) {
    return {handle.set_, reinterpret_cast<const velahost::ValueLabels*>(handle.set_.get())};
  }
  // Makes the set the handle's.
  static void Share(VELA_VLImplPointer& handle, const velahost::SharedValueLabels& set) noexcept {
    auto* const opaque =
        reinterpret_cast<VELA_VLImpl*>(const_cast<velahost::ValueLabels*>(set.get()));
    handle.set_ = std::shared_ptr<VELA_VLImpl>(set, opaque);
  }
  // The set that a handle holds, to be changed; null when others hold it too, or there is none.
  static velahost::ValueLabels* OwnSetOf(VELA_VLImplPointer& handle) {
    if (handle.set_.use_count() != 1) return nullptr;
    return reinterpret_cast<velahost::ValueLabels*>(handle.set_.get());
  }

  // What a set of attributes holds.
  static const velahost::CustomAttributes& Of(const DatasourceAttributes& attributes);
  static const std::vector<velahost::DocumentationPart>& DocumentationOf(
      const DatasourceAttributes& attributes);
  // A set that holds the attributes and what documents; null where there is neither.
  static std::unique_ptr<DatasourceAttributes> MakeAttributes(
      const velahost::CustomAttributes& attributes,
      const velahost::DocumentationPart& documentation = {});

  static const std::string& TextOf(const DSDocument& document) { return *document.text_; }
};
