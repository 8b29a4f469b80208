#include "standalone/Codebook/ElementEditor.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

using Node = XmlTree::Node;

// The place of an element in the order of its parent's children; past all of them if the order does
// not name it.
std::size_t RankIn(Element parent, Element child) {
  const auto order = ChildOrder(parent);
  return static_cast<std::size_t>(std::find(order.begin(), order.end(), child) - order.begin());
}

}  // namespace

std::string_view SpaceBefore(std::string_view text, std::size_t position) {
  std::size_t begin = position;
  while (begin > 0 && IsSpace(text[begin - 1])) --begin;
  if (begin == 0 || text[begin - 1] != '>') return {};
  const std::string_view space = text.substr(begin, position - begin);
  return space.find_first_of("\r\n") == std::string_view::npos ? std::string_view() : space;
}

std::string_view LeadBefore(std::string_view text, std::size_t position) {
  // Every new line repeats it, so of more white space than an indentation has nothing is taken.
  constexpr std::size_t kLongest = 200;
  const std::size_t from = position - std::min(position, kLongest);
  const std::string_view space = SpaceBefore(text.substr(from), position - from);
  std::size_t begin = space.find_last_of("\r\n");
  if (begin == std::string_view::npos) return {};
  if (space[begin] == '\n' && begin > 0 && space[begin - 1] == '\r') --begin;
  return space.substr(begin);
}

Layout LayoutOf(const Codebook& codebook) {
  Layout layout;
  const std::string_view prefix = PrefixOf(
      StartTag(
          codebook.Bytes(codebook.root).substr(0, codebook.root.contentBegin - codebook.root.begin))
          .Name());
  if (!prefix.empty()) layout.prefix = Decode(prefix, codebook.encoding) + ":";

  const std::size_t lineEnd = codebook.text.find_first_of("\r\n");
  if (lineEnd != std::string::npos && codebook.text[lineEnd] == '\r') {
    layout.newLine = codebook.text.compare(lineEnd, 2, "\r\n") == 0 ? "\r\n" : "\r";
  }

  // Where one element stands in another, the difference is what a level is indented by.
  std::string_view inner;
  std::string_view outer;
  const auto leadOf = [&](const Codebook::Place& place) {
    return LeadBefore(codebook.text, place.begin);
  };
  if (!codebook.dataDescriptions.empty() && !codebook.variables.empty()) {
    inner = leadOf(codebook.variables.front());
    outer = leadOf(codebook.dataDescriptions.front());
  } else if (!codebook.dataDescriptions.empty()) {
    inner = leadOf(codebook.dataDescriptions.front());
    outer = layout.newLine;
  }
  const bool deeper = !outer.empty() && inner.size() > outer.size() && inner.starts_with(outer);
  layout.unit = deeper ? inner.substr(outer.size()) : "  ";
  return layout;
}

StartTag::StartTag(std::string_view tag) {
  const auto isNameEnd = [](char c) { return IsSpace(c) || c == '/' || c == '>' || c == '='; };
  std::size_t at = 1;
  while (!isNameEnd(tag[at])) ++at;
  name_ = tag.substr(1, at - 1);
  attributesEnd_ = at;
  attributes_.reserve(8);
  for (;;) {
    const std::size_t begin = at;
    while (IsSpace(tag[at])) ++at;
    if (tag[at] == '>') return;
    if (tag[at] == '/') {
      selfClosing_ = true;
      return;
    }
    Attribute attribute{.name = {}, .begin = begin, .valueBegin = 0, .valueEnd = 0, .quote = '"'};
    const std::size_t nameBegin = at;
    while (!isNameEnd(tag[at])) ++at;
    attribute.name = tag.substr(nameBegin, at - nameBegin);
    while (tag[at] != '"' && tag[at] != '\'') ++at;
    attribute.quote = tag[at];
    attribute.valueBegin = at + 1;
    attribute.valueEnd = tag.find(attribute.quote, attribute.valueBegin);
    at = attribute.valueEnd + 1;
    attributesEnd_ = at;
    attributes_.push_back(attribute);
  }
}

const StartTag::Attribute* StartTag::Find(std::string_view name) const {
  const auto found =
      std::find_if(attributes_.begin(), attributes_.end(),
                   [&](const Attribute& attribute) { return attribute.name == name; });
  return found == attributes_.end() ? nullptr : &*found;
}

ElementEditor::ElementEditor(const Codebook& codebook, const Layout& layout, const XmlTree& tree,
                             Edits& edits)
    : codebook_(codebook), layout_(layout), tree_(tree), edits_(edits) {}

void ElementEditor::SetAttribute(Node node, std::string_view name, std::string_view value) {
  const StartTag tag(Tag(node));
  const std::size_t begin = tree_.Begin(node);
  if (const StartTag::Attribute* attribute = tag.Find(name)) {
    edits_.Replace(begin + attribute->valueBegin, begin + attribute->valueEnd,
                   EscapeAttribute(value, attribute->quote));
    return;
  }
  const std::size_t end = begin + tag.AttributesEnd();
  edits_.Replace(end, end, " " + std::string(name) + "=\"" + EscapeAttribute(value, '"') + "\"");
}

void ElementEditor::RemoveAttribute(Node node, std::string_view name) {
  const StartTag tag(Tag(node));
  if (const StartTag::Attribute* attribute = tag.Find(name)) {
    const std::size_t begin = tree_.Begin(node);
    edits_.Replace(begin + attribute->begin, begin + attribute->valueEnd + 1, "");
  }
}

void ElementEditor::SetText(Node node, std::string_view text) {
  std::string escaped;
  AppendText(escaped, text, layout_.newLine);
  if (tree_.HasEndTag(node)) {
    edits_.Replace(tree_.ContentBegin(node), tree_.ContentEnd(node), std::move(escaped));
  } else {
    OpenSelfClosing(node, escaped);
  }
}

void ElementEditor::Remove(Node node) {
  const std::size_t begin = tree_.Begin(node);
  edits_.Replace(begin - SpaceBefore(codebook_.text, begin).size(), tree_.End(node), "");
}

void ElementEditor::Replace(Node node, const NewElement& element) {
  const std::string_view lead = LeadBefore(codebook_.text, tree_.Begin(node));
  edits_.Replace(tree_.Begin(node), tree_.End(node), Render(element, layout_, lead));
}

void ElementEditor::Insert(Node parent, const NewElement& element) {
  const bool repeats = !insertions_.empty() && insertions_.back().parent == parent &&
                       insertions_.back().element == element.element;
  if (!repeats) {
    const Node after = PlaceFor(parent, element.element);
    const std::size_t rank = RankIn(tree_.ElementOf(parent), element.element);
    insertions_.push_back({parent, after, rank, element.element, LeadIn(parent, after), {}});
  }
  Insertion& insertion = insertions_.back();
  insertion.markup += insertion.lead;
  Append(insertion.markup, element, layout_, insertion.lead);
}

void ElementEditor::Finish() {
  // What goes to one place comes in the standard's order there.
  std::stable_sort(
      insertions_.begin(), insertions_.end(), [](const Insertion& a, const Insertion& b) {
        return std::tie(a.parent, a.after, a.rank) < std::tie(b.parent, b.after, b.rank);
      });
  for (std::size_t i = 0; i < insertions_.size();) {
    const Node parent = insertions_[i].parent;
    const Node after = insertions_[i].after;
    std::string markup = std::move(insertions_[i].markup);
    for (++i;
         i < insertions_.size() && insertions_[i].parent == parent && insertions_[i].after == after;
         ++i) {
      markup += insertions_[i].markup;
    }
    if (after != XmlTree::kNone) {
      edits_.Replace(tree_.End(after), tree_.End(after), std::move(markup));
      continue;
    }
    // An empty element gets the line of its end tag too.
    const bool empty = tree_.ContentBegin(parent) == tree_.ContentEnd(parent);
    if (empty && !LeadIn(parent, after).empty()) {
      markup += LeadBefore(codebook_.text, tree_.Begin(parent));
    }
    if (tree_.HasEndTag(parent)) {
      edits_.Replace(tree_.ContentBegin(parent), tree_.ContentBegin(parent), std::move(markup));
    } else {
      OpenSelfClosing(parent, markup);
    }
  }
}

Node ElementEditor::PlaceFor(Node parent, Element element) const {
  const Element parentElement = tree_.ElementOf(parent);
  const std::size_t rank = RankIn(parentElement, element);
  Node same = XmlTree::kNone;
  Node before = XmlTree::kNone;
  for (Node child = tree_.FirstChild(parent); child != XmlTree::kNone; child = tree_.Next(child)) {
    if (tree_.ElementOf(child) == element) same = child;
    if (RankIn(parentElement, tree_.ElementOf(child)) < rank) before = child;
  }
  return same != XmlTree::kNone ? same : before;
}

std::string ElementEditor::LeadIn(Node parent, Node after) const {
  const Node neighbour = after != XmlTree::kNone ? after : tree_.FirstChild(parent);
  if (neighbour != XmlTree::kNone) {
    return std::string(LeadBefore(codebook_.text, tree_.Begin(neighbour)));
  }
  const std::string_view lead = LeadBefore(codebook_.text, tree_.Begin(parent));
  return lead.empty() ? std::string() : std::string(lead) + layout_.unit;
}

std::string_view ElementEditor::Tag(Node node) const {
  return std::string_view(codebook_.text)
      .substr(tree_.Begin(node), tree_.ContentBegin(node) - tree_.Begin(node));
}

void ElementEditor::OpenSelfClosing(Node node, const std::string& content) {
  const std::string_view tag = Tag(node);
  const std::size_t slash = tag.rfind('/');
  std::string bytes = Encode(">" + content + "</", codebook_.encoding);
  bytes += StartTag(tag).Name();
  bytes += '>';
  edits_.ReplaceBytes(tree_.Begin(node) + slash, tree_.End(node), std::move(bytes));
}

}  // namespace velahost
