#include "standalone/Data/Documents.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "standalone/Data/DataSource.h"
#include "standalone/HostCalls.h"

using velahost::Called;
using velahost::Released;

// A list that may grow would copy the documents that it has by the host operation; each list here
// has its room from the start.
std::vector<DSDocument> HostAccess::CopyOf(const std::vector<DSDocument>& documents) {
  std::vector<DSDocument> copy;
  copy.reserve(documents.size());
  for (const DSDocument& document : documents)
    copy.emplace_back(std::string()).text_ = document.text_;
  return copy;
}

std::vector<DSDocument> HostAccess::Select(const std::vector<DSDocument>& documents,
                                           const std::vector<std::size_t>& places) {
  std::vector<DSDocument> selected;
  selected.reserve(places.size());
  for (const std::size_t place : places) {
    selected.emplace_back(std::string()).text_ = documents[place].text_;
  }
  return selected;
}

void velahost::SetDocuments(VELA_DataSource::Impl& dataSource,
                            const std::vector<DSDocument>& documents) {
  if (SameDocuments(documents, dataSource.now.documents)) return;
  std::vector<DSDocument> next = HostAccess::CopyOf(documents);
  dataSource.Change().documents.swap(next);
}

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

std::vector<DSDocument> GetDocuments(const VELA_DataSource& dataSource) {
  Called("GetDocuments");
  return HostAccess::CopyOf(HostAccess::Of(dataSource).now.documents);
}

void DeDup(std::vector<DSDocument>& documents) {
  Called("DeDup");
  std::unordered_set<std::string_view> texts;
  std::vector<std::size_t> firsts;
  for (std::size_t i = 0; i < documents.size(); ++i) {
    if (texts.insert(HostAccess::TextOf(documents[i])).second) firsts.push_back(i);
  }
  if (firsts.size() == documents.size()) return;
  HostAccess::Select(documents, firsts).swap(documents);
}

void SaveDocuments(const std::vector<DSDocument>& documents, VELA_DataSource& dataSource) {
  Called("SaveDocuments");
  velahost::SetDocuments(HostAccess::Of(dataSource), documents);
}

VELA_DataSource::Extension::Extension(const VELA_DataSource& dataSource, int /*number*/) {
  Called("VELA_DataSource::Extension::Extension");
  impl_ =
      std::make_unique<Impl>(Impl{HostAccess::CopyOf(HostAccess::Of(dataSource).now.documents)});
}

VELA_DataSource::Extension::Extension(const Extension& other) {
  Called("VELA_DataSource::Extension::Extension");
  impl_ = std::make_unique<Impl>(Impl{HostAccess::CopyOf(other.impl_->documents)});
}

VELA_DataSource::Extension::~Extension() { Released("VELA_DataSource::Extension::~Extension"); }
