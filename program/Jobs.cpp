#include "program/Jobs.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <map>
#include <utility>

#include "program/Progress.h"
#include "standalone/Files/Descriptor.h"

namespace applydic {
namespace {

using velahost::Descriptor;

[[noreturn]] void FailToStart() {
  throw Failure(std::string("Cannot start a process: ") + std::strerror(errno) +
                "; try with fewer --jobs.");
}

// A file in memory.
Descriptor MakeBuffer() {
  Descriptor buffer(memfd_create("applydic", MFD_CLOEXEC));
  if (!buffer.IsOpen()) FailToStart();
  return buffer;
}

std::string ContentOf(const Descriptor& buffer) {
  std::string text;
  std::array<char, 1 << 16> piece;
  off_t at = 0;
  for (;;) {
    const ssize_t length = pread(buffer.Number(), piece.data(), piece.size(), at);
    if (length <= 0) return text;
    text.append(piece.data(), static_cast<std::size_t>(length));
    at += length;
  }
}

class Jobs {
 public:
  Jobs() = default;
  Jobs(const Jobs&) = delete;
  Jobs& operator=(const Jobs&) = delete;
  // Waits for those that run.
  ~Jobs() {
    while (!running_.empty()) WaitForOne();
  }

  std::size_t Running() const { return running_.size(); }

  // Returns false if the system has no room for another process now.
  bool Start(std::size_t job, const std::function<ExitStatus(std::size_t job)>& work) {
    Process started{job, MakeBuffer(), MakeBuffer()};
    const pid_t parent = getpid();
    // In a child the thread that paints is gone; it must not hold its lock then.
    const Progress::Pause pause;
    const pid_t process = fork();
    if (process == 0) RunAndEnd(parent, started, work);
    if (process < 0) return false;
    running_.emplace(process, std::move(started));
    return true;
  }

  // Waits until a job has ended. REQUIRES: one runs.
  std::pair<std::size_t, JobResult> WaitForOne() {
    int status = 0;
    pid_t process = -1;
    do {
      process = waitpid(-1, &status, 0);
    } while (process < 0 && errno == EINTR);
    auto ended = running_.extract(process);
    const Process& job = ended.mapped();
    JobResult result;
    if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
    if (WIFEXITED(status)) result.status = static_cast<ExitStatus>(WEXITSTATUS(status));
    result.output = ContentOf(job.output);
    result.aside = ContentOf(job.aside);
    return {job.number, std::move(result)};
  }

 private:
  struct Process {
    std::size_t number;
    Descriptor output;
    Descriptor aside;
  };

  [[noreturn]] static void RunAndEnd(pid_t parent, const Process& job,
                                     const std::function<ExitStatus(std::size_t job)>& work) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const bool isReady = getppid() == parent && dup2(job.output.Number(), STDOUT_FILENO) >= 0 &&
                         dup2(job.aside.Number(), STDERR_FILENO) >= 0;
    if (!isReady) std::_Exit(kCannotRun);
    std::_Exit(ReportFailures([&] { return work(job.number); }));
  }

  std::map<pid_t, Process> running_;
};

}  // namespace

void RunJobs(std::size_t count, std::size_t atOnce,
             const std::function<ExitStatus(std::size_t job)>& work,
             const std::function<void(std::size_t job, const JobResult& result)>& finished) {
  Jobs jobs;
  std::map<std::size_t, JobResult> waiting;  // for their turn
  std::size_t next = 0;
  for (std::size_t turn = 0; turn < count;) {
    while (next < count && jobs.Running() < atOnce && jobs.Start(next, work)) ++next;
    if (jobs.Running() == 0) FailToStart();
    waiting.insert(jobs.WaitForOne());
    for (; waiting.contains(turn); ++turn) finished(turn, waiting.extract(turn).mapped());
  }
}

}  // namespace applydic
