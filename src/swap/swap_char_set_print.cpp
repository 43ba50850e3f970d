// Swap character sets: their printed form.

#include <qoc/swap_char_set.h>

#include "frame/frame.hpp"
#include "text/views.hpp"

using qoc::present;
using qoc::viewAs;

/// fprintf with its failure turned into a status.
#define QOC_TRY_PRINT(...)             \
  do {                                 \
    if (fprintf(__VA_ARGS__) < 0) {    \
      return QSYS_STATUS_PRINT_FAILED; \
    }                                  \
  } while (false)

namespace {

qsys_status printGroups(const qoc_swapCharSet &set, FILE *stream) {
  QOC_TRY_PRINT(stream, "{ ");
  const auto groups = viewAs<qstd_vectorChar32>(set.groups);
  for (const qstd_vectorChar32 &group : groups) {
    QOC_TRY_PRINT(stream, "{ ");
    const auto codes = viewAs<Char32>(group);
    for (const Char32 &code : codes) {
      // A text of one character: the low byte, and nothing where that is zero.
      const char text[] = {static_cast<char>(code & 0xFFu), '\0'};
      QOC_TRY_PRINT(stream, " %s%s ", text, &code != &codes.back() ? "," : "");
    }
    QOC_TRY_PRINT(stream, " }%s ", &group != &groups.back() ? "," : "");
  }
  QOC_TRY_PRINT(stream, "}\n");
  return QSYS_STATUS_OK;
}

qsys_status printCodeTable(const qoc_swapCharSet &set, FILE *stream) {
  QOC_TRY_PRINT(stream, "swapCharCodeToIndexLUT\n");
  const auto indexOf = viewAs<std::int32_t>(set.swapCharCodeToIndexLUT);
  for (std::size_t code = 0; code < indexOf.size(); ++code) {
    if (indexOf[code] != -1) {
      const int number = static_cast<int>(code);
      QOC_TRY_PRINT(stream, " { %d (%c) , %d } ,", number, number, indexOf[code]);
    }
  }
  QOC_TRY_PRINT(stream, "\n");
  return QSYS_STATUS_OK;
}

qsys_status printEquivalenceTable(const qoc_swapCharSet &set, FILE *stream) {
  int last = fprintf(stream, "swapCharEquivalenceTable\n");
  const auto rows = viewAs<qstd_vectorb>(set.swapCharEquivalenceTable);
  for (const qstd_vectorb &row : rows) {
    QOC_TRY_PRINT(stream, "[ ");
    for (const std::uint8_t isEquivalent : viewAs<std::uint8_t>(row)) {
      QOC_TRY_PRINT(stream, "%d ", isEquivalent != 0 ? 1 : 0);
    }
    last = fprintf(stream, "]\n");
    if (last < 0) {
      return QSYS_STATUS_PRINT_FAILED;
    }
  }
  return last < 0 ? static_cast<qsys_status>(QSYS_STATUS_PRINT_FAILED) : last;
}

}  // namespace

qsys_status qoc_swapCharSet_print(const qoc_swapCharSet *set, FILE *stream) {
  if (stream == nullptr) {
    present({stream});
    return QSYS_STATUS_OK;
  }
  if (!present({set})) {
    QOC_TRY_PRINT(stream, "qoc_swapCharSet : NULL\n");
    return QSYS_STATUS_OK;
  }
  QOC_TRY_PRINT(stream, "qoc_swapCharSet\n");
  QOC_TRY(printGroups(*set, stream));
  QOC_TRY(printCodeTable(*set, stream));
  return printEquivalenceTable(*set, stream);
}
