#include <unistd.h>

#include <chrono>
#include <csignal>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "program/Jobs.h"
#include "tests/ProgramRun.h"

// Several codebooks in one call, codebooks from and to pipes, backups, and a check without writing.

namespace {

using namespace std::chrono_literals;

TEST(Jobs, KeepEachOutputWholeAndInOrderWhateverHappens) {
  const auto work = [](std::size_t job) -> applydic::ExitStatus {
    const std::string text = "job " + std::to_string(job);
    for (const char c : text) std::ignore = write(STDOUT_FILENO, &c, 1);
    if (job == 0) std::this_thread::sleep_for(100ms);
    if (job == 1) raise(SIGKILL);
    if (job == 2) throw std::runtime_error("broken");
    return applydic::kErrorReported;
  };
  std::size_t turn = 0;
  applydic::RunJobs(5, 3, work, [&](std::size_t job, const applydic::JobResult& result) {
    EXPECT_EQ(job, turn++);
    EXPECT_EQ(result.output, "job " + std::to_string(job));
    EXPECT_EQ(result.signal.value_or(0), job == 1 ? SIGKILL : 0);
    EXPECT_EQ(result.status,
              job == 1 || job == 2 ? applydic::kCannotRun : applydic::kErrorReported);
    EXPECT_EQ(result.aside, job == 2 ? "applydic: error: broken\n" : "");
  });
  EXPECT_EQ(turn, 5U);
  EXPECT_THROW(applydic::RunJobs(3, 1, work, [](auto&&...) { throw std::runtime_error("full"); }),
               std::runtime_error);
}

class ManyFiles : public ProgramRun {
 protected:
  ManyFiles() {
    folder_.Write("s.xml", Codebook("<labl>L</labl>"));
    // The first takes longer than the others.
    folder_.Write("1.xml", Codebook("", Repeated("<!-- x -->\n", 500'000)));
    for (const char* name : {"2.xml", "3.xml"}) folder_.Write(name, Codebook(""));
    folder_.Write("junk.xml", "no codebook");
    for (const char* name : {"to", "other"}) std::filesystem::create_directory(folder_.At(name));
    std::filesystem::copy(folder_.At("2.xml"), folder_.At("other/2.xml"));
    std::filesystem::create_symlink("../2.xml", folder_.At("to/link.xml"));
    folder_.Write("link.xml", Codebook(""));
  }
  static std::string Codebook(const std::string& label, const std::string& comment = "") {
    return "<codeBook><dataDscr>" + comment + "<var name='a'>" + label +
           "</var></dataDscr></codeBook>";
  }
  bool IsLabelled(const std::string& name) const {
    return folder_.Read(name).find(">L</labl>") != std::string::npos;
  }

  const std::string command_ = "apply -c \"FROM 's.xml'\" ";
};

TEST_F(ManyFiles, AreAppliedToOneByOneAndTold) {
  const std::string told =
      "1.xml: 1 variable changed; written to to/1.xml\n"
      "junk.xml: failed: this is no codebook, but a file of plain text: give a DDI Codebook "
      "document (XML)\n"
      "2.xml: 1 variable changed; written to to/2.xml\n"
      "none.xml: failed: cannot be read: No such file or directory\n"
      "4 files: 2 done, 2 failed\n";
  for (const std::string jobs : {"", "-j 4 "}) {
    std::filesystem::remove(folder_.At("to/1.xml"));
    std::filesystem::remove(folder_.At("to/2.xml"));
    EXPECT_EQ(Run(command_ + jobs + "-o to/ 1.xml junk.xml 2.xml none.xml"), 2);
    EXPECT_EQ(out_, told);
    EXPECT_EQ(err_,
              "applydic: error: junk.xml: this is no codebook, but a file of plain text: give a "
              "DDI Codebook document (XML)\n"
              "applydic: error: none.xml: cannot be read: No such file or directory\n");
    EXPECT_TRUE(IsLabelled("to/1.xml") && IsLabelled("to/2.xml"));
  }
  EXPECT_EQ(Run("apply -c \"FROM 'none.xml'\" -i 2.xml 3.xml"), 1);
  EXPECT_EQ(Run(command_ + "-i --backup=.old 2.xml s.xml 3.xml"), 2);
  EXPECT_NE(out_.find("s.xml: failed: Cannot write s.xml: the dictionary was read"),
            std::string::npos)
      << "not though it is a working file too: " << out_;
  EXPECT_TRUE(IsLabelled("2.xml") && IsLabelled("3.xml") && !IsLabelled("3.xml.old"));
}

TEST_F(ManyFiles, AreLinesOfJson) {
  EXPECT_EQ(Run(command_ + "--json -j 2 -n 2.xml junk.xml"), 2);
  const std::size_t end = out_.find('\n');
  const auto first = nlohmann::json::parse(out_.substr(0, end));
  const auto second = nlohmann::json::parse(out_.substr(end));
  EXPECT_EQ(Run(command_ + "--json -n 2.xml"), 0);
  EXPECT_EQ(
      first,
      (nlohmann::json{
          {"working", "2.xml"}, {"status", 0}, {"failure", nullptr}, {"outcome", Outcome()}}));
  EXPECT_EQ(second["failure"],
            "junk.xml: this is no codebook, but a file of plain text: give a DDI Codebook document "
            "(XML)");
  EXPECT_TRUE(second["outcome"].is_null());
}

TEST_F(ManyFiles, AreRefusedWhereOneWouldBeLost) {
  const std::vector<std::string> files = Files();
  for (const char* arguments :
       {"-o to/ 2.xml other/2.xml", "-i 2.xml ./2.xml", "-i 2.xml to/link.xml",
        "-o to link.xml 2.xml", "-i --backup=.xml 2 2.xml", "-o none/ 2.xml 3.xml",
        "-o 3.xml 2.xml link.xml"}) {
    if (std::string(arguments).find(" 2 ") != std::string::npos) folder_.Write("2", Codebook(""));
    EXPECT_EQ(Run(command_ + arguments), 2) << arguments;
    EXPECT_EQ(out_, "") << arguments;
    std::filesystem::remove(folder_.At("2"));
    EXPECT_EQ(Files(), files) << arguments;
    EXPECT_FALSE(IsLabelled("2.xml") || IsLabelled("3.xml")) << arguments;
  }
}

TEST_F(ManyFiles, ComeFromAndGoToPipes) {
  EXPECT_EQ(Run(command_ + "-o 4.xml 2.xml"), 0);
  EXPECT_EQ(Run(command_ + "-o - -", "cat 2.xml |"), 0);
  EXPECT_EQ(out_, folder_.Read("4.xml"));
  EXPECT_NE(err_.find("Written to standard output\n"), std::string::npos) << err_;
  EXPECT_EQ(Run(command_ + "-o - '-#F2' <2.xml"), 2);
  EXPECT_NE(err_.find("standard input: has no data file with the ID F2"), std::string::npos)
      << err_;
  EXPECT_EQ(Run("show - <4.xml"), 0);
  EXPECT_NE(out_.find("label           L"), std::string::npos) << out_;
  EXPECT_EQ(Run("diff 4.xml - <2.xml"), 1);
  EXPECT_EQ(Run("diff - 4.xml <4.xml"), 0);
}

TEST_F(ManyFiles, KeepABackupAndSaySo) {
  const std::string old = folder_.Read("2.xml");
  EXPECT_EQ(Run(command_ + "--json -i --backup 2.xml"), 0) << err_;
  EXPECT_EQ(Outcome()["replaced"], true);
  EXPECT_EQ(Outcome()["backup"], "./2.xml~");
  EXPECT_EQ(folder_.Read("2.xml~"), old);
  EXPECT_EQ(Run(command_ + "-o 2.xml 3.xml"), 0) << err_;
  EXPECT_NE(out_.find("Written over 2.xml\n"), std::string::npos) << out_;
  folder_.Write("s", old);
  EXPECT_EQ(Run(command_ + "-i --backup=.xml s"), 2) << "the backup would replace the source";
  EXPECT_NE(err_.find("s.xml: the dictionary was read from this file"), std::string::npos) << err_;
  EXPECT_EQ(folder_.Read("s"), old);
}

TEST_F(ManyFiles, AreCheckedWithoutWriting) {
  folder_.Write("c.txt", "FROM 's.xml' /FRON.\n\nFROM 'none.xml'.\n  FROM 's.xml' /SOURCE VAR=q.");
  const std::vector<std::string> files = Files();
  const std::string problems =
      "c.txt:1:15: error: Subcommand FRON not known (line 1, column 15). Expect FROM, SOURCE, "
      "TARGET, NEWVARS, FILEINFO or VARINFO...\n"
      "c.txt:1:15: note: Did you mean FROM?\n"
      "c.txt:3:6: error: none.xml: cannot be read: No such file or directory\n"
      "c.txt:4:28: error: Unknown variable q in SOURCE (line 4, column 28)...\n"
      "c.txt:4:28: note: There is none of that name in s.xml. Did you mean a?\n";
  EXPECT_EQ(Run("check -f c.txt 2.xml"), 1);
  EXPECT_EQ(out_, problems) << "of all commands";
  EXPECT_EQ(Run("check -j 2 -f c.txt none.xml 2.xml"), 2);
  EXPECT_TRUE(out_.starts_with("none.xml: error: cannot be read: No such file or directory\n"));
  EXPECT_NE(out_.find("(line 4, column 28)... [2.xml]\n"), std::string::npos) << out_;
  EXPECT_EQ(Run("check --json -f c.txt 2.xml"), 1);
  EXPECT_EQ(Outcome()["errors"], 3);
  EXPECT_EQ(Outcome()["problems"][2]["column"], 28);

  folder_.Write("s.xml", Codebook("<labl>L</labl><catgry><labl>none</labl></catgry>"));
  const std::string warned = "check -c \"FROM 's.xml'\" 2.xml";
  EXPECT_EQ(Run(warned), 0);
  EXPECT_TRUE(out_.starts_with("<command>:1:1: warning: s.xml: ")) << out_;
  EXPECT_EQ(Run(warned + " --strict"), 1);
  EXPECT_EQ(Run("check --strict -c 'FROM *' 2.xml"), 0);
  EXPECT_EQ(out_, "");
  EXPECT_EQ(Files(), files);
  EXPECT_FALSE(IsLabelled("2.xml"));
}

}  // namespace
