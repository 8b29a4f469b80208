#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

#include "standalone/Codebook/Parts.h"

// What has been read of a document, as text in which every difference shows.

inline std::string DescriptionOf(std::initializer_list<std::uint32_t> numbers) {
  std::string text;
  for (const std::uint32_t number : numbers) text += std::to_string(number) + " ";
  return text;
}

inline std::string DescriptionOf(const velahost::DocumentReading& document) {
  const velahost::Reading& reading = document.reading;
  std::string text = std::string(document.encoding.Name()) + "\n";
  for (const velahost::ElementExtent& element : reading.elements) {
    text += DescriptionOf({element.begin, element.contentBegin, element.contentEnd, element.end,
                           element.count, element.name}) +
            "\n";
  }
  for (const auto& file : reading.files) {
    text += DescriptionOf({file.place}) + file.id.String() + "\n";
  }
  for (const auto& variable : reading.variables) {
    const velahost::VariableReading& read = variable.variable;
    text += DescriptionOf({variable.place, variable.scope}) + read.id.String() + " " +
            read.variable->name.String() + (read.weights ? " weights " : " ") +
            read.variable->label.value_or(velahost::Text("none")).String() + "\n";
  }
  for (const auto& group : reading.groups) {
    text += DescriptionOf({group.place}) + group.group.set.name.String() + " " +
            group.group.members.String() + "\n";
  }
  return text + (reading.open.empty() && reading.ends.empty() ? "" : "something is open");
}
