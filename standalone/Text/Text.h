#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

namespace velahost {

// A text that is never changed: its bytes, with a zero byte after them. Copies share the bytes, and
// a Text takes the room of a pointer. Copies of one text may be used by several threads.
class Text {
 public:
  Text() noexcept = default;
  // Copies the bytes into a piece of memory of their own.
  explicit Text(std::string_view text);
  Text(const Text& other) noexcept : bytes_(other.bytes_) { Share(); }
  Text(Text&& other) noexcept : bytes_(std::exchange(other.bytes_, kEmpty)) {}
  Text& operator=(Text other) noexcept {
    std::swap(bytes_, other.bytes_);
    return *this;
  }
  ~Text() { Release(); }

  operator std::string_view() const { return {bytes_, Size()}; }
  std::string_view View() const { return *this; }
  std::string String() const { return std::string(View()); }
  // Zero-terminated; it lives as long as a copy of this text.
  const char* CString() const { return bytes_; }
  std::size_t Size() const { return HeaderOf(bytes_).size; }
  bool Empty() const { return Size() == 0; }

  friend bool operator==(const Text& a, const Text& b) {
    return a.bytes_ == b.bytes_ || a.View() == b.View();
  }
  friend bool operator==(const Text& a, std::string_view b) { return a.View() == b; }
  friend std::strong_ordering operator<=>(const Text& a, const Text& b) {
    return a.View().compare(b.View()) <=> 0;
  }
  friend std::ostream& operator<<(std::ostream& out, const Text& text) {
    return out << text.View();
  }

 private:
  friend class TextArena;

  // What stands before the bytes of every text. The block that they lie in counts its shares.
  struct Header {
    std::uint32_t size;
    std::uint32_t blockDistance;  // from the block's begin to this header; 0: there is no block
  };
  struct EmptyText {
    Header header;
    char bytes[4];
  };
  static const EmptyText kEmptyText;
  static const char* const kEmpty;

  static const Header& HeaderOf(const char* bytes) {
    return *reinterpret_cast<const Header*>(bytes - sizeof(Header));
  }
  // Writes a header and the text into a block, so far from its begin. Returns the bytes.
  static const char* Put(char* block, std::size_t distance, std::string_view text) noexcept;
  // Takes over a share of the block that the bytes lie in.
  struct Shared {};
  Text(const char* bytes, Shared /*tag*/) noexcept : bytes_(bytes) {}
  void Share() const noexcept;
  void Release() const noexcept;

  const char* bytes_ = kEmpty;
};

// Makes texts that share large pieces of memory, for many texts that live about as long. A piece
// lives as long as one of its texts. Not for several threads at once; the texts are.
class TextArena {
 public:
  TextArena() = default;
  TextArena(TextArena&& other) noexcept;
  TextArena& operator=(TextArena&& other) noexcept;
  ~TextArena();

  Text Add(std::string_view text);
  // The text without white space at its ends, and every run of white space inside as one blank.
  Text AddCollapsed(std::string_view text);

 private:
  char* block_ = nullptr;
  std::size_t used_ = 0;  // of the block, in bytes
};

}  // namespace velahost
