// Every way in which a reading matches an expression, as ranked results. The search is in
// regular_expression_search.hpp, what it finds in regular_expression_results.hpp.

#include "kinds/regular_expression_match.hpp"

#include <algorithm>
#include <utility>

#include "frame/frame.hpp"
#include "kinds/regular_expression_results.hpp"
#include "platform/system/certain.hpp"
#include "run/result_set_ops.hpp"
#include "swap/variants.hpp"
#include "text/reading_of.hpp"

using namespace qoc;

namespace {

/// The codes that the tokens of a reading's positions have, position by position.
class ReadingCodes {
 public:
  bool isEmpty() const noexcept { return ends_.empty(); }
  Codes at(std::int32_t position) const noexcept {
    const auto index = static_cast<std::size_t>(position);
    const std::size_t first = index > 0 ? ends_[index - 1] : 0;
    return Codes(codes_).subspan(first, ends_[index] - first);
  }

  void make(Positions reading, const qoc_swapCharSet *set) {
    codes_.reserve(reading.size());
    ends_.reserve(reading.size());
    for (const qoc_ocrDictionaryCharMulti &position : reading) {
      append(view(position), set);
      ends_.push_back(codes_.size());
    }
  }

 private:
  /// Those of a position: its first candidate, then the other candidates and every equivalent of any.
  void append(Characters candidates, const qoc_swapCharSet *set) {
    const Char32 first = candidates.empty() ? QOC_CHAR_EMPTY : candidates[0].code;
    codes_.push_back(first);
    const std::size_t firstOther = codes_.size();
    const auto appendNew = [&](Char32 code) {
      if (std::find(codes_.begin() + static_cast<std::ptrdiff_t>(firstOther), codes_.end(), code) == codes_.end()) {
        codes_.push_back(code);
      }
    };
    for (std::size_t k = 0; k < candidates.size(); ++k) {
      if (k > 0) {
        appendNew(candidates[k].code);  // Deliberate: even one with the first candidate's code.
      }
      forEachEquivalent(set, candidates[k].code, [&](Char32 equivalent) {
        if (equivalent != first) {
          appendNew(equivalent);
        }
      });
    }
  }

  std::vector<Char32> codes_;
  std::vector<std::size_t> ends_;
};

/// Finds the ways of one reading's spans.
template <class States>
class ReadingMatcher {
 public:
  ReadingMatcher(States &states, const LengthLimits &limits, Positions reading,
                 const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set, ExpressionResults &found)
      : limits_(limits),
        reading_(reading),
        params_(params),
        set_(set),
        found_(found),
        all_(states.all()),
        search_(states, reading, set),
        finder_(states) {}

  qsys_status matchAll() {
    const std::int32_t n = search_.size();
    const Attempts attempts = limits_.attemptsFor(n);
    bool isMatch = false;
    QOC_TRY(search_.isMatch(0, n, attempts, isMatch));
    if (isMatch) {
      QOC_TRY(matchSpan(0, n, attempts));
    }
    const auto mayStop = [this] { return stopsOnceExact(params_) && found_.hasExact(); };
    if (!searchesWindows(params_) || mayStop()) {
      return QSYS_STATUS_OK;
    }
    return search_.forEachSpan(*params_, limits_.attemptsForAny(n), mayStop,
                               [this](std::int32_t start, std::int32_t end, bool &) {
                                 return matchSpan(start, end, limits_.attemptsFor(end - start));
                               });
  }

 private:
  using Place = typename WayFinder<States>::Place;

  qsys_status matchSpan(std::int32_t start, std::int32_t end, Attempts attempts) {
    const std::int32_t length = end - start;
    attempts.exact = attempts.exact && found_.mayCount(ExpressionEdit::none, length);
    attempts.insertion = attempts.insertion && found_.mayCount(ExpressionEdit::insertion, length);
    attempts.deletion = attempts.deletion && found_.mayCount(ExpressionEdit::deletion, length);
    attempts.substitution = attempts.substitution && found_.mayCount(ExpressionEdit::substitution, length);
    if (!attempts.any()) {
      return QSYS_STATUS_OK;
    }
    return search_.forEachMatch(start, end, attempts, [&](ExpressionEdit edit, std::int32_t place) {
      return found_.mayCount(edit, length) ? matchSequence({start, end, edit, place}) : qsys_status{QSYS_STATUS_OK};
    });
  }

  /// Finds every way of the span's sequence, edited.
  qsys_status matchSequence(const EditedSpan &edited) {
    if (codes_.isEmpty()) {
      codes_.make(reading_, set_);
    }
    static constexpr Char32 wildcard[] = {QOC_CHAR_ANY};
    sequence_.clear();
    for (std::int32_t i = edited.start; i <= edited.end; ++i) {
      const bool isPlace = i == edited.place && edited.edit != ExpressionEdit::none;
      if (isPlace && edited.edit != ExpressionEdit::deletion) {
        sequence_.push_back({wildcard, &all_});
      }
      if (i < edited.end && (!isPlace || edited.edit == ExpressionEdit::insertion)) {
        sequence_.push_back({codes_.at(i), &search_.acceptingAt(i)});
      }
    }
    return finder_.find(sequence_, [&](const auto &way) {
      found_.add(edited, way, sequence_);
      return qsys_status{QSYS_STATUS_OK};
    });
  }

  const LengthLimits &limits_;
  Positions reading_;
  const qoc_ocrDictionaryRunParams *params_;
  const qoc_swapCharSet *set_;
  ExpressionResults &found_;
  typename States::Set all_;
  SpanSearch<States> search_;
  WayFinder<States> finder_;
  ReadingCodes codes_;
  std::vector<Place> sequence_;
};

/// Ranks everything that one reading gives in `results`, computed also when that is nothing; or enough of it for
/// whoever keeps the best result only.
qsys_status matchReading(const Expression &expression, const qoc_ocrDictionaryStringMulti &reading,
                         const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set, bool keepsBestOnly,
                         qoc_ocrDictionaryResultSet &results) {
  reset(results);
  results.isComputed = 1;
  const LengthLimits limits(expression, params);
  if (!limits.mayMatch(sizeOf(reading))) {
    return passOverWindows(sizeOf(reading), params);
  }
  ExpressionResults found(view(reading), params, keepsBestOnly);
  QOC_TRY(withStates(expression, [&](auto &states) {
    return ReadingMatcher(states, limits, view(reading), params, set, found).matchAll();
  }));
  return found.isEmpty() ? qsys_status{QSYS_STATUS_OK} : found.make(results);
}

/// Matches the variants of the reading that the set's multi-character swaps allow: those that may match, or, without
/// `variants`, every one.
qsys_status matchVariants(const Expression &expression, const qoc_ocrDictionaryStringMulti &reading,
                          const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet &set,
                          std::optional<ReadingVariants> &variants, qoc_ocrDictionaryResultSet &results) {
  qoc_ocrDictionaryResultSet found;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qoc_ocrDictionaryResultSet_construct, qoc_ocrDictionaryResultSet_destruct>(&found);
    const auto matchOne = [&](const qoc_ocrDictionaryStringMulti &variant, const qstd_vector32s &indices, bool isFirst,
                              bool &isDone) -> qsys_status {
      QOC_TRY(matchReading(expression, variant, params, &set, false, found));
      QOC_TRY(takeVariantsResults(results, found, reading, indices, isFirst, params));
      isDone = stopsOnceExact(params) && answerOf<qoc_ocrDictionaryResultSet_getIsExactBest>(results);
      return QSYS_STATUS_OK;
    };
    if (variants) {
      return forEachNearVariant(expression, *variants, params, set, {0, searchesWindows(params) ? 1 : 0}, matchOne,
                                [&] { results.isComputed = 1; });
    }
    bool isFirst = true;
    return forEachVariant(reading, set, [&](const auto &variant, const auto &indices, bool &isDone) {
      return matchOne(variant, indices, std::exchange(isFirst, false), isDone);
    });
  });
}

}  // namespace

qsys_status RegularExpressionMatching::match(const qoc_ocrDictionaryRegularExpression &expression,
                                             const qoc_ocrDictionaryRunParams *params,
                                             qoc_ocrDictionaryResultSet &results) {
  reset(results);
  const Expression &compiled = expressionOf(expression.regex);
  if (hasVariants(set_)) {
    if (!variants_ && usesLattice(reading_)) {
      variants_.emplace(reading_, *set_);
    }
    QOC_TRY(matchVariants(compiled, reading_, params, *set_, variants_, results));
  } else {
    const bool keepsBestOnly = params != nullptr && params->returnBestOnly != 0;
    QOC_TRY(matchReading(compiled, reading_, params, set_, keepsBestOnly, results));
  }
  return qoc_ocrDictionaryResultSet_finalize(&results, params);
}

qsys_status qoc_ocrDictionaryRegularExpression_match(const qoc_ocrDictionaryRegularExpression *expression,
                                                     const qoc_ocrDictionaryString *input,
                                                     const qoc_ocrDictionaryRunParams *params,
                                                     const qoc_swapCharSet *set, qoc_ocrDictionaryResultSet *results) {
  if (!present({expression, input, results})) {
    return QSYS_STATUS_OK;
  }
  return withReadingOf(*input, [&](const qoc_ocrDictionaryStringMulti &reading) {
    return qoc_ocrDictionaryRegularExpression_matchMulti(expression, &reading, params, set, results);
  });
}

qsys_status qoc_ocrDictionaryRegularExpression_matchMulti(const qoc_ocrDictionaryRegularExpression *expression,
                                                          const qoc_ocrDictionaryStringMulti *reading,
                                                          const qoc_ocrDictionaryRunParams *params,
                                                          const qoc_swapCharSet *set,
                                                          qoc_ocrDictionaryResultSet *results) {
  if (!present({expression, reading, results})) {
    return QSYS_STATUS_OK;
  }
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    return RegularExpressionMatching(*reading, set).match(*expression, params, *results);
  });
}
