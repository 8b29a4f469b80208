#include "standalone/Host/Attributes.h"

#include <iterator>
#include <memory>
#include <optional>
#include <utility>

#include "host/Data.h"
#include "standalone/Host/Calls.h"
#include "standalone/Host/Host.h"
#include "standalone/Host/HostAccess.h"

using velahost::Attribute;
using velahost::Called;
using velahost::CustomAttributes;
using velahost::DocumentationElement;
using velahost::DocumentationPart;
using velahost::DocumentationSet;
using velahost::Released;

const CustomAttributes& HostAccess::Of(const DatasourceAttributes& attributes) {
  static const CustomAttributes none;
  return attributes.impl_ ? attributes.impl_->attributes : none;
}

const std::vector<DocumentationPart>& HostAccess::DocumentationOf(
    const DatasourceAttributes& attributes) {
  static const std::vector<DocumentationPart> none;
  return attributes.impl_ ? attributes.impl_->documentation : none;
}

std::unique_ptr<DatasourceAttributes> HostAccess::MakeAttributes(
    const CustomAttributes& attributes, const DocumentationPart& documentation) {
  if (attributes.empty() && documentation.kinds.Empty()) return nullptr;
  auto made = std::make_unique<DatasourceAttributes>();
  made->impl_ = std::make_unique<DatasourceAttributes::Impl>();
  made->impl_->attributes = attributes;
  if (!documentation.kinds.Empty()) made->impl_->documentation.push_back(documentation);
  return made;
}

std::vector<DocumentationElement> velahost::ElementsOf(const DocumentationPart& part) {
  std::vector<DocumentationElement> elements;
  if (part.file) elements = DocumentationOf(*part.file, part.column, part.kinds);
  if (part.brought) AddGiven(elements, *part.brought, part.kinds);
  return elements;
}

void velahost::AddGiven(std::vector<DocumentationElement>& elements, const Brought& given,
                        DocumentationSet kinds) {
  DocumentationSet inFile;
  for (const DocumentationElement& element : elements) inFile.Add(element.kind);
  const DocumentationSet lacking = kinds.Without(inFile);
  for (const DocumentationElement& element : given.documentation) {
    if (lacking.Has(element.kind)) elements.push_back(element);
  }
}

namespace {

// Whether an element of that name can stand in the file's document; warns if not.
bool CanStandIn(const velahost::CodebookFile& file, const std::string& markup,
                const std::string& element, const std::string& name) {
  const std::optional<std::string> why = WhyNotIn(file, markup);
  if (!why) return true;
  velahost::Host::Current().diagnostics.Report(
      velahost::Severity::TransferWarning,
      {"^1: The element ^2 is not brought, since it ^3...", {name, element, *why}});
  return false;
}

}  // namespace

void velahost::LeaveOut(std::vector<DocumentationElement>& elements, const CodebookFile* into,
                        const std::string& name) {
  if (into == nullptr) return;
  std::erase_if(elements, [&](const DocumentationElement& element) {
    return !CanStandIn(*into, element.markup, NameOf(element.kind), name);
  });
}

void velahost::LeaveOut(std::vector<std::string>& markup, const CodebookFile* into,
                        const std::string& name) {
  if (into == nullptr) return;
  std::erase_if(markup, [&](const std::string& element) {
    return !CanStandIn(*into, element, ElementNameOf(element), name);
  });
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
  std::size_t size = HostAccess::Of(*this).size();
  for (const DocumentationPart& part : HostAccess::DocumentationOf(*this)) {
    size += part.kinds.Size();
  }
  return static_cast<int>(size);
}

// This set wins, whatever the flag: what the other one has besides is added.
bool DatasourceAttributes::Merge(const DatasourceAttributes& other, bool /*flag*/) {
  Called("DatasourceAttributes::Merge");
  if (!other.impl_ || &other == this) return false;
  if (!impl_) impl_ = std::make_unique<Impl>();
  CustomAttributes& own = impl_->attributes;
  velahost::AttributeIndex index(own);
  CustomAttributes missing;
  for (const Attribute& attribute : other.impl_->attributes) {
    if (index.Find(attribute.name) == nullptr) missing.push_back(attribute);
  }
  velahost::DocumentationSet known;
  for (const DocumentationPart& part : impl_->documentation) known.Add(part.kinds);
  std::vector<DocumentationPart> parts;
  for (const DocumentationPart& part : other.impl_->documentation) {
    parts.push_back(part);
    parts.back().kinds = part.kinds.Without(known);
    if (parts.back().kinds.Empty()) parts.pop_back();
    known.Add(part.kinds);
  }
  if (missing.empty() && parts.empty()) return false;
  own.reserve(own.size() + missing.size());
  impl_->documentation.reserve(impl_->documentation.size() + parts.size());
  std::move(missing.begin(), missing.end(), std::back_inserter(own));
  std::move(parts.begin(), parts.end(), std::back_inserter(impl_->documentation));
  return true;
}
