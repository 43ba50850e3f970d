// The edit distance of two strings.

#include <numeric>
#include <vector>

#include "frame/frame.hpp"
#include "platform/system/work_meter.hpp"
#include "swap/match.hpp"
#include "text/views.hpp"

using qoc::Frame;
using qoc::inFrame;
using qoc::present;

namespace {
constexpr std::size_t workPerCell = 8;  // A comparison of characters may look them up in the set.
}

qsys_status qoc_ocrDictionaryString_editDistance(const qoc_ocrDictionaryString *a, const qoc_ocrDictionaryString *b,
                                                 const qoc_swapCharSet *set, int32_t *distance) {
  if (!present({a, b, distance})) {
    return QSYS_STATUS_OK;
  }
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    // Row j of the table holds the distances of every prefix of a to the first j characters of b; one row at a time is
    // enough.
    const auto first = qoc::view(*a);
    const auto second = qoc::view(*b);
    std::vector<std::int32_t> row(first.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    qoc::WorkMeter meter;
    for (std::size_t j = 1; j <= second.size(); ++j) {
      QOC_TRY(meter.add(workPerCell * (first.size() + 1)));
      std::int32_t diagonal = row[0];  // Cell (i - 1, j - 1).
      row[0] = static_cast<std::int32_t>(j);
      for (std::size_t i = 1; i <= first.size(); ++i) {
        const bool isMatch = qoc::isMatch(set, first[i - 1].code, second[j - 1].code);
        const std::int32_t above = row[i];
        row[i] = isMatch ? diagonal : qxfIMin(row[i - 1] + 1, qxfIMin(above + 1, diagonal + 1));
        diagonal = above;
      }
    }
    *distance = row.back();
    return QSYS_STATUS_OK;
  });
}
