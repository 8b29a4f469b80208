#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "host/Data.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Dictionary/Variable.h"
#include "standalone/Host/Attributes.h"
#include "standalone/Host/Cells.h"

// A variable as the library sees it.

// The dictionary's enumerations by the same values.
enum VELA_Variable_Enumerations::Role : int {
  RoleInput,
  RoleTarget,
  RoleBoth,
  RoleNone,
  RolePartition,
  RoleSplit
};
enum VELA_Variable_Enumerations::Alignment : int { AlignLeft, AlignRight, AlignCenter };

namespace velahost {

// A new identity, which no other variable has.
std::int64_t NewIdentity();

}  // namespace velahost

struct VELA_Variable::Impl {
  // The variable as it is now. Others may hold it too; Change sees to it that they keep theirs.
  std::shared_ptr<const velahost::Variable> now;
  std::int64_t identity = velahost::NewIdentity();
  // The file that the variable was read from, and its column there; null for one that was added.
  std::shared_ptr<const velahost::CodebookFile> file;
  std::size_t column = 0;
  // The data source that has the variable; null for a copy that none has.
  VELA_DataSource::Impl* owner = nullptr;

  // What reading operations return references into; each is made when it is asked for, and gone
  // when its property is set.
  mutable VELA_VLImplPointer valueLabels;
  mutable std::unique_ptr<DatasourceAttributes> attributes;
  struct MissingCells {
    std::shared_ptr<const velahost::Variable> of;  // whose list the cells are from
    std::vector<velahost::Cell> cells;
  };
  mutable std::unique_ptr<MissingCells> missingCells;

  Impl() = default;
  // A copy that no data source has.
  Impl(const Impl& other);
  Impl& operator=(const Impl&) = delete;

  // The variable to be changed.
  velahost::Variable& Change();
  // What documents the variable as it is now.
  velahost::DocumentationPart DocumentationNow() const {
    return {now->documented, file, column, now->brought};
  }
};
