// Whether a reading matches an expression: the yes or no form. The search is in regular_expression_search.hpp.

#include "frame/frame.hpp"
#include "kinds/regular_expression_search.hpp"
#include "swap/variants.hpp"
#include "text/reading_of.hpp"

using namespace qoc;

namespace {

template <class States>
qsys_status searchReading(States &states, const LengthLimits &limits, const qoc_ocrDictionaryStringMulti &reading,
                          const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set, bool &isMatch) {
  SpanSearch search(states, view(reading), set);
  const std::int32_t n = search.size();
  QOC_TRY(search.isMatch(0, n, limits.attemptsFor(n), isMatch));
  if (isMatch || !searchesWindows(params)) {
    return QSYS_STATUS_OK;
  }
  return search.forEachSpan(
      *params, limits.attemptsForAny(n), [] { return false; },
      [&](std::int32_t start, std::int32_t end, bool &goOn) -> qsys_status {
        QOC_TRY(search.isMatch(start, end, limits.attemptsFor(end - start), isMatch));
        goOn = !isMatch;
        return QSYS_STATUS_OK;
      });
}

qsys_status isReadingMatch(const Expression &expression, const qoc_ocrDictionaryStringMulti &reading,
                           const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set, bool &isMatch) {
  isMatch = false;
  QOC_TRY(qsys_attention_check());
  const LengthLimits limits(expression, params);
  const std::int32_t n = sizeOf(reading);
  if (!limits.mayMatch(n)) {
    return passOverWindows(n, params);
  }
  return withStates(expression,
                    [&](auto &states) { return searchReading(states, limits, reading, params, set, isMatch); });
}

}  // namespace

qsys_status qoc_ocrDictionaryRegularExpression_isMatch(const qoc_ocrDictionaryRegularExpression *expression,
                                                       const qoc_ocrDictionaryString *input,
                                                       const qoc_ocrDictionaryRunParams *params,
                                                       const qoc_swapCharSet *set, qsys_bool *isMatch) {
  if (!present({expression, input, isMatch})) {
    return QSYS_STATUS_OK;
  }
  return withReadingOf(*input, [&](const qoc_ocrDictionaryStringMulti &reading) {
    return qoc_ocrDictionaryRegularExpression_isMatchMulti(expression, &reading, params, set, isMatch);
  });
}

qsys_status qoc_ocrDictionaryRegularExpression_isMatchMulti(const qoc_ocrDictionaryRegularExpression *expression,
                                                            const qoc_ocrDictionaryStringMulti *reading,
                                                            const qoc_ocrDictionaryRunParams *params,
                                                            const qoc_swapCharSet *set, qsys_bool *isMatch) {
  if (!present({expression, reading, isMatch})) {
    return QSYS_STATUS_OK;
  }
  *isMatch = 0;
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    const Expression &compiled = expressionOf(expression->regex);
    bool answer = false;
    if (hasVariants(set)) {
      const auto ask = [&](const qoc_ocrDictionaryStringMulti &variant, bool &isDone) {
        const qsys_status status = isReadingMatch(compiled, variant, params, set, answer);
        isDone = answer;
        return status;
      };
      if (usesLattice(*reading)) {
        ReadingVariants variants(*reading, *set);
        QOC_TRY(forEachNearVariant(
            compiled, variants, params, *set, {1, searchesWindows(params) ? 1 : 0},
            [&](const auto &variant, const auto &, bool, bool &isDone) { return ask(variant, isDone); }, [] {}));
      } else {
        QOC_TRY(forEachVariant(*reading, *set,
                               [&](const auto &variant, const auto &, bool &isDone) { return ask(variant, isDone); }));
      }
    } else {
      QOC_TRY(isReadingMatch(compiled, *reading, params, set, answer));
    }
    *isMatch = answer ? 1 : 0;
    return QSYS_STATUS_OK;
  });
}
