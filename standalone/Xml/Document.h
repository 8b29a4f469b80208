#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string_view>
#include <vector>

#include "standalone/Files/File.h"
#include "standalone/Xml/Encoding.h"
#include "standalone/Xml/Markup.h"
#include "standalone/Xml/Namespaces.h"
#include "standalone/Xml/Vocabulary.h"

namespace velahost {

// Where an element stands in a document, in bytes. An element without an end tag has no content: it
// begins and ends at the element's end.
struct ElementExtent {
  std::uint32_t begin;
  std::uint32_t contentBegin;
  std::uint32_t contentEnd;
  std::uint32_t end;
  // How many elements are kept of it: itself, and what is in it.
  std::uint32_t count;
  ElementName name;
  bool hasAttributes;
};

// A document of at most so many bytes can be held: 4 GB, or what one object may have.
inline constexpr std::size_t kMostBytes =
    std::min<std::uintmax_t>(0xFFFF'FFFF, std::numeric_limits<std::ptrdiff_t>::max());

// The text of a document, in an encoding.
struct DocumentText {
  std::string_view text;
  velahost::Encoding encoding = {};
};

// A light handle of an element, copied by value; it lives as long as its document. The null element
// has nothing: asking it for a child, an attribute or a text needs no check and gives nothing.
class Element {
 public:
  Element() = default;
  // Both live as long as this object.
  Element(const DocumentText& document, const ElementExtent& extent)
      : document_(&document), extent_(&extent) {}

  explicit operator bool() const { return extent_ != nullptr; }
  bool operator==(const Element&) const = default;

  ElementName Name() const { return extent_ == nullptr ? kOtherElement : extent_->name; }
  // The bytes of the element and of its start tag. REQUIRES of these five: not null.
  std::size_t Begin() const { return extent_->begin; }
  std::size_t End() const { return extent_->end; }
  std::size_t ContentBegin() const { return extent_->contentBegin; }
  std::size_t ContentEnd() const { return extent_->contentEnd; }
  bool HasEndTag() const { return extent_->contentEnd != extent_->end; }
  std::string_view Markup() const;
  std::string_view Tag() const;
  // The prefix of its name with the colon, in UTF-8; empty for none. In the element it means the
  // namespace that the element is of.
  std::string Prefix() const;
  // What stands between the tags, as it stands there; empty for the null element.
  std::string_view Content() const;

  // The children that are kept, or those of a name, in document order.
  class Children;
  Children All() const;
  Children All(ElementName name) const;
  // The first child of a name; null when there is none.
  Element Child(ElementName name) const;

  // The text of the element with that of all elements in it.
  MarkupText Text() const;
  // The text of a piece of its content that does not split an element. REQUIRES: not null.
  MarkupText TextOf(std::string_view piece) const;
  // An attribute's value, by the name as it stands in the document; absent if the element does not
  // have it.
  MarkupText Attribute(std::string_view name) const;
  // Several at once, in one pass over the start tag.
  template <std::size_t n>
  std::array<MarkupText, n> Attributes(const std::array<std::string_view, n>& names) const {
    std::array<MarkupText, n> values;
    if (extent_ == nullptr || !extent_->hasAttributes) return values;
    const StartTag tag(Tag());
    for (auto attribute = tag.First(); attribute; attribute = tag.After(*attribute)) {
      for (std::size_t i = 0; i < n; ++i) {
        if (attribute->name != names[i]) continue;
        values[i] = MarkupText::OfAttribute(tag.ValueOf(*attribute), document_->encoding);
      }
    }
    return values;
  }

 private:
  const DocumentText* document_ = nullptr;
  const ElementExtent* extent_ = nullptr;
};

// A range over children.
class Element::Children {
 public:
  class Iterator {
   public:
    using value_type = Element;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::forward_iterator_tag;
    using pointer = const Element*;
    using reference = Element;

    Iterator() = default;
    Iterator(const Children& range, const ElementExtent* at) : range_(&range), at_(at) {}
    Element operator*() const { return {*range_->document_, *at_}; }
    Iterator& operator++() {
      at_ = range_->Next(at_ + at_->count);
      return *this;
    }
    Iterator operator++(int) {
      const Iterator before = *this;
      ++*this;
      return before;
    }
    bool operator==(const Iterator& other) const { return at_ == other.at_; }

   private:
    const Children* range_ = nullptr;
    const ElementExtent* at_ = nullptr;
  };

  Iterator begin() const { return {*this, Next(begin_)}; }
  Iterator end() const { return {*this, end_}; }

 private:
  friend class Element;
  const ElementExtent* Next(const ElementExtent* at) const {
    while (!isAll_ && at != end_ && at->name != name_) at += at->count;
    return at;
  }

  const DocumentText* document_ = nullptr;
  const ElementExtent* begin_ = nullptr;
  const ElementExtent* end_ = nullptr;
  bool isAll_ = true;
  ElementName name_ = kOtherElement;
};

// A document in memory: its bytes, and where in them the elements stand that were kept, in the
// order of their start tags. Once read it is not changed.
class Document {
 public:
  Document(Bytes bytes, Encoding encoding, Namespaces namespaces,
           std::vector<ElementExtent> elements);
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  std::string_view Text() const { return text_.text; }
  velahost::Encoding Encoding() const { return text_.encoding; }
  const Namespaces& Scopes() const { return namespaces_; }
  // The element at a place among those that are kept. REQUIRES: it has so many.
  Element At(std::size_t place) const { return {text_, elements_[place]}; }
  Element Root() const { return At(0); }

 private:
  Bytes bytes_;
  DocumentText text_;
  Namespaces namespaces_;
  std::vector<ElementExtent> elements_;
};

// Counts the lines of a text, for positions that ascend.
class LineCounter {
 public:
  explicit LineCounter(std::string_view text) : text_(text) {}

  // The line, from 1, in which a byte stands. REQUIRES: none before the last position asked for.
  std::size_t LineOf(std::size_t position);

 private:
  std::string_view text_;
  std::size_t counted_ = 0;
  std::size_t line_ = 1;
};

}  // namespace velahost
