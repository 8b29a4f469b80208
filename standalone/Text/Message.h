#pragma once

#include <string>
#include <vector>

namespace velahost {

// A message: a text with placeholders "^1" to "^9", and what fills them, in order.
struct Message {
  std::string text;
  std::vector<std::string> arguments = {};
};

// The line of a file that a message is about, without its end, and the place there, from 1 in
// characters.
struct MarkedLine {
  std::string text;  // empty where the message is about no line
  int column = 0;
};

// The message for people: each placeholder that has an argument replaced by it, as it stands, and
// the backslash before any character of the text taken away.
std::string Render(const Message& message);

// The text with a backslash before each backslash, so that Render shows it as it is.
std::string EscapeMessage(const std::string& text);

}  // namespace velahost
