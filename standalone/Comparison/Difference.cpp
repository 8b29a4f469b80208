#include "standalone/Comparison/Difference.h"

#include <algorithm>
#include <utility>

#include "standalone/Comparison/ValueLabelDifference.h"

namespace velahost {
namespace {

// The columns in a new dictionary of the variables of an old one. A variable that the new one lacks
// has a number that no other variable has, below -1.
class NewColumns {
 public:
  NewColumns(const Dictionary& before, const VariableNames& now) {
    columns_.reserve(before.variables.size());
    for (const auto& variable : before.variables) {
      const int column = now.FindUpperCase(variable->upperCaseName);
      columns_.push_back(column >= 0 ? column : -2 - static_cast<int>(columns_.size()));
    }
  }

  int Of(int oldColumn) const {
    return oldColumn < 0 ? oldColumn : columns_[static_cast<std::size_t>(oldColumn)];
  }

  // The items of the old file as they would be in the new one.
  FileItems Translate(FileItems items) const {
    items.weight = Of(items.weight);
    for (auto& sets : items.sets) {
      for (VariableSet& set : sets) {
        for (int& member : set.members) member = Of(member);
      }
    }
    return items;
  }

 private:
  std::vector<int> columns_;
};

// The properties of a file's variables, documentation by its kinds alone. Two strings of different
// widths may have the same value labels.
PropertySet PropertiesDiffering(const Variable& before, const Variable& now) {
  PropertySet properties = Differing(before, now);
  if (before.type != now.type && properties.Has(Property::ValueLabels) &&
      DifferenceBetween(before.valueLabels, now.valueLabels).Empty()) {
    PropertySet labels;
    labels.Add(Property::ValueLabels);
    properties = properties.Without(labels);
  }
  return properties;
}

Difference::OfVariable VariableDifference(const CodebookFile& before, std::size_t oldColumn,
                                          const CodebookFile& now, std::size_t newColumn) {
  const Variable& a = *before.dictionary.variables[oldColumn];
  const Variable& b = *now.dictionary.variables[newColumn];
  Difference::OfVariable difference{oldColumn, newColumn, PropertiesDiffering(a, b)};
  difference.isRenamed = a.name != b.name;
  difference.isRetyped = a.type != b.type;
  const bool mayDiffer = !difference.properties.Has(Property::Documentation) &&
                         !(a.documented.Empty() && b.documented.Empty());
  if (mayDiffer && DocumentationTexts(before, oldColumn) != DocumentationTexts(now, newColumn)) {
    difference.properties.Add(Property::Documentation);
  }
  return difference;
}

}  // namespace

Side SideOf(const CodebookFile& file) { return {file.dictionary, DocumentationIn(file)}; }

Side SideAfter(const CodebookFile& file, const Dictionary& now) {
  return {now, [&file, &now](std::size_t column) {
            return DocumentationTexts(file, column, *now.variables[column]);
          }};
}

Difference DifferenceBetween(const CodebookFile& before, const CodebookFile& now) {
  Difference difference;
  const NewColumns columns(before.dictionary, now.names);
  std::vector<std::pair<std::size_t, std::size_t>> pairs;  // of new and old columns
  std::vector<bool> isPaired(now.dictionary.variables.size());
  for (std::size_t old = 0; old < before.dictionary.variables.size(); ++old) {
    const int column = columns.Of(static_cast<int>(old));
    if (column < 0) {
      difference.removed.push_back(old);
      continue;
    }
    pairs.emplace_back(static_cast<std::size_t>(column), old);
    isPaired[pairs.back().first] = true;
  }
  difference.isReordered = !std::is_sorted(pairs.begin(), pairs.end());
  std::sort(pairs.begin(), pairs.end());
  for (const auto& [column, old] : pairs) {
    const Difference::OfVariable found = VariableDifference(before, old, now, column);
    if (!found.properties.Empty() || found.isRenamed || found.isRetyped) {
      difference.changed.push_back(found);
    }
  }
  for (std::size_t column = 0; column < isPaired.size(); ++column) {
    if (!isPaired[column]) difference.added.push_back(column);
  }
  difference.file = Differing(columns.Translate(before.dictionary.file), now.dictionary.file);
  return difference;
}

Difference DifferenceOf(const Changes& changes, const Dictionary& now) {
  Difference difference;
  for (const Changes::OfVariable& changed : changes.changed) {
    difference.changed.push_back({changed.column, changed.column, changed.properties});
  }
  for (std::size_t column = changes.firstAdded; column < now.variables.size(); ++column) {
    difference.added.push_back(column);
  }
  difference.file = changes.file;
  return difference;
}

}  // namespace velahost
