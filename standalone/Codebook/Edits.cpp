#include "standalone/Codebook/Edits.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace velahost {

void Edits::Replace(std::size_t begin, std::size_t end, std::string utf8) {
  ReplaceBytes(begin, end, Encode(std::move(utf8), encoding_));
}

void Edits::ReplaceBytes(std::size_t begin, std::size_t end, std::string bytes) {
  edits_.push_back({begin, end, std::move(bytes)});
}

void Edits::TakeOver(const Edits& others, std::size_t begin, std::size_t end) {
  const auto beginsBefore = [](const Edit& edit, std::size_t position) {
    return edit.begin < position;
  };
  const auto first =
      std::lower_bound(others.edits_.begin(), others.edits_.end(), begin, beginsBefore);
  const auto last = std::lower_bound(first, others.edits_.end(), end, beginsBefore);
  edits_.insert(edits_.end(), first, last);
}

void Edits::Sort() {
  std::stable_sort(edits_.begin(), edits_.end(), [](const Edit& a, const Edit& b) {
    return std::tie(a.begin, a.end) < std::tie(b.begin, b.end);
  });
}

std::string Edits::Apply(std::string_view text, std::size_t begin, std::size_t end) {
  Sort();
  std::size_t size = end - begin;
  for (const Edit& edit : edits_) size += edit.bytes.size();
  std::string result;
  result.reserve(size);
  std::size_t position = begin;
  for (const Edit& edit : edits_) {
    if (edit.begin < position) continue;  // what it stands in is replaced
    result.append(text, position, edit.begin - position);
    result += edit.bytes;
    position = edit.end;
  }
  result.append(text, position, end - position);
  return result;
}

}  // namespace velahost
