#pragma once
// The window of a fixed length that is cut out of a string or a reading, in the one way in which both do it.

#include "platform/containers/view.hpp"
#include "platform/system/present.hpp"

namespace qoc {

/// Fills `window` from `elements`; see qoc_ocrDictionaryString_getSubstrExtend. Where there can be no room for so many,
/// the window is as it was.
template <auto Resize, auto Reserve, auto PushBack, class T, class V>
qsys_status getSubstrExtend(std::span<const T> elements, std::int32_t start, std::int32_t length, V *window) {
  if (start < 0) {
    return QOC_STATUS_INDEX_NEGATIVE;
  }
  const std::int32_t numWanted = length > 0 ? length : 0;
  QOC_TRY(Reserve(window, numWanted));
  QOC_TRY(Resize(window, 0));
  if (static_cast<std::size_t>(start) >= elements.size()) {
    return Resize(window, numWanted);
  }
  for (std::int64_t i = start; i < std::int64_t{start} + numWanted; ++i) {
    // Deliberate: behind the end it is the window's own first element that repeats, not its last.
    const auto index =
        static_cast<std::size_t>(i) < elements.size() ? static_cast<std::size_t>(i) : static_cast<std::size_t>(start);
    QOC_TRY(PushBack(window, &elements[index]));
  }
  return QSYS_STATUS_OK;
}

}  // namespace qoc
