#include "standalone/Data/Attributes.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "standalone/HostCalls.h"
#include "standalone/Text/Utf8.h"

using velahost::Attribute;
using velahost::Called;
using velahost::Released;

namespace {

// Up to this many attributes are searched one by one.
constexpr std::size_t kFew = 16;

std::vector<const Attribute*> SortedByName(const std::vector<Attribute>& attributes) {
  std::vector<const Attribute*> sorted;
  sorted.reserve(attributes.size());
  for (const Attribute& attribute : attributes) sorted.push_back(&attribute);
  std::sort(sorted.begin(), sorted.end(),
            [](const Attribute* a, const Attribute* b) { return a->name < b->name; });
  return sorted;
}

}  // namespace

Attribute* DatasourceAttributes::Impl::Find(std::string_view name) {
  if (attributes.size() <= kFew) {
    const auto found =
        std::find_if(attributes.begin(), attributes.end(), [name](const Attribute& attribute) {
          return velahost::EqualIgnoringCase(attribute.name, name);
        });
    return found == attributes.end() ? nullptr : &*found;
  }
  for (std::size_t i = positions_.size(); i < attributes.size(); ++i) {
    positions_.emplace(velahost::UpperCase(attributes[i].name), i);
  }
  const auto found = positions_.find(velahost::UpperCase(name));
  return found == positions_.end() ? nullptr : &attributes[found->second];
}

void DatasourceAttributes::Impl::AddValue(std::string_view name, std::string value) {
  if (Attribute* const attribute = Find(name)) {
    attribute->values.push_back(std::move(value));
    return;
  }
  Attribute attribute{std::string(name), {}};
  attribute.values.push_back(std::move(value));
  attributes.push_back(std::move(attribute));
}

DatasourceAttributes::Impl& HostAccess::Of(DatasourceAttributes& attributes) {
  if (!attributes.impl_) attributes.impl_ = std::make_unique<DatasourceAttributes::Impl>();
  return *attributes.impl_;
}

const DatasourceAttributes::Impl& HostAccess::Of(const DatasourceAttributes& attributes) {
  static const DatasourceAttributes::Impl none;
  return attributes.impl_ ? *attributes.impl_ : none;
}

DatasourceAttributes HostAccess::CopyOf(const DatasourceAttributes& attributes) {
  return DatasourceAttributes(
      attributes.impl_ ? std::make_unique<DatasourceAttributes::Impl>(*attributes.impl_) : nullptr);
}

bool velahost::SameAttributes(const DatasourceAttributes& a, const DatasourceAttributes& b) {
  const std::vector<Attribute>& inA = HostAccess::Of(a).attributes;
  const std::vector<Attribute>& inB = HostAccess::Of(b).attributes;
  if (inA.size() != inB.size()) return false;
  if (inA == inB) return true;
  const std::vector<const Attribute*> sortedA = SortedByName(inA);
  const std::vector<const Attribute*> sortedB = SortedByName(inB);
  return std::equal(sortedA.begin(), sortedA.end(), sortedB.begin(),
                    [](const Attribute* x, const Attribute* y) { return *x == *y; });
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
  return static_cast<int>(HostAccess::Of(*this).attributes.size());
}

// This set wins, whatever the flag: what the other one has besides is added.
bool DatasourceAttributes::Merge(const DatasourceAttributes& other, bool /*flag*/) {
  Called("DatasourceAttributes::Merge");
  const std::vector<Attribute>& theirs = HostAccess::Of(other).attributes;
  if (theirs.empty() || &other == this) return false;
  Impl& impl = HostAccess::Of(*this);
  std::vector<Attribute> missing;
  for (const Attribute& attribute : theirs) {
    if (impl.Find(attribute.name) == nullptr) missing.push_back(attribute);
  }
  if (missing.empty()) return false;
  impl.attributes.reserve(impl.attributes.size() + missing.size());
  std::move(missing.begin(), missing.end(), std::back_inserter(impl.attributes));
  return true;
}
