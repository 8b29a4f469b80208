#include "standalone/Host/Documents.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "standalone/Host/Calls.h"
#include "standalone/Host/DataSources.h"
#include "standalone/Host/HostAccess.h"
#include "standalone/Text/Hash.h"

using velahost::Called;
using velahost::Released;
using velahost::Text;

DSDocument::DSDocument(std::string text)
    : text_(std::make_shared<const std::string>(std::move(text))) {}

DSDocument::DSDocument(const DSDocument& other) {
  Called("DSDocument::DSDocument");
  text_ = other.text_;
}

DSDocument& DSDocument::operator=(const DSDocument& other) {
  Called("DSDocument::operator=");
  text_ = other.text_;
  return *this;
}

DSDocument::~DSDocument() { Released("DSDocument::~DSDocument"); }

// A list that grows would copy the documents that it has by the host operation; each list here has
// its room from the start.

std::vector<DSDocument> GetDocuments(const VELA_DataSource& dataSource) {
  Called("GetDocuments");
  const std::vector<Text>& documents = HostAccess::Of(dataSource).items.documents;
  std::vector<DSDocument> list;
  list.reserve(documents.size());
  for (const Text& document : documents) list.emplace_back(document.String());
  return list;
}

void DeDup(std::vector<DSDocument>& documents) {
  Called("DeDup");
  velahost::ViewSet texts;
  for (const DSDocument& document : documents) texts.insert(HostAccess::TextOf(document));
  if (texts.size() == documents.size()) return;
  std::vector<DSDocument> firsts;
  firsts.reserve(texts.size());
  for (const DSDocument& document : documents) {
    // What has been kept is taken out of the set.
    if (texts.erase(HostAccess::TextOf(document)) > 0) {
      firsts.emplace_back(HostAccess::TextOf(document));
    }
  }
  firsts.swap(documents);
}

void SaveDocuments(const std::vector<DSDocument>& documents, VELA_DataSource& dataSource) {
  Called("SaveDocuments");
  std::vector<Text> next;
  next.reserve(documents.size());
  for (const DSDocument& document : documents) next.emplace_back(HostAccess::TextOf(document));
  HostAccess::Of(dataSource).items.documents.swap(next);
}

VELA_DataSource::Extension::Extension(const VELA_DataSource& dataSource, int /*number*/) {
  Called("VELA_DataSource::Extension::Extension");
  impl_ = std::make_unique<Impl>(Impl{HostAccess::Of(dataSource).items.documents});
}

VELA_DataSource::Extension::Extension(const Extension& other) {
  Called("VELA_DataSource::Extension::Extension");
  impl_ = std::make_unique<Impl>(*other.impl_);
}

VELA_DataSource::Extension::~Extension() { Released("VELA_DataSource::Extension::~Extension"); }
