#pragma once
// The elements of a typed vector as a C++ view.

#include <qoc/containers.h>

#include <span>

namespace qoc {

/// The elements of a vector whose elements are of type T; valid until the vector's size or capacity changes.
template <class T, class V>
std::span<const T> viewOf(const V &vector) noexcept {
  return {static_cast<const T *>(vector.core.elements), static_cast<std::size_t>(vector.core.size)};
}
template <class T, class V>
std::span<T> viewOf(V &vector) noexcept {
  return {static_cast<T *>(vector.core.elements), static_cast<std::size_t>(vector.core.size)};
}

}  // namespace qoc
