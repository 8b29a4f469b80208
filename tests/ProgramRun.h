#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/HostRun.h"

// Runs the program in a folder of its own.
class ProgramRun : public testing::Test {
 protected:
  // Its arguments as the shell takes them. What stands before it may be variables or a pipe.
  int Run(const std::string& arguments, const std::string& before = "") {
    const std::string command = "cd '" + folder_.At("") + "' && " + before + " '" +
                                ProgramUnderTest(APPLYDIC_PROGRAM) + "' " + arguments +
                                " >out 2>err";
    const int status = std::system(command.c_str());
    out_ = folder_.Read("out");
    err_ = folder_.Read("err");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  nlohmann::json Outcome() const { return nlohmann::json::parse(out_); }
  // The names in the folder, in order, without what the program printed.
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.At(""))) {
      const std::string name = entry.path().filename();
      if (name != "out" && name != "err") names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  const Folder folder_;
  std::string out_, err_;
};
