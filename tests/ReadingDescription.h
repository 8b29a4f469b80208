#pragma once

#include <string>

#include "standalone/Codebook/ReadCodebook.h"

// What has been read of a document, as text in which every difference shows.

inline std::string DescriptionOf(const velahost::Codebook::Place& place) {
  return std::to_string(place.begin) + "-" + std::to_string(place.end) + " in " +
         std::to_string(place.scope) + " ";
}

inline std::string DescriptionOf(const velahost::Codebook::Tree& element) {
  const auto& place = static_cast<const velahost::Codebook::Place&>(element);
  return DescriptionOf(place) + "tree at " + std::to_string(element.tree->Begin(element.root)) +
         " ";
}

inline std::string DescriptionOf(const velahost::Codebook::Container& container) {
  const auto& place = static_cast<const velahost::Codebook::Place&>(container);
  std::string text = DescriptionOf(place) + std::to_string(container.contentBegin) + "-" +
                     std::to_string(container.contentEnd);
  for (const auto& [element, last] : container.last) {
    text += " " + std::to_string(static_cast<int>(element)) + " " + DescriptionOf(last);
  }
  return text + "\n";
}

// REQUIRES: it was read for writing.
inline std::string DescriptionOf(const velahost::CodebookReading& reading) {
  const velahost::Codebook& codebook = *reading.codebook;
  std::string text =
      std::to_string(static_cast<int>(codebook.encoding)) + DescriptionOf(codebook.root);
  for (const auto& container : codebook.dataDescriptions) text += DescriptionOf(container);
  for (const auto& file : codebook.files) text += DescriptionOf(file) + file.id + "\n";
  for (std::size_t i = 0; i < codebook.variables.size(); ++i) {
    const auto& variable = codebook.variables[i];
    text += DescriptionOf(variable) + variable.id + " " + variable.name +
            (variable.weights ? " weights " : " ") +
            reading.variables[i].variable->now.label.value_or("none") + "\n";
  }
  for (std::size_t i = 0; i < codebook.groups.size(); ++i) {
    text += DescriptionOf(codebook.groups[i]) + codebook.groups[i].set.name + " " +
            reading.groupMembers[i] + "\n";
  }
  return text;
}
