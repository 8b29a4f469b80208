#pragma once

#include <memory>
#include <vector>

#include "host/Data.h"
#include "standalone/Data/HostAccess.h"

// What a data source's block 0 is made of.
struct VELA_DataSource::Extension::Impl {
  std::vector<DSDocument> documents;
};

namespace velahost {

// Makes the list the data source's documents.
void SetDocuments(VELA_DataSource::Impl& dataSource, const std::vector<DSDocument>& documents);

}  // namespace velahost
