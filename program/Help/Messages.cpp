#include "program/Help/MessageHelp.h"

namespace applydic {
namespace {

// A row for each message: its text, what happened, why, what to do. A test sees that each message
// of the library and the host has its row.

constexpr MessageHelp kNotApplied[] = {
    {"^1: Only variable label applied. Numeric in one file...",
     "The variable is a number in one file and a string in the other. It got the label and nothing "
     "else.",
     "Values, formats and missing values of a number mean nothing for a string.",
     "Look which of the two files is right. If the variable should be the same kind in both, "
     "change "
     "the data file that is wrong and make its codebook anew."},
    {"^1: Missing values not applied: some values too long...",
     "The string variable kept its own missing values.",
     "The source's variable is wider, and one of its missing values does not fit the target.",
     "Widen the variable in the working file, or shorten the value in the source."},
    {"^1: Labels not applied: some values too long...",
     "The string variable kept its own value labels.",
     "The source's variable is wider, and one of its labelled values does not fit the target. All "
     "labels are applied or none.",
     "Widen the variable in the working file, or remove the long value's label from the source."},
    {"^1: Column width not applied: could truncate values...",
     "The string variable kept its own column width.",
     "The source's column is narrower, so values could be cut when they are shown.",
     "Nothing needs to be done. To avoid the message, leave WIDTH out of VARINFO."},
    {"No selected variables had matching names...",
     "No variable of the source was paired with one of the working file, so no variable changed.",
     "Variables are paired by their names, whatever their case.",
     "See whether the two files are the right ones. Where names have changed from year to year, "
     "'applydic match' finds the pairs. For one variable onto others give SOURCE and TARGET."},
    {"^1: The element ^2 is not brought, since it ^3...",
     "This part of the variable's documentation was not carried over; the rest was.",
     "It has characters that the working document's encoding lacks, or declares too many "
     "namespaces.",
     "Convert the working document to UTF-8, then apply the command again."},
    {"The weight is ^1 now: without FILEINFO it is carried over too...",
     "The working file's weight variable is another one now.",
     "The command has no FILEINFO. Then the weight is carried over, as if it said FILEINFO WEIGHT.",
     "Write /FILEINFO with nothing after it to leave the weight alone. To carry it over without "
     "this note, write /FILEINFO WEIGHT."},
};

constexpr MessageHelp kCommand[] = {
    {"FROM subcommand omitted.", "The command does not name a source.",
     "Each command needs one file that it takes the dictionary from.",
     "Write FROM and the file between quotes: FROM 'survey_2025.xml'. FROM * is the working file "
     "itself."},
    {"Filename omitted.", "FROM has nothing after it.", "",
     "Write the file between quotes, or * for the working file itself."},
    {"Expect a quoted file name or * after FROM. Found ^1 (line ^2, column ^3)...",
     "What stands after FROM is no file name.", "A file name stands between quotes.",
     "Write FROM 'survey_2025.xml'. At the prompt of a shell, put the whole command into double "
     "quotes, so that the shell does not take the inner ones away."},
    {"Extras in FROM or slash omitted: ^1...", "There is more behind the file than FROM takes.",
     "Only PASSWORD may stand there. The next subcommand begins with a slash.",
     "Put a slash before the next subcommand, or delete what is too much."},
    {"Password too short.", "The password is empty.", "",
     "Give the password, or leave PASSWORD out: codebooks have none."},
    {"Password omitted.", "PASSWORD has nothing after it.", "",
     "Write the password between quotes, or leave PASSWORD out: codebooks have none."},
    {"Bad password keyword.", "What stands after PASSWORD is no password.",
     "It is a text between quotes, or NONE.", "Leave PASSWORD out: codebooks have none."},
    {"SOURCE list with TARGET list...", "SOURCE names several variables, and TARGET is there too.",
     "With TARGET, one variable of the source gives its properties to all that TARGET names.",
     "Name one variable after SOURCE, or leave TARGET out. For several pairs write a command "
     "each."},
    {"Empty variable list after ^1...", "The subcommand has VARIABLES, and no variable after it.",
     "", "Name variables, such as VARIABLES=q1 TO q9, or leave the subcommand out."},
    {"NEWVARS used with pending transforms...",
     "Variables cannot be added while transformations wait to be carried out.",
     "They would have to be carried out on variables that they do not know.",
     "Have the package carry them out first, then run the command."},
    {"A variable can be inserted only behind the last one: ^1...",
     "The host was asked to add a variable elsewhere.", "New variables come last.",
     "This is a fault of the program that uses the host. Please report it."},
    {"The working file has a variable of that name already: ^1...",
     "The host was asked to add a variable twice.", "Names differ in more than their case.",
     "This is a fault of the program that uses the host. Please report it."},
    {"Bad value ^1 after keyword ^2. Expect MERGE or REPLACE...",
     "The keyword takes MERGE or REPLACE, and something else stands after it.", "",
     "Write, for example, VALLABELS=MERGE, or the keyword alone for what is usual."},
    {"No value expected after keyword ^1. Found ^2...",
     "The keyword stands alone, and here it has a value.",
     "Only DOCUMENTS, MRSETS, VARSETS, VALLABELS and ATTRIBUTES take MERGE or REPLACE.",
     "Delete the equals sign and what stands behind it."},
    {"^1 without VARIABLES names no variables: it is passed over...",
     "The subcommand changes nothing.", "SOURCE and TARGET take their variables from VARIABLES.",
     "Write VARIABLES= and the names after it, or leave the subcommand out."},
};

constexpr MessageHelp kSyntax[] = {
    {"Subcommand ^1 not known (line ^3, column ^4). Expect ^2...",
     "A slash begins a subcommand, and there is none of this name.",
     "It may be misspelt, or a file name has a slash and no quotes.",
     "Write one of those that the message names; three letters are enough."},
    {"Subcommand ^1 given twice (line ^2, column ^3)...", "A command has each subcommand once.", "",
     "Put what both say into one, or write two commands, each ended by a period at the end of a "
     "line."},
    {"Keyword ^1 not known in ^2 (line ^4, column ^5). Expect ^3...",
     "The subcommand has no keyword of this name.", "",
     "Write one of those that the message names; three letters are enough. 'applydic help command' "
     "tells what each stands for."},
    {"Keyword ^1 given twice in ^2 (line ^3, column ^4)...", "A subcommand has each keyword once.",
     "", "Delete one of them."},
    {"Nothing after ^1 = in ^2 (line ^3, column ^4)...",
     "An equals sign follows the keyword, and then nothing.", "",
     "Write the value after it, or delete the equals sign."},
    {"Subcommand ^2 takes no keywords. Found ^1 (line ^3, column ^4)...",
     "Something stands behind a subcommand that stands alone.", "",
     "Delete it, or put a slash before it if it is the next subcommand."},
    {"Comment ^1 not closed (line ^2, column ^3)...", "A comment begins here and does not end.", "",
     "End it with */."},
    {"String ^1 not closed on its line (line ^2, column ^3)...",
     "A quote begins a text, and its line ends before the text does.", "",
     "Write the closing quote. A quote inside is written twice, or the text stands between quotes "
     "of the other kind."},
    {"Unexpected character ^1 (line ^2, column ^3)...",
     "This character has no meaning in a command.", "",
     "Delete it. A file name, and a variable's name with such characters, stands between quotes."},
    {"Unknown variable ^1 in ^2 (line ^3, column ^4)...", "The file has no variable of this name.",
     "SOURCE names variables of the source. TARGET names variables of the working file if SOURCE "
     "is "
     "there, and else of the source.",
     "See 'applydic show FILE' for the names."},
    {"Unexpected ^1 in ^2 (line ^3, column ^4). Expect names, TO or ALL...",
     "This is no name of a variable.", "", "Write names, ranges such as a TO b, or ALL."},
    {"TO out of place in ^1 (line ^2, column ^3). Expect a name on either side...",
     "TO stands between two names, and here one is missing.", "", "Write the missing name."},
    {"Range ^1 TO ^2 in ^3 runs backwards (line ^4, column ^5)...",
     "The first variable of the range comes after the last one.",
     "A range goes in the order of the file; new names go by their numbers.",
     "Swap the two names."},
    {"Range ^1 TO ^2 in ^3 has more than 100000 names (line ^4, column ^5)...",
     "The range stands for more names than a list can have.", "", "Write a shorter range."},
    {"Range ^1 TO ^2 in ^3 has more than 9 digits in a number (line ^4, column ^5)...",
     "The numbers at the ends of the names are too long.", "", "Write the names one by one."},
    {"Range ^1 TO ^2 in ^3 has names of more than 64 bytes (line ^4, column ^5)...",
     "A name of the range is too long for a variable.", "", "Choose shorter names."},
    {"Range ^1 TO ^2 in ^3 cannot be made out (line ^4, column ^5). Expect two variables that "
     "exist, "
     "or new names that differ only in the number at their end...",
     "A range of new names goes from a number to another one.", "",
     "Write a range like x1 TO x5, or the names one by one."},
    {"List in ^1 names more than 5000000 variables (line ^2, column ^3)...",
     "The list is too long.", "", "Name each variable once, or write several commands."},
    {"^1 in ^2 cannot be the name of a new variable (line ^3, column ^4)...",
     "No variable has this name, and none can get it.",
     "A name begins with a letter or @, and has letters, digits and the signs . _ $ # @ in it.",
     "Write another name. If an existing variable is meant, see 'applydic show FILE'."},
    {"More than ^1 errors in this command. The others are not reported...",
     "The command has very many errors.", "The file may hold no commands at all.",
     "Mend the first ones, or give the right file after --syntax."},
};

constexpr MessageHelp kCodebooks[] = {
    {"^1: ^2 with a label and no value (^3). They stay in the file and do not count. Give each a "
     "value (catValu)...",
     "Some categories have a label and no value, so they label nothing.",
     "A value label belongs to a value.",
     "Give each such category a catValu. If they are headings, leave them."},
    {"^1: ^2 with missing values that a variable cannot have (^3): a second range, a range of "
     "strings, a bound that is excluded or no number, or a value longer than the string. They stay "
     "in the file and count as none. Write them as single values and one range...",
     "The missing values of these variables are not known to the command.",
     "A number has up to three single values, or one range and one value. A string has up to three "
     "values.",
     "Write the missing values in that form if they are to be carried over."},
    {"^1: ^2 with labels for values that are longer than the variable (^3). These labels stay in "
     "the file and do not count. Shorten the values, or widen the variable...",
     "Some labels are for values that the string variable cannot have.", "",
     "Widen the variable in its format, or mend the values."},
    {"^1: ^2 without a name and an ID (line ^3). They stay in the file and do not count. Give each "
     "a name...",
     "Some variables cannot be named in a command.", "", "Give each a name attribute."},
    {"^1: No label is in the language of this run (^2). The labels there are in other languages "
     "(^3): choose one of them for the run...",
     "The source has labels, and none of them in the language of the run, so none is carried over.",
     "A run has one language: that of --lang, or that of the working file's first label.",
     "Give --lang with one of the languages that the message names."},
    {"^1: The first line says UTF-16, but the document is in single bytes. It is read as UTF-8: "
     "let "
     "the first line say UTF-8...",
     "The document was read, though its first line is wrong.",
     "The document was converted and its first line was not.", "Correct the first line."},
    {"^1: has no data file with the ID ^2: none of its data files has an ID",
     "The document's data files have no IDs to name them by.", "",
     "Write the path alone for the first data file, or give each fileDscr an ID."},
    {"^1: has no data file with the ID ^2: it has ^3", "The document has no fileDscr with this ID.",
     "What stands behind # names one of several data files in a document.",
     "Write one of the IDs that the message names, or the path alone for the first data file."},
    {"^1: line ^2: variable ^3 stands in the file already, on line ^4: names must differ in more "
     "than case",
     "Two variables of the data file have one name.", "A command could not tell them apart.",
     "Rename one of them. If they belong to two data files, let their attribute files say so."},
    {"^1: line ^2: variable ^3 stands in the file already, on line ^4 as ^5: names must differ in "
     "more than case",
     "Two variables of the data file have names that differ in case alone.",
     "A command could not tell them apart: it does not know the case.", "Rename one of them."},
    {"^1: this is no codebook, but ^2: give a DDI Codebook document (XML)",
     "The file is of another kind.", "",
     "Give the codebook of the data file. Data archives offer it as DDI or XML; a compressed file "
     "is unpacked first."},
    {"^1: the document has no codebook: its root element is ^2, and no codeBook stands in it",
     "The file is XML and no DDI Codebook.",
     "Versions 1 to 2.6 of DDI Codebook are read. DDI Lifecycle (DDIInstance) is another format.",
     "Export the codebook as DDI Codebook."},
    {"^1: line ^2: the document has another codeBook on line ^3: give a document with one",
     "The document holds two codebooks.", "", "Put each into a file of its own."},
    {"^1: line ^2, column ^3: ^4", "The document is no well-formed XML.",
     "Something is not closed, or a sign such as & or < stands in a text as it is.",
     "Mend the place that the message names, or export the document once more. 'xmllint --noout "
     "FILE' tells more."},
    {"^1: line ^2, column ^3: mismatched tag",
     "An end tag does not belong to the element that was opened last.", "",
     "Close the inner element before the outer one."},
    {"^1: line ^2, column ^3: no element found", "The document ends before its last element does.",
     "It was cut off, for example when it was copied.", "Get the file once more."},
    {"^1: line ^2, column ^3: undefined entity", "The document uses an entity that XML has not.",
     "XML knows &amp; &lt; &gt; &quot; and &apos; others, such as &eacute; belong to HTML.",
     "Write the character itself."},
    {"^1: line ^2, column ^3: the document declares an entity of its own, ^4: write its text where "
     "it is used",
     "The document defines text of its own in its head.",
     "Such definitions can make a small document endless, so they are refused.",
     "Write the text where the entity is used, for example by 'xmllint --noent'."},
    {"^1: line ^2, column ^3: more than 1000 namespaces are declared around this element",
     "The document declares namespaces without end.", "No codebook needs so many.",
     "See who made the document."},
    {"^1: line ^2, column ^3: more than 1000 attributes are declared with a default",
     "The document's head declares attributes without end.", "No codebook needs so many.",
     "See who made the document."},
    {"^1: line ^2, column ^3: XML of version ^4 cannot be read: let it be 1.0",
     "The first line names another version of XML.", "", "Write version=\"1.0\" there."},
    {"^1: line ^2, column ^3: encoding ^4 cannot be read: convert the document to UTF-8, for "
     "example by iconv -f ^5 -t UTF-8, and let its first line say UTF-8",
     "The document is in an encoding that is not known.",
     "UTF-8, US-ASCII and encodings of single bytes are read.",
     "Convert it, as the message shows, and change its first line."},
    {"^1: encoding ^2 cannot be read: convert the document to UTF-8, for example by iconv -f ^3 -t "
     "UTF-8, and let its first line say UTF-8",
     "The document is in UTF-16.", "UTF-8, US-ASCII and encodings of single bytes are read.",
     "Convert it, as the message shows, and change its first line."},
    {"^1: the document has more than 4 GB", "The document is too large.", "",
     "Give a codebook without the data."},
};

constexpr MessageHelp kFiles[] = {
    {"^1: cannot be read: ^2", "The file could not be opened or read.",
     "The end of the message has the system's reason.",
     "Look at the path, and whether you may read the file. Paths begin at the folder that you are "
     "in."},
    {"^1: cannot be read: No such file or directory", "There is no file of this path.",
     "Paths begin at the folder that you are in, also those after FROM in a file of commands.",
     "Look at the spelling, or write the whole path."},
    {"^1: cannot be read: it is a folder", "The path names a folder.", "",
     "Write the name of the file behind it."},
    {"^1: cannot be read: it is not a regular file", "The path names a device or a pipe.", "",
     "Give a file, or - for standard input."},
    {"^1: cannot be read: there is a zero byte in its name", "No file can have this name.", "",
     "Look where the name comes from."},
    {"^1: cannot be read: it has more than ^2 MB", "The file is too large.", "",
     "Give a codebook without the data."},
    {"Cannot write ^1: ^2.", "The file could not be written. What was there is as it was.",
     "The middle of the message has the reason.",
     "Do what the message advises, or write to another file by --output."},
    {"Cannot write ^1: ^2; the file is as it was.",
     "Saving failed half-way. The old file is as it was, whole.",
     "The disk may be full, or the folder does not let itself be written to.",
     "Make room, or write to another folder by --output."},
    {"Cannot write ^1: ^2; no file was made.", "Saving failed half-way, and no file was made.",
     "The disk may be full, or the folder does not let itself be written to.",
     "Make room, or write to another folder."},
    {"Cannot write ^1: this is a folder; name a file.", "The path to write to is a folder.", "",
     "Write the name of a file. Of several codebooks, name the folder with a slash at its end."},
    {"Cannot write ^1: this is not a regular file; write to a file and send that on.",
     "The path to write to is a device or a pipe.",
     "A codebook is written whole or not at all, which a device cannot do.",
     "Write to a file, or give - for standard output."},
    {"Cannot write ^1: the links lead in a circle.", "The path is a link that leads to itself.", "",
     "Mend the links, or write to another path."},
    {"Cannot write ^1: the file has no path of its own; name it by its path.",
     "The file is named by a number of the process, such as /dev/fd/3.", "",
     "Give its path in a folder."},
    {"Cannot write ^1: the folder ^2: No such file or directory; make the folder first.",
     "The folder to write to is not there.", "", "Make it by mkdir, or mend the path."},
    {"Cannot write ^1: the folder ^2: ^3.", "The folder to write to cannot be looked at.", "",
     "Look at the path and at the folder's permissions."},
    {"Cannot write ^1: ^2 is not a folder.", "The path leads through a file.", "",
     "Mend the path: what stands before its last slash is a folder."},
    {"Cannot write ^1: the folder ^2 takes no new files: ^3; make it writable, or name a file in "
     "another folder.",
     "You may not make files in this folder.",
     "A codebook is written into a new file, which then takes the old one's place.",
     "Change the folder's permissions, or write to another folder by --output."},
    {"Cannot write ^1: it cannot be reached: ^2.", "The system does not let the path be looked at.",
     "", "Look at the permissions of the folders on the path."},
    {"Cannot write ^1: the file is write-protected: ^2; make it writable, or name another file.",
     "You may not change this file.", "", "Change its permissions, or write to another file."},
    {"Cannot write ^1: its backup ^2 cannot be made: ^3; the file is as it was.",
     "Nothing was written, since the old file could not be kept.", "",
     "Make room, or give another --backup suffix."},
    {"Cannot write ^1: there is no room for its backup: ^2 is not a regular file; name another "
     "suffix.",
     "Something that is no file has the name of the backup.", "", "Give another --backup suffix."},
    {"Cannot write ^1: the name of its backup, ^2, is too long; name a shorter suffix.",
     "The system does not take names of this length.", "", "Give a shorter --backup suffix."},
    {"Cannot write ^1: the dictionary was read from this file; write to another file.",
     "The output would replace the source.", "A source is never written over.",
     "Write to another file."},
    {"Cannot write ^1: this is one of the two codebooks; write to another file.",
     "The commands would replace a codebook.", "", "Name another file after --output."},
    {"Cannot write the report to ^1: that is the ^2 file of the run; write it to another file.",
     "The report would replace a file of the run.", "", "Name another file after --report."},
    {"Cannot write several codebooks to ^1: it is no folder; make the folder first.",
     "Several codebooks cannot be written to one file.", "",
     "Name a folder that is there, with a slash at its end, or give --in-place."},
    {"^1 and ^2 would both be written to ^3: nothing is done; apply to them one by one, or write "
     "to "
     "different folders.",
     "Two codebooks of one name come from different folders.", "",
     "Apply the command to them one by one."},
    {"^1 would be written over ^2, another codebook to work on: nothing is done; write to another "
     "folder.",
     "An output is one of the codebooks to be read.", "",
     "Write to another folder, or give --in-place."},
    {"Cannot read commands from ^1: ^2", "The file after --syntax was not read.",
     "The end of the message has the reason.",
     "Give a text file of commands after --syntax, or one command after --command."},
    {"Cannot read commands from ^1: this is a codebook or another XML document; name a codebook as "
     "WORKING, or in a command after FROM.",
     "The file after --syntax is a codebook.", "--syntax takes a file of commands.",
     "Write: applydic apply -c \"FROM 'SOURCE.xml'\" -o OUT.xml WORKING.xml"},
    {"Cannot read commands from ^1: it has more than ^2 MB; give the commands in several smaller "
     "files.",
     "The file of commands is too large.", "", "Part it at the end of a command."},
    {"Cannot write commands that read ^1: a command cannot name a file with a line end in its "
     "name. "
     "Rename the file.",
     "The older codebook has a name that no command can have.", "", "Rename the file."},
};

constexpr MessageHelp kProgram[] = {
    {"There is no command '^1'. ^2", "The first argument is no command of the program.", "",
     "'applydic help' lists them."},
    {"^1 has no variable ^2; 'applydic show ^3' lists those that it has.",
     "The codebook has no variable of this name.", "", "See the list for the names."},
    {"There is not enough memory.", "The work needs more memory than there is.", "",
     "Close other programs, or use a machine with more memory. Nothing was written."},
    {"There is not enough memory to tell what has changed.^1",
     "The work is done, and there was no memory left to tell of it.", "",
     "The message says whether the codebook is written. 'applydic diff' tells what has changed."},
    {"Cannot start a process: ^1; try with fewer --jobs.",
     "The system does not let another process begin.", "", "Give a smaller number after --jobs."},
    {"Cannot load the library: ^1; keep bin/applydic and lib/^2 side by side.",
     "The program did not find its library.", "The two were parted.",
     "Install the program once more, or put both folders side by side."},
};

constexpr MessageSection kSections[] = {{"What was not carried over", kNotApplied},
                                        {"The command", kCommand},
                                        {"How the command is written", kSyntax},
                                        {"What is in a codebook", kCodebooks},
                                        {"Files", kFiles},
                                        {"The program", kProgram}};

}  // namespace

std::span<const MessageSection> MessageSections() { return kSections; }

}  // namespace applydic
