#include "kinds/lexicon_index.hpp"

#include <algorithm>
#include <atomic>
#include <limits>
#include <mutex>
#include <optional>
#include <utility>

#include "kinds/lexicon_roads.hpp"
#include "platform/system/shortcuts.hpp"

namespace qoc {

namespace {

/// Beyond this the walks prune too little.
constexpr std::int32_t maxEditsInTries = 3;

/// The first bits, of which there is one at least, in reverse.
std::uint64_t reversedBits(std::uint64_t bits, std::int32_t numBits) noexcept {
  bits = __builtin_bswap64(bits);
  bits = (bits >> 4 & 0x0F0F0F0F0F0F0F0Fu) | (bits & 0x0F0F0F0F0F0F0F0Fu) << 4;
  bits = (bits >> 2 & 0x3333333333333333u) | (bits & 0x3333333333333333u) << 2;
  bits = (bits >> 1 & 0x5555555555555555u) | (bits & 0x5555555555555555u) << 1;
  return bits >> (64 - numBits);
}

}  // namespace

LexiconIndex::LexiconIndex(std::span<const qoc_ocrDictionaryString> words, WorkMeter &meter)
    : LexiconIndex(LetterTable(words, meter), words, meter) {
  if (words.size() <= shortList) {
    for (const qoc_ocrDictionaryString &word : words) {
      std::uint64_t signature = 0;
      for (const qoc_ocrDictionaryChar &character : view(word)) {
        signature |= ReadingMatches::codeBit(character.code);
      }
      codeSignatures_.push_back(signature);
    }
  }
}

LexiconIndex::LexiconIndex(LetterTable &&table, std::span<const qoc_ocrDictionaryString> words, WorkMeter &meter)
    : LexiconIndex(std::move(table), WordLetters(words, table, meter), meter) {}

LexiconIndex::LexiconIndex(LetterTable &&table, const WordLetters &letters, WorkMeter &meter)
    : table_(std::move(table)), scan_(letters, meter) {
  const LexiconRoads &roads = lexiconRoads();
  if (letters.numWords() >= roads.minWordsForTries && letters.numWords() <= roads.maxWordsForTries) {
    forward_ = WordTrie(letters, WordTrie::Direction::forward, meter, &equals_);
    backward_ = WordTrie(letters, WordTrie::Direction::backward, meter);
    std::ranges::sort(equals_, [&meter](const auto &a, const auto &b) {
      meter.spend(2);
      return a < b;
    });
  }
}

void LexiconIndex::begin(std::int32_t numPositions, IndexQuery &query) const {
  query.numPositions = numPositions;
  query.hasRows = numPositions <= IndexQuery::maxPositions;
  query.maxLetter = table_.maxLetter();
}

void LexiconIndex::prepare(const ReadingMatches &matches, Window window, IndexQuery &query) const {
  begin(window.size(), query);
  if (query.hasRows) {
    table_.fill(matches, window, query.rows);
    finishRows(true, query);
  } else {
    // What a reading does not cover, none of its windows does.
    query.coveredBits = table_.coveredBits(matches);
  }
}

/// Makes of the rows what else a query has.
void LexiconIndex::finishRows(bool hasEdits, IndexQuery &query) const {
  query.coveredBits = 0;
  for (std::size_t letter = 0; letter <= table_.maxLetter(); ++letter) {
    const std::uint64_t bits = query.rows[letter];
    query.coveredBits |= bits != 0 ? LetterTable::signatureBit(static_cast<Letter>(letter)) : 0;
  }
  if (!hasEdits || !query.hasRows || backward_.isEmpty()) {
    return;
  }
  const std::int32_t n = query.numPositions;
  for (std::size_t letter = 0; letter <= table_.maxLetter(); ++letter) {
    const std::uint64_t bits = query.rows[letter];
    query.reversedRows[letter] = bits != 0 ? reversedBits(bits, n) : 0;
  }
  if (!query.allowsAll && n > 0) {
    query.reversedAllowed = {reversedBits(query.allowed.missing, n + 1), reversedBits(query.allowed.substituted, n),
                             reversedBits(query.allowed.extra, n)};
  }
}

void LexiconIndex::findInShort(const ReadingMatches &matches, std::int32_t maxEdits, std::int32_t first,
                               std::int32_t end, std::vector<std::int32_t> &found) const {
  const std::uint64_t uncovered = ~matches.coveredCodes();
  for (std::int32_t word = first; word < end; ++word) {
    if (std::popcount(codeSignatures_[static_cast<std::size_t>(word)] & uncovered) <= maxEdits) {
      found.push_back(word);
    }
  }
}

bool LexiconIndex::walks(const IndexQuery &query, std::int32_t maxEdits) const noexcept {
  // Pieces of as many positions as there are edits match everywhere.
  const std::int32_t tooShort = scan_.goesByBlocks(query) ? 2 * maxEdits : 1;
  return !forward_.isEmpty() && query.hasRows && query.numPositions > tooShort && maxEdits <= maxEditsInTries;
}

/// How many nodes of the tries may be visited before a scan costs less.
std::int64_t LexiconIndex::mostVisits(const IndexQuery &query, std::int32_t maxEdits) const noexcept {
  if (!scan_.goesByBlocks(query)) {
    return std::numeric_limits<std::int64_t>::max();
  }
  // About as many letters of blocks are scanned in the time of a visit, where a byte holds a reading's column.
  constexpr std::int64_t lettersPerVisit = 300;
  const std::size_t numLetters =
      scan_.numLettersUpTo(query.numPositions + maxEdits) - scan_.numLettersUpTo(query.numPositions - maxEdits - 1);
  return static_cast<std::int64_t>(numLetters) / (query.numPositions <= 8 ? lettersPerVisit : lettersPerVisit / 2) +
         1000;
}

void LexiconIndex::find(const IndexQuery &query, std::int32_t maxEdits, std::int32_t first, std::int32_t end,
                        std::vector<std::int32_t> &found) const {
  found.clear();
  if (!walks(query, maxEdits) || !walkWithin(query, maxEdits, found)) {
    found.clear();
    scan_.find(query, maxEdits, first, end, found);
    return;
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

bool LexiconIndex::walkWithin(const IndexQuery &query, std::int32_t maxEdits, std::vector<std::int32_t> &found) const {
  switch (maxEdits) {
    case 0:
      return walk<0>(query, found);
    case 1:
      return walk<1>(query, found);
    case 2:
      return walk<2>(query, found);
    default:
      return walk<3>(query, found);
  }
}

template <int Edits>
bool LexiconIndex::walk(const IndexQuery &query, std::vector<std::int32_t> &found) const {
  return query.allowsAll ? walk<Edits>(query, AllEdits(), AllEdits(), found)
                         : walk<Edits>(query, query.allowed, query.reversedAllowed, found);
}

template <int Edits, class Allowed>
bool LexiconIndex::walk(const IndexQuery &query, const Allowed &allowed, const Allowed &reversedAllowed,
                        std::vector<std::int32_t> &found) const {
  using Automaton = EditAutomaton<Edits, Allowed>;
  const int n = query.numPositions;
  std::int64_t numVisits = mostVisits(query, Edits);
  const auto keep = [&found](std::int32_t word) { found.push_back(word); };
  WorkMeter meter;
  if constexpr (Edits == 0) {
    forward_.walk(Automaton(n, 0, 0), query.rows, meter, numVisits, keep);
  } else {
    constexpr int inFront = Edits / 2;
    constexpr int behind = Edits - 1 - inFront;
    const int cut = n / 2;
    forward_.walk(Automaton(n, cut, inFront, allowed), query.rows, meter, numVisits, keep);
    backward_.walk(Automaton(n, n - cut, behind, reversedAllowed), query.reversedRows, meter, numVisits, keep);
  }
  return numVisits >= 0;
}

std::size_t LexiconIndex::numBytes() const noexcept {
  return sizeof *this + codeSignatures_.capacity() * sizeof(std::uint64_t) + table_.numBytes() + scan_.numBytes() +
         equals_.capacity() * sizeof equals_[0] + forward_.numBytes() + backward_.numBytes();
}

namespace {

/// An index, once somebody asked for it, and the number of lexicons that hold it: copies of one, which have the same
/// words.
struct SharedIndex {
  /// Not a once_flag: making an index may end with an exception, after which not every system lets the next one try.
  std::mutex making;
  std::atomic<bool> isMade{false};
  std::optional<LexiconIndex> index;
  std::atomic<std::int64_t> numHolders{1};
};

void drop(SharedIndex *held) noexcept {
  if (held != nullptr && held->numHolders.fetch_sub(1, std::memory_order_acq_rel) > 1) {
    held = nullptr;  // Others hold it, too.
  }
  delete held;
}

}  // namespace

const LexiconIndex *indexOf(const qoc_ocrDictionaryLexicon &lexicon) {
  const auto words = view(lexicon.strings);
  if (words.empty() || lexicon.index == nullptr) {
    return nullptr;
  }
  auto &shared = *static_cast<SharedIndex *>(lexicon.index);
  if (!shared.isMade.load(std::memory_order_acquire)) {
    const std::lock_guard lock(shared.making);
    if (!shared.isMade.load(std::memory_order_relaxed)) {
      WorkMeter meter;
      shared.index.emplace(words, meter);
      shared.isMade.store(true, std::memory_order_release);
    }
  }
  // Words that were put into the vector itself are not known to the index.
  return shared.index->numWords() == words.size() ? &*shared.index : nullptr;
}

std::shared_ptr<const LexiconIndex> holdIndex(const qoc_ocrDictionaryLexicon &lexicon) {
  const LexiconIndex *index = indexOf(lexicon);
  if (index == nullptr) {
    return nullptr;
  }
  if (!shortcuts().sharesStorage) {
    WorkMeter meter;
    return std::make_shared<const LexiconIndex>(view(lexicon.strings), meter);
  }
  auto *shared = static_cast<SharedIndex *>(lexicon.index);
  shared->numHolders.fetch_add(1, std::memory_order_relaxed);
  return {index, [shared](const LexiconIndex *) { drop(shared); }};
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
  drop(static_cast<SharedIndex *>(std::exchange(lexicon.index, nullptr)));
}

}  // namespace qoc
