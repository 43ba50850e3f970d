// The search for the nearest words: those that an index finds within so many edits, weighed one by one; or all in
// order, with the rows of the alignment carried along, so that words share the rows of their common beginnings (Oflazer
// 1996, here with costs).

#include "resolve/word_search.hpp"

#include <algorithm>

#include "platform/system/present.hpp"
#include "platform/system/shortcuts.hpp"
#include "resolve/live_cells.hpp"

namespace qoc {

namespace {

/// The best words so far.
class BestWords {
 public:
  BestWords(std::size_t k, const WordChooser &chooser, std::vector<FoundWord> &found)
      : k_(k), chooser_(chooser), found_(found) {
    found_.clear();
    setLimit();
  }

  /// The greatest cost that still matters.
  Cost limit() const { return limit_; }

  /// Takes a word in unless it costs too much, is there or is not allowed. The same word in other lexicons, which costs
  /// the same, follows it in the order; the first one that is allowed counts.
  qsys_status offer(const WordIndex &words, std::size_t word, Cost cost) {
    const auto text = words.word(word);
    const auto isSame = [&](std::size_t other) {
      const auto known = words.word(other);
      return std::equal(known.begin(), known.end(), text.begin(), text.end());
    };
    const auto isKnown = [&](const FoundWord &other) { return isSame(other.word); };
    if (cost > limit_ || std::any_of(found_.begin(), found_.end(), isKnown)) {
      return QSYS_STATUS_OK;
    }
    bool isIn = false;
    for (; !isIn && word < words.size() && isSame(word); ++word) QOC_TRY(chooser_.isAllowed(word, isIn));
    if (isIn) {
      const FoundWord taken = {cost, word - 1};
      const auto at = std::find_if(found_.begin(), found_.end(), [&](const FoundWord &other) {
        return other.cost != cost ? other.cost > cost : other.word > taken.word;
      });
      found_.insert(at, taken);
      if (found_.size() > k_) found_.pop_back();
      setLimit();
    }
    return QSYS_STATUS_OK;
  }

 private:
  void setLimit() {
    const Cost best = found_.empty() ? noWay : found_.front().cost;
    while (!found_.empty() && found_.back().cost > chooser_.limit(best)) found_.pop_back();
    limit_ = std::min(chooser_.limit(best), found_.size() < k_ ? noWay - 1 : found_.back().cost);
  }

  std::size_t k_;
  const WordChooser &chooser_;
  std::vector<FoundWord> &found_;
  Cost limit_ = 0;
};

/// Every word in order, by the rows of a WordTable.
class OrderedSearch {
 public:
  OrderedSearch(const WordIndex &words, const ReadingCosts &costs, const Reach &reach, const MultiSwaps &swaps,
                BestWords &best)
      : words_(words), table_(costs, reach, swaps), passesRows_(!swaps.isEmpty()), best_(best) {}

  qsys_status run() {
    for (std::size_t k = 0; k < words_.size();) {
      std::size_t depth = table_.resumable(words_.numShared(k));
      bool isAlive = true;
      while (isAlive && depth < words_.word(k).size()) QOC_TRY(extend(words_.word(k), depth++, isAlive));
      if (isAlive && table_.canReach(depth)) {
        QOC_TRY(best_.offer(words_, k, table_.cost(words_.word(k), depth)));
      }
      // What begins as a beginning that leads nowhere does not, either.
      for (++k; k < words_.size() && (isAlive ? words_.isRepeated(k) : words_.numShared(k) >= depth); ++k) {
        QOC_TRY(meter_.add(1));
      }
    }
    return QSYS_STATUS_OK;
  }

 private:
  qsys_status extend(std::span<const Char32> word, std::size_t depth, bool &isAlive) {
    QOC_TRY(meter_.add(8 + 8 * table_.width()));
    least_.resize(depth + 1);
    least_.push_back(table_.extend(word, depth, best_.limit()));
    // A multi-character swap can pass over one row.
    isAlive = std::min(least_[depth + 1], passesRows_ ? least_[depth] : noWay) <= best_.limit();
    return QSYS_STATUS_OK;
  }

  const WordIndex &words_;
  WordTable table_;
  bool passesRows_;
  std::vector<Cost> least_{0};  // By row: its least cost.
  BestWords &best_;
  WorkMeter meter_;
};

/// The words that the indexes of the lists find, weighed one by one. First those without edits, then those with more:
/// what is found tells how far others matter, and edits leave little for dear characters beside them.
class IndexSearch {
 public:
  IndexSearch(const WordIndex &words, const ReadingCosts &costs, const Reach &reach, BestWords &best)
      : words_(words), costs_(costs), reach_(reach), best_(best), cells_(costs, reach) {}

  qsys_status run() {
    QOC_TRY(search(0, 0));
    std::int32_t fewest = 1;
    while (fewest <= reach_.maxEdits && leastOf(fewest) <= best_.limit()) {
      // One more as long as tries are walked, then twice as many.
      const std::int32_t most = fewest <= 3                    ? fewest
                                : fewest > reach_.maxEdits / 2 ? reach_.maxEdits
                                                               : 2 * (fewest - 1);
      QOC_TRY(search(fewest, most));
      if (most == reach_.maxEdits) {
        break;  // It may be the greatest number there is.
      }
      fewest = most + 1;
    }
    return QSYS_STATUS_OK;
  }

 private:
  /// The least that so many edits cost; no more are within reach than cost less than noWay.
  Cost leastOf(std::int32_t edits) const { return reach_.leastEdit * edits; }

  /// The words that take so many edits.
  qsys_status search(std::int32_t fewest, std::int32_t most) {
    for (const WordIndex::List &list : words_.lists()) {
      if (list.first == list.end) {
        continue;
      }
      // In a long list it takes less to look nearby first: what is found there tells how far others matter.
      if (fewest > 0 && list.end - list.first >= longList && best_.limit() - leastOf(fewest) > nearby) {
        QOC_TRY(search(list, fewest, most, nearby));
        if (best_.limit() - leastOf(fewest) <= nearby) {
          continue;
        }
      }
      QOC_TRY(search(list, fewest, most, best_.limit() - leastOf(fewest)));
    }
    return QSYS_STATUS_OK;
  }

  /// @param left what may be lost beside the cheapest edits
  qsys_status search(const WordIndex::List &list, std::int32_t fewest, std::int32_t most, Cost left) {
    prepare(*list.index, most > 0, left);
    // Without substitutions every edit makes the word longer, or shorter.
    const std::int64_t n = costs_.size();
    const bool maySubstitute = query_.allowed.substituted != 0;
    const std::int64_t shortest = query_.allowed.extra != 0 ? n - most : maySubstitute ? n : n + fewest;
    const std::int64_t longest = query_.allowed.missing != 0 ? n + most : maySubstitute ? n : n - fewest;
    const std::int32_t end = words_.numShorter(list, longest + 1);
    const bool isScan = !list.index->walks(query_, most);
    for (std::int32_t first = words_.numShorter(list, shortest), next = 0; first < end; first = next) {
      next = isScan && end - first > wordsPerScan ? first + wordsPerScan : end;
      list.index->find(query_, most, first, next, found_);
      for (const std::int32_t word : found_) QOC_TRY(weigh(list.first + static_cast<std::size_t>(word)));
      if (isScan) QOC_TRY(meter_.add(wordsPerScan * (8 + 2 * static_cast<std::size_t>(n))));
    }
    return QSYS_STATUS_OK;
  }

  /// Makes the query of what costs no more beside the cheapest edits.
  void prepare(const LexiconIndex &index, bool hasEdits, Cost left) {
    const auto allow = [&](bool isAllowed, Cost cost, std::int32_t i) {
      return static_cast<std::uint64_t>(isAllowed && cost <= left + reach_.leastEdit) << (i % 64);
    };
    query_.allowsAll = false;
    query_.allowed.missing = -allow(reach_.allowsMissing, costs_.penalties().leastMissing(), 0);
    query_.allowed.substituted = query_.allowed.extra = 0;
    for (std::int32_t i = 0; i < costs_.size(); ++i) {
      query_.allowed.substituted |= allow(reach_.allowsSubstitution, costs_.substituted(i), i);
      query_.allowed.extra |= allow(reach_.allowsExtra, costs_.leastExtra(i), i);
    }
    const auto forEachMatch = [&](auto add) {
      for (std::int32_t i = 0; i < costs_.size(); ++i) {
        for (const Choice &choice : costs_.choices(i)) {
          if (choice.cost <= left) add(i, choice.code);
        }
      }
    };
    index.prepare(costs_.size(), hasEdits, forEachMatch, query_);
  }

  qsys_status weigh(std::size_t number) {
    const auto word = words_.codes(number);
    meter_.spend(16);
    const Cost cost = cells_.costOf(word, best_.limit(), meter_);
    return cost <= best_.limit() ? best_.offer(words_, words_.placeOf(number), cost) : QSYS_STATUS_OK;
  }

  static constexpr std::int32_t wordsPerScan = 1 << 14;  // Before attention is asked for.
  static constexpr std::size_t longList = 4096;
  static constexpr Cost nearby = 2000;

  const WordIndex &words_;
  const ReadingCosts &costs_;
  const Reach &reach_;
  BestWords &best_;
  LiveCells cells_;
  IndexQuery query_;
  std::vector<std::int32_t> found_;
  WorkMeter meter_;
};

/// Whether live cells are enough.
bool isPlain(const Reach &reach, const MultiSwaps &swaps) {
  return !reach.isWindow && swaps.isEmpty() && shortcuts().usesWordIndexes;
}

}  // namespace

qsys_status findBestWords(const WordIndex &words, const ReadingCosts &costs, const Reach &reach,
                          const MultiSwaps &swaps, std::size_t k, const WordChooser &chooser,
                          std::vector<FoundWord> &found) {
  BestWords best(k, chooser, found);
  QOC_TRY(qsys_attention_check());
  return isPlain(reach, swaps) && words.hasIndexes() ? IndexSearch(words, costs, reach, best).run()
                                                     : OrderedSearch(words, costs, reach, swaps, best).run();
}

Cost costOfWord(std::span<const Char32> word, const ReadingCosts &costs, const Reach &reach, const MultiSwaps &swaps) {
  WorkMeter meter;
  if (isPlain(reach, swaps)) {
    return LiveCells(costs, reach).costOf(word, noWay - 1, meter);
  }
  WordTable table(costs, reach, swaps);
  table.fill(word, noWay - 1, meter);
  return table.canReach(word.size()) && reach.admitsLength(word.size()) ? table.cost(word, word.size()) : noWay;
}

}  // namespace qoc
