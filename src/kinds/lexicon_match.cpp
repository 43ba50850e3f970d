// The match of a lexicon: every word that can be read in a reading, ranked.
//
// The road that is followed: every word of an admissible length is aligned with the reading, in the lexicon's order;
// the results of each are merged into those so far, which may drop newcomers; the first of all is the best. What is
// done is less. The index finds the words that have an alignment of few enough edits (see LexiconIndex); the others
// give no results and change nothing. And what is merged are outlines (see LexiconResults), which compare as the
// results would.
//
// **Where only the best is asked for**, words of many edits need not be looked at once one of few is there. Let E be
// the least number of edits of any result, and S any part of the words, in order, that holds every word with a result
// of E edits. Claim: merging only the words of S gives the same best result, in all its fields. It holds in the default
// ranking for exact results (E = 0), and for results of the edit table (maxEdits of 2 and more, E > 0); with maxEdits 1
// and E = 1 every word of a result is in S anyway.
//
// - A newcomer of more edits than the list's first result is appended before anything but edits is compared, so it
//   changes no result but by the order indexes that the sort after it sets. Those decide only whether the walk drops
//   a newcomer that ties with an old result in all keys of the primary-rank order before the index. Call that a tie.
// - In the cases named, ties agree in all keys of the default order too: edits, deleted positions and primary ones
//   are keys of both, and the secondary positions are all that are not primary in an exact result, and none in one of
//   the table. Duplicates agree as well. So what is dropped leaves a result of equal rank in the list that came
//   before it, and the stable sort keeps that in front. By induction the first result is always the earliest of the
//   least default keys among all words merged: the same in S and in all.
// - What the comparisons cache in the best result B: B is never dropped, so its own walk compares it with results of
//   E edits only (others are decided by edits), passes those that are worse, and ends at the first that is better.
//   Its matched positions and its score are cached at the first result that agrees with it in primary positions and
//   line status; it ties with none. Results that agree in these and in the default keys act alike, and of such a kind
//   a list always holds the earliest, whatever was dropped behind it; so the kinds and their order are the same in S
//   and in all. After that B is the first of the list, and every later newcomer of E edits is compared with it first,
//   whatever the rest of the list holds.
// - The order index of the best result is 0, as the sort of the finished set writes it, or as it was in a list of
//   one.
//
// So the search begins with no edits and allows one more as long as nothing is found within those allowed.
//
// **Variants** are tried alike: let S be any of a reading's variants, in order, that hold every one with a result of E
// edits. Each gives its whole list of results, which begins with those of E edits, so what the variants left out would
// have added again changes nothing but order indexes, and what was said of ties and kinds holds for the merge of lists,
// too. What the best result B caches depends only on the results of lists that follow, one after the other until one
// passes B: a duplicate does, a result that comes first in the primary-rank order, or a tie; the first two are the same
// in S and in all, and at a tie all that B can cache is cached.

#include "kinds/lexicon_match.hpp"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>
#include <vector>

#include "kinds/lexicon_results.hpp"
#include "kinds/lexicon_roads.hpp"
#include "kinds/variant_lattice.hpp"
#include "platform/system/attention.hpp"
#include "text/alignment.hpp"
#include "text/reading_of.hpp"

using qoc::Frame;
using qoc::inFrame;
using qoc::present;
using qoc::view;

namespace qoc {

WordRange findLengthRange(const qoc_ocrDictionaryLexicon &lexicon, std::int32_t n,
                          const qoc_ocrDictionaryRunParams *params) {
  const auto words = view(lexicon.strings);
  const auto firstOfLength = [&](std::int64_t length) {
    const auto found = std::ranges::lower_bound(
        words, length, {}, [](const qoc_ocrDictionaryString &word) { return static_cast<std::int64_t>(sizeOf(word)); });
    return static_cast<std::int32_t>(found - words.begin());
  };
  const std::int64_t d = params != nullptr ? params->maxEdits : 0;
  const bool takesShorter = params != nullptr && params->matchOption9 != 0;
  return {takesShorter ? 0 : firstOfLength(n - d), firstOfLength(n + d + 1)};
}

namespace {

bool isDefaultRanking(const qoc_ocrDictionaryRunParams *params) noexcept {
  return params == nullptr || (params->rankingMode != 1 && params->finalizeEachResult == 0);
}

/// The next number of edits to be tried: one more as long as tries are walked, then twice as many, so that all tries
/// together cost little more than the last.
std::int32_t moreEdits(std::int32_t edits, std::int32_t maxEdits) noexcept {
  constexpr std::int32_t oneByOne = 3;
  return edits < oneByOne ? edits + 1 : edits > maxEdits / 2 ? maxEdits : 2 * edits;
}

/// One reading against the words of a lexicon.
class WordMatcher {
 public:
  /// How many results are needed: every one, or only the first of the finished set.
  enum class Wanted { all, best };

  /// `known`, unless empty, holds every word worth aligning, ascending.
  WordMatcher(const qoc_ocrDictionaryLexicon &lexicon, const ReadingMatches &matches,
              const qoc_ocrDictionaryRunParams *params, const WordRange &range, Wanted wanted,
              std::span<const std::int32_t> known)
      : words_(view(lexicon.strings)),
        index_(lexiconRoads().usesIndex ? indexOf(lexicon) : nullptr),
        params_(params),
        working_(params != nullptr ? *params : qoc_ocrDictionaryRunParams{}),
        known_(known),
        wanted_(wanted),
        maxEdits_(params != nullptr ? std::max(params->maxEdits, 0) : 0),
        searchesWindows_(params != nullptr && params->matchOption9 != 0),
        range_(range),
        polls_(range, matches.size(), params),
        matches_(matches),
        aligner_(matches_, Aligner::Kind::multi),
        outlined_(words_, params != nullptr) {}

  /// Fills `results`, which were reset, ranked; `areFinished` tells whether nothing is left to be done to them.
  qsys_status match(qoc_ocrDictionaryResultSet &results, bool &areFinished) {
    if (index_ != nullptr && known_.empty()) {
      index_->prepare(matches_, {0, matches_.size()}, query_);
    }
    if (lexiconRoads().usesOutlines && isDefaultRanking(params_) && !searchesWindows_) {
      areFinished = true;
      return matchByOutlines(results);
    }
    QOC_TRY(matchByResults(results));
    return qoc_ocrDictionaryResultSet_sort(&results, params_, 1);
  }

 private:
  /// Finds the words worth aligning, all that have an alignment of at most maxEdits edits and perhaps others, and calls
  /// align() with some of them in found_ after the other, in order. A scan is done in parts, so that it is interrupted.
  template <class Align>
  qsys_status findAll(std::int32_t maxEdits, Align align) {
    const bool isScan = known_.empty() && (index_ == nullptr || searchesWindows_ || !index_->walks(query_, maxEdits));
    for (WordRange part = firstPart(range_, isScan); part.first < part.end; part = nextPart(range_, part)) {
      find(maxEdits, part.first, part.end);
      QOC_TRY(align());
      QOC_TRY(polls_.passOver(part.end));
    }
    return QSYS_STATUS_OK;
  }

  void find(std::int32_t maxEdits, std::int32_t first, std::int32_t end) {
    found_.clear();
    if (!known_.empty()) {
      std::ranges::copy_if(known_, std::back_inserter(found_),
                           [=](std::int32_t word) { return word >= first && word < end; });
    } else if (index_ != nullptr && !searchesWindows_) {
      index_->find(query_, maxEdits, first, end, found_);
    } else {
      for (std::int32_t word = first; word < end; ++word) {
        if (index_ == nullptr || index_->mayMatch(word, query_, maxEdits)) {
          found_.push_back(word);
        }
      }
    }
  }

  /// Every word's results are made and merged.
  qsys_status matchByResults(qoc_ocrDictionaryResultSet &results) {
    qoc_ocrDictionaryResultSet scratch;
    return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
      frame.emptyLocal<qoc_ocrDictionaryResultSet_construct, qoc_ocrDictionaryResultSet_destruct>(&scratch);
      return findAll(maxEdits_, [&]() -> qsys_status {
        for (const std::int32_t word : found_) {
          QOC_TRY(polls_.pollBefore(word));
          stopEarly(params_, results, working_);
          QOC_TRY(aligner_.align(words_[static_cast<std::size_t>(word)], workingParams(), scratch));
          QOC_TRY(mergeTaking(results, scratch, params_));
        }
        return QSYS_STATUS_OK;
      });
    });
  }

  /// The same with outlines, of which results are made at the end.
  qsys_status matchByOutlines(qoc_ocrDictionaryResultSet &results) {
    // A limit beyond every cost admits edits that the params forbid, which fewer edits leave out.
    const bool isBounded = wanted_ == Wanted::best && maxEdits_ < EditTable::unreachable && lexiconRoads().usesBound;
    for (std::int32_t edits = isBounded ? 0 : maxEdits_;; edits = moreEdits(edits, maxEdits_)) {
      outlined_.clear();
      if (maxEdits_ > 1) {
        // Alignments of few edits are the same whatever the limit above them; but 1 is a limit of another kind.
        working_.maxEdits = std::max(edits, 2);
      }
      QOC_TRY(findAll(edits, [this] { return outlineFound(); }));
      if (edits == maxEdits_ || (!outlined_.isEmpty() && outlined_.leastEdits() <= edits)) {
        break;
      }
    }
    return outlined_.makeResults(aligner_, wanted_ == Wanted::best ? 1 : INT32_MAX, results);
  }

  qsys_status outlineFound() {
    constexpr std::size_t mostReserved = 1 << 14;
    constexpr std::size_t mostStatuses = 64;
    outlined_.reserve(std::min(found_.size(), mostReserved),
                      std::min(static_cast<std::size_t>(matches_.size() + std::min(maxEdits_, 3)), mostStatuses));
    for (std::size_t i = 0; i < found_.size(); ++i) {
      prefetchWords(i);
      const std::int32_t word = found_[i];
      QOC_TRY(polls_.pollBefore(word));
      if (stopsOnceExact(params_) && !outlined_.isEmpty() && outlined_.leastEdits() == 0) {
        working_.maxEdits = 0;
      }
      std::span<const Outline> outlines;
      QOC_TRY(aligner_.outline(words_[static_cast<std::size_t>(word)], workingParams(), outlines));
      outlined_.merge(word, outlines);
    }
    return QSYS_STATUS_OK;
  }

  /// The words found lie far from each other: the records of those to come, and then their characters, are fetched
  /// ahead.
  void prefetchWords(std::size_t i) const noexcept {
    constexpr std::size_t ahead = 6;
    if (i + 2 * ahead < found_.size()) {
      __builtin_prefetch(&words_[static_cast<std::size_t>(found_[i + 2 * ahead])]);
    }
    if (i + ahead < found_.size()) {
      const Characters characters = view(words_[static_cast<std::size_t>(found_[i + ahead])]);
      __builtin_prefetch(characters.data());
      __builtin_prefetch(characters.data() + characters.size());
    }
  }

  const qoc_ocrDictionaryRunParams *workingParams() const noexcept { return params_ != nullptr ? &working_ : nullptr; }

  std::span<const qoc_ocrDictionaryString> words_;
  const LexiconIndex *index_;
  const qoc_ocrDictionaryRunParams *params_;
  qoc_ocrDictionaryRunParams working_;
  std::span<const std::int32_t> known_;
  Wanted wanted_;
  std::int32_t maxEdits_;
  bool searchesWindows_;
  WordRange range_;
  WordPolls polls_;
  const ReadingMatches &matches_;
  Aligner aligner_;
  LexiconResults outlined_;
  IndexQuery query_;
  std::vector<std::int32_t> found_;
};

/// Matches every word worth trying with one reading, whose matches are made if they are not there. `known` as in
/// WordMatcher.
qsys_status matchWords(const qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryStringMulti &reading,
                       const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set, WordMatcher::Wanted wanted,
                       std::span<const std::int32_t> known, std::optional<ReadingMatches> &matches,
                       qoc_ocrDictionaryResultSet &results, bool &areFinished) {
  areFinished = false;
  reset(results);
  const WordRange range = findLengthRange(lexicon, sizeOf(reading), params);
  if (range.first >= range.end) {
    return QSYS_STATUS_OK;
  }
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    if (!matches) {
      matches.emplace(reading, set);
    }
    const LexiconIndex *index = lexiconRoads().usesIndex && known.empty() ? indexOf(lexicon) : nullptr;
    std::vector<std::int32_t> found;
    if (index != nullptr && index->isShort()) {
      const std::int32_t maxEdits = params != nullptr ? std::max(params->maxEdits, 0) : 0;
      index->findInShort(*matches, maxEdits, range.first, range.end, found);
      if (found.empty()) {
        return WordPolls(range, matches->size(), params).passOver(range.end);
      }
    }
    return WordMatcher(lexicon, *matches, params, range, wanted, found.empty() ? known : found)
        .match(results, areFinished);
  });
}

/// The variants of one reading against the words of a lexicon.
class VariantMatcher {
 public:
  VariantMatcher(const qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryStringMulti &reading,
                 const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet &set,
                 qoc_ocrDictionaryResultSet &scratch, qoc_ocrDictionaryResultSet &results)
      : lexicon_(lexicon),
        reading_(reading),
        params_(params),
        set_(set),
        scratch_(scratch),
        results_(results),
        working_(params != nullptr ? *params : qoc_ocrDictionaryRunParams{}) {}

  /// Makes every variant and matches it.
  qsys_status matchEach() {
    bool isFirst = true;
    return forEachVariant(reading_, set_, [&](const auto &variant, const auto &inputIndices, bool &) -> qsys_status {
      return matchOne(variant, inputIndices, std::exchange(isFirst, false), {});
    });
  }

  /// Makes and matches the variants that are near some word; the others would give no results.
  qsys_status matchNear(const LexiconIndex &index) {
    ReadingVariants variants(reading_, set_);
    QOC_TRY(variants.expand());
    const std::int32_t maxEdits = params_ != nullptr ? std::max(params_->maxEdits, 0) : 0;
    VariantLattice lattice(variants, &set_, maxEdits);
    QOC_TRY(addNearWords(index, variants, lattice, maxEdits));
    // A handler that counts is to be asked for every variant once.
    const bool isBounded = lexiconRoads().usesBound && isDefaultRanking(params_) && params_ != nullptr &&
                           params_->returnBestOnly != 0 && !isAttentionCounted() && !lattice.visitsAll();
    for (std::int32_t edits = isBounded ? 0 : maxEdits;; edits = moreEdits(edits, maxEdits)) {
      reset(results_);
      QOC_TRY(walk(variants, lattice, edits));
      const auto found = view(results_.results);
      if (edits == maxEdits || (!found.empty() && found.front().numEdits <= edits)) {
        return QSYS_STATUS_OK;
      }
    }
  }

 private:
  qsys_status matchOne(const qoc_ocrDictionaryStringMulti &variant, const qstd_vector32s &inputIndices, bool isFirst,
                       std::span<const std::int32_t> known) {
    stopEarly(params_, results_, working_);
    // What a variant adds depends on all of its results, so all are needed.
    std::optional<ReadingMatches> matches;
    bool areFinished = false;  // The whole is finished at the end.
    QOC_TRY(matchWords(lexicon_, variant, workingParams(), &set_, WordMatcher::Wanted::all, known, matches, scratch_,
                       areFinished));
    return takeVariantsResults(results_, scratch_, reading_, inputIndices, isFirst, params_);
  }

  qsys_status addNearWords(const LexiconIndex &index, const ReadingVariants &variants, VariantLattice &lattice,
                           std::int32_t maxEdits) {
    IndexQuery query;
    const ReadingMatches &symbols = lattice.symbolMatches();
    index.prepare(symbols, {0, symbols.size()}, query);
    const auto words = view(lexicon_.strings);
    const WordRange shortest = findLengthRange(lexicon_, variants.leastLength(0), params_);
    const WordRange longest = findLengthRange(lexicon_, variants.mostLength(0), params_);
    for (std::int32_t word = shortest.first; word < longest.end; ++word) {
      if (word % wordsPerPoll == 0 && !isAttentionCounted()) {
        QOC_TRY(qsys_attention_check());  // One more look of a ready handler tells nobody anything.
      }
      if (index.mayMatch(word, query, maxEdits) &&
          !lattice.addWord(word, view(words[static_cast<std::size_t>(word)]))) {
        lattice.visitAll();
        break;
      }
    }
    return QSYS_STATUS_OK;
  }

  qsys_status walk(const ReadingVariants &variants, VariantLattice &lattice, std::int32_t edits) {
    qoc_ocrDictionaryStringMulti variant;
    qstd_vector32s inputIndices;
    return inFrame<2>([&](Frame<2> &frame) -> qsys_status {
      frame.emptyLocal<qoc_ocrDictionaryStringMulti_construct, qoc_ocrDictionaryStringMulti_destruct>(&variant);
      frame.emptyLocal<qstd_vector32s_constructEmpty, qstd_vector32s_destruct>(&inputIndices);
      const auto visit = [&](std::span<const ReadingVariants::Step> steps, bool isFirst,
                             std::span<const std::int32_t> near) -> qsys_status {
        QOC_TRY(variants.make(steps, variant, inputIndices));
        return matchOne(variant, inputIndices, isFirst, near);
      };
      const auto pass = [&](std::int32_t position, std::int32_t length) -> qsys_status {
        stopEarly(params_, results_, working_);
        return variants.passOver(position, length, [&](std::int32_t whole) {
          return numPolls(findLengthRange(lexicon_, whole, workingParams()));
        });
      };
      return lattice.walk(edits, visit, pass);
    });
  }

  const qoc_ocrDictionaryRunParams *workingParams() const noexcept { return params_ != nullptr ? &working_ : nullptr; }

  const qoc_ocrDictionaryLexicon &lexicon_;
  const qoc_ocrDictionaryStringMulti &reading_;
  const qoc_ocrDictionaryRunParams *params_;
  const qoc_swapCharSet &set_;
  qoc_ocrDictionaryResultSet &scratch_;
  qoc_ocrDictionaryResultSet &results_;
  qoc_ocrDictionaryRunParams working_;
};

constexpr std::int32_t maxEditsInLattice = 200;

qsys_status matchVariants(const qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryStringMulti &reading,
                          const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet &set,
                          qoc_ocrDictionaryResultSet &results) {
  qoc_ocrDictionaryResultSet scratch;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qoc_ocrDictionaryResultSet_construct, qoc_ocrDictionaryResultSet_destruct>(&scratch);
    const LexiconRoads &roads = lexiconRoads();
    const LexiconIndex *index = roads.usesIndex && usesLattice(reading) ? indexOf(lexicon) : nullptr;
    const bool isInReach = params == nullptr || (params->matchOption9 == 0 && params->maxEdits >= 0 &&
                                                 params->maxEdits <= maxEditsInLattice);
    VariantMatcher matcher(lexicon, reading, params, set, scratch, results);
    return index != nullptr && isInReach ? matcher.matchNear(*index) : matcher.matchEach();
  });
}

}  // namespace

qsys_status LexiconMatching::match(const qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryRunParams *params,
                                   qoc_ocrDictionaryResultSet &results) {
  reset(results);
  bool areFinished = false;
  if (hasVariants_) {
    QOC_TRY(matchVariants(lexicon, reading_, params, *set_, results));
  } else {
    const bool isBest = params != nullptr && params->returnBestOnly != 0;
    QOC_TRY(matchWords(lexicon, reading_, params, set_, isBest ? WordMatcher::Wanted::best : WordMatcher::Wanted::all,
                       {}, matches_, results, areFinished));
  }
  if (!areFinished) {
    QOC_TRY(qoc_ocrDictionaryResultSet_finalize(&results, params));
  }
  results.isComputed = 1;
  return QSYS_STATUS_OK;
}

}  // namespace qoc

qsys_status qoc_ocrDictionaryLexicon_matchMulti(const qoc_ocrDictionaryLexicon *lexicon,
                                                const qoc_ocrDictionaryStringMulti *reading,
                                                const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                                qoc_ocrDictionaryResultSet *results) {
  return present({lexicon, reading, results}) ? qoc::LexiconMatching(*reading, set).match(*lexicon, params, *results)
                                              : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryLexicon_match(const qoc_ocrDictionaryLexicon *lexicon,
                                           const qoc_ocrDictionaryString *input,
                                           const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                           qoc_ocrDictionaryResultSet *results) {
  if (!present({lexicon, input, results})) {
    return QSYS_STATUS_OK;
  }
  return qoc::withReadingOf(*input, [&](const qoc_ocrDictionaryStringMulti &reading) {
    return qoc_ocrDictionaryLexicon_matchMulti(lexicon, &reading, params, set, results);
  });
}

qsys_status qoc_ocrDictionaryLexicon_matchStrings(const qoc_ocrDictionaryLexicon *lexicon,
                                                  const qstd_vector_qoc_ocrDictionaryString *inputs,
                                                  const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                                  qoc_ocrDictionaryResultSet *results) {
  if (!present({lexicon, inputs, results})) {
    return QSYS_STATUS_OK;
  }
  qoc::reset(*results);
  qoc_ocrDictionaryResultSet scratch;
  qstd_vector32s inputIndices;
  QOC_TRY(inFrame<2>([&](Frame<2> &frame) -> qsys_status {
    frame.emptyLocal<qoc_ocrDictionaryResultSet_construct, qoc_ocrDictionaryResultSet_destruct>(&scratch);
    frame.emptyLocal<qstd_vector32s_constructEmpty, qstd_vector32s_destruct>(&inputIndices);
    const auto strings = view(*inputs);
    for (std::size_t i = 0; i < strings.size(); ++i) {
      QOC_TRY(qoc_ocrDictionaryLexicon_match(lexicon, &strings[i], params, set, &scratch));
      const auto index = static_cast<std::int32_t>(i);
      QOC_TRY(qstd_vector32s_assignElements(&inputIndices, &index, 1));
      for (qoc_ocrDictionaryResult &result : qoc::edit(scratch.results)) {
        QOC_TRY(qstd_vector32s_assign(&result.inputIndices, &inputIndices));
      }
      QOC_TRY(qoc::mergeTaking(*results, scratch, params));
    }
    return QSYS_STATUS_OK;
  }));
  QOC_TRY(qoc_ocrDictionaryResultSet_finalize(results, params));
  results->isComputed = 1;
  return QSYS_STATUS_OK;
}
