#pragma once
// Typed vectors as spans, for code inside the library. A view holds until the vector's size or capacity changes.

#include <qoc/containers.h>

#include <span>

namespace qoc {

/// The elements of a typed vector; T is its element type.
template <class T, class V>
std::span<const T> viewAs(const V &vector) noexcept {
  return {static_cast<const T *>(vector.core.elements), static_cast<std::size_t>(vector.core.size)};
}
template <class T, class V>
std::span<T> editAs(V &vector) noexcept {
  return {static_cast<T *>(vector.core.elements), static_cast<std::size_t>(vector.core.size)};
}

/// Takes all elements of a typed vector out. Nothing is allocated for that, and no element of the library fails to be
/// destructed: it cannot fail.
template <class V>
void clear(V &vector) noexcept {
  qstd_vector__clear(&vector.core);
}

}  // namespace qoc
