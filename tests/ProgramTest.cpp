#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <future>
#include <ostream>
#include <string>
#include <vector>

#include "tests/ProgramRun.h"

// The program from outside: what it answers, what it ends with, and what it leaves on disk.

namespace {

constexpr const char* kWorking =
    "<codeBook>\n<fileDscr ID='F1'/>\n<dataDscr>\n<var name='a'/>\n<var name='s'><varFormat "
    "type='character' formatname='A2'/></var>\n</dataDscr>\n</codeBook>\n";
constexpr const char* kSource =
    "<codeBook><fileDscr><fileTxt><fileCont>File</fileCont></fileTxt></fileDscr><dataDscr>"
    "<var name='A' wgt='wgt'><labl>L</labl></var><var name='S'><labl>S</labl><invalrng>"
    "<item VALUE='abc'/></invalrng><varFormat type='character' formatname='A3'/></var>"
    "<var name='N'><labl>N</labl><labl xml:lang='sv'>Nio</labl><qstn>How <qstnLit>many?</qstnLit>"
    "<ivuInstr>Ask</ivuInstr></qstn></var></dataDscr></codeBook>";

class Program : public ProgramRun {
 protected:
  Program() {
    folder_.Write("w.xml", kWorking);
    folder_.Write("s.xml", kSource);
    std::filesystem::create_hard_link(folder_.At("s.xml"), folder_.At("hard.xml"));
    std::filesystem::create_symlink("s.xml", folder_.At("soft.xml"));
    std::filesystem::create_symlink("w.xml", folder_.At("link.xml"));
    std::filesystem::create_symlink("new.xml", folder_.At("dangling.xml"));
    std::filesystem::create_directory(folder_.At("folder"));
    folder_.Write("++", "");
    std::filesystem::resize_file(folder_.At("++"), std::uintmax_t{5} << 30);
  }
};

TEST_F(Program, RefusesWrongUsageAndWhatItCannotReadOrWrite) {
  const std::size_t files = Files().size();
  const std::pair<std::string, std::string> kRefused[] = {
      {"", "see 'applydic --help'"},
      {"frob", "see 'applydic --help'"},
      {"apply", "see 'applydic apply --help'"},
      {"apply -n w.xml", "Give exactly one of --command and --syntax"},
      {"apply -c x -f y -n w.xml", "Give exactly one of --command and --syntax"},
      {"apply -c x w.xml", "Give exactly one of --output, --in-place and --dry-run"},
      {"apply -c x -n -i w.xml", "Give exactly one of --output, --in-place and --dry-run"},
      {"apply -c x -n -o o w.xml", "Give exactly one of --output, --in-place and --dry-run"},
      {"apply -c x -o '' w.xml", "empty"},
      {"apply -c x -i - <w.xml", "--in-place writes over a file"},
      {"apply -c x -o folder/ - <w.xml", "name a file after --output"},
      {"apply -f - -n - <w.xml", "cannot be both"},
      {"apply -c x -n w.xml - <s.xml", "give it alone"},
      {"apply -c x -o - w.xml s.xml", "give --output a folder"},
      {"apply -c x -n --backup w.xml", "--backup keeps a file that is replaced"},
      {"apply -c x -i --backup=/x w.xml", "--backup takes the end of a file's name"},
      {"apply -c x -n --jobs 0 w.xml", "--jobs takes a number from 1"},
      {"apply -c \"FROM *\" -n - <&-", "standard input: cannot be read"},
      {"diff - - <w.xml", "name a file for the other"},
      {"apply -c x -n --frob w.xml", "--frob"},
      {"apply -c \"FROM *\" --json -n none.xml", "none.xml: cannot be read"},
      {"apply -c \"FROM *\" --json -n 'w.xml#F2'", "has no data file with the ID F2: it has F1"},
      {"apply -f none.txt --json -n w.xml", "Cannot read commands from none.txt"},
      {"apply -f folder -n w.xml", "Cannot read commands from folder"},
      {"apply -c \"FROM *\" --json -o folder w.xml", "Cannot write folder: this is a folder"},
      {"apply -c \"FROM *\" -o none/o.xml w.xml", "make the folder first"},
      {"apply -c \"FROM *\" -o /dev/null w.xml", "this is not a regular file"},
      {"apply -c \"FROM 's.xml' /FILEINFO /VARINFO LEVEL\" --json -o ./folder/../s.xml "
       "w.xml",
       "write to another file"},
      {"apply -c \"FROM 's.xml' /FILEINFO /VARINFO LEVEL\" -o hard.xml w.xml",
       "write to another file"},
      {"apply -c \"FROM 'soft.xml' /FILEINFO /VARINFO LEVEL\" -o s.xml w.xml",
       "write to another file"},
      {"apply -c \"FROM 's.xml' /FILEINFO /VARINFO LEVEL\" -o soft.xml w.xml",
       "write to another file"},
      {"show none.xml", "none.xml: cannot be read"},
      {"show ++", "cannot be read: it has more than 4095 MB"},
      {"show --lang 'e n' s.xml", "--lang takes the code of a language"},
      {"show", "see 'applydic show --help'"}};
  for (const auto& [arguments, message] : kRefused) {
    EXPECT_EQ(Run(arguments), 2) << arguments;
    EXPECT_EQ(out_, "") << arguments;
    EXPECT_TRUE(err_.starts_with("applydic: error: ")) << arguments << err_;
    EXPECT_NE(err_.find(message), std::string::npos) << arguments << err_;
    EXPECT_EQ(err_.find('\n'), err_.size() - 1) << "one line: " << err_;
  }
  EXPECT_EQ(Files().size(), files);
  EXPECT_EQ(folder_.Read("w.xml"), kWorking);
  EXPECT_EQ(Run("--version"), 0);
  EXPECT_EQ(Run("apply --help"), 0);
}

TEST_F(Program, WritesNothingAfterAnError) {
  const std::size_t files = Files().size();
  const char* const kFailing[] = {"FROM /VARINFO", "FROM 'none.xml'",
                                  "FROM 's.xml' /VARINFO VALLABELS=X", "FROM 's.xml' /FRON",
                                  "FROM 's.xml' /SOURCE VARIABLES=zz"};
  for (const std::string command : kFailing) {
    for (const char* to : {" -o o.xml", " -i", " -n"}) {
      EXPECT_EQ(Run("apply --json -c \"" + command + "\"" + to + " w.xml"), 1) << command;
      EXPECT_TRUE(err_.starts_with("applydic: error: ")) << err_;
      const auto outcome = Outcome();
      EXPECT_GE(outcome["diagnostics"].at(0)["level"], 3);
      EXPECT_TRUE(outcome["written"].is_null());
      for (const char* list : {"changed", "added", "file"}) EXPECT_EQ(outcome[list].size(), 0);
    }
  }
  folder_.Write("c.txt", "FROM 's.xml'.\nFROM 'none.xml'.\nFROM 'none2.xml'.");
  EXPECT_EQ(Run("apply -f c.txt -i w.xml"), 1);
  EXPECT_EQ(err_.find("none2"), std::string::npos) << "the first error stops the run";
  EXPECT_EQ(folder_.Read("w.xml"), kWorking);
  EXPECT_EQ(Files().size(), files + 1);
}

TEST_F(Program, SaysWhatToDoAboutMistakes) {
  folder_.Write("bad.xml", "<codeBook>\n<dataDscr><var name='\xC3\xA9'></vr>");
  folder_.Write("t.csv", "a,b\n1,2\n");
  folder_.Write("z.gz", "\x1F\x8B\b");
  const std::pair<std::string, std::string> kMistakes[] = {
      {"apply -n w.xml -c \"FROM 's.xml' /VARINFO VALLABLES\"",
       "\n  FROM 's.xml' /VARINFO VALLABLES\n                        ^\n  Did you mean "
       "VALLABELS?\n"},
      {"apply -n w.xml -c \"FROM 's.xml' /VARINF0\"", "Did you mean VARINFO?"},
      {"apply -n w.xml -c \"FROM 's.xml' /SOURCE VARIABLES=zz\"", "of that name in s.xml.\n"},
      {"apply -n w.xml -c \"FROM * /SOURCE VARIABLES=sz\"", "in w.xml. Did you mean s?"},
      {"apply -n w.xml -c \"FROM * /SOURCE VARIABLES=a, s\"", "Separate names by blanks."},
      {"apply -n w.xml -c \"FROM * /SOURCE VARIABLES=a VARINFO\"", "put a slash before it."},
      {"apply -n w.xml -c \"FROM * /VARINFO\nFROM *\"", "end the one before with a period"},
      {"apply -n w.xml -c \"* Note.\nFROM *\"", "A comment is written /* so */."},
      {"apply -n w.xml -c \"FROM *\n /SOURCE a\"", "stand after VARIABLES=."},
      {"apply -n w.xml -c \"FROM\n 'none.xml'\"", "\n   'none.xml'\n   ^\n"},
      {"apply -n w.xml -c FROM", "put all of it in double quotes"},
      {"apply -n w.xml -f s.xml", "this is a codebook or another XML document"},
      {"apply -n w.xml -c \"FROM 's.xml' PASSWORD 'secret /X\"", "Write a quote inside a string"},
      {"shwo s.xml", "Did you mean 'show'?"},
      {"help shwo", "Did you mean 'show'?"},
      {"help messages no such text", "'applydic help messages' lists them all"},
      {"s.xml", "as in 'applydic show s.xml'"},
      {"show t.csv", "this is no codebook, but a table of values"},
      {"show z.gz", "a file compressed by gzip"},
      {"show bad.xml", "\n  <dataDscr><var name='\xC3\xA9'></vr>\n                            ^\n"},
      {"apply -n w.xml -c \"FROM 'bad.xml'\"",
       "</vr>\n                            ^\n  FROM 'bad.xml'\n"}};
  for (const auto& [arguments, advice] : kMistakes) {
    EXPECT_NE(Run(arguments), 0) << arguments;
    EXPECT_NE(err_.find(advice), std::string::npos) << arguments << "\n" << err_;
    EXPECT_EQ(err_.find("secret"), std::string::npos) << err_;
  }
}

TEST_F(Program, ExplainsItselfAndItsMessages) {
  EXPECT_EQ(Run("help messages applydic: error: none.xml: cannot be read: No such file"), 0);
  EXPECT_TRUE(out_.starts_with("\xE2\x80\xA6: cannot be read: \xE2\x80\xA6\n  What happened"));
  EXPECT_EQ(Run("help messages 's: Labels not applied: some values too long'"), 0);
  EXPECT_EQ(out_.find("Missing values"), std::string::npos) << "one message alone";
  EXPECT_EQ(Run("apply --help"), 0);
  const std::string help = out_;
  EXPECT_EQ(Run("help apply"), 0);
  EXPECT_EQ(out_, help);
  // What the program takes is in what is made of it.
  for (const std::string page : {"man", "bash", "zsh", "fish"}) {
    EXPECT_EQ(Run("help " + page), 0);
    std::erase(out_, '\\');
    for (const std::string name : {"match", "dry-run", "backup", "strict", "color"}) {
      EXPECT_NE(out_.find(name), std::string::npos) << page << " lacks " << name;
    }
  }
}

TEST_F(Program, TellsTheOutcomeAsJson) {
  EXPECT_EQ(Run("apply --json -c \"FROM 's.xml' /NEWVARS /FILEINFO ALL\" -o o.xml w.xml"), 0);
  EXPECT_EQ(Outcome(), nlohmann::json::parse(R"({
    "diagnostics": [{"level": 1, "show": 2,
      "text": "^1: Missing values not applied: some values too long...", "arguments": ["s"],
      "message": "s: Missing values not applied: some values too long...",
      "line": null, "column": null, "advice": ""}],
    "changed": [{"variable": "a", "properties": ["label"],
                 "old": {"label": null}, "new": {"label": "L"}},
                {"variable": "s", "properties": ["label"],
                 "old": {"label": null}, "new": {"label": "S"}}],
    "added": ["N"], "file": ["label", "weight"],
    "fileValues": {"old": {"label": null, "weight": null}, "new": {"label": "File", "weight": "a"}},
    "notPaired": [], "notReached": [], "written": "o.xml", "replaced": false, "backup": null,
    "notKept": []})"));
  EXPECT_EQ(err_, "applydic: warning: s: Missing values not applied: some values too long...\n");
  EXPECT_EQ(folder_.Read("w.xml"), kWorking);
  EXPECT_EQ(Run("apply --json -c \"FROM *\" -n 'w.xml#F1'"), 0);
  EXPECT_TRUE(Outcome()["written"].is_null());
  EXPECT_EQ(Run("apply --json -c \"FROM *\" -i 'w.xml#F1'"), 0);
  EXPECT_EQ(Outcome()["written"], "w.xml");
  EXPECT_EQ(folder_.Read("w.xml"), kWorking) << "nothing changed";
}

TEST_F(Program, WritesAReportOverNoFileOfTheRun) {
  folder_.Write("c.txt", "FROM 's.xml'.");
  for (const std::string file :
       {"w.xml", "link.xml", "s.xml", "hard.xml", "c.txt", "o.xml", "./o.xml"}) {
    const std::size_t files = Files().size();
    EXPECT_EQ(Run("apply -f c.txt -o o.xml --report " + file + " w.xml"), 2) << file;
    EXPECT_NE(err_.find("Cannot write the report to " + file), std::string::npos) << err_;
    EXPECT_EQ(Files().size(), files);
  }
  EXPECT_EQ(Run("apply -f c.txt -n --report none/r.html w.xml"), 2);
  EXPECT_EQ(Run("apply -f c.txt -n --report '' w.xml"), 2);
  EXPECT_EQ(Run("apply -f c.txt -n --report r.html w.xml"), 0);
  EXPECT_TRUE(out_.ends_with("Report written to r.html\n"));
  EXPECT_EQ(folder_.Read("w.xml"), kWorking);
  EXPECT_EQ(folder_.Read("s.xml"), kSource);
}

TEST_F(Program, ReadsCommandsUpToABound) {
  constexpr std::size_t kMost = std::size_t{16} << 20;
  const std::string command = "FROM 's.xml' /VARINFO VARLABEL.";
  folder_.Write("c.txt", command);
  std::filesystem::resize_file(folder_.At("c.txt"), kMost + 1);
  for (const std::string from : {"c.txt", "- <c.txt"}) {
    EXPECT_EQ(Run("apply -n w.xml -f " + from), 2);
    EXPECT_NE(err_.find("more than 16 MB; give the commands in several"), std::string::npos)
        << err_;
  }

  const std::string most = command + std::string(kMost - command.size(), '\n');
  folder_.Write("c.txt", most);
  for (const std::string from : {"c.txt", "- <c.txt"}) {
    EXPECT_EQ(Run("apply -n w.xml -f " + from), 0) << err_;
  }
  ASSERT_EQ(mkfifo(folder_.At("pipe").c_str(), 0600), 0);
  auto writing = std::async(std::launch::async, [&] { folder_.Write("pipe", most); });
  EXPECT_EQ(Run("apply -n w.xml -f pipe"), 0) << err_;
}

TEST_F(Program, RunsSeveralCommandsOnOneWorkingFile) {
  folder_.Write("c.txt",
                "\xEF\xBB\xBF"
                "APPLY DICTIONARY FROM 's.xml' /* no. */\n /VARINFO VARLABEL. /* . */\n"
                ".\nAPP DIC\nFROM 's.xml'\n /SOURCE VARIABLES=N\n /TARGET VARIABLES=n.1 /NEWVARS.\n"
                "FROM 's.xml' /VARINFO X.");
  EXPECT_EQ(Run("apply --json -f - -n w.xml <c.txt"), 1);
  EXPECT_EQ(Outcome()["diagnostics"].back()["line"], 8) << "a place in the whole file";
  EXPECT_EQ(Outcome()["diagnostics"].back()["column"], 23);
  EXPECT_NE(err_.find("\n  FROM 's.xml' /VARINFO X.\n                        ^\n"),
            std::string::npos)
      << err_;
  folder_.Write("c.txt", folder_.Read("c.txt").erase(folder_.Read("c.txt").rfind("FROM")));
  EXPECT_EQ(Run("apply --json -f c.txt -n w.xml"), 0) << err_;
  EXPECT_EQ(Outcome()["added"], nlohmann::json{"n.1"});
  EXPECT_EQ(Outcome()["changed"].size(), 2);
}

TEST_F(Program, KeepsLinksAndPermissions) {
  ASSERT_EQ(chmod(folder_.At("w.xml").c_str(), 0640), 0);
  const std::string arguments = "apply -c \"FROM 's.xml' /VARINFO VARLABEL\" ";
  EXPECT_EQ(Run(arguments + "-i link.xml"), 0) << err_;
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.At("link.xml")));
  EXPECT_NE(folder_.Read("w.xml").find(">L</labl>"), std::string::npos);
  struct stat status = {};
  ASSERT_EQ(stat(folder_.At("w.xml").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640U);
  EXPECT_EQ(Run(arguments + "-o dangling.xml w.xml"), 0) << err_;
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.At("dangling.xml")));
  EXPECT_EQ(folder_.Read("new.xml"), folder_.Read("w.xml"));
  EXPECT_EQ(Run("apply -c \"FROM 'w.xml'\" -o w.xml w.xml"), 0) << "onto WORKING it is allowed";
  for (const std::string& name : Files()) EXPECT_FALSE(name.starts_with(".applydic")) << name;
}

TEST_F(Program, WritesWhereStandardOutputGoes) {
  const std::string command = "apply -c \"FROM 's.xml'\" w.xml ";
  EXPECT_EQ(Run(command + "-o o.xml"), 0);
  EXPECT_EQ(Run(command + "-o /dev/stdout"), 0);
  EXPECT_EQ(out_, folder_.Read("o.xml"));
  EXPECT_NE(err_.find("Variables changed: "), std::string::npos) << err_;
}

TEST_F(Program, ShowsADictionary) {
  EXPECT_EQ(Run("show --json s.xml"), 0);
  const auto json = Outcome();
  EXPECT_EQ(json["file"], nlohmann::json::parse(R"({"label": "File", "documents": [], "weight": "A",
    "attributes": {}, "mrsets": [], "varsets": []})"));
  EXPECT_EQ(json["variables"][1], nlohmann::json::parse(R"({"name": "S", "type": 3, "label": "S",
    "valueLabels": [], "missing": {"count": 1, "values": ["abc"]},
    "print": {"type": "A", "width": 3, "decimals": 0},
    "write": {"type": "A", "width": 3, "decimals": 0}, "columnWidth": 0, "level": null,
    "role": "input", "alignment": "left", "attributes": {}, "documentation": {}})"));
  EXPECT_EQ(json["variables"][2], nlohmann::json::parse(R"({"name": "N", "type": 0, "label": "N",
    "valueLabels": [], "missing": {"count": 0, "values": []}, "print": null, "write": null,
    "columnWidth": 0, "level": null, "role": "input", "alignment": "right", "attributes": {},
    "documentation": {"qstn": ["How many? Ask"]}})"));
  EXPECT_EQ(Run("show --lang sv s.xml | grep Nio"), 0) << err_;
  EXPECT_EQ(Run("apply -c \"FROM 's.xml' /NEWVARS\" --lang SV -o o.xml w.xml"), 0) << err_;
  EXPECT_NE(folder_.Read("o.xml").find("xml:lang=\"SV\">Nio<"), std::string::npos);
  folder_.Write("f.xml", "<codeBook><fileDscr ID='F1'/><fileDscr/></codeBook>");
  EXPECT_EQ(Run("show f.xml"), 0);
  EXPECT_EQ(out_, "File\n  data file       F1 of F1, (no ID)\n  variables       0\n");
  EXPECT_EQ(Run("show s.xml"), 0);
  EXPECT_EQ(
      out_,
      "File\n  label           File\n  weight          A\n  variables       3\n\n"
      "A  (number)\n  label           L\n\n"
      "S  (string of 3)\n  label           S\n  missing values  'abc'\n  format          A3\n\n"
      "N  (number)\n  label           N\n  question        How many? Ask\n");
  EXPECT_EQ(Run("show s.xml >/dev/full 2>/dev/null; exit $?; true"), 2);
  EXPECT_EQ(Run("apply s.xml -c 'FROM *' -o o.xml >/dev/full 2>e; exit $?; true"), 2);
  EXPECT_EQ(folder_.Read("e"),
            "applydic: error: Cannot write to standard output: No space left on device. o.xml is "
            "written.\n");
  EXPECT_EQ(folder_.Read("o.xml"), folder_.Read("s.xml"));
}

}  // namespace
