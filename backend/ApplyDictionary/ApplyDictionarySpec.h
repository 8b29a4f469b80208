#pragma once

#include <cstdint>
#include <vector>

#include "host/Files.h"
#include "host/Syntax.h"

// How an item that can be merged or replaced is applied.
enum ApplyMode : std::int32_t {
  ApplyNone = 0,     // not at all
  ApplyMerge = 1,    // what the working file has is kept and added to
  ApplyReplace = 2,  // the source's takes the place of the working file's
};

// One APPLY DICTIONARY command: what Parse makes of the command's text and Apply carries out.
//
// A plain record. The parsers write its fields and the transfers read them; a field keeps its
// default when the subcommand that sets it is absent. So a command of FROM alone applies every
// variable property, and of the file-level items the weight.
//
// After a parse without an error
// - targetVars or targetNames is filled, or neither, never both; targetNames only with newVars and
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

  // FILEINFO. Named without WEIGHT it turns the weight off, which is on without it.
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

// Whether the command selects any variable property besides the label.
bool SelectsMoreThanLabel(const ApplyDictionarySpec& record);
