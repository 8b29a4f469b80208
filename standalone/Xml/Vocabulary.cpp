#include "standalone/Xml/Vocabulary.h"

#include <algorithm>
#include <cstddef>

namespace velahost {

Vocabulary::Vocabulary(std::span<const std::string_view> names,
                       std::span<const std::string_view> uris)
    : names_(names), uris_(uris) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    elements_.emplace(names[i], static_cast<ElementName>(kFirstElement + i));
  }
}

ElementName Vocabulary::Find(std::string_view localName) const {
  const auto found = elements_.find(localName);
  return found == elements_.end() ? kOtherElement : found->second;
}

bool Vocabulary::HasNamespace(std::string_view uri) const {
  return std::any_of(uris_.begin(), uris_.end(),
                     [uri](std::string_view beginning) { return uri.starts_with(beginning); });
}

}  // namespace velahost
