#pragma once

struct ApplyDictionarySpec;
class ParsedCommand;

// FILEINFO and VARINFO: which file-level items and which variable properties are applied, and how.
//
// A subcommand that is absent leaves its fields as they are. One that is present sets all of them
// by the keyword ALL, or turns all of them off without it. Then each named keyword sets its own
// field, in whatever order the user wrote them. A wrong value is issued at level 3, ALL's first and
// then in table order, and the next keyword is read. KeywordFlag and KeywordMode say what the field
// becomes.

// Sets the six file fields of the record.
void ParseFileInfo(ParsedCommand& command, ApplyDictionarySpec& record);

// Sets the nine var fields of the record.
void ParseVarInfo(ParsedCommand& command, ApplyDictionarySpec& record);
