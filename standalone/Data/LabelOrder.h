#pragma once

#include <memory>

#include "host/Data.h"

namespace velahost {

// The set's pairs in the order in which the variable's document has them once it is saved: a label
// is written onto a category of its value where there is one, else onto a new category behind the
// last. The set itself where it has that order already, or the variable no document.
// REQUIRES: a set of the variable's type.
std::shared_ptr<VELA_VLImpl> InDocumentOrder(const VELA_Variable::Impl& variable,
                                             const std::shared_ptr<VELA_VLImpl>& set);

}  // namespace velahost
