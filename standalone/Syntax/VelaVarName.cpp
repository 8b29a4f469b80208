#include "host/Syntax.h"
#include "standalone/HostCalls.h"

using velahost::Called;

struct VelaVarName::Impl {
  std::string name;
};

VelaVarName::VelaVarName(const char* name) {
  Called("VelaVarName::VelaVarName");
  impl_ = std::make_unique<Impl>(Impl{name});
}

VelaVarName::VelaVarName(const VelaVarName& other) {
  Called("VelaVarName::VelaVarName");
  impl_ = std::make_unique<Impl>(*other.impl_);
}

VelaVarName& VelaVarName::operator=(const VelaVarName& other) {
  Called("VelaVarName::operator=");
  impl_->name = other.impl_->name;
  return *this;
}

VelaVarName::~VelaVarName() { velahost::Released("VelaVarName::~VelaVarName"); }

const char* VelaVarName::Text() const {
  Called("VelaVarName::Text");
  return impl_->name.c_str();
}
