#pragma once
// A zero-terminated text of more bytes than a 32-bit size can tell, in little memory.

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>

namespace qoc::test {

/// The same megabytes of 'a' mapped over and over, and a zero behind them. data() is null where the system has no such
/// room.
class LongText {
 public:
  LongText() {
    const int file = memfd_create("long text", 0);
    auto *base = static_cast<char *>(
        mmap(nullptr, mappedSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
    if (file < 0 || base == MAP_FAILED || ftruncate(file, static_cast<off_t>(pieceSize)) != 0) {
      return;
    }
    base_ = base;
    for (std::size_t at = 0; at + pieceSize < mappedSize; at += pieceSize) {
      if (mmap(base + at, pieceSize, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, file, 0) == MAP_FAILED) {
        return;
      }
    }
    for (std::size_t i = 0; i < pieceSize; ++i) {
      base[i] = 'a';
    }
    close(file);
    data_ = base;  // The last piece holds zeros.
  }
  ~LongText() {
    if (base_ != nullptr) {
      munmap(base_, mappedSize);
    }
  }
  LongText(const LongText &) = delete;
  LongText &operator=(const LongText &) = delete;

  const char *data() const { return data_; }

 private:
  static constexpr std::size_t pieceSize = std::size_t{1} << 26;
  static constexpr std::size_t mappedSize = (std::size_t{1} << 31) + pieceSize;
  char *base_ = nullptr;
  const char *data_ = nullptr;
};

}  // namespace qoc::test
