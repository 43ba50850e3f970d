#include "kinds/lexicon_results.hpp"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "frame/frame.hpp"
#include "run/result_ranking.hpp"
#include "run/result_set_ops.hpp"

namespace qoc {

namespace {

using Status = qoc_ocrDictionaryPositionStatus;

std::uint64_t hashOf(std::span<const Status> statuses, std::span<const std::int32_t> deleted) noexcept {
  // Not a small number, for which small values would be the same as none.
  std::uint64_t hash = 0xFF51AFD7ED558CCDu ^ statuses.size();
  for (const std::span<const std::int32_t> values : {statuses, deleted}) {
    for (const std::int32_t value : values) {
      hash = (hash ^ static_cast<std::uint32_t>(value)) * 0x9E3779B97F4A7C15u;
      hash ^= hash >> 29;
    }
  }
  return hash;
}

}  // namespace

/// An entry as the scoring orders see it.
struct LexiconResults::Ranked {
  const LexiconResults &results;
  Entry &entry;
  std::int32_t index;

  std::int32_t numEdits() const { return entry.numEdits; }
  std::int32_t numGood(bool /*withSecondary*/) const { return entry.numPrimary; }
  void setMask(std::int32_t /*mask*/) {}  // It is the primary one, which results have from the beginning.
  Status lineStatus() const { return entry.lineStatus; }
  void countMatched() { entry.isMatchedCounted = true; }
  std::int32_t score() {
    if (!entry.isScored) {
      entry.score = results.scoreOf(entry);
      entry.isScored = true;
    }
    return entry.score;
  }
  std::int32_t numDeleted() const { return entry.numDeleted; }
  std::int32_t numInserted() {
    entry.isInsertedCounted = true;
    return entry.numInserted;
  }
  std::int32_t orderIndex() const { return index; }
};

void LexiconResults::clear() noexcept {
  entries_.clear();
  statuses_.clear();
  deleted_.clear();
  classes_.clear();
  numListed_ = 0;
  std::ranges::fill(newcomers_, Newcomer{});
}

void LexiconResults::reserve(std::size_t numWords, std::size_t numStatuses) {
  entries_.reserve(numWords);
  statuses_.reserve(numWords * numStatuses);
}

std::int32_t LexiconResults::addEntry(std::int32_t word, const Outline &outline) {
  // So many take 160 GiB here, and several times as much as results.
  if (QOC_NEVER(entries_.size() == INT32_MAX)) {
    throw std::bad_alloc();
  }
  Entry entry = {};
  entry.word = word;
  entry.next = none;
  entry.numEdits = outline.numEdits;
  entry.numInFront = outline.numInFront;
  entry.isOfTable = outline.isOfTable;
  entry.firstStatus = statuses_.size();
  entry.firstDeleted = deleted_.size();
  entry.numStatuses = static_cast<std::int32_t>(outline.statuses.size());
  entry.numDeleted = static_cast<std::int32_t>(outline.deleted.size());
  entry.hash = hashOf(outline.statuses, outline.deleted);
  Status worst = 0;
  for (const Status status : outline.statuses) {
    entry.numPrimary += status == qoc_ocrDictionaryPositionStatus_primary ? 1 : 0;
    entry.numSecondary += status == qoc_ocrDictionaryPositionStatus_secondary ? 1 : 0;
    entry.numInserted += status == qoc_ocrDictionaryPositionStatus_inserted ? 1 : 0;
    worst = std::max(worst, status);
  }
  entry.numMatched = entry.numStatuses - entry.numInserted;  // An alignment gives no other status beyond 7.
  entry.lineStatus = isFinished_ ? worst : Status{qoc_ocrDictionaryPositionStatus_noMatch};
  statuses_.insert(statuses_.end(), outline.statuses.begin(), outline.statuses.end());
  deleted_.insert(deleted_.end(), outline.deleted.begin(), outline.deleted.end());
  entries_.push_back(entry);
  return static_cast<std::int32_t>(entries_.size() - 1);
}

std::int32_t LexiconResults::scoreOf(const Entry &entry) const noexcept {
  const Characters characters = view(words_[static_cast<std::size_t>(entry.word)]);
  const auto statuses = statusesOf(entry);
  // The characters that positions in front take with them stand beside inserted positions, which do not count.
  const auto shift = static_cast<std::size_t>(entry.numInFront);
  std::uint32_t sum = 0;
  for (std::size_t i = shift; i < std::min(characters.size() + shift, statuses.size()); ++i) {
    if (statuses[i] <= qoc_ocrDictionaryPositionStatus_primarySwap) {
      sum += static_cast<std::uint32_t>(characters[i - shift].score);
    }
  }
  return static_cast<std::int32_t>(sum);
}

/// The duplicate test. Readings are the same where the same part of them is shown.
bool LexiconResults::areSame(const Entry &a, const Entry &b) const noexcept {
  if (a.hash != b.hash) {
    return false;
  }
  // Two that differ hardly ever have the same hash, of 64 bits. The line's status follows from the others.
  const bool haveSameNumbers = std::pair(a.numEdits, a.numInFront) == std::pair(b.numEdits, b.numInFront);
  const bool haveSameStatuses = std::ranges::equal(statusesOf(a), statusesOf(b));
  const bool haveSameDeleted = std::ranges::equal(deletedOf(a), deletedOf(b));
  return haveSameNumbers & haveSameStatuses & haveSameDeleted;
}

void LexiconResults::merge(std::int32_t word, std::span<const Outline> outlines) {
  if (outlines.empty()) {
    return;
  }
  std::int32_t added[Aligner::maxOutlines];
  std::int32_t numAdded = 0;
  for (const Outline &outline : outlines) {
    added[numAdded++] = addEntry(word, outline);
  }
  if (numAdded == 2 && entries_[static_cast<std::size_t>(added[1])].numEdits == 0) {
    // The table found the exact alignment, too: a duplicate where all positions are primary, else ranked before it.
    if (areSame(entries_[static_cast<std::size_t>(added[0])], entries_[static_cast<std::size_t>(added[1])])) {
      numAdded = 1;
    } else {
      std::swap(added[0], added[1]);
    }
  }

  // The walk over the list and the word's outlines. Edits decide first in every order, so a list that begins with fewer
  // edits ends it at once, and past the outlines of equal edits nothing is compared any more.
  const std::int32_t numOld = numListed_;
  std::int32_t appended[Aligner::maxOutlines];
  std::int32_t numAppended = 0;
  std::size_t classIndex = 0;
  std::int32_t current = classes_.empty() ? none : classes_.front().first;
  std::int32_t place = 0;
  std::int32_t numNewBefore = 0;
  const auto advance = [&] {
    numNewBefore += newcomers_[0].entry == current || newcomers_[1].entry == current ? 1 : 0;
    ++place;
    current = entries_[static_cast<std::size_t>(current)].next;
    if (current == none && ++classIndex < classes_.size()) {
      current = classes_[classIndex].first;
    }
  };
  for (std::int32_t j = 0; j < numAdded;) {
    int decision = 1;
    Entry &newer = entries_[static_cast<std::size_t>(added[j])];
    if (current != none) {
      Entry &old = entries_[static_cast<std::size_t>(current)];
      if (old.numEdits > newer.numEdits) {
        current = none;  // All that is left of the list is passed over.
      } else if (old.numEdits == newer.numEdits) {
        std::int32_t orderIndex = place - numNewBefore;
        for (const Newcomer &newcomer : newcomers_) {
          orderIndex = newcomer.entry == current ? newcomer.orderIndex : orderIndex;
        }
        decision =
            areSame(old, newer) ? 0 : -compareByScore(Ranked{*this, old, orderIndex}, Ranked{*this, newer, j}, false);
      }
    }
    if (decision > 0) {
      appended[numAppended++] = added[j];
    } else {
      advance();
    }
    j += decision >= 0 ? 1 : 0;
  }

  // The sort: the results get new order indexes, their places before.
  std::ranges::fill(newcomers_, Newcomer{});
  for (std::int32_t k = 0; k < numAppended; ++k) {
    append(appended[k], numOld + k);
  }
}

/// Puts an entry behind those of its class, unless it is the same as the last of them.
void LexiconResults::append(std::int32_t entryIndex, std::int32_t orderIndex) {
  Entry &entry = entries_[static_cast<std::size_t>(entryIndex)];
  const Key key = keyOf(entry);
  auto found = std::ranges::lower_bound(classes_, key, {}, &Class::key);
  if (found == classes_.end() || found->key != key) {
    classes_.insert(found, {key, entryIndex, entryIndex});
  } else if (areSame(entries_[static_cast<std::size_t>(found->last)], entry)) {
    return;
  } else {
    entries_[static_cast<std::size_t>(found->last)].next = entryIndex;
    found->last = entryIndex;
  }
  ++numListed_;
  (newcomers_[0].entry == none ? newcomers_[0] : newcomers_[1]) = {entryIndex, orderIndex};
}

qsys_status LexiconResults::makeResults(Aligner &aligner, std::int32_t most, qoc_ocrDictionaryResultSet &results) {
  if (isEmpty()) {
    return QSYS_STATUS_OK;
  }
  results.isComputed = 1;
  // A result without contents owns nothing: its bytes make as many as are needed.
  qoc_ocrDictionaryResult blank;
  QOC_SURE(qoc_ocrDictionaryResult_construct(&blank));  // It has no contents.
  QOC_TRY(qstd_vector_qoc_ocrDictionaryResult_resizeUninit(&results.results, std::min(most, numListed_)));
  const auto made = edit(results.results);
  for (qoc_ocrDictionaryResult &result : made) {
    result = blank;
  }
  ElementPool pool;
  std::int32_t place = 0;
  for (const Class &group : classes_) {
    for (std::int32_t next = group.first; next != none && static_cast<std::size_t>(place) < made.size(); ++place) {
      const Entry &entry = entries_[static_cast<std::size_t>(next)];
      qoc_ocrDictionaryResult &result = made[static_cast<std::size_t>(place)];
      const Outline outline = {{0, aligner.numPositions()}, entry.numEdits,  entry.isOfTable, entry.numInFront,
                               statusesOf(entry),           deletedOf(entry)};
      QOC_TRY(aligner.fill(outline, words_[static_cast<std::size_t>(entry.word)], pool, result));
      QOC_TRY(qoc_ocrDictionaryStringMulti_assign(&result.givenSwap, &result.given));
      result.resultStringLineStatus = entry.lineStatus;
      if (isFinished_) {
        void *statuses = nullptr;
        QOC_TRY(pool.place(result.statusWRTInputStringSwapChar.core, sizeOf(result.given), statuses));
        fillStatusWRTInputString(result, editAs<Status>(result.statusWRTInputStringSwapChar));
      }
      result.orderIndex = place;
      if (entry.isMatchedCounted) {
        result.numMatchedPositionsIsCached = 1;
        result.numMatchedPositions = entry.numMatched;
      }
      if (entry.isScored) {
        result.scoreIsCached = 1;
        result.score = entry.score;
      }
      if (entry.isInsertedCounted) {
        result.numInsertedIsCached = 1;
        result.numInserted = entry.numInserted;
      }
      next = entry.next;
    }
  }
  return QSYS_STATUS_OK;
}

}  // namespace qoc
