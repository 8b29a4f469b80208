#include "standalone/Xml/Edits.h"

#include <algorithm>
#include <tuple>

namespace velahost {

void Edits::Replace(std::size_t begin, std::size_t end, std::string_view utf8) {
  if (encoding_.IsUtf8()) return ReplaceBytes(begin, end, utf8);
  ReplaceBytes(begin, end, encoding_.Encode(std::string(utf8)));
}

void Edits::ReplaceBytes(std::size_t begin, std::size_t end, std::string_view bytes) {
  edits_.push_back({begin, end, bytes_.size(), bytes_.size() + bytes.size()});
  bytes_ += bytes;
}

void Edits::AddBetween(const Edits& others, std::size_t begin, std::size_t end) {
  for (const Edit& edit : others.edits_) {
    if (edit.begin < begin || edit.begin >= end) continue;
    ReplaceBytes(edit.begin, edit.end, others.BytesOf(edit));
  }
}

std::string Edits::Apply(std::string_view text, std::size_t begin, std::size_t end) const {
  std::vector<Edit> sorted = edits_;
  std::stable_sort(sorted.begin(), sorted.end(), [](const Edit& a, const Edit& b) {
    return std::tie(a.begin, a.end) < std::tie(b.begin, b.end);
  });
  std::string result;
  result.reserve(end - begin + bytes_.size());
  std::size_t position = begin;
  for (const Edit& edit : sorted) {
    if (edit.begin < position) continue;  // what it stands in is replaced
    result.append(text, position, edit.begin - position);
    result += BytesOf(edit);
    position = edit.end;
  }
  result.append(text, position, end - position);
  return result;
}

}  // namespace velahost
