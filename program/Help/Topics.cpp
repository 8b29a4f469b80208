#include "program/Help/Topics.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <vector>

#include "program/Failure.h"
#include "program/Help/MessageHelp.h"
#include "program/Listing.h"
#include "program/Output.h"

namespace applydic {
namespace {

constexpr std::size_t kColumns = 80;

constexpr const char* kCommandHelp =
    R"(APPLY DICTIONARY carries the dictionary of a source over to the working file.
Variables are paired by name, whatever the case of its letters.

  FROM 'file'
    /SOURCE VARIABLES=list
    /TARGET VARIABLES=list
    /NEWVARS
    /FILEINFO keywords
    /VARINFO keywords

Only FROM must be there. Subcommands and keywords stand in any order and case,
and three letters of each are enough.

FROM 'file'
  The source: a codebook. 'file#ID' is one of several data files in it, * the
  working file itself. PASSWORD 'text' or PASSWORD NONE may follow.

SOURCE VARIABLES=list
  Which variables of the source. Without it: all that have a namesake.

TARGET VARIABLES=list
  With SOURCE, which then names one variable: the variables of the working file
  that get its properties, whatever their names. Without SOURCE: which
  variables of the source, to be paired by name.

NEWVARS
  Variables that the working file lacks are added to it.

FILEINFO keywords
  Which items of the file. Without FILEINFO: the weight alone. With nothing
  after it: none.
    ATTRIBUTES    the custom attributes of the file (MERGE, REPLACE)
    DOCUMENTS     the documents (MERGE, REPLACE)
    FILELABEL     the file label
    MRSETS        the multiple-response sets (MERGE, REPLACE)
    VARSETS       the variable sets (MERGE, REPLACE)
    WEIGHT        the weight, if the working file has that variable
    ALL           all of them

VARINFO keywords
  Which properties of the variables. Without VARINFO: all. With nothing after
  it: none.
    ALIGNMENT     the alignment
    ATTRIBUTES    the custom attributes (MERGE, REPLACE), and with them what
                  documents the variable, where it has none
    FORMATS       the print and write formats; a string keeps its own width
    LEVEL         the measurement level
    MISSING       the missing values
    ROLE          the role
    VALLABELS     the value labels (MERGE, REPLACE)
    VARLABEL      the variable label
    WIDTH         the column width
    ALL           all of them

MERGE and REPLACE
  VALLABELS=MERGE keeps the labels of the target and adds those that it lacks;
  VALLABELS=REPLACE, or the keyword alone, leaves the source's only. In the same
  way ATTRIBUTES. DOCUMENTS, MRSETS and VARSETS alone merge. ALL may be followed
  by such keywords: VARINFO ALL VALLABELS=MERGE. Under ALL of FILEINFO the
  attributes merge, and of VARINFO they replace.

What is not carried over
  A property that the source does not state changes nothing. Between a number
  and a string only the variable label is carried over. Of a wider string, value
  labels and missing values are carried over if all their values fit.

How it is written
  A list has names, ranges such as a TO b in the order of the file, and ALL.
  Where names may be new, x1 TO x5 stands for five of them. Texts stand in
  single or double quotes; a quote inside is doubled. A comment goes from /* to
  */. A command ends with a period at the end of a line, or with the text.

Examples
  All properties of all variables of the same names:
    FROM 'survey_2025.xml'
  The labels only; value labels that are there stay:
    FROM 'survey_2025.xml' /FILEINFO /VARINFO VARLABEL VALLABELS=MERGE
  Whole variables that the working file lacks:
    FROM 'survey_2025.xml' /SOURCE VARIABLES=q1 TO q9 /NEWVARS /FILEINFO
  One question's value labels for a battery of twenty:
    FROM * /SOURCE VARIABLES=q7_01 /TARGET VARIABLES=q7_02 TO q7_20
      /FILEINFO /VARINFO VALLABELS MISSING LEVEL
  Everything, of the file too:
    FROM 'survey_2025.xml' /FILEINFO ALL /VARINFO ALL /NEWVARS
)";

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

// A text in lines, the first of them behind its name.
void AddItem(std::string_view name, std::string_view text, std::string& page) {
  if (text.empty()) return;
  constexpr std::size_t kIndent = 17;
  std::string before = Pad("  " + std::string(name), kIndent);
  for (const std::string& line : Fold(text, kColumns - kIndent)) {
    page += before + line + "\n";
    before.assign(kIndent, ' ');
  }
}

void AddMessage(const MessageHelp& help, std::string& page) {
  for (const std::string& line : Fold(ShownText(help), kColumns)) page += line + "\n";
  AddItem("What happened", help.what, page);
  AddItem("Why", help.why, page);
  AddItem("What to do", help.action, page);
  page += "\n";
}

// The message itself of a line that the program has written.
std::string_view WithoutStart(std::string_view line) {
  for (const std::string_view start : {"applydic: ", "warning: ", "error: "}) {
    if (line.starts_with(start)) line.remove_prefix(start.size());
  }
  return line;
}

std::string MessagesWith(std::string_view text) {
  std::string page;
  const std::string message(WithoutStart(text));
  for (const std::string& whole : {message, message + "..."}) {
    const MessageHelp* const help = HelpFor(whole);
    if (help == nullptr) continue;
    AddMessage(*help, page);
    return page;
  }
  const std::string wanted = LowerCase(text);
  for (const MessageSection& section : MessageSections()) {
    for (const MessageHelp& help : section.messages) {
      if (LowerCase(ShownText(help)).find(wanted) != std::string::npos) AddMessage(help, page);
    }
  }
  return page;
}

}  // namespace

std::string CommandHelp() { return kCommandHelp; }

std::string MessagesHelp(std::string_view text) {
  std::string page;
  if (text.empty()) {
    for (const MessageSection& section : MessageSections()) {
      page += std::string(section.title) + "\n" + std::string(section.title.size(), '=') + "\n\n";
      for (const MessageHelp& help : section.messages) AddMessage(help, page);
    }
  } else {
    page = MessagesWith(text);
  }
  if (page.empty()) {
    throw Failure("No message has '" + std::string(text) +
                  "' in it; 'applydic help messages' lists them all.");
  }
  page.pop_back();  // the last of two line feeds
  return page;
}

}  // namespace applydic
