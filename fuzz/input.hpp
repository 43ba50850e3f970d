#pragma once
// What the fuzzers of objects share: choices made of bytes, and memory and patience that end.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <string>

#include "support/allocator.hpp"
#include "support/handlers.hpp"
#include "support/owned.hpp"

namespace qoc::fuzz {

/// A property that has to hold.
inline void check(bool holds) {
  if (!holds) {
    std::abort();
  }
}

/// The bytes of an input as choices; zeros when there are no more.
class Input {
 public:
  Input(const std::uint8_t *data, std::size_t size) : next_(data), end_(data + size) {}

  std::uint8_t byte() { return next_ != end_ ? *next_++ : std::uint8_t{0}; }
  bool flag() { return (byte() & 1) != 0; }
  bool isEmpty() const { return next_ == end_; }
  /// A number below n, which is at most 256.
  int below(int n) { return byte() % n; }

  /// A number as options have them: mostly small, sometimes at the ends of what there is.
  std::int32_t number() {
    static constexpr std::int32_t ends[] = {INT32_MAX, INT32_MIN, INT32_MAX - 1, -1, 100, 65536};
    const std::uint8_t choice = byte();
    return choice < 240 ? choice % 8 : ends[choice % 6];
  }

  /// A character code: mostly of few letters, so that there are matches; sometimes a reserved or an enormous one.
  Char32 code() {
    static constexpr Char32 others[] = {
        QOC_CHAR_EMPTY, QOC_CHAR_ANY, QOC_CHAR_ANY_NONSPACE, ' ', 0, 0x7FFFFFFF, 0xFFFFFFFF, 0x10FFFF, 0xFF000, 0xE4};
    const std::uint8_t choice = byte();
    return choice < 230 ? Char32{'a'} + choice % 6 : others[choice % 10];
  }

  std::string text(int maxSize) {
    std::string made;
    for (int n = below(maxSize + 1); n > 0; --n) {
      made += static_cast<char>(byte());
    }
    return made;
  }

 private:
  const std::uint8_t *next_, *end_;
};

/// Runs body(input) under a counting allocator. The first byte says whether memory runs out, and when; a body that
/// ends with an exception because of that, or with one of `require`, is fine, and leaks nothing.
template <class Body>
int run(const std::uint8_t *data, std::size_t size, Body body) {
  Input input(data, size);
  test::LibraryAllocator memory;
  memory.refuseAbove(std::size_t{1} << 24);
  const std::uint8_t shortage = input.byte();
  if ((shortage & 1) != 0) {
    const auto n = static_cast<std::int64_t>(shortage >> 2) * input.below(64);
    memory.fail(n, (shortage & 2) != 0 ? test::FaultMode::from : test::FaultMode::once);
  }
  try {
    body(input);
  } catch (const std::exception &) {
    check(memory.hasFailed());
  }
  check(memory.numLive() == 0);
  check(memory.numForeignFrees() == 0 && memory.numOverruns() == 0);
  return 0;
}

}  // namespace qoc::fuzz
