// The yes-or-no match of a lexicon.

#include <algorithm>

#include "kinds/lexicon_match.hpp"
#include "kinds/lexicon_roads.hpp"
#include "text/match_test.hpp"
#include "text/reading_of.hpp"
#include "text/window_search.hpp"

using qoc::present;
using qoc::view;

namespace qoc {

namespace {

/// Tests words on one reading, or on its parts.
class WordTest {
 public:
  WordTest(const qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryRunParams *params, ReadingMatches &matches)
      : lexicon_(lexicon),
        index_(lexiconRoads().usesIndex ? indexOf(lexicon) : nullptr),
        params_(params),
        matches_(matches),
        test_(matches) {}

  qsys_status isMatch(bool &isMatch) {
    isMatch = false;
    if (index_ != nullptr) {
      // What the whole reading does not cover, none of its parts does.
      index_->prepare(matches_, query_);
    }
    const std::int32_t n = matches_.size();
    const auto testWhole = [&](Characters word, bool &answer) { return test_.isMatch(word, params_, answer); };
    QOC_TRY(tryWords(n, testWhole, isMatch));
    if (isMatch || (params_ != nullptr && params_->matchOption9 != 0)) {
      return QSYS_STATUS_OK;
    }
    return tryParts(n, isMatch);
  }

 private:
  template <class Test>
  qsys_status tryWords(std::int32_t numPositions, Test test, bool &isMatch) {
    const auto words = view(lexicon_.strings);
    const std::int32_t maxEdits = params_ != nullptr ? std::max(params_->maxEdits, 0) : 0;
    const WordRange range = findLengthRange(lexicon_, numPositions, params_);
    for (std::int32_t k = range.first; k < range.end && !isMatch; ++k) {
      if (k % wordsPerPoll == 0) {
        QOC_TRY(qsys_attention_check());
      }
      const auto word = static_cast<std::size_t>(k);
      if (index_ == nullptr || index_->mayMatch(k, query_, maxEdits)) {
        QOC_TRY(test(view(words[word]), isMatch));
      } else {
        QOC_TRY(passOverWindows(matches_.size(), params_));
      }
    }
    return QSYS_STATUS_OK;
  }

  /// Every part is tested like a whole reading, with a range of words of its own.
  qsys_status tryParts(std::int32_t n, bool &isMatch) {
    const std::int32_t e = params_ != nullptr ? params_->maxEdits : 0;
    const std::int32_t least = params_ != nullptr ? params_->minStringLength : 1;
    const std::int32_t most = params_ != nullptr ? params_->maxStringLength : INT32_MAX;
    for (std::int32_t start = 0; start < n && !isMatch; ++start) {
      QOC_TRY(qsys_attention_check());
      const auto last = static_cast<std::uint32_t>(wrappingSum(wrappingSum(wrappingSum(start, most), 1), e));
      std::int32_t end = firstEndBehind(start, wrappingDifference(wrappingSum(start, least), e), last);
      for (; end >= 0 && end <= n && static_cast<std::uint32_t>(end) <= last && !isMatch; ++end) {
        const Window window = {start, end};
        const auto testPart = [&](Characters word, bool &answer) {
          return test_.isMatchInWindow(word, window, params_, answer);
        };
        QOC_TRY(tryWords(window.size(), testPart, isMatch));
      }
    }
    return QSYS_STATUS_OK;
  }

  const qoc_ocrDictionaryLexicon &lexicon_;
  const LexiconIndex *index_;
  const qoc_ocrDictionaryRunParams *params_;
  ReadingMatches &matches_;
  MatchTest test_;
  IndexQuery query_;
};

qsys_status isMatchOne(const qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryStringMulti &reading,
                       const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set, bool &isMatch) {
  ReadingMatches matches(reading, set);
  return WordTest(lexicon, params, matches).isMatch(isMatch);
}

}  // namespace

}  // namespace qoc

qsys_status qoc_ocrDictionaryLexicon_isMatchMulti(const qoc_ocrDictionaryLexicon *lexicon,
                                                  const qoc_ocrDictionaryStringMulti *reading,
                                                  const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                                  qsys_bool *isMatch) {
  if (!present({lexicon, reading, isMatch})) {
    return QSYS_STATUS_OK;
  }
  *isMatch = 0;
  return qoc::inFrame<1>([&](qoc::Frame<1> &) -> qsys_status {
    bool answer = false;
    if (qoc::hasVariants(set)) {
      QOC_TRY(qoc::forEachVariant(*reading, *set, [&](const auto &variant, const auto &, bool &isDone) -> qsys_status {
        QOC_TRY(qoc::isMatchOne(*lexicon, variant, params, set, answer));
        isDone = answer;
        return QSYS_STATUS_OK;
      }));
    } else {
      QOC_TRY(qoc::isMatchOne(*lexicon, *reading, params, set, answer));
    }
    *isMatch = answer ? 1 : 0;
    return QSYS_STATUS_OK;
  });
}

qsys_status qoc_ocrDictionaryLexicon_isMatch(const qoc_ocrDictionaryLexicon *lexicon,
                                             const qoc_ocrDictionaryString *input,
                                             const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                             qsys_bool *isMatch) {
  if (!present({lexicon, input, isMatch})) {
    return QSYS_STATUS_OK;
  }
  return qoc::withReadingOf(*input, [&](const qoc_ocrDictionaryStringMulti &reading) -> qsys_status {
    return qoc_ocrDictionaryLexicon_isMatchMulti(lexicon, &reading, params, set, isMatch);
  });
}
