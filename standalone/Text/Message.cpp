#include "standalone/Text/Message.h"

#include <cstddef>

namespace velahost {

std::string Render(const Message& message) {
  const std::string& text = message.text;
  std::string shown;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool hasNext = i + 1 < text.size();
    if (text[i] == '\\' && hasNext) {
      shown += text[++i];
    } else if (text[i] == '^' && hasNext && text[i + 1] >= '1' && text[i + 1] <= '9' &&
               static_cast<std::size_t>(text[i + 1] - '1') < message.arguments.size()) {
      shown += message.arguments[static_cast<std::size_t>(text[++i] - '1')];
    } else {
      shown += text[i];
    }
  }
  return shown;
}

std::string EscapeMessage(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\\') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

}  // namespace velahost
