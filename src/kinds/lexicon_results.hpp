#pragma once
// The results of one reading's words before they are results.

#include <qoc/lexicon.h>

#include <cstdint>
#include <span>
#include <vector>

#include "text/alignment.hpp"

namespace qoc {

/// Merges the results of one word after the other in the default ranking, as qoc_ocrDictionaryResultSet_merge does with
/// whole results, but on outlines; results are made once, of those that are left.
///
/// The merged list is kept as classes of outlines that the default order cannot tell apart but by the order index,
/// which is to say that within a class the order is that of arrival. The index of an outline is then known without
/// being written down: its place in the list, but for those that the last merge has put in.
class LexiconResults {
 public:
  /// `isFinished` tells whether the results of a word are finished by params before they are merged, which sets their
  /// line status.
  LexiconResults(std::span<const qoc_ocrDictionaryString> words, bool isFinished)
      : words_(words), isFinished_(isFinished) {}

  void clear() noexcept;
  /// Makes room for the outlines of so many words, of so many statuses each.
  void reserve(std::size_t numWords, std::size_t numStatuses);
  /// Merges what the alignment of a word gave, in the order in which it is filed: nothing, or one outline, or an exact
  /// one and one more.
  void merge(std::int32_t word, std::span<const Outline> outlines);

  bool isEmpty() const noexcept { return classes_.empty(); }
  /// The edits of the first result; there must be one.
  std::int32_t leastEdits() const noexcept { return classes_.front().key.numEdits; }

  /// Makes the first results, as many as there are or the given number, of the words that `aligner` aligned, and
  /// finishes them, with params that do. The set was reset.
  qsys_status makeResults(Aligner &aligner, std::int32_t most, qoc_ocrDictionaryResultSet &results);

 private:
  static constexpr std::int32_t none = -1;

  struct Entry {
    std::int32_t word, next;
    std::int32_t numEdits, numInFront;
    std::size_t firstStatus, firstDeleted;
    std::int32_t numStatuses, numDeleted;
    std::int32_t numPrimary, numSecondary, numInserted, numMatched, score;
    std::uint64_t hash;  // Of statuses and deleted.
    qoc_ocrDictionaryPositionStatus lineStatus;
    bool isOfTable, isMatchedCounted, isScored, isInsertedCounted;
  };

  /// The keys of the default order before the order index, the best first.
  struct Key {
    std::int32_t numEdits, numDeleted, numNotPrimary, numNotSecondary;
    // NOLINTNEXTLINE(modernize-use-nullptr): clang-tidy 14 takes the zero of a three-way comparison for a pointer.
    auto operator<=>(const Key &) const = default;
  };
  struct Class {
    Key key;
    std::int32_t first, last;
  };

  struct Ranked;

  std::int32_t addEntry(std::int32_t word, const Outline &outline);
  void append(std::int32_t entry, std::int32_t orderIndex);
  bool areSame(const Entry &a, const Entry &b) const noexcept;
  static Key keyOf(const Entry &entry) noexcept {
    return {entry.numEdits, entry.numDeleted, -entry.numPrimary, -entry.numSecondary};
  }
  std::span<const qoc_ocrDictionaryPositionStatus> statusesOf(const Entry &entry) const noexcept {
    return {statuses_.data() + entry.firstStatus, static_cast<std::size_t>(entry.numStatuses)};
  }
  std::span<const std::int32_t> deletedOf(const Entry &entry) const noexcept {
    return {deleted_.data() + entry.firstDeleted, static_cast<std::size_t>(entry.numDeleted)};
  }
  std::int32_t scoreOf(const Entry &entry) const noexcept;

  std::span<const qoc_ocrDictionaryString> words_;
  bool isFinished_;
  std::vector<Entry> entries_;
  std::vector<qoc_ocrDictionaryPositionStatus> statuses_;
  std::vector<std::int32_t> deleted_;
  std::vector<Class> classes_;  // In the default order.
  std::int32_t numListed_ = 0;
  /// What the last merge put in, and the order indexes that it got by standing at the end of the list; none where there
  /// is none.
  struct Newcomer {
    std::int32_t entry = none, orderIndex = 0;
  };
  Newcomer newcomers_[Aligner::maxOutlines];
};

}  // namespace qoc
