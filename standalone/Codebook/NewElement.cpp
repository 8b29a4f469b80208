#include "standalone/Codebook/NewElement.h"

#include "standalone/Codebook/Encoding.h"

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

void RenderTo(std::string& markup, const NewElement& element, const Layout& layout,
              const std::string& lead) {
  if (!element.markup.empty()) {
    markup += WithLineEnds(element.markup, layout.newLine);
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
