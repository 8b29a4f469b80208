#include <cstddef>
#include <utility>

#include "host/Data.h"
#include "standalone/Data/Cells.h"
#include "standalone/Data/HostAccess.h"
#include "standalone/Data/ValueLabelSet.h"
#include "standalone/HostCalls.h"

using velahost::Called;
using velahost::Released;

VELA_VLImplPointer HostAccess::HandleOf(std::shared_ptr<VELA_VLImpl> set) {
  VELA_VLImplPointer handle;
  Share(handle, std::move(set));
  return handle;
}

// Not shown to the observer of calls: the host makes its own handles by it, empty, and the library
// makes none.
VELA_VLImplPointer::VELA_VLImplPointer() = default;

VELA_VLImplPointer::VELA_VLImplPointer(const VELA_VLImplPointer& other) {
  Called("VELA_VLImplPointer::VELA_VLImplPointer");
  set_ = other.set_;
}

VELA_VLImplPointer& VELA_VLImplPointer::operator=(const VELA_VLImplPointer& other) {
  Called("VELA_VLImplPointer::operator=");
  set_ = other.set_;
  return *this;
}

VELA_VLImplPointer::~VELA_VLImplPointer() { Released("VELA_VLImplPointer::~VELA_VLImplPointer"); }

VELA_VLImplPointer::operator bool() const {
  Called("VELA_VLImplPointer::operator bool");
  return set_ != nullptr;
}

struct VELA_ValueLabelMap::Impl {
  VELA_VLImplPointer handle;
  int next = 0;  // the position of the pair behind the cursor

  // The position of the next pair, with the cursor put behind it; -1 when there is none left.
  int Advance() {
    const VELA_VLImpl* const set = HostAccess::Of(handle);
    return set != nullptr && next < set->Size() ? next++ : -1;
  }
};

VELA_ValueLabelMap::VELA_ValueLabelMap(const VELA_VLImplPointer& set) {
  Called("VELA_ValueLabelMap::VELA_ValueLabelMap");
  impl_ = std::make_unique<Impl>();
  HostAccess::Share(impl_->handle, HostAccess::SharedOf(set));
}

VELA_ValueLabelMap::~VELA_ValueLabelMap() { Released("VELA_ValueLabelMap::~VELA_ValueLabelMap"); }

int VELA_ValueLabelMap::Size() const {
  Called("VELA_ValueLabelMap::Size");
  const VELA_VLImpl* const set = HostAccess::Of(impl_->handle);
  return set == nullptr ? 0 : set->Size();
}

int VELA_ValueLabelMap::Type() const {
  Called("VELA_ValueLabelMap::Type");
  const VELA_VLImpl* const set = HostAccess::Of(impl_->handle);
  return set == nullptr ? 0 : set->Type();
}

void VELA_ValueLabelMap::Reset() {
  Called("VELA_ValueLabelMap::Reset");
  impl_->next = 0;
}

int VELA_ValueLabelMap::GetNextPair(const OBS*& value, const char*& label) const {
  Called("VELA_ValueLabelMap::GetNextPair");
  const int position = impl_->Advance();
  if (position < 0) return 0;
  const VELA_VLImpl& set = *HostAccess::Of(impl_->handle);
  value = set.ValueAt(position);
  label = set.LabelAt(position).c_str();
  return 1;
}

int VELA_ValueLabelMap::GetNextPair(std::string& value, const char*& label) const {
  Called("VELA_ValueLabelMap::GetNextPair");
  const int position = impl_->Advance();
  if (position < 0) return 0;
  const VELA_VLImpl& set = *HostAccess::Of(impl_->handle);
  value = set.StringAt(position);
  label = set.LabelAt(position).c_str();
  return 1;
}

const char* VELA_ValueLabelMap::GetLabel(const OBS* value) const {
  Called("VELA_ValueLabelMap::GetLabel");
  const VELA_VLImpl* const set = HostAccess::Of(impl_->handle);
  const int position = set == nullptr ? -1 : set->Find(value);
  return position < 0 ? nullptr : set->LabelAt(position).c_str();
}

void VELA_ValueLabelMap::AddPair(const OBS* value, std::string label) {
  Called("VELA_ValueLabelMap::AddPair");
  const std::shared_ptr<VELA_VLImpl>& set = HostAccess::SharedOf(impl_->handle);
  // The last one who holds a set may change it: no variable and no other view has it.
  if (set.use_count() == 1) {
    set->Add(value, std::move(label));
    return;
  }
  std::shared_ptr<VELA_VLImpl> own = set->Copy();
  own->Add(value, std::move(label));
  HostAccess::Share(impl_->handle, std::move(own));
}

VELA_ValueLabelMap::operator VELA_VLImplPointer&() {
  Called("VELA_ValueLabelMap::operator VELA_VLImplPointer&");
  return impl_->handle;
}

struct ObsValue::Impl {
  double number = 0;
  std::string text;
  bool isNumber = true;
};

ObsValue::ObsValue(int type, const OBS* value, int valueType) {
  Called("ObsValue::ObsValue");
  impl_ = std::make_unique<Impl>();
  impl_->isNumber = type == 0;
  if (type == 0) {
    impl_->number = velahost::NumberIn(value);
  } else {
    impl_->text = velahost::AtWidth(velahost::StringIn(value, valueType), type);
  }
}

ObsValue::~ObsValue() { Released("ObsValue::~ObsValue"); }

ObsValue::operator const OBS*() const {
  Called("ObsValue::operator const OBS*");
  return impl_->isNumber ? velahost::CellOf(impl_->number) : velahost::CellOf(impl_->text);
}
