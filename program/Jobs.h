#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "program/Failure.h"

namespace applydic {

// How a job ended, and what it wrote.
struct JobResult {
  ExitStatus status = kCannotRun;
  std::optional<int> signal;  // that ended it; its status is kCannotRun
  std::string output;         // on standard output
  std::string aside;          // on standard error
};

// Runs jobs, numbered from 0, each in a process of its own, at most `atOnce` at the same time.
// `work` is called in the process of the job, with what this process has in memory, and returns the
// status of the job; what it throws is an error and makes kCannotRun. `finished` is called in this
// process, once for each job, in the order of the numbers. If it throws, no other job is begun, and
// what it threw passes on after those that run have ended. If this process is ended, so are they;
// files that they are saving will be whole. Throws Failure if no process can be started.
// REQUIRES: atOnce is at least 1; this process has no other children, and no other threads than
// that of a Progress.
void RunJobs(std::size_t count, std::size_t atOnce,
             const std::function<ExitStatus(std::size_t job)>& work,
             const std::function<void(std::size_t job, const JobResult& result)>& finished);

}  // namespace applydic
