#pragma once
// Typed views of the elements of a vector family.

#include <qoc/vector.h>

#include <cstddef>
#include <span>

namespace qoc {

/// The elements of the vector; valid until its size or capacity changes.
template <class T, class V>
std::span<const T> elements(const V &vector) noexcept {
  return {static_cast<const T *>(vector.core.elements), static_cast<std::size_t>(vector.core.size)};
}

template <class T, class V>
std::span<T> mutableElements(V &vector) noexcept {
  return {static_cast<T *>(vector.core.elements), static_cast<std::size_t>(vector.core.size)};
}

}  // namespace qoc
