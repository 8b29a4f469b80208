#include "program/Destinations.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "program/Failure.h"
#include "program/Output.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Files/SaveFile.h"

namespace applydic {
namespace {

bool IsFolder(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string PathInFolder(const std::string& folder, const std::string& path) {
  const std::string name = path.substr(path.rfind('/') + 1);
  return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

// The path from the root, without links; the path itself if nothing stands there.
std::string RealPath(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                         &std::free);
  return real ? real.get() : path;
}

// What saving an outcome writes to. Nothing where that fails: the run will say why.
std::vector<std::string> PathsOf(const Destination& destination) {
  try {
    return velahost::PathsWritten(*destination.path, destination.backupSuffix);
  } catch (const velahost::SaveError&) {
    return {};
  }
}

void CheckFolder(const std::string& output) {
  if (IsFolder(output)) return;
  throw Failure("Cannot write several codebooks to " + output +
                ": it is no folder; make the folder first.");
}

}  // namespace

Destination DestinationOf(const ApplyOptions& options, const std::string& workingPath) {
  Destination destination;
  destination.backupSuffix = options.backupSuffix;
  destination.isShared = options.working.size() > 1;
  if (options.inPlace) {
    destination.path = workingPath;
  } else if (options.output == "-") {
    destination.path = options.output;
    destination.isStandardOutput = true;
  } else if (options.output && (destination.isShared || options.output->ends_with('/'))) {
    destination.path = PathInFolder(*options.output, workingPath);
  } else if (options.output) {
    destination.path = options.output;
    destination.isStandardOutput = IsStandardOutput(*options.output);
  }
  return destination;
}

void CheckDestinations(const ApplyOptions& options) {
  if (options.dryRun) return;
  if (options.output) CheckFolder(*options.output);
  std::map<std::string, std::string> readFrom;  // the working files, by where they stand
  for (const std::string& working : options.working) {
    readFrom.emplace(RealPath(velahost::PathIn(working)), working);
  }
  std::map<std::string, std::string> writtenBy;
  for (const std::string& working : options.working) {
    const std::string path = velahost::PathIn(working);
    for (const std::string& to : PathsOf(DestinationOf(options, path))) {
      const auto [other, isFirst] = writtenBy.emplace(to, working);
      if (!isFirst) {
        throw Failure(
            fmt::format("{} and {} would both be written to {}: nothing is done; apply to "
                        "them one by one, or write to different folders.",
                        other->second, working, to));
      }
      const auto read = readFrom.find(to);
      if (read != readFrom.end() && to != RealPath(path)) {
        throw Failure(
            fmt::format("{} would be written over {}, another codebook to work on: nothing "
                        "is done; write to another folder.",
                        working, read->second));
      }
    }
  }
}

}  // namespace applydic
