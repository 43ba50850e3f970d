#pragma once
// What the fuzzers of objects share: choices made of bytes, and memory and patience that end.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <string_view>

#include "support/allocator.hpp"
#include "support/handlers.hpp"
#include "support/heap.hpp"
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

  /// Takes the bytes up to the first zero, and the zero; or all that are left.
  std::string_view text() {
    const std::uint8_t *first = next_;
    const std::uint8_t *end = std::find(next_, end_, std::uint8_t{0});
    next_ = end == end_ ? end : end + 1;
    return {reinterpret_cast<const char *>(first), static_cast<std::size_t>(end - first)};
  }
  /// Takes all that is left.
  std::string_view rest() {
    const std::uint8_t *first = next_;
    next_ = end_;
    return {reinterpret_cast<const char *>(first), static_cast<std::size_t>(end_ - first)};
  }

  /// Whether memory runs out in this run, sooner or later: what a body would compare may then be missing.
  bool isShortOfMemory = false;

 private:
  const std::uint8_t *next_, *end_;
};

/// Runs body(input) under a counting allocator. The first byte says whether memory runs out, in the library's allocator
/// or in the C++ heap, and when; a body that ends with an exception because of that, or with one of `require`, is fine,
/// and leaks nothing.
template <class Body>
int run(const std::uint8_t *data, std::size_t size, Body body) {
  Input input(data, size);
  test::LibraryAllocator memory;
  memory.refuseAbove(std::size_t{1} << 24);
  const std::uint8_t shortage = input.byte();
  input.isShortOfMemory = (shortage & 1) != 0;
  const std::int64_t n = input.isShortOfMemory ? std::int64_t{shortage >> 3} * input.below(64) : -1;
  const bool isOfHeap = (shortage & 4) != 0;
  const test::FaultMode mode = (shortage & 2) != 0 ? test::FaultMode::from : test::FaultMode::once;
  memory.fail(isOfHeap ? -1 : n, mode);
  const test::HeapFault heap(isOfHeap ? n : -1, mode);
  try {
    body(input);
  } catch (const std::exception &) {
    check(memory.hasFailed() || heap.hasFailed());
  }
  check(memory.numLive() == 0);
  check(memory.numForeignFrees() == 0 && memory.numOverruns() == 0);
  return 0;
}

}  // namespace qoc::fuzz
