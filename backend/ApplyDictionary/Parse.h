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
// file is put into sourceFile, and belongs to the caller from then on, also when the parse fails
// later. procedure is the open frame in which the host shows the errors. It is an argument so that
// no parse runs without a frame; nothing is written to it.
//
// Errors are issued at level 3. They do not stop the parse, except those that were issued before
// the end of FROM: nothing else is read or opened then. The outcome is context.FatalError(). While
// that is false, sourceFile is filled. Exceptions of the host pass through.
void Parse(ApplyDictionarySpec& record, BpProcedure& procedure, const VELA_DataSource& working,
           std::unique_ptr<UserInputCaseFile>& sourceFile, ProcedureDataSource& context);
