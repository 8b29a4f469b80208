#include "program/Jobs.h"

namespace applydic {

// There are no processes here: one job after the other is run in this one, and writes where this
// one does.
void RunJobs(std::size_t count, std::size_t /*atOnce*/,
             const std::function<ExitStatus(std::size_t job)>& work,
             const std::function<void(std::size_t job, const JobResult& result)>& finished) {
  for (std::size_t job = 0; job < count; ++job) {
    JobResult result;
    result.status = ReportFailures([&] { return work(job); });
    finished(job, result);
  }
}

}  // namespace applydic
