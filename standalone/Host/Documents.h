#pragma once

#include <vector>

#include "host/Data.h"
#include "standalone/Text/Text.h"

// What a data source's block 0 is made of.
struct VELA_DataSource::Extension::Impl {
  std::vector<velahost::Text> documents;
};
