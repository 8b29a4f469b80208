#include "standalone/Xml/Document.h"

#include <utility>

namespace velahost {

Document::Document(Bytes bytes, velahost::Encoding encoding, Namespaces namespaces,
                   std::vector<ElementExtent> elements)
    : bytes_(std::move(bytes)),
      text_{bytes_.View(), encoding},
      namespaces_(std::move(namespaces)),
      elements_(std::move(elements)) {}

std::string_view Element::Markup() const {
  return document_->text.substr(Begin(), End() - Begin());
}

std::string_view Element::Tag() const {
  return document_->text.substr(Begin(), ContentBegin() - Begin());
}

std::string Element::Prefix() const {
  const std::string_view prefix = PrefixOf(StartTag(Tag()).Name());
  return prefix.empty() ? std::string() : document_->encoding.Decode(prefix) + ":";
}

std::string_view Element::Content() const {
  if (extent_ == nullptr) return {};
  return document_->text.substr(ContentBegin(), ContentEnd() - ContentBegin());
}

Element::Children Element::All() const {
  Children children;
  if (extent_ == nullptr) return children;
  children.document_ = document_;
  children.begin_ = extent_ + 1;
  children.end_ = extent_ + extent_->count;
  return children;
}

Element::Children Element::All(ElementName name) const {
  Children children = All();
  children.isAll_ = false;
  children.name_ = name;
  return children;
}

Element Element::Child(ElementName name) const {
  for (const Element child : All()) {
    if (child.Name() == name) return child;
  }
  return {};
}

MarkupText Element::Text() const {
  if (extent_ == nullptr) return {};
  return MarkupText::OfContent(Content(), document_->encoding);
}

MarkupText Element::TextOf(std::string_view piece) const {
  return MarkupText::OfContent(piece, document_->encoding);
}

MarkupText Element::Attribute(std::string_view name) const {
  if (extent_ == nullptr || !extent_->hasAttributes) return {};
  const StartTag tag(Tag());
  const auto attribute = tag.Find(name);
  if (!attribute) return {};
  return MarkupText::OfAttribute(tag.ValueOf(*attribute), document_->encoding);
}

std::size_t LineCounter::LineOf(std::size_t position) {
  // A line ends with a line feed, with a carriage return, or with both.
  for (; counted_ < position; ++counted_) {
    const bool isBeforeLineFeed = counted_ + 1 < text_.size() && text_[counted_ + 1] == '\n';
    if (text_[counted_] == '\n' || (text_[counted_] == '\r' && !isBeforeLineFeed)) ++line_;
  }
  return line_;
}

}  // namespace velahost
