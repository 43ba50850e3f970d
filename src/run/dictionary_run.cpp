// The run: a reading against every entry of a dictionary.

#include <utility>

#include "frame/frame.hpp"
#include "kinds/lexicon_match.hpp"
#include "kinds/line_fielding_match.hpp"
#include "kinds/regular_expression_match.hpp"
#include "qoc/dictionary.h"
#include "run/result_set_ops.hpp"
#include "text/reading_of.hpp"

using qoc::Frame;
using qoc::inFrame;
using qoc::present;

namespace {

/// One run: the params it is given and its working copy, and the scratch set that every entry is matched into.
struct Run {
  const qoc_ocrDictionaryRunParams *params;
  qoc_ocrDictionaryResultSet *results;
  qoc_ocrDictionaryRunParams working;
  qoc_ocrDictionaryResultSet scratch;
};

/// Matches every entry of one kind, in order, by match(entry).
template <class Entry, class Entries, class Match>
qsys_status runEntries(Run &run, const Entries &entries, Match match) {
  for (const Entry &entry : qoc::viewAs<Entry>(entries)) {
    QOC_TRY(qsys_attention_check());
    qoc::stopEarly(run.params, *run.results, run.working);
    QOC_TRY(match(entry));
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
  qoc::reset(*results);
  Run run = {params, results, *params, {}};
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qoc_ocrDictionaryResultSet_construct, qoc_ocrDictionaryResultSet_destruct>(&run.scratch);

    // The caller's storage serves the scratch set first: the first results that are found move back with it.
    const bool isLent = results->results.core.memory == run.scratch.results.core.memory;
    if (isLent) {
      std::swap(results->results, run.scratch.results);
    }
    // The order of the kinds is fixed: ties keep what came first.
    qoc::LexiconMatching lexiconMatching(*reading, set);
    QOC_TRY(runEntries<qoc_ocrDictionaryLexicon>(run, dictionary->lexicons, [&](const auto &lexicon) {
      return lexiconMatching.match(lexicon, &run.working, run.scratch);
    }));
    qoc::LineFieldingMatching lineMatching(*reading, set);
    QOC_TRY(runEntries<qoc_ocrDictionaryLineFielding>(run, dictionary->fieldings, [&](const auto &fielding) {
      return lineMatching.match(fielding, &run.working, run.scratch);
    }));
    qoc::RegularExpressionMatching expressionMatching(*reading, set);
    QOC_TRY(runEntries<qoc_ocrDictionaryRegularExpression>(
        run, dictionary->regularExpressions,
        [&](const auto &expression) { return expressionMatching.match(expression, &run.working, run.scratch); }));
    if (isLent && results->results.core.capacity == 0) {
      std::swap(results->results, run.scratch.results);  // Nothing moved: the storage goes back as it is.
      qoc::clear(results->results);
    }
    // The merges have left the results ranked, and finishing ranks them again.
    if (results->isComputed == 0) {
      qoc::reset(*results);
      results->isComputed = 1;
    }
    // Every entry's results came finished, and finishing them again changes nothing unless it takes inserted positions
    // out.
    return params->finalizeEachResult != 0 ? qoc_ocrDictionaryResultSet_finalize(results, params)
                                           : qoc::rankAndCut(*results, params);
  });
}
