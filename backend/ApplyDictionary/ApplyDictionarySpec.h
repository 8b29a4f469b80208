#pragma once

#include <cstdint>
#include <vector>

#include "host/Files.h"
#include "host/Syntax.h"

// How an item that can be merged or replaced is applied.
enum ApplyMode : std::int32_t {
  ApplyNone = 0,     // not at all
  ApplyMerge = 1,    // what the working file has is kept and added to
  ApplyReplace = 2,  // the source's replaces what the working file has
};

// One APPLY DICTIONARY command: what Parse makes of the command's text and Apply carries out.
//
// A plain record. The parsers write its fields and the transfers read them. A field keeps its
// default when the subcommand that sets it is absent. So a command of FROM alone applies every
// variable property and, as the only file-level item, the weight.
//
// After a parse without an error
// - at most one of targetVars and targetNames is filled; targetNames only with newVars and
//   sourceVars;
// - with more than one entry in sourceVars, targetVars is empty;
// - every column is one of the data source that it was looked up in.
struct ApplyDictionarySpec {
  // The source: a file, or the working file itself.
  UserCaseFileSpec fromFile;

  // SOURCE VARIABLES: columns of the source, in list order.
  std::vector<int> sourceVars;
  // TARGET VARIABLES that exist: columns in list order, of the working file when sourceVars is
  // filled, otherwise of the source.
  std::vector<int> targetVars;
  // TARGET VARIABLES that may be new: names for the working file, in list order.
  std::vector<VelaVarName> targetNames;
  // Whether variables that the working file lacks are added to it.
  bool newVars = false;

  // FILEINFO. The weight is on without FILEINFO; FILEINFO that does not name it turns it off.
  ApplyMode fileDocuments = ApplyNone;
  bool fileLabel = false;
  ApplyMode fileMrSets = ApplyNone;
  ApplyMode fileVarSets = ApplyNone;
  bool fileWeight = true;
  ApplyMode fileAttributes = ApplyNone;

  // VARINFO.
  bool varAlignment = true;
  bool varFormats = true;
  bool varLevel = true;
  bool varMissing = true;
  bool varRole = true;
  ApplyMode varValLabels = ApplyReplace;
  bool varLabel = true;
  bool varWidth = true;
  ApplyMode varAttributes = ApplyReplace;
};

// Whether the command selects any variable property other than the label.
bool SelectsMoreThanLabel(const ApplyDictionarySpec& record);
