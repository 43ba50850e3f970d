#pragma once
// Strings and readings as spans.

#include <qoc/dictionary_string.h>

#include <cstdint>
#include <span>

#include "platform/containers/view.hpp"

namespace qoc {

using Characters = std::span<const qoc_ocrDictionaryChar>;
using Positions = std::span<const qoc_ocrDictionaryCharMulti>;

inline Characters view(const qstd_vector_qoc_ocrDictionaryChar &characters) noexcept {
  return viewAs<qoc_ocrDictionaryChar>(characters);
}
inline Characters view(const qoc_ocrDictionaryCharMulti &position) noexcept { return view(position.candidates); }
inline Characters view(const qoc_ocrDictionaryString &string) noexcept { return view(string.characters); }
inline Positions view(const qstd_vector_qoc_ocrDictionaryCharMulti &positions) noexcept {
  return viewAs<qoc_ocrDictionaryCharMulti>(positions);
}
inline Positions view(const qoc_ocrDictionaryStringMulti &reading) noexcept { return view(reading.positions); }
inline std::span<const qoc_ocrDictionaryString> view(const qstd_vector_qoc_ocrDictionaryString &strings) noexcept {
  return viewAs<qoc_ocrDictionaryString>(strings);
}

template <class V>
std::int32_t sizeOf(const V &vector) noexcept {
  return vector.core.size;
}
inline std::int32_t sizeOf(const qoc_ocrDictionaryString &string) noexcept { return string.characters.core.size; }
inline std::int32_t sizeOf(const qoc_ocrDictionaryStringMulti &reading) noexcept { return reading.positions.core.size; }
inline std::int32_t sizeOf(const qoc_ocrDictionaryCharMulti &position) noexcept { return position.candidates.core.size; }

/// A text character as a code: read as a signed byte and sign-extended, whatever the platform's char is.
inline Char32 codeOf(CharT text) noexcept {
  return static_cast<Char32>(static_cast<std::int32_t>(static_cast<std::int8_t>(text)));
}

}  // namespace qoc
