#pragma once

#include <velawapd/Data.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

// The state of this host while commands run.
struct Host {
  std::map<std::string, std::unique_ptr<VELA_DataSource>> files;  // that FROM may name
  std::unique_ptr<VELA_DataSource> working;
  std::vector<std::unique_ptr<VELA_DataSource>> before;  // working files that were replaced
  std::string command;
  bool hasError = false;  // since the command began
};
Host& TheHost();

// Runs one command on the working file; false after an error.
bool RunCommand(const std::string& command);
