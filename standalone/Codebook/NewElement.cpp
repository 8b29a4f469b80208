#include "standalone/Codebook/NewElement.h"

#include <algorithm>
#include <cstddef>

#include "standalone/Codebook/Encoding.h"
#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

std::string WithLineEnds(std::string text, std::string_view newLine) {
  if (newLine == "\n") return text;
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    if (c == '\n') {
      result += newLine;
    } else {
      result += c;
    }
  }
  return result;
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

// The markup of an element with its lines indented like those of the lead: where white space with a
// line end is all that stands between two tags.
std::string WithLead(std::string_view markup, const std::string& lead, const Layout& layout) {
  std::string result;
  std::size_t depth = 0;
  for (std::size_t i = 0; i < markup.size();) {
    const std::size_t tag = std::min(markup.find('<', i), markup.size());
    const std::string_view between = markup.substr(i, tag - i);
    const bool ends = markup.substr(tag, 2) == "</";
    const bool indents = !lead.empty() && between.find('\n') != std::string_view::npos &&
                         std::all_of(between.begin(), between.end(), IsSpace);
    if (ends) --depth;
    if (indents) {
      result += lead;
      for (std::size_t level = 0; level < depth; ++level) result += layout.unit;
    } else {
      result += WithLineEnds(std::string(between), layout.newLine);
    }
    i = TagEnd(markup, tag);
    result += markup.substr(tag, i - tag);
    if (tag < markup.size() && !ends && markup[i - 2] != '/') ++depth;
  }
  return result;
}

void RenderTo(std::string& markup, const NewElement& element, const Layout& layout,
              const std::string& lead) {
  if (!element.markup.empty()) {
    markup += WithLead(element.markup, lead, layout);
    return;
  }
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
  markup += RenderText(element.text, layout);
  if (!element.children.empty()) {
    const std::string inner = lead.empty() ? std::string() : lead + layout.unit;
    for (const NewElement& child : element.children) {
      markup += inner;
      RenderTo(markup, child, layout, inner);
    }
    markup += lead;
  }
  markup += "</";
  markup += layout.prefix;
  markup += name;
  markup += '>';
}

}  // namespace

std::string Render(const NewElement& element, const Layout& layout, std::string_view lead) {
  std::string markup;
  RenderTo(markup, element, layout, std::string(lead));
  return markup;
}

std::string RenderText(std::string_view text, const Layout& layout) {
  return WithLineEnds(EscapeText(text), layout.newLine);
}

}  // namespace velahost
