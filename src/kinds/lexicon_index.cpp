#include "kinds/lexicon_index.hpp"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <optional>

#include "kinds/lexicon_roads.hpp"
#include "platform/system/shortcuts.hpp"
#include "text/bit_distance.hpp"

namespace qoc {

namespace {

/// Nodes are found by 32 bits; this many words of the tries' longest lengths stay within them.
constexpr std::int32_t maxWordsForTries = 40'000'000;
/// Beyond this the walks prune too little.
constexpr std::int32_t maxEditsInTries = 3;

std::uint64_t reversedBits(std::uint64_t bits, std::int32_t numBits) noexcept {
  bits = __builtin_bswap64(bits);
  bits = (bits >> 4 & 0x0F0F0F0F0F0F0F0Fu) | (bits & 0x0F0F0F0F0F0F0F0Fu) << 4;
  bits = (bits >> 2 & 0x3333333333333333u) | (bits & 0x3333333333333333u) << 2;
  bits = (bits >> 1 & 0x5555555555555555u) | (bits & 0x5555555555555555u) << 1;
  return numBits > 0 ? bits >> (64 - numBits) : 0;
}

}  // namespace

LexiconIndex::LexiconIndex(std::span<const qoc_ocrDictionaryString> words, WorkMeter &meter)
    : table_(words, meter), letters_(words, table_, meter) {
  signatures_.reserve(words.size());
  const auto groups = letters_.groups();
  for (std::size_t g = 0; g < groups.size(); ++g) {
    const Letter *letter = letters_.lettersOf(groups[g], groups[g].first);
    for (std::int32_t word = groups[g].first; word < letters_.endOf(g); ++word) {
      meter.spend(1 + static_cast<std::size_t>(groups[g].length));
      std::uint64_t signature = 0;
      for (std::int32_t i = 0; i < groups[g].length; ++i) {
        signature |= LetterTable::signatureBit(*letter++);
      }
      signatures_.push_back(signature);
    }
  }
  if (letters_.numWords() >= lexiconRoads().minWordsForTries && letters_.numWords() <= maxWordsForTries) {
    forward_ = WordTrie(letters_, WordTrie::Direction::forward, meter, &equals_);
    backward_ = WordTrie(letters_, WordTrie::Direction::backward, meter);
    std::ranges::sort(equals_, [&meter](const auto &a, const auto &b) {
      meter.spend(2);
      return a < b;
    });
  }
}

void LexiconIndex::prepare(const ReadingMatches &matches, Window window, IndexQuery &query) const {
  query.numPositions = window.size();
  query.hasRows = query.numPositions <= IndexQuery::maxPositions;
  if (!query.hasRows) {
    // What a reading does not cover, none of its windows does.
    query.coveredBits = table_.coveredBits(matches);
    return;
  }
  table_.fill(matches, window, query.rows);
  query.coveredBits = 0;
  for (std::size_t letter = 0; letter <= table_.maxLetter(); ++letter) {
    const std::uint64_t bits = query.rows[letter];
    query.coveredBits |= bits != 0 ? LetterTable::signatureBit(static_cast<Letter>(letter)) : 0;
  }
  for (std::size_t letter = 0; letter <= table_.maxLetter() && !backward_.isEmpty(); ++letter) {
    const std::uint64_t bits = query.rows[letter];
    query.reversedRows[letter] = bits != 0 ? reversedBits(bits, query.numPositions) : 0;
  }
}

bool LexiconIndex::walks(const IndexQuery &query, std::int32_t maxEdits) const noexcept {
  return !forward_.isEmpty() && query.hasRows && query.numPositions >= 2 && maxEdits <= maxEditsInTries;
}

void LexiconIndex::find(const IndexQuery &query, std::int32_t maxEdits, std::int32_t first, std::int32_t end,
                        std::vector<std::int32_t> &found) const {
  found.clear();
  if (!walks(query, maxEdits)) {
    scan(query, maxEdits, first, end, found);
    return;
  }
  switch (maxEdits) {
    case 0:
      walk<0>(query, found);
      break;
    case 1:
      walk<1>(query, found);
      break;
    case 2:
      walk<2>(query, found);
      break;
    default:
      walk<3>(query, found);
      break;
  }
  if (!equals_.empty()) {
    for (std::size_t i = 0, numFound = found.size(); i < numFound; ++i) {
      const std::int32_t word = found[i];
      for (auto pair = std::ranges::lower_bound(equals_, word, {}, &std::pair<std::int32_t, std::int32_t>::first);
           pair != equals_.end() && pair->first == word; ++pair) {
        found.push_back(pair->second);
      }
    }
  }
  std::ranges::sort(found);
  found.erase(std::unique(found.begin(), found.end()), found.end());
}

template <int Edits>
void LexiconIndex::walk(const IndexQuery &query, std::vector<std::int32_t> &found) const {
  const int n = query.numPositions;
  const auto keep = [&found](std::int32_t word) { found.push_back(word); };
  WorkMeter meter;
  if constexpr (Edits == 0) {
    forward_.walk(EditAutomaton<0>(n, 0, 0), query.rows, meter, keep);
  } else {
    constexpr int inFront = Edits / 2;
    constexpr int behind = Edits - 1 - inFront;
    const int cut = n / 2;
    forward_.walk(EditAutomaton<Edits>(n, cut, inFront), query.rows, meter, keep);
    backward_.walk(EditAutomaton<Edits>(n, n - cut, behind), query.reversedRows, meter, keep);
  }
}

void LexiconIndex::scan(const IndexQuery &query, std::int32_t maxEdits, std::int32_t first, std::int32_t end,
                        std::vector<std::int32_t> &found) const {
  const auto groups = letters_.groups();
  for (std::size_t g = 0; g < groups.size(); ++g) {
    const std::int32_t last = std::min(letters_.endOf(g), end);
    for (std::int32_t word = std::max(groups[g].first, first); word < last; ++word) {
      if (mayMatch(word, query, maxEdits) &&
          (!query.hasRows || bitDistance(query.rows, query.numPositions, letters_.lettersOf(groups[g], word),
                                         groups[g].length) <= maxEdits)) {
        found.push_back(word);
      }
    }
  }
}

std::size_t LexiconIndex::numBytes() const noexcept {
  return sizeof *this + table_.numBytes() + letters_.numBytes() + signatures_.capacity() * sizeof(std::uint64_t) +
         equals_.capacity() * sizeof equals_[0] + forward_.numBytes() + backward_.numBytes();
}

namespace {

/// An index, once somebody asked for it, and the number of lexicons that hold it: copies of one, which have the same
/// words.
struct SharedIndex {
  std::once_flag isMade;
  std::optional<LexiconIndex> index;
  std::atomic<std::int64_t> numHolders{1};
};

}  // namespace

const LexiconIndex *indexOf(const qoc_ocrDictionaryLexicon &lexicon) {
  const auto words = view(lexicon.strings);
  if (words.empty() || lexicon.index == nullptr) {
    return nullptr;
  }
  auto &shared = *static_cast<SharedIndex *>(lexicon.index);
  std::call_once(shared.isMade, [&] {
    WorkMeter meter;
    shared.index.emplace(words, meter);
  });
  // Words that were put into the vector itself are not known to the index.
  return shared.index->numWords() == words.size() ? &*shared.index : nullptr;
}

void renewIndex(qoc_ocrDictionaryLexicon &lexicon) {
  SharedIndex *fresh = sizeOf(lexicon.strings) == 0 ? nullptr : new SharedIndex;
  dropIndex(lexicon);
  lexicon.index = fresh;
}

void shareIndex(qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryLexicon &source) {
  if (!shortcuts().sharesStorage) {
    renewIndex(lexicon);
    return;
  }
  if (source.index != nullptr) {
    static_cast<SharedIndex *>(source.index)->numHolders.fetch_add(1, std::memory_order_relaxed);
  }
  dropIndex(lexicon);
  lexicon.index = source.index;
}

void dropIndex(qoc_ocrDictionaryLexicon &lexicon) noexcept {
  auto *held = static_cast<SharedIndex *>(lexicon.index);
  if (held != nullptr && held->numHolders.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    delete held;
  }
  lexicon.index = nullptr;
}

}  // namespace qoc
