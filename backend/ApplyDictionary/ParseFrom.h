#pragma once

struct ApplyDictionarySpec;
class ParsedCommand;

// Reads the subcommand
//
//   FROM [=] file [PASSWORD [=] { "password" | NONE }]
//
// into record.fromFile, to the end of the subcommand. What is wrong or left over is issued at level
// 3; the caller asks the host whether the run ends. A password is never written into a message.
void ParseFrom(ParsedCommand& command, ApplyDictionarySpec& record);
