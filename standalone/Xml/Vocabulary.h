#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>

namespace velahost {

// The name of an element as a number of a vocabulary.
using ElementName = std::uint8_t;
inline constexpr ElementName kOtherElement = 0;    // of the vocabulary's namespaces, not listed
inline constexpr ElementName kForeignElement = 1;  // of another namespace
inline constexpr ElementName kFirstElement = 2;    // the first name that is listed

// The elements that a kind of document has, as far as its readers and writers know them.
class Vocabulary {
 public:
  // The local names, numbered from kFirstElement on, and the beginnings of the URIs of their
  // namespaces. Both live as long as this object.
  Vocabulary(std::span<const std::string_view> names, std::span<const std::string_view> uris);
  virtual ~Vocabulary() = default;

  // The number of a local name; kOtherElement for one that is not listed.
  ElementName Find(std::string_view localName) const;
  // The local name. REQUIRES: a listed element.
  std::string_view NameOf(ElementName element) const { return names_[element - kFirstElement]; }
  // Whether a URI is that of a namespace of the vocabulary.
  bool HasNamespace(std::string_view uri) const;

  // The order of the children of an element; empty for one whose children are not ordered.
  virtual std::span<const ElementName> ChildOrder(ElementName parent) const = 0;
  // Whether the children of the element stand on lines of their own, even where the element itself
  // stands on none.
  virtual bool BreaksLines(ElementName parent) const = 0;

 private:
  std::span<const std::string_view> names_;
  std::span<const std::string_view> uris_;
  std::unordered_map<std::string_view, ElementName> elements_;
};

}  // namespace velahost
