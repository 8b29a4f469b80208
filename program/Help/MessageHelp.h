#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace applydic {

// What is to be known of a message: whole sentences; `why` and `action` may be empty.
struct MessageHelp {
  std::string_view text;    // of the message, with ^1 to ^9 for what differs
  std::string_view what;    // happened
  std::string_view why;     // it is so
  std::string_view action;  // what to do
};

// Messages of one kind.
struct MessageSection {
  std::string_view title;
  std::span<const MessageHelp> messages;
};

// The messages of the library, of the host and of the program, by what they are about. Refusals of
// the program's arguments are not among them: they name the help to read.
std::span<const MessageSection> MessageSections();

// The help for a message as it was issued or as it is shown; of several texts that it may have the
// one that says most. Null where there is none.
const MessageHelp* HelpFor(std::string_view message);

// The text of a message for people: an ellipsis for what differs.
std::string ShownText(const MessageHelp& help);

}  // namespace applydic
