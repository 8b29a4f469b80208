#pragma once

#include <string>

#include "host/Files.h"

struct UserCaseFileSpec::Impl {
  std::string file;  // as OpenCodebook takes it; empty when no file is named
  bool workingFile = false;
  std::string error;  // why the last Init failed
};
