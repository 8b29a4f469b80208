#include "standalone/Dictionary/Attributes.h"

#include <iterator>
#include <memory>
#include <utility>

#include "host/Data.h"
#include "standalone/Host/Calls.h"
#include "standalone/Host/HostAccess.h"

using velahost::Attribute;
using velahost::Called;
using velahost::CustomAttributes;
using velahost::Released;

struct DatasourceAttributes::Impl {
  CustomAttributes attributes;
};

const CustomAttributes& HostAccess::Of(const DatasourceAttributes& attributes) {
  static const CustomAttributes none;
  return attributes.impl_ ? attributes.impl_->attributes : none;
}

std::unique_ptr<DatasourceAttributes> HostAccess::MakeAttributes(
    const CustomAttributes& attributes) {
  if (attributes.empty()) return nullptr;
  auto made = std::make_unique<DatasourceAttributes>();
  made->impl_ =
      std::make_unique<DatasourceAttributes::Impl>(DatasourceAttributes::Impl{attributes});
  return made;
}

// Not shown to the observer of calls: the host makes its own sets by it, and the library only makes
// copies.
DatasourceAttributes::DatasourceAttributes() = default;

DatasourceAttributes::DatasourceAttributes(const DatasourceAttributes& other) {
  Called("DatasourceAttributes::DatasourceAttributes");
  if (other.impl_) impl_ = std::make_unique<Impl>(*other.impl_);
}

DatasourceAttributes& DatasourceAttributes::operator=(const DatasourceAttributes& other) {
  Called("DatasourceAttributes::operator=");
  impl_ = other.impl_ ? std::make_unique<Impl>(*other.impl_) : nullptr;
  return *this;
}

DatasourceAttributes::DatasourceAttributes(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}

DatasourceAttributes::~DatasourceAttributes() {
  Released("DatasourceAttributes::~DatasourceAttributes");
}

int DatasourceAttributes::Size() const {
  Called("DatasourceAttributes::Size");
  return static_cast<int>(HostAccess::Of(*this).size());
}

// This set wins, whatever the flag: what the other one has besides is added.
bool DatasourceAttributes::Merge(const DatasourceAttributes& other, bool /*flag*/) {
  Called("DatasourceAttributes::Merge");
  const CustomAttributes& theirs = HostAccess::Of(other);
  if (theirs.empty() || &other == this) return false;
  if (!impl_) impl_ = std::make_unique<Impl>();
  CustomAttributes& own = impl_->attributes;
  velahost::AttributeIndex index(own);
  CustomAttributes missing;
  for (const Attribute& attribute : theirs) {
    if (index.Find(attribute.name) == nullptr) missing.push_back(attribute);
  }
  if (missing.empty()) return false;
  own.reserve(own.size() + missing.size());
  std::move(missing.begin(), missing.end(), std::back_inserter(own));
  return true;
}
