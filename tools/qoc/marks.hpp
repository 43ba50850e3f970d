#pragma once

/// @file How a position's status is shown: its name, its mark, its colour and what it means.

#include <qoc/position_status.h>

#include <algorithm>
#include <iterator>

namespace qoc::program {

struct Mark {
  qoc_ocrDictionaryPositionStatus status;
  const char *name;
  char mark;
  const char *color; ///< As a terminal takes it.
  const char *meaning;
};

#define QOC_MARK(status) qoc_ocrDictionaryPositionStatus_##status, #status
inline constexpr Mark marks[] = {
    {QOC_MARK(primary), '.', "32", "first candidate"},
    {QOC_MARK(primarySwap), '~', "36", "first candidate, swapped"},
    {QOC_MARK(secondary), ':', "34", "another candidate"},
    {QOC_MARK(secondarySwap), ';', "35", "another candidate, swapped"},
    {QOC_MARK(substituted), 'x', "31", "substituted"},
    {QOC_MARK(substitutedSpace), '_', "31", "substituted by a space"},
    {QOC_MARK(noMatch), '!', "31", "no match"},
    {QOC_MARK(inserted), '+', "33", "inserted"},
    {QOC_MARK(deleted), '-', "33", "deleted"},
    {QOC_MARK(deletedIgnored), ',', "90", "ignored"},
};
#undef QOC_MARK

/// A status outside the list is shown as one that does not match.
inline const Mark &markOf(qoc_ocrDictionaryPositionStatus status) {
  const auto *found = std::find_if(std::begin(marks), std::end(marks),
                                   [&](const Mark &mark) { return mark.status == status; });
  return found == std::end(marks) ? marks[qoc_ocrDictionaryPositionStatus_noMatch - 1] : *found;
}

} // namespace qoc::program
