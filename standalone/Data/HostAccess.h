#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/Data.h"

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

  // What a set of attributes holds. A set that never held one has no Impl; the first form makes it.
  static DatasourceAttributes::Impl& Of(DatasourceAttributes& attributes);
  static const DatasourceAttributes::Impl& Of(const DatasourceAttributes& attributes);
  static DatasourceAttributes CopyOf(const DatasourceAttributes& attributes);
  static void Swap(DatasourceAttributes& a, DatasourceAttributes& b) noexcept {
    a.impl_.swap(b.impl_);
  }

  // The set behind a handle; null when there is none.
  static const VELA_VLImpl* Of(const VELA_VLImplPointer& handle) { return handle.set_.get(); }
  static VELA_VLImplPointer HandleOf(std::shared_ptr<VELA_VLImpl> set);
  static const std::shared_ptr<VELA_VLImpl>& SharedOf(const VELA_VLImplPointer& handle) {
    return handle.set_;
  }
  // Makes the set the handle's.
  static void Share(VELA_VLImplPointer& handle, std::shared_ptr<VELA_VLImpl> set) noexcept {
    handle.set_ = std::move(set);
  }

  static const std::string& TextOf(const DSDocument& document) { return *document.text_; }
  // A list of the same documents, which share their texts.
  static std::vector<DSDocument> CopyOf(const std::vector<DSDocument>& documents);
  // A list of the documents at the given places.
  static std::vector<DSDocument> Select(const std::vector<DSDocument>& documents,
                                        const std::vector<std::size_t>& places);
};
