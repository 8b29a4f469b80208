#include "backend/ApplyDictionary/ApplyDictionarySpec.h"

bool SelectsMoreThanLabel(const ApplyDictionarySpec& record) {
  return record.varAlignment || record.varFormats || record.varLevel || record.varMissing ||
         record.varRole || record.varWidth || record.varValLabels != ApplyNone ||
         record.varAttributes != ApplyNone;
}
