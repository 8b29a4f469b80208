#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

#include "program/DictionaryJson.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Host/Calls.h"
#include "standalone/Host/Host.h"
#include "standalone/Syntax/Tokenizer.h"

// What the C++ tests share: a folder of files, a host with a working file, and a look at the calls.

extern "C" void applydic_();

// The text with the first place where `what` stands replaced.
inline std::string Replaced(std::string text, std::string_view what, std::string_view by) {
  const std::size_t at = text.find(what);
  return at == std::string::npos ? text : text.replace(at, what.size(), by);
}

inline std::string Repeated(const std::string& text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

// The path of the program that is tested: the one that APPLYDIC_PROGRAM of the environment names,
// so that another build of it can be put to the same tests, or the given one.
inline std::string ProgramUnderTest(const char* built) {
  const char* const named = std::getenv("APPLYDIC_PROGRAM");
  return named == nullptr ? built : named;
}

// A folder of its own that goes with this object.
class Folder {
 public:
  Folder() {
    std::string name = (std::filesystem::temp_directory_path() / "applydic-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder " + name);
    path_ = name;
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() { std::filesystem::remove_all(path_); }

  std::string At(const std::string& name) const { return (path_ / name).string(); }
  // Writes a file and returns its path.
  std::string Write(const std::string& name, std::string_view text) const {
    std::ofstream(At(name), std::ios::binary) << text;
    return At(name);
  }
  std::string Read(const std::string& name) const {
    std::ifstream file(At(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  std::filesystem::path path_;
};

// What documents the variables is not looked at.
inline std::vector<velahost::DocumentationText> NoDocumentation(std::size_t /*column*/) {
  return {};
}

// The dictionary as `show --json` has it.
inline std::string DictionaryJsonText(
    const velahost::Dictionary& dictionary,
    const velahost::DocumentationLookup& documentation = NoDocumentation) {
  std::string text;
  applydic::WriteDictionaryJson(dictionary, documentation,
                                [&](std::string_view piece) { text += piece; });
  return text;
}
inline nlohmann::ordered_json DictionaryJson(const velahost::Dictionary& dictionary) {
  return nlohmann::ordered_json::parse(DictionaryJsonText(dictionary));
}
inline nlohmann::ordered_json DictionaryJson(const velahost::CodebookFile& file) {
  return nlohmann::ordered_json::parse(
      DictionaryJsonText(file.dictionary, velahost::DocumentationIn(file)));
}
// The same with the sets by name: a document has them in an order of its own.
inline nlohmann::ordered_json WithSortedSets(nlohmann::ordered_json json) {
  for (const char* kind : {"mrsets", "varsets"}) {
    auto& sets = json["file"][kind];
    std::stable_sort(sets.begin(), sets.end(),
                     [](const auto& a, const auto& b) { return a["name"] < b["name"]; });
  }
  return json;
}

// A host with a working file.
struct Hosted {
  explicit Hosted(const std::string& working) { host.SetWorking(velahost::OpenCodebook(working)); }
  void Run(const std::string& command) {
    host.SetCommand(velahost::SplitCommands(command).front());
    applydic_();
  }
  nlohmann::ordered_json Json() const { return DictionaryJson(host.WorkingDictionary()); }
  // The codebook as it would be saved.
  std::string Saved() const {
    return velahost::WriteCodebook(host.WorkingFile(), host.WorkingDictionary());
  }
  VELA_Variable& Variable(const char* name) const {
    return host.Working().GetVariable(host.Working().FindVarIndex(name, 0));
  }

  velahost::Host host;
};

// While it lives, the calls that arrive at the host are shown to two functions.
class Watch {
 public:
  using Look = std::function<void(const std::string&)>;
  explicit Watch(
      Look called, Look released = [](const std::string&) {}) {
    called_ = std::move(called);
    released_ = std::move(released);
    velahost::callObserver = [](const char* operation) { called_(operation); };
    velahost::releaseObserver = [](const char* operation) noexcept { released_(operation); };
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch() {
    velahost::callObserver = nullptr;
    velahost::releaseObserver = nullptr;
  }

 private:
  static inline Look called_;
  static inline Look released_;
};
