// Every way in which a reading matches an expression, as ranked results. The search is in
// regular_expression_search.hpp.

#include <utility>

#include "frame/frame.hpp"
#include "kinds/regular_expression_search.hpp"
#include "platform/containers/shared_elements.hpp"
#include "platform/regex/ways.hpp"
#include "run/result_set_ops.hpp"
#include "swap/variants.hpp"
#include "text/reading_of.hpp"

using namespace qoc;

namespace {

/// Makes the tokens of a position: its first candidate, then the other candidates and every equivalent of any.
qsys_status setTokens(const qoc_ocrDictionaryCharMulti &position, const qoc_swapCharSet *set, qstd_tokenMulti &multi) {
  const Characters candidates = view(position);
  if (candidates.empty()) {
    return qstd_tokenMulti_setChar32(&multi, QOC_CHAR_EMPTY);
  }
  QOC_TRY(qstd_tokenMulti_setChar32(&multi, candidates[0].code));
  const Char32 first = candidates[0].code;
  const auto appendNew = [&](Char32 code) -> qsys_status {
    for (const qstd_token &token : viewAs<qstd_token>(multi.alternatives)) {
      Char32 listed = 0;
      QOC_TRY(qstd_token_getChar(&token, &listed));
      if (listed == code) {
        return QSYS_STATUS_OK;
      }
    }
    qstd_token token;
    QOC_TRY(qstd_token_setChar32(&token, code));
    return qstd_vector_qstd_token_pushBack(&multi.alternatives, &token);
  };
  qsys_status status = QSYS_STATUS_OK;
  for (std::size_t k = 0; k < candidates.size() && status >= 0; ++k) {
    // Deliberate: a later candidate is entered itself, even one with the first candidate's code.
    status = k > 0 ? appendNew(candidates[k].code) : status;
    forEachEquivalent(set, candidates[k].code, [&](Char32 equivalent) {
      if (status >= 0 && equivalent != first) {
        status = appendNew(equivalent);
      }
    });
  }
  return status;
}

/// Files the ways of one reading's spans in buckets.
template <class States>
class ReadingMatcher {
 public:
  /// `shown` and `tokens` are empty, and filled when they are first needed: with the copy of the reading that all
  /// results share, and with its tokens. `keepsBestOnly` says that of what is filed only the best result is to be kept.
  ReadingMatcher(States &states, const LengthLimits &limits, bool keepsBestOnly,
                 const qoc_ocrDictionaryStringMulti &reading, const qoc_ocrDictionaryRunParams *params,
                 const qoc_swapCharSet *set, qoc_ocrDictionaryStringMulti &shown, qstd_vector_qstd_tokenMulti &tokens,
                 const qstd_tokenMulti &wildcard, qstd_vector_vector_qoc_ocrDictionaryResult &buckets)
      : states_(states),
        limits_(limits),
        keepsBestOnly_(keepsBestOnly),
        reading_(reading),
        params_(params),
        set_(set),
        shown_(shown),
        tokens_(tokens),
        wildcard_(wildcard),
        buckets_(buckets),
        search_(states, view(reading), set) {}

  qsys_status matchAll() {
    const std::int32_t n = search_.size();
    const Attempts attempts = limits_.attemptsFor(n);
    bool isMatch = false;
    QOC_TRY(search_.isMatch(0, n, attempts, isMatch));
    if (isMatch) {
      QOC_TRY(matchSpan(0, n, attempts));
    }
    const auto mayStop = [this] { return stopsOnceExact(params_) && hasExact(); };
    if (!searchesSpans(params_) || mayStop()) {
      return QSYS_STATUS_OK;
    }
    return search_.forEachSpan(*params_, limits_.attemptsForAny(n), mayStop,
                               [this](std::int32_t start, std::int32_t end, bool &) {
                                 return matchSpan(start, end, limits_.attemptsFor(end - start));
                               });
  }

 private:
  struct Edited {
    std::int32_t start, end;
    ExpressionEdit edit;
    std::int32_t place;
  };

  bool hasExact() const {
    qsys_bool has = 0;
    return qoc_ocrDictionaryResultBuckets_hasResults(&buckets_, &has) >= 0 && has != 0;
  }

  qsys_status matchSpan(std::int32_t start, std::int32_t end, Attempts attempts) {
    return search_.forEachMatch(start, end, attempts, [&](ExpressionEdit edit, std::int32_t place) {
      return isNeedless(edit) ? qsys_status{QSYS_STATUS_OK} : matchSequence({start, end, edit, place});
    });
  }

  /// Files every way of the span's sequence, edited.
  qsys_status matchSequence(const Edited &edited) {
    QOC_TRY(makeTokens());
    sequence_.clear();
    const auto tokens = viewAs<qstd_tokenMulti>(tokens_);
    for (std::int32_t i = edited.start; i <= edited.end; ++i) {
      const bool isPlace = i == edited.place && edited.edit != ExpressionEdit::none;
      if (isPlace && edited.edit != ExpressionEdit::deletion) {
        sequence_.push_back(&wildcard_);
      }
      if (i < edited.end && (!isPlace || edited.edit == ExpressionEdit::insertion)) {
        sequence_.push_back(&tokens[static_cast<std::size_t>(i)]);
      }
    }
    WayFinder finder(states_, std::span<const qstd_tokenMulti *const>(sequence_));
    return finder.find([&](Way way) { return file(edited, way); });
  }

  qsys_status makeTokens() {
    const Positions positions = view(reading_);
    const auto numPositions = static_cast<std::int32_t>(positions.size());
    if (sizeOf(tokens_) == numPositions) {
      return QSYS_STATUS_OK;
    }
    QOC_TRY(qstd_vector_qstd_tokenMulti_resize(&tokens_, numPositions));
    for (std::size_t i = 0; i < positions.size(); ++i) {
      QOC_TRY(setTokens(positions[i], set_, editAs<qstd_tokenMulti>(tokens_)[i]));
    }
    return QSYS_STATUS_OK;
  }

  /// Whether a result of the edit cannot show: only the best one is kept in the end, and there is one without an edit,
  /// which every ranking puts first before it looks at anything else.
  bool isNeedless(ExpressionEdit edit) const { return keepsBestOnly_ && edit != ExpressionEdit::none && hasExact(); }

  qsys_status file(const Edited &edited, Way way) {
    qoc_ocrDictionaryResult result;
    QOC_TRY(inFrame<1>([&](Frame<1> &frame) -> qsys_status {
      QOC_TRY(qoc_ocrDictionaryResult_construct(&result));
      frame.local<qoc_ocrDictionaryResult_destruct>(&result);
      result.isComputed = 1;
      result.mode = qoc_ocrDictionaryMode_regularExpression;
      result.numEdits = edited.edit == ExpressionEdit::none ? 0 : 1;
      result.numIgnoredPrefixCharacters = edited.start;
      result.numIgnoredSuffixCharacters = search_.size() - edited.end;
      return qoc_ocrDictionaryResultBuckets_add(&buckets_, &result);
    }));
    // The rest is filled in where the result is filed, so that it is not copied.
    const auto bucket = static_cast<std::size_t>(edited.edit == ExpressionEdit::none ? 0 : 1);
    qoc_ocrDictionaryResult &filed =
        editAs<qoc_ocrDictionaryResult>(editAs<qstd_vector_qoc_ocrDictionaryResult>(buckets_)[bucket]).back();
    if (edited.edit == ExpressionEdit::deletion) {
      QOC_TRY(qstd_vector32s_pushBack(&filed.deleted, &edited.place));
    }
    if (sizeOf(shown_) == 0) {
      QOC_TRY(qoc_ocrDictionaryStringMulti_assign(&shown_, &reading_));
      QOC_TRY(shareElements(shown_.positions.core));
    }
    QOC_TRY(qoc_ocrDictionaryStringMulti_assign(&filed.given, &shown_));
    QOC_TRY(qoc_ocrDictionaryStringMulti_assign(&filed.givenSwap, &shown_));
    return fillPositions(edited, way, filed);
  }

  qsys_status fillPositions(const Edited &edited, Way way, qoc_ocrDictionaryResult &result) {
    const auto numPositions = static_cast<std::int32_t>(way.size());
    QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_resize(&result.valid.positions, numPositions));
    QOC_TRY(qstd_vector_qoc_ocrDictionaryPositionStatus_resize(&result.resultStringStatus, numPositions));
    const auto valid = editAs<qoc_ocrDictionaryCharMulti>(result.valid.positions);
    const auto statuses = editAs<qoc_ocrDictionaryPositionStatus>(result.resultStringStatus);
    for (std::size_t i = 0; i < way.size(); ++i) {
      const MatchedTokens &matched = *way[i];
      statuses[i] =
          matched.front() == 0 ? qoc_ocrDictionaryPositionStatus_primary : qoc_ocrDictionaryPositionStatus_secondary;
      for (const std::int32_t index : matched) {
        qoc_ocrDictionaryChar character = {0, 0};
        QOC_TRY(qstd_token_getChar(&tokenAt(*sequence_[i], static_cast<std::size_t>(index)), &character.code));
        QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_pushBack(&valid[i].candidates, &character));
      }
    }
    const auto place = static_cast<std::size_t>(edited.place - edited.start);
    if (edited.edit == ExpressionEdit::insertion) {
      statuses[place] = qoc_ocrDictionaryPositionStatus_inserted;
    } else if (edited.edit == ExpressionEdit::substitution) {
      statuses[place] = qoc_ocrDictionaryPositionStatus_substituted;
    }
    return QSYS_STATUS_OK;
  }

  States &states_;
  const LengthLimits &limits_;
  bool keepsBestOnly_;
  const qoc_ocrDictionaryStringMulti &reading_;
  const qoc_ocrDictionaryRunParams *params_;
  const qoc_swapCharSet *set_;
  qoc_ocrDictionaryStringMulti &shown_;
  qstd_vector_qstd_tokenMulti &tokens_;
  const qstd_tokenMulti &wildcard_;
  qstd_vector_vector_qoc_ocrDictionaryResult &buckets_;
  SpanSearch<States> search_;
  std::vector<const qstd_tokenMulti *> sequence_;
};

/// Merges the buckets into an empty set. A single result, which nothing is merged or ranked with, is moved.
qsys_status takeOver(qstd_vector_vector_qoc_ocrDictionaryResult &buckets, const qoc_ocrDictionaryRunParams *params,
                     qoc_ocrDictionaryResultSet &results) {
  const auto all = editAs<qstd_vector_qoc_ocrDictionaryResult>(buckets);
  if (!all.empty() && sizeOf(all.back()) == 1 && (all.size() == 1 || sizeOf(all.front()) == 0)) {
    return qstd_vector_qoc_ocrDictionaryResult_swap(&results.results, &all.back());
  }
  return qoc_ocrDictionaryResultSet_mergeBuckets(&results, &buckets, params);
}

/// Ranks everything that one reading gives in `results`, computed also when that is nothing; or enough of it for
/// whoever keeps the best result only.
qsys_status matchReading(const Expression &expression, const qoc_ocrDictionaryStringMulti &reading,
                         const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set, bool keepsBestOnly,
                         qoc_ocrDictionaryResultSet &results) {
  QOC_TRY(qoc_ocrDictionaryResultSet_reset(&results));
  results.isComputed = 1;
  const LengthLimits limits(expression, params);
  if (!limits.mayMatch(sizeOf(reading))) {
    return passOverStarts(sizeOf(reading), params);
  }
  qstd_vector_vector_qoc_ocrDictionaryResult buckets;
  qoc_ocrDictionaryStringMulti shown;
  qstd_vector_qstd_tokenMulti tokens;
  qstd_tokenMulti wildcard;
  return inFrame<4>([&](Frame<4> &frame) -> qsys_status {
    QOC_TRY(qstd_vector_vector_qoc_ocrDictionaryResult_constructEmpty(&buckets));
    frame.local<qstd_vector_vector_qoc_ocrDictionaryResult_destruct>(&buckets);
    QOC_TRY(qoc_ocrDictionaryStringMulti_construct(&shown));
    frame.local<qoc_ocrDictionaryStringMulti_destruct>(&shown);
    QOC_TRY(qstd_vector_qstd_tokenMulti_constructEmpty(&tokens));
    frame.local<qstd_vector_qstd_tokenMulti_destruct>(&tokens);
    QOC_TRY(qstd_tokenMulti_construct(&wildcard));
    frame.local<qstd_tokenMulti_destruct>(&wildcard);
    QOC_TRY(withStates(expression, [&](auto &states) {
      return ReadingMatcher(states, limits, keepsBestOnly, reading, params, set, shown, tokens, wildcard, buckets)
          .matchAll();
    }));
    return takeOver(buckets, params, results);
  });
}

/// Matches every variant of the reading that the set's multi-character swaps allow.
qsys_status matchVariants(const Expression &expression, const qoc_ocrDictionaryStringMulti &reading,
                          const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet &set,
                          qoc_ocrDictionaryResultSet &results) {
  qoc_ocrDictionaryResultSet found;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(qoc_ocrDictionaryResultSet_construct(&found));
    frame.local<qoc_ocrDictionaryResultSet_destruct>(&found);
    bool isFirst = true;
    return forEachVariant(
        reading, set,
        [&](const qoc_ocrDictionaryStringMulti &variant, const qstd_vector32s &indices, bool &isDone) -> qsys_status {
          if (stopsOnceExact(params)) {
            qsys_bool isExact = 0;
            QOC_TRY(qoc_ocrDictionaryResultSet_getIsExactBest(&results, &isExact));
            if (isExact != 0) {
              isDone = true;
              return QSYS_STATUS_OK;
            }
          }
          QOC_TRY(matchReading(expression, variant, params, &set, false, found));
          return takeVariantsResults(results, found, reading, indices, std::exchange(isFirst, false), params);
        });
  });
}

}  // namespace

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
  QOC_TRY(qoc_ocrDictionaryResultSet_reset(results));
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    const Expression &compiled = expressionOf(expression->regex);
    if (hasVariants(set)) {
      QOC_TRY(matchVariants(compiled, *reading, params, *set, *results));
    } else {
      const bool keepsBestOnly = params != nullptr && params->returnBestOnly != 0;
      QOC_TRY(matchReading(compiled, *reading, params, set, keepsBestOnly, *results));
    }
    return qoc_ocrDictionaryResultSet_finalize(results, params);
  });
}
