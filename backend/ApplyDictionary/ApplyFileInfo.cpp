#include "backend/ApplyDictionary/ApplyFileInfo.h"

#include <cstdint>
#include <vector>

#include "backend/ApplyDictionary/ApplyDictionarySpec.h"
#include "backend/ApplyDictionary/MergeVariableSets.h"
#include "host/Data.h"
#include "host/Dictionary.h"

namespace {

// The extension block that holds the documents.
constexpr int kDocumentsBlock = 0;

void ReplaceDocuments(VELA_DataSource& working, const VELA_DataSource& source) {
  if (!source.HasExtension(kDocumentsBlock)) return;
  working.SetExtension(kDocumentsBlock, VELA_DataSource::Extension(source, kDocumentsBlock));
}

void MergeDocuments(VELA_DataSource& working, const VELA_DataSource& source) {
  // The working file's come first: DeDup may keep a document by its place in the list.
  std::vector<DSDocument> documents = GetDocuments(working);
  for (const DSDocument& document : GetDocuments(source)) documents.push_back(document);
  DeDup(documents);
  SaveDocuments(documents, working);
}

void ApplyDocuments(VELA_DataSource& working, const VELA_DataSource& source, ApplyMode mode) {
  if (mode == ApplyReplace) {
    ReplaceDocuments(working, source);
  } else if (mode == ApplyMerge) {
    MergeDocuments(working, source);
  }
}

void ApplyFileLabel(VELA_DataSource& working, const VELA_DataSource& source) {
  if (const char* const label = source.GetLabel(); label != nullptr) working.SetLabel(label);
}

void ApplySets(VELA_DataSource& working, const VELA_DataSource& source, VarSetsType type,
               ApplyMode mode) {
  if (mode == ApplyReplace) {
    SaveVariableSets(VariableSets(source, type), working, type);
  } else if (mode == ApplyMerge) {
    MergeVariableSets(working, &source, type);
  }
}

void ApplyWeight(VELA_DataSource& working, const VELA_DataSource& source) {
  const int sourceColumn = source.GetWeightVarIndex();
  if (sourceColumn == -1) return;
  const int column = working.FindVarIndex(source.GetVariable(sourceColumn).GetName(), 0);
  if (column == -1) return;
  working.SetWeightVar(column);
  // The legacy dictionary keeps its own record of the weight, and counts from 1. The position is
  // an int; only the argument is wider.
  const std::int64_t position = working.ObsIndex(column) + 1;
  setcurrentweightvar_(&position);
}

void ApplyFileAttributes(VELA_DataSource& working, const VELA_DataSource& source, ApplyMode mode) {
  if (mode == ApplyReplace) {
    if (source.GetAttributes().Size() != 0) working.SetAttributes(source.GetAttributes());
  } else if (mode == ApplyMerge) {
    DatasourceAttributes merged(working.GetAttributes());
    if (merged.Merge(source.GetAttributes(), true)) working.SetAttributes(merged);
  }
}

}  // namespace

void ApplyFileInfo(const ApplyDictionarySpec& record, VELA_DataSource& working,
                   const VELA_DataSource* source) {
  ApplyDocuments(working, *source, record.fileDocuments);
  if (record.fileLabel) ApplyFileLabel(working, *source);
  ApplySets(working, *source, VarSetsMrSets, record.fileMrSets);
  ApplySets(working, *source, VarSetsVariableSets, record.fileVarSets);
  if (record.fileWeight) ApplyWeight(working, *source);
  ApplyFileAttributes(working, *source, record.fileAttributes);
}
