#include "tests/cases/CaseFile.h"

#include <fstream>
#include <map>
#include <stdexcept>
#include <utility>

namespace cases {
namespace {

const std::map<std::string, Lines Case::*> kSections = {
    {"source", &Case::source}, {"working", &Case::working}, {"command", &Case::command}};

std::string Trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(' ');
  if (begin == std::string::npos) return "";
  return text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

class Reader {
 public:
  explicit Reader(std::string path) : path_(std::move(path)) {}

  std::vector<Case> Read() {
    std::ifstream input(path_);
    std::string text;
    while (std::getline(input, text)) {
      ++line_;
      if (!Trimmed(text).empty() && !text.starts_with("##")) TakeLine(text);
    }
    if (lines_ == nullptr || lines_ != &Current().outcome) Fail("a case without an outcome");
    return std::move(cases_);
  }

 private:
  [[noreturn]] void Fail(const std::string& what) const {
    throw std::runtime_error(path_ + ":" + std::to_string(line_) + ": " + what);
  }

  void TakeLine(const std::string& text) {
    if (text.starts_with("# ")) return TakeTitle(text);
    const bool inOutcome = lines_ == &Current().outcome;
    if (text == "----" && !cases_.empty() && !inOutcome) {
      lines_ = &Current().outcome;
    } else if (inOutcome || text[0] == ' ') {
      if (lines_ == nullptr) Fail("a line that belongs to no section");
      AddItems(Trimmed(text));
    } else {
      TakeSection(text);
    }
  }

  void TakeTitle(const std::string& text) {
    if (!cases_.empty() && lines_ != &Current().outcome) Fail("a case without an outcome");
    cases_.push_back(given_);
    Current().file = path_;
    Current().line = line_;
    Current().title = text.substr(2);
    lines_ = nullptr;
  }

  void TakeSection(const std::string& text) {
    const std::string name = text.substr(0, text.find(' '));
    if (name == "pending") {
      Current().pending = true;
      return;
    }
    const auto section = kSections.find(name);
    if (section == kSections.end()) Fail("no section: " + name);
    lines_ = &(Current().*section->second);
    lines_->clear();
    const std::string rest = Trimmed(text.substr(name.size()));
    if (!rest.empty()) AddItems(rest);
  }

  void AddItems(const std::string& text) {
    const std::size_t end = lines_ == &Current().command ? std::string::npos : text.find("; ");
    lines_->push_back(text.substr(0, end));
    if (end != std::string::npos) AddItems(text.substr(end + 2));
  }

  Case& Current() { return cases_.empty() ? given_ : cases_.back(); }

  std::string path_;
  int line_ = 0;
  Case given_;
  std::vector<Case> cases_;
  Lines* lines_ = nullptr;  // what the next line goes to
};

}  // namespace

std::vector<Case> ReadCaseFile(const std::string& path) { return Reader(path).Read(); }

}  // namespace cases
