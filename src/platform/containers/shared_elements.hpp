#pragma once
// Elements that lie in blocks which vectors hold together.
//
// Two uses, both for vectors that the library itself makes: elements that many vectors have in common, and the plain
// elements of many short vectors, which would cost a block each. A vector whose elements lie in such a block may be
// read, and copied: a copy of the first kind holds the block too, one of the second kind has a block of its own.
// Whatever could change the elements, or hands out an address through which they can be changed, first gives the vector
// a block of its own; so nobody ever holds such an address into a shared block. The last holder releases it.

#include <qoc/vector.h>

#include <cstddef>
#include <cstdint>

namespace qoc {

/// Puts the elements of a vector that takes its memory from the library into a block that copies of it share.
qsys_status shareElements(qstd_vector &vector) noexcept;

/// Whether two vectors hold the same elements in the same place. What shares a place is whole: no two sizes of it.
inline bool holdSameElements(const qstd_vector &a, const qstd_vector &b) noexcept { return a.elements == b.elements; }

/// Blocks for the plain elements of many vectors. A block lives until the pool and every vector in it have let it go.
class ElementPool {
 public:
  ElementPool() = default;
  /// Of little more than the given number of bytes, the sum of sizeOf for all that is to be placed, if that is not
  /// much.
  explicit ElementPool(std::size_t numBytes) : blockSize_(numBytes < mostBytes ? numBytes : mostBytes) {}
  ~ElementPool();
  ElementPool(const ElementPool &) = delete;
  ElementPool &operator=(const ElementPool &) = delete;

  /// The bytes that n elements of a size take in a pool.
  static constexpr std::size_t sizeOf(std::size_t n, std::size_t elementSize) noexcept {
    return n == 0 ? 0 : (sizeof(void *) + n * elementSize + sizeof(void *) - 1) / sizeof(void *) * sizeof(void *);
  }

  /// Gives a vector that has neither elements nor storage n elements, which the caller fills at `elements`.
  qsys_status place(qstd_vector &vector, std::int32_t n, void *&elements) noexcept;
  /// The same with copies of a block of n.
  qsys_status placeCopies(qstd_vector &vector, const void *first, std::int32_t n) noexcept;

 private:
  /// Small, so that a single result that is kept does not keep much beside it.
  static constexpr std::size_t mostBytes = 32768;

  void close() noexcept;

  std::size_t blockSize_ = mostBytes;
  std::byte *block_ = nullptr;
  std::size_t used_ = 0, size_ = 0;
  std::int64_t numPlaced_ = 0;
};

}  // namespace qoc
