#pragma once

#include "program/JsonStream.h"
#include "standalone/Comparison/Difference.h"

namespace applydic {

// Writes the members in which a difference is told, as `apply --json` and `diff --json` have them;
// at most one variable is held as text at a time. Scripts read them: keys, their order and the
// kinds of their values stay as they are. Values have the form of `show --json`.
//
//   "changed": [{"variable": name, "properties": [name of a property, ...],
//                "old": {property: value, ...}, "new": {property: value, ...},
//                "valueLabels": {"added": [{"value", "label"}, ...], "removed": the same,
//                                "changed": [{"value", "old", "new"}, ...], "reordered": boolean},
//                ...]
// where "valueLabels" is there if it is among the properties, and if pairs are to be compared.
enum class LabelPairs { Compared, NotCompared };
void WriteChanged(const velahost::Difference& difference, const velahost::Side& before,
                  const velahost::Side& now, LabelPairs pairs, JsonStream& json);

//   "file": [name of an item, ...], "fileValues": {"old": {item: value, ...}, "new": the same}
void WriteFileItems(velahost::FileItemSet items, const velahost::Dictionary& before,
                    const velahost::Dictionary& now, JsonStream& json);

}  // namespace applydic
