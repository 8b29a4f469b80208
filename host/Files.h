#pragma once

#include <memory>
#include <string>

class ProcedureDataSource;
class TokenSequenceBase;
class VELA_DataSource;

// Files: what FROM names, and the source file opened from it.

// The specification of a file: a file, or the working file itself, with the password if one was
// given. A default-constructed one names no file.
class UserCaseFileSpec {
 public:
  UserCaseFileSpec();
  UserCaseFileSpec(const UserCaseFileSpec&) = delete;
  UserCaseFileSpec& operator=(const UserCaseFileSpec&) = delete;
  ~UserCaseFileSpec();

  // Reads the specification from the current token on. On success it returns true and leaves the
  // specification's last token current: the library steps past it. On failure it returns false, and
  // ErrorText says why. The library then reports the current token as left over, unless it is at
  // the end, and skips the rest. The library always passes false for the flag, whose meaning is the
  // host's.
  bool Init(const TokenSequenceBase& tokens, bool flag);
  // Why the last Init failed, as text that is shown as it stands. REQUIRES: Init returned false.
  std::string ErrorText() const;
  // Stores the password. It is not empty. The library never writes it into a message.
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
// The library opens it on the heap, in a std::unique_ptr, at most once in a run. It destroys it at
// the end of the run, before the frame closes.
class UserInputCaseFile {
 public:
  // Opens the file. A file that cannot be used is reported by an ErrorText that says which file,
  // where and why, or by an error issued to the output. The context lives longer than the
  // construction, but not as long as this object.
  UserInputCaseFile(const UserCaseFileSpec& spec, ProcedureDataSource* context);
  UserInputCaseFile(const UserInputCaseFile&) = delete;
  UserInputCaseFile& operator=(const UserInputCaseFile&) = delete;
  ~UserInputCaseFile();

  // The file's data source, or null when the specification names the working file or nothing could
  // be opened. Owned by this object, and valid as long as this object lives.
  VELA_DataSource* DataSource();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
