#include "standalone/Codebook/Codebook.h"

namespace velahost {

std::size_t LineCounter::LineOf(std::size_t position) {
  // A line ends with a line feed, with a carriage return, or with both.
  for (; counted_ < position; ++counted_) {
    const bool beforeLineFeed = counted_ + 1 < text_.size() && text_[counted_ + 1] == '\n';
    if (text_[counted_] == '\n' || (text_[counted_] == '\r' && !beforeLineFeed)) ++line_;
  }
  return line_;
}

std::vector<std::string> Codebook::MemberNames(const Group& group) const {
  std::vector<std::string> names;
  names.reserve(group.members.size());
  for (const int member : group.members) {
    names.push_back(variables[static_cast<std::size_t>(member)].name);
  }
  return names;
}

}  // namespace velahost
