#pragma once
// The match of line fieldings, for whoever matches one reading with many.

#include <qoc/line_fielding.h>

#include <optional>

#include "kinds/line_screen.hpp"
#include "kinds/reading_variants.hpp"

namespace qoc {

/// The variants that multi-character swaps make of a reading, and the screen of their symbols.
struct LineVariants {
  LineVariants(const qoc_ocrDictionaryStringMulti &reading, const qoc_swapCharSet &set)
      : variants(reading, set), setOfSwaps(&set) {}

  /// As ReadingVariants::expand.
  qsys_status expand() {
    QOC_TRY(variants.expand());
    if (!screen) {
      screen.emplace(variants.symbols(), setOfSwaps);
    }
    return QSYS_STATUS_OK;
  }

  ReadingVariants variants;
  const qoc_swapCharSet *setOfSwaps;
  std::optional<LineScreen> screen;
};

/// One reading against any number of line fieldings: what is worked out of the reading is worked out once.
class LineFieldingMatching {
 public:
  /// The reading and the set, which may be null, stay as they are while the object lives.
  LineFieldingMatching(const qoc_ocrDictionaryStringMulti &reading, const qoc_swapCharSet *set) noexcept
      : reading_(reading), set_(set), screen_(reading, set) {}

  /// As qoc_ocrDictionaryLineFielding_matchMulti. May throw what running out of memory throws.
  qsys_status match(const qoc_ocrDictionaryLineFielding &lineFielding, const qoc_ocrDictionaryRunParams *params,
                    qoc_ocrDictionaryResultSet &results);

 private:
  const qoc_ocrDictionaryStringMulti &reading_;
  const qoc_swapCharSet *set_;
  LineScreen screen_;
  std::optional<LineVariants> variants_;
};

}  // namespace qoc
