#include "standalone/Dictionary/ValueLabels.h"

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include "host/Data.h"
#include "standalone/Host/Calls.h"
#include "standalone/Host/Cells.h"
#include "standalone/Host/HostAccess.h"

using velahost::Called;
using velahost::Released;
using velahost::SharedValueLabels;
using velahost::Text;
using velahost::ValueLabel;
using velahost::ValueLabels;

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
  std::size_t next = 0;  // the place of the pair after the cursor
  velahost::Cell cell;   // of the pair before it

  // The next pair, with the cursor put after it; null when there is none left.
  const ValueLabel* Advance() {
    const SharedValueLabels set = HostAccess::SetOf(handle);
    return set && next < set->Size() ? &(*set)[next++] : nullptr;
  }
};

namespace {

// A value cell of the set's type as a pair. What a document says besides of the pair that it comes
// from, its spelling and its languages, comes along.
ValueLabel PairOf(const ValueLabels& set, const OBS* value, Text label) {
  ValueLabel pair;
  if (const ValueLabel* const from = velahost::OriginOf(value).pair) {
    if (set.IsNumeric()) pair.string = from->string;
    if (from->label == label) pair.languages = from->languages;
  }
  if (set.IsNumeric()) {
    pair.number = velahost::NumberIn(value);
  } else {
    pair.string = Text(velahost::StringIn(value, set.Type()));
  }
  pair.label = std::move(label);
  return pair;
}

}  // namespace

VELA_ValueLabelMap::VELA_ValueLabelMap(const VELA_VLImplPointer& set) {
  Called("VELA_ValueLabelMap::VELA_ValueLabelMap");
  impl_ = std::make_unique<Impl>();
  HostAccess::Share(impl_->handle, HostAccess::SetOf(set));
}

VELA_ValueLabelMap::~VELA_ValueLabelMap() { Released("VELA_ValueLabelMap::~VELA_ValueLabelMap"); }

int VELA_ValueLabelMap::Size() const {
  Called("VELA_ValueLabelMap::Size");
  const SharedValueLabels set = HostAccess::SetOf(impl_->handle);
  return set ? static_cast<int>(set->Size()) : 0;
}

int VELA_ValueLabelMap::Type() const {
  Called("VELA_ValueLabelMap::Type");
  const SharedValueLabels set = HostAccess::SetOf(impl_->handle);
  return set ? set->Type() : 0;
}

void VELA_ValueLabelMap::Reset() {
  Called("VELA_ValueLabelMap::Reset");
  impl_->next = 0;
}

int VELA_ValueLabelMap::GetNextPair(const OBS*& value, const char*& label) const {
  Called("VELA_ValueLabelMap::GetNextPair");
  const ValueLabel* const pair = impl_->Advance();
  if (pair == nullptr) return 0;
  const SharedValueLabels set = HostAccess::SetOf(impl_->handle);
  if (set->IsNumeric()) {
    impl_->cell.SetNumber(pair->number, {.pair = pair});
  } else {
    impl_->cell.SetString(pair->string, set->Type(), {.pair = pair});
  }
  value = impl_->cell.Address();
  label = pair->label.CString();
  return 1;
}

int VELA_ValueLabelMap::GetNextPair(std::string& value, const char*& label) const {
  Called("VELA_ValueLabelMap::GetNextPair");
  const ValueLabel* const pair = impl_->Advance();
  if (pair == nullptr) return 0;
  value = velahost::AtWidth(pair->string, HostAccess::SetOf(impl_->handle)->Type());
  label = pair->label.CString();
  return 1;
}

const char* VELA_ValueLabelMap::GetLabel(const OBS* value) const {
  Called("VELA_ValueLabelMap::GetLabel");
  const SharedValueLabels set = HostAccess::SetOf(impl_->handle);
  if (!set) return nullptr;
  const ValueLabel* const pair = set->IsNumeric()
                                     ? set->Find(velahost::NumberIn(value))
                                     : set->Find(velahost::StringIn(value, set->Type()));
  return pair == nullptr ? nullptr : pair->label.CString();
}

void VELA_ValueLabelMap::AddPair(const OBS* value, std::string label) {
  Called("VELA_ValueLabelMap::AddPair");
  const auto addTo = [value, label = std::move(label)](ValueLabels& set) {
    set.Add(PairOf(set, value, Text(label)));
  };
  // The last one who holds a set may change it: no variable and no other view has it.
  if (ValueLabels* const own = HostAccess::OwnSetOf(impl_->handle)) return addTo(*own);
  const auto copy = std::make_shared<ValueLabels>(*HostAccess::SetOf(impl_->handle));
  addTo(*copy);
  HostAccess::Share(impl_->handle, copy);
}

VELA_ValueLabelMap::operator VELA_VLImplPointer&() {
  Called("VELA_ValueLabelMap::operator VELA_VLImplPointer&");
  return impl_->handle;
}

struct ObsValue::Impl {
  velahost::Cell cell;
};

ObsValue::ObsValue(int type, const OBS* value, int valueType) {
  Called("ObsValue::ObsValue");
  impl_ = std::make_unique<Impl>();
  const velahost::Cell::Origin& origin = velahost::OriginOf(value);
  if (type == 0) {
    impl_->cell.SetNumber(velahost::NumberIn(value), origin);
  } else {
    impl_->cell.SetString(velahost::StringIn(value, valueType), type, origin);
  }
}

ObsValue::~ObsValue() { Released("ObsValue::~ObsValue"); }

ObsValue::operator const OBS*() const {
  Called("ObsValue::operator const OBS*");
  return impl_->cell.Address();
}
