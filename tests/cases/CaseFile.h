#pragma once

#include <string>
#include <vector>

// Case files: a working dictionary, a source dictionary, a command, and what must come out.
//
//   # merging keeps the target's labels
//   source q1 F8 {1 "low" 2 "middle"}; q2 A8 "A string"
//   working Q1 F8 {1 "Low"}
//   command FROM 'source' /VARINFO VALLABELS=MERGE
//   ----
//   Q1 {1 "Low" 2 "middle"}
//
// A case starts with its title. A section is a word at the start of a line and what follows it, on
// the line and on indented lines; several items of a section or an outcome may share a line. The
// sections before the first title are given for every case of the file that has none of that name
// itself. A line with "##" is a comment.
//
// source, working: a dictionary, one variable or file-level item after the other. What is not the
// default is given, in this order:
//   NAME PRINT write=FORMAT "label" {value "label" ...} missing(value ...) width=N level=LEVEL
//       role=ROLE align=ALIGNMENT attr(name "value" ... name "value" ...)
//       doc(element "text" ... element "text" ...)
//   file label "text"              file document "text"             file weight NAME
//   file attr(name "value" ...)    file mrset NAME "label" (NAME ...)    file varset (the same)
// PRINT gives the type too: A8 and HEX16 are strings of 8 bytes; - is a number whose format is not
// stated, A- a string whose width is not. A string value is quoted, a quote in it doubled. A range
// of missing values is 1:5, lo:5 or 1:hi, and comes before single values.
//
// command: one or more commands, run in the folder where the files `source` and `working` are. Each
// is a call of its own, also after one that failed.
// pending: a word alone: transformations are pending.
//
// After the dashes stands everything that comes out, in this order, and nothing else may:
//   warning LEVEL: text, error LEVEL: text       as issued, each placeholder as {its argument};
//                                                a show that is not 2 follows the level: 3 show 3
//   NAME and the properties that changed         as they are now
//   added NAME PRINT ...                         a whole variable
//   file ...                                     each item that changed, as a whole; "file mrsets
//                                                none" (varsets, documents) when none are left
//   legacy weight N                              what the legacy dictionary was told

namespace cases {

using Lines = std::vector<std::string>;

struct Case {
  std::string file;
  int line = 0;  // of the title
  std::string title;
  Lines source, working, command, outcome;
  bool pending = false;
};

// Reads a case file. Throws std::runtime_error when it cannot be read or is not of that form.
std::vector<Case> ReadCaseFile(const std::string& path);

}  // namespace cases
