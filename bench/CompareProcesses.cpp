#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

// compare_processes ROUNDS NAME COMMAND [NAME COMMAND]... runs each shell command once a round, all
// of them in turn, and prints for each a line of its name and the medians over the rounds: wall
// time and processor time in seconds, peak memory in KB. A command that fails ends it with 1.

namespace {

struct Usage {
  double wall;
  double processor;
  double memory;
};

struct Contestant {
  std::string name;
  std::string command;
  std::vector<Usage> runs;
};

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

// Runs the command with its standard output thrown away; false if it fails.
bool Run(Contestant& contestant) {
  using Clock = std::chrono::steady_clock;
  const std::string command = "exec " + contestant.command;
  const Clock::time_point begin = Clock::now();
  const pid_t child = fork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
    _exit(127);
  }
  int status = 0;
  rusage used = {};
  if (child < 0 || wait4(child, &status, 0, &used) != child) return false;
  const std::chrono::duration<double> wall = Clock::now() - begin;
  contestant.runs.push_back({wall.count(), Seconds(used.ru_utime) + Seconds(used.ru_stime),
                             static_cast<double>(used.ru_maxrss)});
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

double Median(const std::vector<Usage>& runs, double Usage::*field) {
  std::vector<double> values;
  values.reserve(runs.size());
  for (const Usage& run : runs) values.push_back(run.*field);
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc >= 4 && argc % 2 == 0 ? std::atoi(argv[1]) : 0;
  if (rounds <= 0) {
    std::fputs("Usage: compare_processes ROUNDS NAME COMMAND [NAME COMMAND]...\n", stderr);
    return 2;
  }
  std::vector<Contestant> contestants;
  for (int i = 2; i < argc; i += 2) contestants.push_back({argv[i], argv[i + 1], {}});
  for (int round = 0; round < rounds; ++round) {
    for (Contestant& contestant : contestants) {
      if (Run(contestant)) continue;
      std::fprintf(stderr, "compare_processes: failed: %s\n", contestant.command.c_str());
      return 1;
    }
  }
  for (const Contestant& contestant : contestants) {
    std::printf("%s %.4f %.4f %.0f\n", contestant.name.c_str(),
                Median(contestant.runs, &Usage::wall), Median(contestant.runs, &Usage::processor),
                Median(contestant.runs, &Usage::memory));
  }
  return 0;
}
