#include "standalone/Dictionary/Changes.h"

#include <algorithm>
#include <array>

namespace velahost {
namespace {

template <class Item, class Value>
struct Row {
  Item item;
  const char* name;
  bool (*same)(const Value& a, const Value& b);
};

// By the value of the enumerator.
constexpr std::array<Row<Property, Variable>, kItemCount<Property>> kProperties = {{
    {Property::Label, "label",
     [](const Variable& a, const Variable& b) { return a.label == b.label; }},
    {Property::ValueLabels, "valueLabels",
     [](const Variable& a, const Variable& b) {
       return SameValueLabels(a.valueLabels, b.valueLabels);
     }},
    {Property::Missing, "missing",
     [](const Variable& a, const Variable& b) { return a.missing == b.missing; }},
    {Property::Print, "print",
     [](const Variable& a, const Variable& b) { return a.print == b.print; }},
    {Property::Write, "write",
     [](const Variable& a, const Variable& b) { return a.write == b.write; }},
    {Property::ColumnWidth, "columnWidth",
     [](const Variable& a, const Variable& b) { return a.columnWidth == b.columnWidth; }},
    {Property::Level, "level",
     [](const Variable& a, const Variable& b) { return a.level == b.level; }},
    {Property::Role, "role", [](const Variable& a, const Variable& b) { return a.role == b.role; }},
    {Property::Alignment, "alignment",
     [](const Variable& a, const Variable& b) { return a.alignment == b.alignment; }},
    {Property::Attributes, "attributes",
     [](const Variable& a, const Variable& b) {
       return SameAttributes(a.attributes, b.attributes);
     }},
    {Property::Documentation, "documentation",
     [](const Variable& a, const Variable& b) { return a.documented == b.documented; }},
}};

constexpr std::array<Row<FileItem, FileItems>, kItemCount<FileItem>> kFileItems = {{
    {FileItem::Label, "label",
     [](const FileItems& a, const FileItems& b) { return a.label == b.label; }},
    {FileItem::Documents, "documents",
     [](const FileItems& a, const FileItems& b) { return a.documents == b.documents; }},
    {FileItem::Weight, "weight",
     [](const FileItems& a, const FileItems& b) { return a.weight == b.weight; }},
    {FileItem::Attributes, "attributes",
     [](const FileItems& a, const FileItems& b) {
       return SameAttributes(a.attributes, b.attributes);
     }},
    {FileItem::MrSets, "mrsets",
     [](const FileItems& a, const FileItems& b) {
       return SameSets(a.SetsOf(SetKind::MultipleResponse), b.SetsOf(SetKind::MultipleResponse));
     }},
    {FileItem::VarSets, "varsets",
     [](const FileItems& a, const FileItems& b) {
       return SameSets(a.SetsOf(SetKind::Variables), b.SetsOf(SetKind::Variables));
     }},
}};

template <class Item, class Value, std::size_t n>
SetOf<Item> DifferingBy(const std::array<Row<Item, Value>, n>& rows, const Value& a,
                        const Value& b) {
  SetOf<Item> differing;
  for (const Row<Item, Value>& row : rows) {
    if (!row.same(a, b)) differing.Add(row.item);
  }
  return differing;
}

}  // namespace

const char* NameOf(Property property) {
  return kProperties[static_cast<std::size_t>(property)].name;
}

const char* NameOf(FileItem item) { return kFileItems[static_cast<std::size_t>(item)].name; }

PropertySet Differing(const Variable& a, const Variable& b) {
  return DifferingBy(kProperties, a, b);
}

FileItemSet Differing(const FileItems& a, const FileItems& b) {
  return DifferingBy(kFileItems, a, b);
}

Changes ChangesBetween(const Dictionary& before, const Dictionary& now) {
  Changes changes;
  changes.firstAdded = before.variables.size();
  for (std::size_t column = 0; column < before.variables.size(); ++column) {
    now.FetchAfter(column);
    if (before.variables[column] == now.variables[column]) continue;
    const PropertySet properties = Differing(*before.variables[column], *now.variables[column]);
    if (!properties.Empty()) changes.changed.push_back({column, properties});
  }
  changes.file = Differing(before.file, now.file);
  return changes;
}

}  // namespace velahost
