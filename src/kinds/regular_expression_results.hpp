#pragma once
// What the match of an expression has found, and the results that are made of it.
//
// Ways are kept as outlines in a few flat vectors; results, of which each is many small vectors, are made of them when
// it is known which are left.
//
// **Where only the best is asked for**, and the ranking is the default one, only the best way is kept: results of one
// reading are merged by edits alone, where they differ in these, and compared with each other by nothing but the sort,
// whose keys are counted here; it keeps the first of equals in front and caches nothing. So a way that is not before
// the best so far changes nothing, and what no way of an attempt can be before need not be tried. In any ranking,
// nothing with an edit is kept once there is a result without.

#include <qoc/result_set.h>

#include <array>
#include <vector>

#include "kinds/regular_expression_search.hpp"
#include "platform/regex/ways.hpp"

namespace qoc {

/// A span of a reading as it was matched. The place of an edit is a position of the reading.
struct EditedSpan {
  std::int32_t start, end;
  ExpressionEdit edit;
  std::int32_t place;
};

class ExpressionResults {
 public:
  /// The params may be null. `keepsBestOnly` says that of the results only the best is to be kept.
  ExpressionResults(Positions reading, const qoc_ocrDictionaryRunParams *params, bool keepsBestOnly) noexcept
      : reading_(reading),
        params_(params),
        keepsBestOnly_(keepsBestOnly),
        keepsBestWay_(keepsBestOnly && (params == nullptr || params->rankingMode != 1)) {}

  bool isEmpty() const noexcept { return outlines_[0].empty() && outlines_[1].empty(); }
  bool hasExact() const noexcept { return !outlines_[0].empty(); }

  /// Whether a result of an edit to a span of so many positions can make a difference.
  bool mayCount(ExpressionEdit edit, std::int32_t length) const noexcept;

  /// Adds a way of an edited span, whose places are the sequence's.
  template <class Way, class Places>
  void add(const EditedSpan &span, const Way &way, const Places &sequence) {
    Outline outline = {span, {}, statuses_.size(), way.size(), codes_.size()};
    if (statuses_.empty()) {
      statuses_.reserve(expectedWays * way.size());
      numCodes_.reserve(expectedWays * way.size());
      codes_.reserve(expectedWays * way.size());
    }
    for (std::size_t i = 0; i < way.size(); ++i) {
      const MatchedTokens matched = way[i];
      for (const std::int32_t index : matched) {
        codes_.push_back(sequence[i].codes[static_cast<std::size_t>(index)]);
      }
      numCodes_.push_back(static_cast<std::int32_t>(matched.size()));
      statuses_.push_back(matched.front() == 0 ? qoc_ocrDictionaryPositionStatus_primary
                                               : qoc_ocrDictionaryPositionStatus_secondary);
    }
    settle(outline);
  }

  /// Makes the results, ranked, in a set without any.
  qsys_status make(qoc_ocrDictionaryResultSet &results);

 private:
  /// What the default order looks at: the smaller comes first. Edits, deleted positions, and primary and secondary ones
  /// negated.
  using Keys = std::array<std::int32_t, 4>;

  static constexpr std::size_t expectedWays = 4;

  struct Outline {
    EditedSpan span;
    Keys keys;
    std::size_t firstPlace, numPlaces, firstCode;
  };

  const Outline &best() const noexcept { return outlines_[hasExact() ? 0 : 1].front(); }
  void settle(Outline &outline);
  qsys_status makeOf(std::span<const Outline> outlines, const qoc_ocrDictionaryStringMulti &shown,
                     qstd_vector_qoc_ocrDictionaryResult &results);

  Positions reading_;
  const qoc_ocrDictionaryRunParams *params_;
  bool keepsBestOnly_, keepsBestWay_;
  std::vector<Outline> outlines_[2];                       ///< Without an edit, and with one.
  std::vector<qoc_ocrDictionaryPositionStatus> statuses_;  ///< Of all places.
  std::vector<std::int32_t> numCodes_;                     ///< Of all places.
  std::vector<Char32> codes_;                              ///< Of all places.
  WorkMeter meter_;
};

}  // namespace qoc
