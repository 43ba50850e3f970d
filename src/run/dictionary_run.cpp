// The run: a reading against every entry of a dictionary.

#include "frame/frame.hpp"
#include "qoc/dictionary.h"
#include "run/result_set_ops.hpp"
#include "text/reading_of.hpp"

using qoc::Frame;
using qoc::inFrame;
using qoc::present;

namespace {

/// One run: what it is given, its working copy of the params, and the scratch set that every entry is matched into.
struct Run {
  const qoc_ocrDictionaryStringMulti *reading;
  const qoc_ocrDictionaryRunParams *params;
  const qoc_swapCharSet *set;
  qoc_ocrDictionaryResultSet *results;
  qoc_ocrDictionaryRunParams working;
  qoc_ocrDictionaryResultSet scratch;
};

/// Once the best result is exact and only the best counts, one edit need not be looked for in the entries that are left.
qsys_status stopEarly(Run &run) {
  if (run.params->returnBestOnly != 0 && run.params->maxEdits == 1) {
    qsys_bool isExactBest = 0;
    QOC_TRY(qoc_ocrDictionaryResultSet_getIsExactBest(run.results, &isExactBest));
    run.working.maxEdits = isExactBest != 0 ? 0 : run.working.maxEdits;
  }
  return QSYS_STATUS_OK;
}

/// Matches every entry of one kind, in order.
template <auto MatchMulti, class Entry, class Entries>
qsys_status runEntries(Run &run, const Entries &entries) {
  for (const Entry &entry : qoc::viewAs<Entry>(entries)) {
    QOC_TRY(qsys_attention_check());
    QOC_TRY(stopEarly(run));
    QOC_TRY(MatchMulti(&entry, run.reading, &run.working, run.set, &run.scratch));
    // With the caller's params: the working copy's edits are no matter of the merge.
    QOC_TRY(qoc::mergeTaking(*run.results, run.scratch, run.params));
  }
  return QSYS_STATUS_OK;
}

}  // namespace

qsys_status qoc_ocrDictionary_run(const qoc_ocrDictionary *dictionary, const qoc_ocrDictionaryString *input,
                                  const qoc_ocrDictionaryRunParams *params, qoc_ocrDictionaryResultSet *results) {
  if (!present({dictionary, input, params, results})) {
    return QSYS_STATUS_OK;
  }
  return qoc_ocrDictionary_runSwapCharSet(dictionary, input, params, &dictionary->swapCharSet, results);
}

qsys_status qoc_ocrDictionary_runSwapCharSet(const qoc_ocrDictionary *dictionary, const qoc_ocrDictionaryString *input,
                                             const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                             qoc_ocrDictionaryResultSet *results) {
  if (!present({dictionary, input, params, results})) {
    return QSYS_STATUS_OK;
  }
  return qoc::withReadingOf(*input, [&](const qoc_ocrDictionaryStringMulti &reading) {
    return qoc_ocrDictionary_runSwapCharSetMulti(dictionary, &reading, params, set, results);
  });
}

qsys_status qoc_ocrDictionary_runMulti(const qoc_ocrDictionary *dictionary, const qoc_ocrDictionaryStringMulti *reading,
                                       const qoc_ocrDictionaryRunParams *params, qoc_ocrDictionaryResultSet *results) {
  if (!present({dictionary, reading, params, results})) {
    return QSYS_STATUS_OK;
  }
  return qoc_ocrDictionary_runSwapCharSetMulti(dictionary, reading, params, &dictionary->swapCharSet, results);
}

qsys_status qoc_ocrDictionary_runSwapCharSetMulti(const qoc_ocrDictionary *dictionary,
                                                  const qoc_ocrDictionaryStringMulti *reading,
                                                  const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                                  qoc_ocrDictionaryResultSet *results) {
  if (!present({dictionary, reading, params, results})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_ocrDictionaryResultSet_reset(results));
  Run run = {reading, params, set, results, {}, {}};
  return inFrame<2>([&](Frame<2> &frame) -> qsys_status {
    QOC_TRY(qoc_ocrDictionaryRunParams_constructCopy(&run.working, params));
    frame.local<qoc_ocrDictionaryRunParams_destruct>(&run.working);
    QOC_TRY(qoc_ocrDictionaryResultSet_construct(&run.scratch));
    frame.local<qoc_ocrDictionaryResultSet_destruct>(&run.scratch);

    // The order of the kinds is fixed: ties keep what came first.
    QOC_TRY((runEntries<qoc_ocrDictionaryLexicon_matchMulti, qoc_ocrDictionaryLexicon>(run, dictionary->lexicons)));
    QOC_TRY((runEntries<qoc_ocrDictionaryLineFielding_matchMulti, qoc_ocrDictionaryLineFielding>(
        run, dictionary->fieldings)));
    QOC_TRY((runEntries<qoc_ocrDictionaryRegularExpression_matchMulti, qoc_ocrDictionaryRegularExpression>(
        run, dictionary->regularExpressions)));
    // The merges have left the results ranked, and finishing ranks them again.
    if (results->isComputed == 0) {
      QOC_TRY(qoc_ocrDictionaryResultSet_reset(results));
      results->isComputed = 1;
    }
    // Every entry's results came finished, and finishing them again changes nothing unless it takes inserted positions out.
    return params->finalizeEachResult != 0 ? qoc_ocrDictionaryResultSet_finalize(results, params)
                                           : qoc::rankAndCut(*results, params);
  });
}
