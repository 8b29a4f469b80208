#pragma once

#include <memory>

struct ApplyDictionarySpec;
class BpProcedure;
class ProcedureDataSource;
class UserInputCaseFile;
class VELA_DataSource;

// Reads the current command into the record and opens the source file.
//
// record holds its defaults before the call. working is the working file's data source. The opened
// file is put into sourceFile, and belongs to the caller from then on, also when the parse goes on
// to fail. procedure is the open frame in whose output the errors are shown; it is an argument of
// the exported signature so that no parse runs without one, and nothing is written to it.
//
// Errors are issued at level 3 and do not stop the parse, save those of FROM: without a source
// nothing else is read or opened. The outcome is context.FatalError(); while it is false sourceFile
// is filled. Exceptions of the host pass through.
void Parse(ApplyDictionarySpec& record, BpProcedure& procedure, const VELA_DataSource& working,
           std::unique_ptr<UserInputCaseFile>& sourceFile, ProcedureDataSource& context);
