// The yes-or-no match of a lexicon.

#include <algorithm>
#include <vector>

#include "kinds/lexicon_match.hpp"
#include "kinds/lexicon_roads.hpp"
#include "text/match_test.hpp"
#include "text/reading_of.hpp"
#include "text/window_search.hpp"

using qoc::present;

namespace qoc {

namespace {

/// Tests words on one reading, or on its parts.
class WordTest {
 public:
  WordTest(const qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryRunParams *params, ReadingMatches &matches)
      : lexicon_(lexicon),
        index_(lexiconRoads().usesIndex ? indexOf(lexicon) : nullptr),
        params_(params),
        maxEdits_(params != nullptr ? std::max(params->maxEdits, 0) : 0),
        searchesWindows_(params != nullptr && params->matchOption9 != 0),
        matches_(matches),
        test_(matches) {}

  qsys_status isMatch(bool &isMatch) {
    const std::int32_t n = matches_.size();
    QOC_TRY(tryWords({0, n}, isMatch));
    return isMatch || searchesWindows_ ? static_cast<qsys_status>(QSYS_STATUS_OK) : tryParts(n, isMatch);
  }

 private:
  /// Tests the words of the window's own range on it, and with a search for windows on all of them, up to the first
  /// that matches.
  qsys_status tryWords(Window window, bool &isMatch) {
    isMatch = false;
    const WordRange range = findLengthRange(lexicon_, window.size(), params_);
    if (range.first >= range.end) {
      return QSYS_STATUS_OK;
    }
    if (index_ != nullptr) {
      index_->prepare(matches_, window, query_);
    }
    const bool isScan = index_ == nullptr || searchesWindows_ || !index_->walks(query_, maxEdits_);
    WordPolls polls(range, matches_.size(), params_);
    for (WordRange part = firstPart(range, isScan); part.first < part.end; part = nextPart(range, part)) {
      find(part);
      for (const std::int32_t word : found_) {
        QOC_TRY(polls.pollBefore(word));
        const Characters characters = view(view(lexicon_.strings)[static_cast<std::size_t>(word)]);
        QOC_TRY(searchesWindows_ ? test_.isMatch(characters, params_, isMatch)
                                 : test_.isMatchInWindow(characters, window, params_, isMatch));
        if (isMatch) {
          return QSYS_STATUS_OK;
        }
      }
      QOC_TRY(polls.passOver(part.end));
    }
    return QSYS_STATUS_OK;
  }

  /// Finds the words worth testing among some.
  void find(const WordRange &range) {
    found_.clear();
    if (index_ != nullptr && !searchesWindows_) {
      index_->find(query_, maxEdits_, range.first, range.end, found_);
      return;
    }
    for (std::int32_t word = range.first; word < range.end; ++word) {
      if (index_ == nullptr || index_->mayMatch(word, query_, maxEdits_)) {
        found_.push_back(word);
      }
    }
  }

  /// Every part is tested like a whole reading, with a range of words of its own.
  qsys_status tryParts(std::int32_t n, bool &isMatch) {
    qoc_ocrDictionaryRunParams limits;
    qoc_ocrDictionaryRunParams_construct(&limits);
    for (std::int32_t start = 0; start < n && !isMatch; ++start) {
      QOC_TRY(qsys_attention_check());
      const WindowEnds ends = findWindowEnds(start, n, params_ != nullptr ? *params_ : limits);
      for (std::int32_t end = ends.first; end <= ends.last && !isMatch; ++end) {
        QOC_TRY(tryWords({start, end}, isMatch));
      }
    }
    return QSYS_STATUS_OK;
  }

  const qoc_ocrDictionaryLexicon &lexicon_;
  const LexiconIndex *index_;
  const qoc_ocrDictionaryRunParams *params_;
  std::int32_t maxEdits_;
  bool searchesWindows_;
  ReadingMatches &matches_;
  MatchTest test_;
  IndexQuery query_;
  std::vector<std::int32_t> found_;
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
