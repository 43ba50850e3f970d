// The match test: whether a dictionary string can be read in a reading.

#include "text/match_test.hpp"

#include "frame/frame.hpp"
#include "text/reading_of.hpp"
#include "text/window_search.hpp"

namespace qoc {

qsys_status MatchTest::testWindow(Window window, const qoc_ocrDictionaryRunParams *params, bool &isMatch) {
  isMatch = false;
  if (!admitsLength(params, window)) {
    return QSYS_STATUS_OK;
  }
  const std::int32_t m = rows_.size();
  const std::int32_t k = window.size();
  const EndMatches ends = matchEnds(rows_, window);
  if (m == k && ends.numFront == m) {
    isMatch = true;
    return QSYS_STATUS_OK;
  }
  if (params == nullptr || params->maxEdits == 0) {
    return QSYS_STATUS_OK;
  }
  if (params->maxEdits != 1) {
    return table_.fill(rows_, window, *params, isMatch);
  }
  // One edit: what matches from either end must cover all but the place of the edit. The two may overlap, which covers it too.
  const std::int64_t numEnds = std::int64_t{ends.numFront} + ends.numBack;
  isMatch = (m == k && params->matchOption1 != 0 && numEnds + 1 >= m) ||
            (m == k + 1 && params->matchOption2 != 0 && numEnds + 1 >= m) ||
            (m == k - 1 && params->matchOption4 != 0 && numEnds >= m);
  return QSYS_STATUS_OK;
}

qsys_status MatchTest::isMatchInWindow(Characters word, Window window, const qoc_ocrDictionaryRunParams *params,
                                       bool &isMatch) {
  rows_.set(word, matches_);
  return testWindow(window, params, isMatch);
}

qsys_status MatchTest::isMatch(Characters word, const qoc_ocrDictionaryRunParams *params, bool &isMatch) {
  const std::int32_t n = matches_.size();
  QOC_TRY(isMatchInWindow(word, {0, n}, params, isMatch));
  if (isMatch || params == nullptr || params->matchOption9 == 0) {
    return QSYS_STATUS_OK;
  }
  return searchWindows(n, rows_.size(), *params, [&](Window window, bool &isDone) -> qsys_status {
    QOC_TRY(testWindow(window, params, isMatch));
    isDone = isMatch;
    return QSYS_STATUS_OK;
  });
}

}  // namespace qoc

qsys_status qoc_ocrDictionaryString_isMatchMulti(const qoc_ocrDictionaryString *string,
                                                 const qoc_ocrDictionaryStringMulti *reading,
                                                 const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                                 qsys_bool *isMatch) {
  if (!qoc::present({string, reading, isMatch})) {
    return QSYS_STATUS_OK;
  }
  *isMatch = 0;
  return qoc::inFrame<1>([&](qoc::Frame<1> &) -> qsys_status {
    qoc::ReadingMatches matches(*reading, set);
    bool answer = false;
    QOC_TRY(qoc::MatchTest(matches).isMatch(qoc::view(*string), params, answer));
    *isMatch = answer ? 1 : 0;
    return QSYS_STATUS_OK;
  });
}

qsys_status qoc_ocrDictionaryString_isMatch(const qoc_ocrDictionaryString *string, const qoc_ocrDictionaryString *input,
                                            const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                            qsys_bool *isMatch) {
  if (!qoc::present({string, input, isMatch})) {
    return QSYS_STATUS_OK;
  }
  return qoc::withReadingOf(*input, [&](const qoc_ocrDictionaryStringMulti &reading) -> qsys_status {
    return qoc_ocrDictionaryString_isMatchMulti(string, &reading, params, set, isMatch);
  });
}
