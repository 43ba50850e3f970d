#pragma once
// Elements that several vectors hold together until one of them is written to.
//
// A vector is put into this state by the library, for blocks that it has made itself and is going to copy many times. Copies of a
// vector in it hold the same block. Whatever could change the elements, or hands out an address through which they can be changed, first gives
// the vector a block of its own; so nobody ever holds such an address into a shared block.

#include <qoc/vector.h>

namespace qoc {

/// Puts the elements of a vector that takes its memory from the library into a block that copies of it share.
qsys_status shareElements(qstd_vector &vector) noexcept;

/// Whether two vectors hold the same block; their elements are the same then.
inline bool holdSameElements(const qstd_vector &a, const qstd_vector &b) noexcept {
  return a.elements == b.elements && a.size == b.size;
}

}  // namespace qoc
