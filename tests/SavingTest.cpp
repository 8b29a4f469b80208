#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>

#include <cerrno>
#include <csignal>
#include <map>
#include <set>

#include "standalone/Files/SaveFile.h"
#include "tests/HostRun.h"

// Saving that is interrupted, refused or overtaken: the old file or the new one stands there,
// whole, with its permissions, and where the process lived nothing else is left.

namespace {

namespace fs = std::filesystem;

const std::string kOld(300'000, 'o');
const std::string kNew(200'000, 'n');
constexpr std::size_t kChunk = 40'000;

// Calls `meanwhile` before the second chunk.
void Save(
    const std::string& path, const std::string& bytes = kNew,
    const std::function<void()>& meanwhile = [] {},
    const std::optional<std::string>& backupSuffix = {}) {
  const auto write = [&](const velahost::ByteSink& sink) {
    for (std::size_t at = 0; at < bytes.size(); at += kChunk) {
      if (at == kChunk) meanwhile();
      sink(std::string_view(bytes).substr(at, kChunk));
    }
  };
  velahost::SaveFile(path, write, backupSuffix);
}
void SaveWithBackup(const std::string& path) {
  Save(
      path, kNew, [] {}, "~");
}

// How a process ends that saves.
enum Ending { kSaved, kRefused, kCannotPrepare };

void Prepare(bool done) {
  if (!done) _exit(kCannotPrepare);
}

// A process of its own that saves and ends at once.
pid_t Start(const std::function<void()>& save) {
  const pid_t child = fork();
  if (child != 0) return child;
  try {
    save();
    _exit(kSaved);
  } catch (const velahost::SaveError&) {
    _exit(kRefused);
  }
}

int WaitFor(pid_t child) {
  int status = 0;
  return waitpid(child, &status, 0) == child ? status : -1;
}

class Saving : public testing::Test {
 protected:
  Saving() { Restore(); }

  void Restore(mode_t mode = 0640) const {
    fs::remove_all(path_);
    EXPECT_EQ(chmod(folder_.Write("w.xml", kOld).c_str(), mode), 0);
  }
  bool IsNew() const { return folder_.Read("w.xml") == kNew; }
  void ExpectHoldsAlone(const std::string& bytes, unsigned int mode = 0640) const {
    EXPECT_TRUE(folder_.Read("w.xml") == bytes) << "size " << folder_.Read("w.xml").size();
    EXPECT_EQ(static_cast<unsigned int>(fs::symlink_status(path_).permissions()), mode);
    for (const auto& entry : fs::directory_iterator(folder_.At(""))) EXPECT_EQ(entry.path(), path_);
  }

  const Folder folder_;
  const std::string path_ = folder_.At("w.xml");
};

// Has a system call of this process fail from now on: every call of it, or where bits are given,
// those that have all of these in their third argument.
void Refuse(unsigned int call, unsigned int error, unsigned int bits = 0) {
  sock_filter filter[] = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
                          BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 4),
                          BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])),
                          BPF_STMT(BPF_ALU | BPF_AND | BPF_K, bits),
                          BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, bits, 0, 1),
                          BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error),
                          BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
  const sock_fprog program = {std::size(filter), filter};
  Prepare(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
          prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0);
}

// The file system has no files without a name.
void RefuseUnnamed() { Refuse(SYS_openat, EOPNOTSUPP, O_TMPFILE); }

// Saves in a process that is killed after so many steps, each the beginning or the end of a system
// call. Calls for memory are none: how many there are differs from one process to the next. `calls`
// gets a letter for each call that matters and has begun. Returns how it ended.
int SaveAndKill(const std::function<void()>& save, int steps, std::string& calls) {
  static const std::map<std::uint64_t, char> kLetters = {{SYS_write, 'w'},    {SYS_fchmod, 'p'},
                                                         {SYS_fsync, 'f'},    {SYS_linkat, 'l'},
                                                         {SYS_renameat, 'r'}, {SYS_unlinkat, 'u'}};
  static const std::set<std::uint64_t> kForMemory = {
      SYS_brk, SYS_mmap, SYS_munmap, SYS_mprotect, SYS_madvise, SYS_futex, SYS_sched_yield};
  const pid_t child = Start([&] {
    Prepare(ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0 && raise(SIGSTOP) == 0);
    save();
  });
  int status = WaitFor(child);
  ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_EXITKILL | PTRACE_O_TRACESYSGOOD);
  calls.clear();
  bool isStep = true;
  for (int step = 0; WIFSTOPPED(status) && step < steps; step += isStep ? 1 : 0) {
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    status = WaitFor(child);
    __ptrace_syscall_info call = {};
    ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof call, &call);
    if (call.op != PTRACE_SYSCALL_INFO_ENTRY) continue;
    isStep = !kForMemory.contains(call.entry.nr);
    if (kLetters.contains(call.entry.nr)) calls += kLetters.at(call.entry.nr);
  }
  if (!WIFSTOPPED(status)) return status;
  kill(child, SIGKILL);
  return WaitFor(child);
}

class KilledSaving : public Saving {
 protected:
  void ExpectBackup(bool isSaved) const {
    const std::string backup = folder_.Read("w.xml~");
    EXPECT_TRUE(backup == kOld || (!isSaved && backup == "older"));
    fs::remove(folder_.At("w.xml~"));
  }
  // Returns how many files there are besides the saved one.
  int RemoveOthers() const {
    int others = 0;
    for (const auto& entry : fs::directory_iterator(folder_.At(""))) {
      // What is left behind is nobody's to read who may not read the file.
      EXPECT_EQ(entry.status().permissions() & ~fs::perms{0640}, fs::perms::none) << entry.path();
      if (entry.path() == path_) continue;
      fs::remove(entry.path());
      ++others;
    }
    return others;
  }
};

// The bytes and permissions reach the disk before they show, and a backup before what replaces it.
// Between the linking of a name and its renaming, two steps apart, that name is left behind.
TEST_F(KilledSaving, LeavesTheOldFileOrTheNewOneAtEachSystemCall) {
  struct Row {
    std::function<void()> save;
    std::string calls;
    std::optional<int> strays;  // nothing: the file has a name all along
    bool hasBackup = false;
  };
  const Row kRows[] = {{[&] { Save(path_); }, "wwwwwpfllrf", 2},
                       {[&] { SaveWithBackup(path_); }, "wwwwwpfllrufllrf", 4, true},
                       {[&] { RefuseUnnamed(), Save(path_); }, "wwwwwpfrf", std::nullopt}};
  for (const Row& row : kRows) {
    int switches = 0;
    int strays = 0;
    bool wasNew = false;
    std::string calls;
    int status = SIGKILL;
    for (int steps = 1; status == SIGKILL; ++steps) {
      Restore();
      if (row.hasBackup) folder_.Write("w.xml~", "older");
      status = SaveAndKill(row.save, steps, calls);
      if (status == kCannotPrepare << 8) GTEST_SKIP() << "no process can be traced here";
      if (IsNew() != wasNew) ++switches;
      wasNew = IsNew();
      if (row.hasBackup) ExpectBackup(wasNew);
      if (status == SIGKILL) strays += RemoveOthers();
      ExpectHoldsAlone(wasNew ? kNew : kOld);
    }
    EXPECT_EQ(status, kSaved);
    EXPECT_EQ(switches, 1) << "from the old file to the new one at one call";
    EXPECT_EQ(calls, row.calls);
    EXPECT_EQ(strays, row.strays.value_or(strays));
  }
}

void LimitFileSize() {
  const rlimit limit = {kNew.size() - 1, kNew.size() - 1};
  Prepare(std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR && setrlimit(RLIMIT_FSIZE, &limit) == 0);
}

void BeNobody() { Prepare(setgroups(0, nullptr) == 0 && setgid(65534) == 0 && setuid(65534) == 0); }

TEST_F(Saving, MeetsAnError) {
  struct Row {
    const char* what;
    std::function<void()> prepare;
    Ending ending = kRefused;
    mode_t folder = 0755, before = 0640, after = 0640;
  };
  const Row kRows[] = {// Its own writes alone: a sanitizer writes a few bytes to look at memory.
                       {"a full disk", [] { Refuse(SYS_write, ENOSPC, kChunk); }},
                       {"a limit that the last chunk meets", LimitFileSize},
                       {"a failing device", [] { Refuse(SYS_fsync, EIO); }},
                       {"a quota that shows late", [] { Refuse(SYS_close, EDQUOT); }},
                       {"no renaming", [] { Refuse(SYS_renameat, EACCES); }},
                       {"no permissions to give", [] { Refuse(SYS_fchmod, EPERM); }},
                       {"no access lists", [] { Refuse(SYS_getxattr, ENOTSUP); }, kSaved},
                       {"a folder without permission", BeNobody, kRefused, 0555, 0666, 0666},
                       {"a write-protected file", BeNobody, kRefused, 0777, 0444, 0444},
                       {"no links", [] { Refuse(SYS_linkat, EPERM); }},
                       {"no files without a name", RefuseUnnamed, kSaved},
                       // Its group cannot be kept, and another one gets no more than everyone has.
                       {"the file of someone else", BeNobody, kSaved, 0777, 06676, 0666}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    Restore(row.before);
    EXPECT_EQ(chmod(folder_.At("").c_str(), row.folder), 0);
    const int status = WaitFor(Start([&] { row.prepare(), Save(path_); }));
    EXPECT_EQ(chmod(folder_.At("").c_str(), 0755), 0);
    if (status == kCannotPrepare << 8) GTEST_SKIP() << "this and what follows cannot be made here";
    EXPECT_EQ(status, row.ending << 8);
    ExpectHoldsAlone(row.ending == kSaved ? kNew : kOld, row.after);
  }
}

TEST_F(Saving, KeepsABackupOrTheOldFile) {
  const std::function<void()> kLinked = [] {};
  const std::function<void()> kCopied = [] { RefuseUnnamed(), Refuse(SYS_linkat, EPERM); };
  for (const auto& prepare : {kLinked, kCopied}) {
    Restore(0604);
    EXPECT_EQ(WaitFor(Start([&] { prepare(), SaveWithBackup(path_); })), kSaved);
    EXPECT_TRUE(folder_.Read("w.xml~") == kOld);
    EXPECT_EQ(fs::status(folder_.At("w.xml~")).permissions(), fs::perms{0604});
    fs::remove(folder_.At("w.xml~"));
    ExpectHoldsAlone(kNew, 0604);
  }
  Restore();
  fs::create_directory(folder_.At("w.xml~"));
  EXPECT_THROW(SaveWithBackup(path_), velahost::SaveError);
  EXPECT_TRUE(fs::remove(folder_.At("w.xml~"))) << "the folder is empty";
  ExpectHoldsAlone(kOld);
}

TEST_F(Saving, KeepsAttributesAndTheAccessList) {
  // Another user may read and write it.
  const std::string list(
      "\2\0\0\0\1\0\6\0\xff\xff\xff\xff\2\0\6\0\xe8\3\0\0\4\0\4\0\xff\xff\xff\xff"
      "\x10\0\6\0\xff\xff\xff\xff\x20\0\0\0\xff\xff\xff\xff",
      44);
  const std::pair<const char*, std::string> kKept[] = {{"user.origin", std::string(3000, 'x')},
                                                       {"user.empty", ""},
                                                       {"system.posix_acl_access", list}};
  for (const auto& [name, value] : kKept) {
    if (setxattr(path_.c_str(), name, value.data(), value.size(), 0) != 0) GTEST_SKIP() << name;
  }
  Save(path_);
  for (const auto& [name, value] : kKept) {
    std::string found(value.size() + 1, '\0');
    found.resize(std::max<ssize_t>(0, getxattr(path_.c_str(), name, found.data(), found.size())));
    EXPECT_EQ(found, value) << name;
  }
  ExpectHoldsAlone(kNew, 0660);
}

TEST_F(Saving, LetsAnInterruptWait) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    for (const bool fails : {false, true}) {
      Restore();
      const auto interrupt = [&] {
        raise(signal);
        if (fails) throw velahost::SaveError("");
      };
      const int status = WaitFor(Start([&] { Save(path_, kNew, interrupt); }));
      EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
      ExpectHoldsAlone(fails ? kOld : kNew);
    }
  }
}

TEST_F(Saving, FollowsLinks) {
  const Folder links;
  fs::create_directory(links.At("sub"));
  const std::pair<const char*, std::string> kLinks[] = {
      {"a", "sub/b"}, {"sub/b", "../c"}, {"c", path_}, {"d", "new.xml"}, {"e", "e"}, {"f", "no/x"}};
  for (const auto& [link, to] : kLinks) fs::create_symlink(to, links.At(link));
  Save(links.At("a"));
  Save(links.At("d"));
  EXPECT_THROW(Save(links.At("e")), velahost::SaveError);
  EXPECT_THROW(Save(links.At("f")), velahost::SaveError);
  ExpectHoldsAlone(kNew);
  EXPECT_TRUE(links.Read("new.xml") == kNew);
  for (const auto& [link, to] : kLinks) EXPECT_EQ(fs::read_symlink(links.At(link)), to);
}

TEST_F(Saving, OvertakesWhatHappensToTheTargetMeanwhile) {
  const std::function<void()> kRows[] = {
      [&] { fs::rename(folder_.Write("other", kOld), path_); }, [&] { fs::remove(path_); },
      [&] { fs::remove(path_), fs::create_symlink("other", path_); }};
  for (const std::function<void()>& meanwhile : kRows) {
    Restore();
    Save(path_, kNew, meanwhile);
    ExpectHoldsAlone(kNew);
  }
  EXPECT_THROW(Save(path_, kOld, [&] { fs::remove(path_), fs::create_directory(path_); }),
               velahost::SaveError);
  EXPECT_TRUE(fs::remove(path_)) << "the folder is empty";
  EXPECT_TRUE(fs::is_empty(folder_.At("")));
}

TEST_F(Saving, IsWholeWhenTwoSaveAtOnce) {
  const auto saveOften = [&](const std::string& bytes) {
    for (int i = 0; i < 60; ++i) Save(path_, bytes);
  };
  for (const pid_t child : {Start([&] { saveOften(kOld); }), Start([&] { saveOften(kNew); })}) {
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
      const std::string found = folder_.Read("w.xml");
      EXPECT_TRUE(found == kOld || found == kNew) << "size " << found.size();
    }
    EXPECT_EQ(status, kSaved);
  }
  ExpectHoldsAlone(IsNew() ? kNew : kOld);
}

}  // namespace
