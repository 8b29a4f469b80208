#include "standalone/Text/Text.h"

#include <atomic>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

// How many texts lie in a block, and whether an arena still adds to it: so many shares it has.
using Shares = std::atomic<std::uint32_t>;

constexpr std::size_t kBlockBegin = 8;  // where the first header stands
static_assert(sizeof(Shares) <= kBlockBegin);
// A text larger than this gets a block of its own, so that no arena loses much of a block.
constexpr std::size_t kLargest = std::size_t{1} << 13;
constexpr std::size_t kBlockSize = std::size_t{1} << 16;

char* NewBlock(std::size_t size) {
  char* const block = static_cast<char*>(::operator new(size));
  new (block) Shares(1);
  return block;
}

Shares& SharesOf(void* block) { return *static_cast<Shares*>(block); }

void ReleaseBlock(void* block) noexcept {
  if (SharesOf(block).fetch_sub(1, std::memory_order_acq_rel) == 1) ::operator delete(block);
}

// The room that a text takes, with its header and the zero byte, so that the next one is aligned.
std::size_t RoomFor(std::string_view text) {
  constexpr std::size_t kHeader = 8;
  constexpr std::size_t kAlignment = 4;
  if (text.size() > std::numeric_limits<std::uint32_t>::max() - 64) {
    throw std::length_error("a text of more than 4 GB");
  }
  return (kHeader + text.size() + kAlignment) / kAlignment * kAlignment;
}

}  // namespace

constinit const Text::EmptyText Text::kEmptyText = {{0, 0}, {'\0', '\0', '\0', '\0'}};
constinit const char* const Text::kEmpty = Text::kEmptyText.bytes;

Text::Text(std::string_view text) {
  if (text.empty()) return;
  char* const block = NewBlock(kBlockBegin + RoomFor(text));
  bytes_ = Put(block, kBlockBegin, text);
}

const char* Text::Put(char* block, std::size_t distance, std::string_view text) noexcept {
  char* const header = block + distance;
  new (header)
      Header{static_cast<std::uint32_t>(text.size()), static_cast<std::uint32_t>(distance)};
  char* const bytes = header + sizeof(Header);
  std::memcpy(bytes, text.data(), text.size());
  bytes[text.size()] = '\0';
  return bytes;
}

void Text::Share() const noexcept {
  const Header& header = HeaderOf(bytes_);
  if (header.blockDistance == 0) return;
  char* const block = const_cast<char*>(bytes_) - sizeof(Header) - header.blockDistance;
  SharesOf(block).fetch_add(1, std::memory_order_relaxed);
}

void Text::Release() const noexcept {
  const Header& header = HeaderOf(bytes_);
  if (header.blockDistance == 0) return;
  ReleaseBlock(const_cast<char*>(bytes_) - sizeof(Header) - header.blockDistance);
}

TextArena::TextArena(TextArena&& other) noexcept
    : block_(std::exchange(other.block_, nullptr)), used_(std::exchange(other.used_, 0)) {}

TextArena& TextArena::operator=(TextArena&& other) noexcept {
  std::swap(block_, other.block_);
  std::swap(used_, other.used_);
  return *this;
}

TextArena::~TextArena() {
  if (block_ != nullptr) ReleaseBlock(block_);
}

Text TextArena::Add(std::string_view text) {
  if (text.size() > kLargest || text.empty()) return Text(text);
  const std::size_t room = RoomFor(text);
  if (used_ + room > kBlockSize || block_ == nullptr) {
    char* const next = NewBlock(kBlockSize);
    if (block_ != nullptr) ReleaseBlock(block_);
    block_ = next;
    used_ = kBlockBegin;
  }
  SharesOf(block_).fetch_add(1, std::memory_order_relaxed);
  const char* const bytes = Text::Put(block_, used_, text);
  used_ += room;
  return {bytes, Text::Shared()};
}

Text TextArena::AddCollapsed(std::string_view text) {
  text = Trim(text);
  return IsCollapsed(text) ? Add(text) : Add(Collapse(text));
}

}  // namespace velahost
