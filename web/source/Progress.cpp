#include "program/Progress.h"

#include <utility>

// A page or a worker shows what the program is at: it is told the name of the innermost stage, and
// an empty one when there is none.
extern "C" void TellStage(const char* name);

namespace applydic {
namespace {

Progress* current = nullptr;

}  // namespace

Progress::Progress() { current = this; }

Progress::~Progress() { current = nullptr; }

Progress::Stage::Stage(std::string what, Count count, std::size_t total)
    : what_(std::move(what)), count_(count), total_(total) {
  if (current == nullptr) return;
  outer_ = std::exchange(current->stage_, this);
  TellStage(what_.c_str());
}

Progress::Stage::~Stage() {
  if (current == nullptr) return;
  current->stage_ = outer_;
  TellStage(outer_ == nullptr ? "" : outer_->what_.c_str());
}

Progress::Pause::Pause() = default;

}  // namespace applydic
