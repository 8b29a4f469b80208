#pragma once

struct ApplyDictionarySpec;
class ParsedCommand;

// Reads the subcommand
//
//   FROM [=] file [PASSWORD [=] { "password" | NONE }]
//
// into record.fromFile. What is wrong or left over is issued at level 3, and the subcommand's
// tokens are then behind; whether the run ends is for the caller to ask of the host. A password is
// never written into a message.
void ParseFrom(ParsedCommand& command, ApplyDictionarySpec& record);
