#pragma once
// How a range of a reading is laid over the positions of a line: with no edit, or with one. Both forms of the line
// fielding's match, yes or no and with results, go through the alignments here, in this order and with the same early
// ends.
//
// The idea. Position p of a line of P positions is compared with reading position d + p, where d, the diagonal, is the
// range's start, and with an edit behind the edited place one less (a character is missing) or one more (a character is
// too many):
//
//     exact         d = start everywhere                         reading  B 1 2    line  A 9 9
//     missing k     d = start before k, start - 1 behind it      reading  B . 2    line  A 9 9     (k = 1)
//     extra k       d = start before k, start + 1 from k on      reading  B x 1 2  line  A . 9 9   (k = 1)
//     substituted k d = start everywhere but at k                reading  B x 2    line  A * 9     (k = 1)
//
// So whether a range's characters are admitted does not depend on its end: the length only says which alignments are
// tried. Every pair of line position and reading position is asked at most once, when it is first needed, and leaves a
// bit behind. Line positions that admit the same share a row of bits, one for each reading position; where such
// positions follow each other, as in dates and numbers, their part of a diagonal is a run of bits in one row.
//
// A run of bits is tested for its first refusal, and that tells more than yes or no: behind place k a refusal at
// position r refuses every place up to r as well, so that the next place to try is found at once.
//
// The invariant: pairs are asked in the order in which plain enumeration would ask them first, so that the first
// failure is the same. Cost: a question for every pair of what is different in the line and a reading position, a few
// words for every start, and for every alignment that holds.

#include <qoc/line_fielding.h>

#include <algorithm>
#include <bit>
#include <vector>

#include "frame/frame.hpp"
#include "platform/system/certain.hpp"
#include "text/views.hpp"
#include "text/window_search.hpp"

namespace qoc {

inline std::span<const qoc_ocrDictionaryPositionFielding> view(
    const qoc_ocrDictionaryLineFielding &lineFielding) noexcept {
  return viewAs<qoc_ocrDictionaryPositionFielding>(lineFielding.positions);
}

/// Says whether a position admits a position of a reading.
using AskAdmission = qsys_status (*)(const qoc_ocrDictionaryPositionFielding &positionFielding,
                                     const qoc_ocrDictionaryCharMulti &multi, const qoc_swapCharSet *set,
                                     bool &isAdmitted);

/// Which positions of a line admit which positions of a reading: two bits for each pair, known and admitted.
class Admission {
 public:
  Admission(const qoc_ocrDictionaryLineFielding &lineFielding, const qoc_ocrDictionaryStringMulti &reading,
            const qoc_swapCharSet *set, AskAdmission ask)
      : line_(view(lineFielding)), reading_(view(reading)), set_(set), ask_(ask), numWords_(reading_.size() / 64 + 1) {
    findRows();
  }

  std::int32_t numLinePositions() const noexcept { return static_cast<std::int32_t>(line_.size()); }
  std::int32_t numReadingPositions() const noexcept { return static_cast<std::int32_t>(reading_.size()); }
  const qoc_ocrDictionaryPositionFielding &linePosition(std::int32_t position) const noexcept {
    return line_[static_cast<std::size_t>(position)];
  }

  /// The first of the positions begin to end - 1 of the line that refuses what the reading holds on the diagonal, or
  /// `end`; asks up to that.
  qsys_status findRefusal(std::int32_t diagonal, std::int32_t begin, std::int32_t end, std::int32_t &refusal) {
    while (begin < end) {
      const Place place = places_[static_cast<std::size_t>(begin)];
      const std::int32_t runEnd = std::min(place.runEnd, end);
      const auto read = static_cast<std::size_t>(diagonal + begin);
      std::uint64_t *known = rowOf(place.row);
      std::uint64_t *admitted = known + numWords_;
      const std::size_t bit = read % 64;
      const std::int32_t numAdmitted = std::countr_one(admitted[read / 64] >> bit);
      if (numAdmitted > 0) {
        begin = std::min(begin + numAdmitted, runEnd);
        continue;
      }
      const std::uint64_t mask = std::uint64_t{1} << bit;
      if ((known[read / 64] & mask) != 0) {
        break;
      }
      bool isAdmitted = false;
      QOC_TRY(ask_(linePosition(begin), reading_[read], set_, isAdmitted));
      known[read / 64] |= mask;
      if (!isAdmitted) {
        break;
      }
      admitted[read / 64] |= mask;
      ++begin;
    }
    refusal = begin;
    return QSYS_STATUS_OK;
  }

  /// True when all positions before `end` admit what the reading holds on the diagonal. What is known of the last
  /// diagonal asked for is kept.
  qsys_status isPrefixAdmitted(std::int32_t diagonal, std::int32_t end, bool &answer) {
    if (prefix_.diagonal != diagonal) {
      prefix_ = {diagonal, 0, false};
    }
    if (prefix_.end < end && !prefix_.isRefused) {
      QOC_TRY(findRefusal(diagonal, prefix_.end, end, prefix_.end));
      prefix_.isRefused = prefix_.end < end;
    }
    answer = prefix_.end >= end;
    return QSYS_STATUS_OK;
  }

 private:
  /// What a position of the line knows of its row, and of the positions behind it that have the same one.
  struct Place {
    std::int32_t row, runEnd;
  };

  static bool areSame(const qoc_ocrDictionaryPositionFielding &a, const qoc_ocrDictionaryPositionFielding &b) noexcept {
    return a.fieldingBits == b.fieldingBits &&
           std::ranges::equal(viewAs<Char32>(a.fieldingCharacters), viewAs<Char32>(b.fieldingCharacters));
  }

  /// Gives every position its row. Of a line with many different positions only the last few are looked through, so
  /// that equal ones may have rows of their own.
  void findRows() {
    constexpr std::size_t numLookedThrough = 16;
    std::vector<std::size_t> different;  // The first position of every row.
    places_.resize(line_.size());
    for (std::size_t i = 0; i < line_.size(); ++i) {
      std::size_t row = different.size();
      const std::size_t least = row > numLookedThrough ? row - numLookedThrough : 0;
      while (row > least && !areSame(line_[different[row - 1]], line_[i])) {
        --row;
      }
      if (row == least) {
        different.push_back(i);
        row = different.size();
      }
      places_[i].row = static_cast<std::int32_t>(row - 1);
    }
    for (std::size_t i = line_.size(); i-- > 0;) {
      const bool goesOn = i + 1 < line_.size() && places_[i + 1].row == places_[i].row;
      places_[i].runEnd = goesOn ? places_[i + 1].runEnd : static_cast<std::int32_t>(i) + 1;
    }
    rows_.resize(different.size());
  }

  /// The bits of a row: known ones, and admitted ones behind them. Made when they are first needed.
  std::uint64_t *rowOf(std::int32_t row) {
    std::vector<std::uint64_t> &bits = rows_[static_cast<std::size_t>(row)];
    if (bits.empty()) {
      bits.resize(2 * numWords_);
    }
    return bits.data();
  }

  std::span<const qoc_ocrDictionaryPositionFielding> line_;
  Positions reading_;
  const qoc_swapCharSet *set_;
  AskAdmission ask_;
  std::size_t numWords_;
  std::vector<Place> places_;
  std::vector<std::vector<std::uint64_t>> rows_;
  struct {
    std::int32_t diagonal, end;
    bool isRefused;  // The position `end` refuses.
  } prefix_ = {-2, 0, false};
};

enum class LineEdit { none, missing, extra, substituted };

/// One way in which a range fits the line. `place` is the line position that is left out or not compared, or the index
/// in the range of the character that is too many.
struct LineAlignment {
  LineEdit edit;
  std::int32_t place;
};

/// Where a missing character may not be laid at a position that admits nothing.
enum class EmptyPositionRule {
  emptyRangeOnly,     ///< Only where the range is empty.
  emptyRangeOrFirst,  ///< There, and at the first position of the line.
};

inline bool lengthPasses(const qoc_ocrDictionaryRunParams *params, std::int32_t length) noexcept {
  qsys_bool isSatisfied = 0;
  qoc_ocrDictionaryRunParams_satisfiesStringLength(params, length, &isSatisfied);  // It only looks at the params.
  return isSatisfied != 0;
}

/// Hands every alignment of the range to onAlignment(alignment, goOn) in order, until that clears goOn.
template <class OnAlignment>
qsys_status forEachAlignment(Admission &admission, std::int32_t start, std::int32_t length,
                             const qoc_ocrDictionaryRunParams *params, EmptyPositionRule rule,
                             OnAlignment &&onAlignment) {
  const std::int32_t numPositions = admission.numLinePositions();
  bool goOn = true;
  if (length == numPositions && lengthPasses(params, length)) {
    bool isAdmitted = false;
    QOC_TRY(admission.isPrefixAdmitted(start, numPositions, isAdmitted));
    if (isAdmitted) {
      QOC_TRY(onAlignment(LineAlignment{LineEdit::none, 0}, goOn));
    }
  }
  if (params == nullptr || params->maxEdits == 0) {
    return QSYS_STATUS_OK;
  }
  // The diagonal behind the edited place, and the first position that is compared on it, both as distances.
  const struct {
    LineEdit edit;
    std::int32_t option;
    std::int64_t dictionaryLength;
    std::int32_t diagonal, next;
  } kinds[] = {
      {LineEdit::missing, params->matchOption2, std::int64_t{length} + 1, -1, 1},
      {LineEdit::extra, params->matchOption4, std::int64_t{length} - 1, 1, 0},
      {LineEdit::substituted, params->matchOption1, length, 0, 1},
  };
  for (const auto &kind : kinds) {
    if (kind.option == 0 || kind.dictionaryLength != numPositions || !lengthPasses(params, numPositions)) {
      continue;
    }
    // Deliberate: an extra character is looked for at P places only, so that the last character is never the one.
    for (std::int32_t place = 0; goOn && place < numPositions;) {
      if (kind.edit == LineEdit::missing &&
          (length == 0 || (rule == EmptyPositionRule::emptyRangeOrFirst && place == 0))) {
        if (answerOf<qoc_ocrDictionaryPositionFielding_isEmpty>(admission.linePosition(place))) {
          ++place;
          continue;
        }
      }
      bool isPrefixAdmitted = false;
      QOC_TRY(admission.isPrefixAdmitted(start, place, isPrefixAdmitted));
      if (!isPrefixAdmitted) {
        break;  // Nor does any later place hold.
      }
      std::int32_t refusal = 0;
      QOC_TRY(admission.findRefusal(start + kind.diagonal, place + kind.next, numPositions, refusal));
      if (refusal < numPositions) {
        place = refusal + 1 - kind.next;
        if (place == numPositions) {
          // The last place is passed over, but what it asks for before the refusal is asked.
          QOC_TRY(admission.isPrefixAdmitted(start, numPositions - 1, isPrefixAdmitted));
        }
        continue;
      }
      QOC_TRY(onAlignment(LineAlignment{kind.edit, place}, goOn));
      ++place;
    }
  }
  return QSYS_STATUS_OK;
}

/// Runs run(start, length, goOn) for every window of the reading that the line can fit with one edit at most, in order,
/// until that clears goOn. Before the first window of a start, fitting or not, and before each fitting one,
/// beforeWindow() may change the parameters.
template <class BeforeWindow, class Run>
qsys_status forEachWindow(const Admission &admission, const qoc_ocrDictionaryRunParams &params,
                          BeforeWindow &&beforeWindow, Run &&run) {
  const std::int32_t readingLength = admission.numReadingPositions();
  bool goOn = true;
  for (std::int32_t start = 0; goOn && start < readingLength; ++start) {
    QOC_TRY(qsys_attention_check());
    const WindowEnds ends = findWindowEnds(start, readingLength, params);
    if (ends.last < ends.first) {
      continue;
    }
    beforeWindow();
    const std::int64_t fitting = std::int64_t{start} + admission.numLinePositions();
    const std::int64_t lastFitting = std::min<std::int64_t>(ends.last, fitting + 1);
    for (std::int64_t end = std::max<std::int64_t>(ends.first, fitting - 1); goOn && end <= lastFitting; ++end) {
      beforeWindow();
      QOC_TRY(run(start, static_cast<std::int32_t>(end - start), goOn));
    }
  }
  return QSYS_STATUS_OK;
}

}  // namespace qoc
