#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <ostream>
#include <string>

#include "tests/HostRun.h"

// The habits of those who make codebooks, by the examples: what is saved is the document in
// archives/, byte for byte, and to apply the dictionary once more changes nothing.

namespace {

struct Habit {
  const char* name;
  const char* id;  // of the data file, with its "#"
};
void PrintTo(const Habit& habit, std::ostream* out) { *out << habit.name; }

std::string BytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string Applied(const std::string& working, const std::string& source) {
  Hosted hosted(working);
  hosted.Run("FROM '" + source + "' /FILEINFO ALL /NEWVARS");
  for (const auto& diagnostic : hosted.host.diagnostics.All()) ADD_FAILURE() << diagnostic.shown;
  return hosted.Saved();
}

class Archives : public testing::TestWithParam<Habit> {};

TEST_P(Archives, FindTheirHabitsInWhatIsSaved) {
  const auto& [name, id] = GetParam();
  const std::string example = std::string(EXAMPLES_FOLDER "/archives/") + name;
  const std::string source = example + "_2025.xml" + id;
  const std::string saved = Applied(example + "_2026.xml" + id, source);
  EXPECT_EQ(saved, BytesOf(std::string(TESTS_FOLDER "/archives/") + name + ".xml"));
  const Folder folder;
  EXPECT_EQ(Applied(folder.Write("saved.xml", saved) + id, source), saved);
}

constexpr Habit kHabits[] = {
    {"dataverse", ""}, {"nesstar", "#F2"}, {"bilingual", ""}, {"codes", ""}, {"windows_1252", ""}};
INSTANTIATE_TEST_SUITE_P(All, Archives, testing::ValuesIn(kHabits),
                         [](const auto& param) { return std::string(param.param.name); });

}  // namespace
