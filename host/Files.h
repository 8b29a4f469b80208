#pragma once

#include <memory>
#include <string>

class ProcedureDataSource;
class TokenSequenceBase;
class VELA_DataSource;

// Files: what FROM names, and the source file opened from it.

// The specification of a file: a file, or the working file itself, with the password if one was
// given. Default-constructed it names no file.
class UserCaseFileSpec {
 public:
  UserCaseFileSpec();
  UserCaseFileSpec(const UserCaseFileSpec&) = delete;
  UserCaseFileSpec& operator=(const UserCaseFileSpec&) = delete;
  ~UserCaseFileSpec();

  // Reads the specification from the current token on. On success it returns true and leaves the
  // specification's last token current: the library steps past it. On failure it returns false and
  // ErrorText says why; the library then reports the current token, and what follows, as left over.
  // The library passes false for the flag, whose meaning is the host's.
  bool Init(const TokenSequenceBase& tokens, bool flag);
  // Why the last Init failed, as text that is shown as it stands. REQUIRES: Init returned false.
  std::string ErrorText() const;
  // Stores the password. It is not empty, and it is never written into a message.
  void Password(const std::string& password);
  // Whether the specification names the working file itself.
  bool IsWorkingFile() const;

 private:
  struct Impl;
  friend class UserInputCaseFile;
  std::unique_ptr<Impl> impl_;
};

// The source file, open from construction to destruction.
//
// The library opens it on the heap, in a std::unique_ptr, at most once in a run, and destroys it
// when the run has ended, before the frame closes.
class UserInputCaseFile {
 public:
  // Opens the file. A file that cannot be used is reported by an ErrorText that says which file,
  // where and why, or by an error issued to the output. The context outlives the construction only,
  // not this object.
  UserInputCaseFile(const UserCaseFileSpec& spec, ProcedureDataSource* context);
  UserInputCaseFile(const UserInputCaseFile&) = delete;
  UserInputCaseFile& operator=(const UserInputCaseFile&) = delete;
  ~UserInputCaseFile();

  // The file's data source, or null when the specification names the working file or nothing could
  // be opened. Owned by this object, and valid as long as it is.
  VELA_DataSource* DataSource();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
