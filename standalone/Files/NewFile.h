#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

#include "standalone/Files/Descriptor.h"

namespace velahost {

// A file that is made in a folder and has no name there until it takes one. Where the file system
// has no files without a name, it has one of its own, ".applydic-…". Destroyed before it took its
// name, it is gone. Operations throw CallFailure.
class NewFile {
 public:
  // Makes the file, with what the process gives new files of the mode.
  NewFile(const std::string& folder, mode_t mode);
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile();

  void Write(std::string_view bytes);
  // Of the open file.
  int Number() const { return file_.Number(); }
  // Returns when the bytes, the owner, permissions and attributes are on the disk.
  void Flush();

  // Gives it a name in the folder. What bears that name is replaced, in one step.
  void TakeName(const std::string& name);

 private:
  void OpenNamed(mode_t mode);
  // Gives a file without a name this one, unless another file has it. Returns false, with errno
  // set.
  bool Link(const char* name) const;

  Descriptor folder_;
  Descriptor file_;
  std::string ownName_;  // empty where there is nothing to remove
};

// Gives the file at a name of a folder one name more. What bears that name is replaced, in one
// step. Returns false where the system has no further names for the file.
bool LinkOver(const std::string& folder, const std::string& name, const std::string& further);

// Returns when the names in the folder are on the disk. A folder that cannot be read or flushed is
// passed over.
void FlushFolder(const std::string& folder);

}  // namespace velahost
