#pragma once
// The windows of a reading that are tried beside the whole of it.

#include <qoc/run_params.h>

#include <algorithm>

#include "platform/system/present.hpp"
#include "text/reading_matches.hpp"

namespace qoc {

/// 32-bit sums that wrap around, as run parameters may be any numbers.
inline std::int32_t wrappingSum(std::int32_t a, std::int32_t b) noexcept {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
inline std::int32_t wrappingDifference(std::int32_t a, std::int32_t b) noexcept {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

/// The first end behind `start` in a search that counts up from `end` and stops behind `last`, compared as unsigned
/// numbers; -1 when the search stops before it.
///
/// Ends up to `start` make no window, but they are counted, and the first one beyond `last` stops the search: a
/// negative end unless `last` is the largest number of all, any other when `last` is small. With extreme parameters
/// there are thousands of millions of them, so they are judged together.
inline std::int32_t firstEndBehind(std::int32_t start, std::int32_t end, std::uint32_t last) noexcept {
  if (end > start) {
    return end;
  }
  const bool isStopped = (end < 0 && last != UINT32_MAX) || static_cast<std::uint32_t>(start) > last;
  return isStopped ? -1 : start + 1;
}

/// The ends of the windows that one start has in a search, from the first to the last; none where the last is below the
/// first.
struct WindowEnds {
  std::int32_t first, last;
};

/// The ends that a search counts up from `end`, stopping behind `last`, compared as unsigned numbers, and behind n.
inline WindowEnds findWindowEnds(std::int32_t start, std::int32_t n, std::int32_t end, std::uint32_t last) noexcept {
  const std::int32_t first = firstEndBehind(start, end, last);
  return {first, first < 0 ? -2 : static_cast<std::int32_t>(std::min(last, static_cast<std::uint32_t>(n)))};
}

/// Where a search stops: behind start + longest + 1 + maxEdits, or never where that wraps around.
inline std::uint32_t lastEnd(std::int32_t start, std::int32_t longest, std::int32_t maxEdits) noexcept {
  return static_cast<std::uint32_t>(wrappingSum(wrappingSum(wrappingSum(start, longest), 1), maxEdits));
}

/// The ends of a search whose windows the parameters' lengths alone limit, by maxEdits more either way.
inline WindowEnds findWindowEnds(std::int32_t start, std::int32_t n,
                                 const qoc_ocrDictionaryRunParams &params) noexcept {
  return findWindowEnds(start, n, wrappingDifference(wrappingSum(start, params.minStringLength), params.maxEdits),
                        lastEnd(start, params.maxStringLength, params.maxEdits));
}

/// Calls visit(window), which may end the search by setting its second argument, for every window that a string of m
/// characters is tried on; asks for attention once for every start.
///
/// The ends run from start + minStringLength - maxEdits to the reading's; the largest lengths are compared as unsigned
/// numbers, so that the default maxStringLength stops nothing, and a negative end stops its start.
template <class Visit>
qsys_status searchWindows(std::int32_t n, std::int32_t m, const qoc_ocrDictionaryRunParams &params, Visit visit) {
  const std::int32_t e = params.maxEdits;
  bool isDone = false;
  for (std::int32_t start = 0; start < n && !isDone; ++start) {
    QOC_TRY(qsys_attention_check());
    const std::uint32_t last = std::min(lastEnd(start, m, e), lastEnd(start, params.maxStringLength, e));
    const std::int32_t leastEnd = wrappingDifference(wrappingSum(start, m), e);
    const std::int32_t firstEnd = wrappingDifference(wrappingSum(start, params.minStringLength), e);
    const WindowEnds ends = findWindowEnds(start, n, firstEnd, last);
    for (std::int32_t end = ends.first; end <= ends.last && !isDone; ++end) {
      if (end >= leastEnd) {
        QOC_TRY(visit(Window{start, end}, isDone));
      }
    }
  }
  return QSYS_STATUS_OK;
}

/// Whether the params, which may be null, ask for windows beside the whole reading.
inline bool searchesWindows(const qoc_ocrDictionaryRunParams *params) noexcept {
  return params != nullptr && params->matchOption9 != 0;
}

/// Asks for attention as often as a search of windows does, for what is refused without one.
inline qsys_status passOverWindows(std::int32_t n, const qoc_ocrDictionaryRunParams *params) {
  for (std::int32_t start = 0; searchesWindows(params) && start < n; ++start) {
    QOC_TRY(qsys_attention_check());
  }
  return QSYS_STATUS_OK;
}

/// Whether a window may be aligned at all: a wrong length is refused when no edit could mend it.
inline bool admitsLength(const qoc_ocrDictionaryRunParams *params, Window window) noexcept {
  qsys_bool isSatisfied = 0;
  qoc_ocrDictionaryRunParams_satisfiesStringLength(params, window.size(), &isSatisfied);
  return isSatisfied != 0 || params->maxEdits != 0;  // Without parameters every length satisfies.
}

/// The characters at either end of a word that match the window's, counted inwards; the two counts may overlap.
struct EndMatches {
  std::int32_t numFront = 0, numBack = 0;
};

inline EndMatches matchEnds(const WordRows &word, Window window) noexcept {
  const std::int32_t m = word.size();
  const std::int32_t shorter = m < window.size() ? m : window.size();
  EndMatches ends;
  while (ends.numFront < shorter && word.isMatch(ends.numFront, window.start + ends.numFront)) {
    ++ends.numFront;
  }
  while (ends.numBack < shorter && word.isMatch(m - 1 - ends.numBack, window.end - 1 - ends.numBack)) {
    ++ends.numBack;
  }
  return ends;
}

}  // namespace qoc
