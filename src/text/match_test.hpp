#pragma once
// The yes-or-no match of one word and a reading, for callers that ask for many words.

#include <qoc/run_params.h>

#include "text/edit_table.hpp"

namespace qoc {

/// As qoc_ocrDictionaryString_isMatchMulti; the matches, rows and table are the caller's to use again.
class MatchTest {
 public:
  explicit MatchTest(ReadingMatches &matches) : matches_(matches) {}

  qsys_status isMatch(Characters word, const qoc_ocrDictionaryRunParams *params, bool &isMatch);
  /// The same for one window of the reading alone.
  qsys_status isMatchInWindow(Characters word, Window window, const qoc_ocrDictionaryRunParams *params, bool &isMatch);

 private:
  qsys_status testWindow(Window window, const qoc_ocrDictionaryRunParams *params, bool &isMatch);

  ReadingMatches &matches_;
  WordRows rows_;
  EditTable table_;
};

}  // namespace qoc
