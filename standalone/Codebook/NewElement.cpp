#include "standalone/Codebook/NewElement.h"

#include <algorithm>
#include <cstddef>

#include "standalone/Codebook/Encoding.h"
#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

void AppendWithLineEnds(std::string& markup, std::string_view text, std::string_view newLine) {
  for (const char c : text) {
    if (c == '\n') {
      markup += newLine;
    } else {
      markup += c;
    }
  }
}

// Where the tag that begins at a position ends. An attribute's value may have a ">" in it.
std::size_t TagEnd(std::string_view markup, std::size_t begin) {
  char quote = '\0';
  for (std::size_t i = begin; i < markup.size(); ++i) {
    const char c = markup[i];
    if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      return i + 1;
    }
  }
  return markup.size();
}

// Adds a line end and indentation, so many levels deeper than the lead; nothing for no lead.
void AppendLead(std::string& markup, std::string_view lead, std::size_t depth,
                const Layout& layout) {
  if (lead.empty()) return;
  markup += lead;
  for (std::size_t level = 0; level < depth; ++level) markup += layout.unit;
}

// Adds markup of an element, its lines indented like the others: where white space with a line end
// is all that stands between two tags.
void AppendMarkup(std::string& markup, std::string_view element, const Layout& layout,
                  std::string_view lead, std::size_t depth) {
  for (std::size_t i = 0; i < element.size();) {
    const std::size_t tag = std::min(element.find('<', i), element.size());
    const std::string_view between = element.substr(i, tag - i);
    const bool ends = element.substr(tag, 2) == "</";
    const bool indents = !lead.empty() && between.find('\n') != std::string_view::npos &&
                         std::all_of(between.begin(), between.end(), IsSpace);
    if (ends) --depth;
    if (indents) {
      AppendLead(markup, lead, depth, layout);
    } else {
      AppendWithLineEnds(markup, between, layout.newLine);
    }
    i = TagEnd(element, tag);
    markup += element.substr(tag, i - tag);
    if (tag < element.size() && !ends && element[i - 2] != '/') ++depth;
  }
}

void AppendElement(std::string& markup, const NewElement& element, const Layout& layout,
                   std::string_view lead, std::size_t depth) {
  if (!element.markup.empty()) return AppendMarkup(markup, element.markup, layout, lead, depth);
  const std::string_view name = NameOf(element.element);
  markup += '<';
  markup += layout.prefix;
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
    AppendElement(markup, child, layout, lead, depth + 1);
  }
  if (!element.children.empty()) AppendLead(markup, lead, depth, layout);
  markup += "</";
  markup += layout.prefix;
  markup += name;
  markup += '>';
}

}  // namespace

std::string Render(const NewElement& element, const Layout& layout, std::string_view lead) {
  std::string markup;
  Append(markup, element, layout, lead);
  return markup;
}

void Append(std::string& markup, const NewElement& element, const Layout& layout,
            std::string_view lead) {
  AppendElement(markup, element, layout, lead, 0);
}

}  // namespace velahost
