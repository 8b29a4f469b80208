#include "standalone/Xml/NewElement.h"

#include <algorithm>
#include <cstddef>

#include "standalone/Text/Utf8.h"
#include "standalone/Xml/Encoding.h"
#include "standalone/Xml/Markup.h"

namespace velahost {

namespace {

void AppendWithLineEnds(std::string& markup, std::string_view text, std::string_view newLine) {
  std::size_t end = 0;
  while ((end = text.find('\n')) != std::string_view::npos) {
    markup.append(text, 0, end).append(newLine);
    text.remove_prefix(end + 1);
  }
  markup += text;
}

// Adds a line end and indentation, so many levels deeper than the lead; nothing for no lead.
void AppendLead(std::string& markup, std::string_view lead, std::size_t depth,
                const Layout& layout) {
  if (lead.empty()) return;
  markup += lead;
  for (std::size_t level = 0; level < depth; ++level) markup += layout.unit;
}

void AppendAtDepth(std::string& markup, const NewElement& element, const Layout& layout,
                   std::string_view prefix, std::string_view lead, std::size_t depth) {
  if (!element.markup.empty()) return AppendWithLineEnds(markup, element.markup, layout.newLine);
  const std::string_view name = layout.vocabulary->NameOf(element.element);
  markup += '<';
  markup += prefix;
  markup += name;
  for (const auto& [attribute, value] : element.attributes) {
    markup += ' ';
    markup += attribute;
    markup += "=\"";
    markup += EscapeAttribute(value, '"');
    markup += '"';
  }
  if (element.text.empty() && element.children.empty()) {
    markup += "/>";
    return;
  }
  markup += '>';
  AppendText(markup, element.text, layout.newLine);
  for (const NewElement& child : element.children) {
    AppendLead(markup, lead, depth + 1, layout);
    AppendAtDepth(markup, child, layout, prefix, lead, depth + 1);
  }
  if (!element.children.empty()) AppendLead(markup, lead, depth, layout);
  markup += "</";
  markup += prefix;
  markup += name;
  markup += '>';
}

}  // namespace

void SortChildren(NewElement& element, const Vocabulary& vocabulary) {
  const auto order = vocabulary.ChildOrder(element.element);
  const auto rankOf = [order](const NewElement& child) {
    return std::find(order.begin(), order.end(), child.element) - order.begin();
  };
  std::stable_sort(element.children.begin(), element.children.end(),
                   [&](const NewElement& a, const NewElement& b) { return rankOf(a) < rankOf(b); });
}

Layout LayoutOf(const Document& document, Element outer, Element inner) {
  const std::string_view text = document.Text();
  Layout layout;
  layout.vocabulary = &document.Scopes().Words();

  const std::size_t lineEnd = text.find_first_of("\r\n");
  if (lineEnd != std::string_view::npos && text[lineEnd] == '\r') {
    layout.newLine = text.compare(lineEnd, 2, "\r\n") == 0 ? "\r\n" : "\r";
  }

  const auto leadOf = [text](Element element) { return LeadBefore(text, element.Begin()); };
  const std::string_view outerLead = outer ? leadOf(outer) : std::string_view(layout.newLine);
  const std::string_view innerLead = inner ? leadOf(inner) : std::string_view();
  const bool isDeeper =
      !outerLead.empty() && innerLead.size() > outerLead.size() && innerLead.starts_with(outerLead);
  if (isDeeper) layout.unit = innerLead.substr(outerLead.size());
  return layout;
}

std::string_view SpaceBefore(std::string_view text, std::size_t position) {
  std::size_t begin = position;
  while (begin > 0 && IsSpace(text[begin - 1])) --begin;
  if (begin == 0 || text[begin - 1] != '>') return {};
  const std::string_view space = text.substr(begin, position - begin);
  return space.find_first_of("\r\n") == std::string_view::npos ? std::string_view() : space;
}

std::string_view LeadBefore(std::string_view text, std::size_t position) {
  // Every new line repeats it, so where there is more white space than an indentation has nothing
  // is taken.
  constexpr std::size_t kLongest = 200;
  const std::size_t from = position - std::min(position, kLongest);
  const std::string_view space = SpaceBefore(text.substr(from), position - from);
  std::size_t begin = space.find_last_of("\r\n");
  if (begin == std::string_view::npos) return {};
  if (space[begin] == '\n' && begin > 0 && space[begin - 1] == '\r') --begin;
  return space.substr(begin);
}

void AppendElement(std::string& markup, const NewElement& element, const Layout& layout,
                   std::string_view prefix, std::string_view lead) {
  AppendAtDepth(markup, element, layout, prefix, lead, 0);
}

}  // namespace velahost
