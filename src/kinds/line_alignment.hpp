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
// bit behind; an alignment is then a test of two runs of bits. Three diagonals are needed for one start, and the starts
// rise, so the bits of three are kept.
//
// The invariant: pairs are asked in the order in which plain enumeration would ask them first, so that the first
// failure is the same. Cost: P questions and P / 64 words for every start, and P^2 / 64 words at worst where one-edit
// alignments hold.

#include <qoc/line_fielding.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>

#include "frame/frame.hpp"
#include "text/views.hpp"

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
      : line_(view(lineFielding)),
        reading_(view(reading)),
        set_(set),
        ask_(ask),
        numWords_(line_.size() / 64 + 1),
        words_(static_cast<std::uint64_t *>(qsys_memory_alloc_internal(numDiagonals * 2 * numWords_ * 8))) {
    if (words_ == nullptr) {
      throw std::bad_alloc();
    }
  }

  std::int32_t numLinePositions() const noexcept { return static_cast<std::int32_t>(line_.size()); }
  std::int32_t numReadingPositions() const noexcept { return static_cast<std::int32_t>(reading_.size()); }
  const qoc_ocrDictionaryPositionFielding &linePosition(std::int32_t position) const noexcept {
    return line_[static_cast<std::size_t>(position)];
  }

  /// True when positions begin to end - 1 of the line admit what the reading holds on the diagonal; asks up to the
  /// first refusal.
  qsys_status allAdmitted(std::int32_t diagonal, std::int32_t begin, std::int32_t end, bool &answer) {
    Diagonal bits = bitsOf(diagonal);
    answer = true;
    while (begin < end) {
      const auto word = static_cast<std::size_t>(begin) / 64;
      const int bit = begin % 64;
      const int numAdmitted = std::countr_one(bits.admitted[word] >> bit);
      if (numAdmitted > 0) {
        begin += std::min(numAdmitted, 64 - bit);
        continue;
      }
      const std::uint64_t mask = std::uint64_t{1} << bit;
      if ((bits.known[word] & mask) != 0) {
        answer = false;
        return QSYS_STATUS_OK;
      }
      bool isAdmitted = false;
      QOC_TRY(ask_(line_[static_cast<std::size_t>(begin)], reading_[static_cast<std::size_t>(diagonal + begin)], set_,
                   isAdmitted));
      bits.known[word] |= mask;
      bits.admitted[word] |= isAdmitted ? mask : 0;
    }
    return QSYS_STATUS_OK;
  }

 private:
  static constexpr std::size_t numDiagonals = 3;
  static constexpr std::int32_t noDiagonal = -2;

  struct Diagonal {
    std::uint64_t *known, *admitted;
  };
  struct Free {
    void operator()(std::uint64_t *words) const noexcept { qsys_memory_free_internal(words); }
  };

  // A diagonal is never below -1. One that is new takes the place of the one three below it.
  Diagonal bitsOf(std::int32_t diagonal) noexcept {
    const auto slot = static_cast<std::size_t>(diagonal + 1) % numDiagonals;
    std::uint64_t *first = words_.get() + slot * 2 * numWords_;
    if (kept_[slot] != diagonal) {
      kept_[slot] = diagonal;
      std::memset(first, 0, 2 * numWords_ * 8);
    }
    return {first, first + numWords_};
  }

  std::span<const qoc_ocrDictionaryPositionFielding> line_;
  Positions reading_;
  const qoc_swapCharSet *set_;
  AskAdmission ask_;
  std::size_t numWords_;
  std::unique_ptr<std::uint64_t[], Free> words_;
  std::int32_t kept_[numDiagonals] = {noDiagonal, noDiagonal, noDiagonal};
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
  return qoc_ocrDictionaryRunParams_satisfiesStringLength(params, length, &isSatisfied) >= 0 && isSatisfied != 0;
}

/// Whether the alignment holds for the range that starts at `start`; its length fits the alignment's kind.
inline qsys_status holds(Admission &admission, std::int32_t start, LineAlignment alignment, bool &isPrefixAdmitted,
                         bool &answer) {
  const std::int32_t end = admission.numLinePositions();
  const std::int32_t place = alignment.place;
  answer = false;
  QOC_TRY(admission.allAdmitted(start, 0, place, isPrefixAdmitted));
  if (!isPrefixAdmitted) {
    return QSYS_STATUS_OK;
  }
  switch (alignment.edit) {
    case LineEdit::missing:
      return admission.allAdmitted(start - 1, place + 1, end, answer);
    case LineEdit::extra:
      return admission.allAdmitted(start + 1, place, end, answer);
    case LineEdit::substituted:
      return admission.allAdmitted(start, place + 1, end, answer);
    case LineEdit::none:
      break;
  }
  return admission.allAdmitted(start, place, end, answer);
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
    QOC_TRY(admission.allAdmitted(start, 0, numPositions, isAdmitted));
    if (isAdmitted) {
      QOC_TRY(onAlignment(LineAlignment{LineEdit::none, 0}, goOn));
    }
  }
  if (params == nullptr || params->maxEdits == 0) {
    return QSYS_STATUS_OK;
  }
  const struct {
    LineEdit edit;
    std::int32_t option;
    std::int64_t dictionaryLength;
  } kinds[] = {
      {LineEdit::missing, params->matchOption2, std::int64_t{length} + 1},
      {LineEdit::extra, params->matchOption4, std::int64_t{length} - 1},
      {LineEdit::substituted, params->matchOption1, length},
  };
  for (const auto &kind : kinds) {
    if (kind.option == 0 || kind.dictionaryLength != numPositions || !lengthPasses(params, numPositions)) {
      continue;
    }
    // Deliberate: an extra character is looked for at P places only, so that the last character is never the one.
    for (std::int32_t place = 0; goOn && place < numPositions; ++place) {
      if (kind.edit == LineEdit::missing &&
          (length == 0 || (rule == EmptyPositionRule::emptyRangeOrFirst && place == 0))) {
        qsys_bool isEmpty = 0;
        QOC_TRY(qoc_ocrDictionaryPositionFielding_isEmpty(&admission.linePosition(place), &isEmpty));
        if (isEmpty != 0) {
          continue;
        }
      }
      bool isPrefixAdmitted = false;
      bool answer = false;
      QOC_TRY(holds(admission, start, {kind.edit, place}, isPrefixAdmitted, answer));
      if (!isPrefixAdmitted) {
        break;  // Nor is any longer prefix.
      }
      if (answer) {
        QOC_TRY(onAlignment(LineAlignment{kind.edit, place}, goOn));
      }
    }
  }
  return QSYS_STATUS_OK;
}

/// The ends that a window search tries for one start: from a first end upward while an end lies within the reading and,
/// both taken as unsigned, is not above a bound. A negative first end is therefore nearly always above it, and ends the
/// search of this start.
class WindowEnds {
 public:
  WindowEnds(std::int32_t start, std::int32_t readingLength, const qoc_ocrDictionaryRunParams &params) noexcept
      : first_(static_cast<std::int32_t>(static_cast<std::uint32_t>(start) +
                                         static_cast<std::uint32_t>(params.minStringLength) -
                                         static_cast<std::uint32_t>(params.maxEdits))),
        bound_(static_cast<std::uint32_t>(start) + static_cast<std::uint32_t>(params.maxStringLength) + 1u +
               static_cast<std::uint32_t>(params.maxEdits)),
        readingLength_(readingLength) {}

  std::int32_t first() const noexcept { return first_; }

  /// True when the search comes to the end, which is not negative.
  bool visits(std::int64_t end) const noexcept {
    const bool isBelowBound = first_ < 0 ? bound_ == UINT32_MAX : static_cast<std::uint64_t>(end) <= bound_;
    return first_ <= end && end <= readingLength_ && isBelowBound;
  }

 private:
  std::int32_t first_;
  std::uint32_t bound_;
  std::int32_t readingLength_;
};

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
    const WindowEnds ends(start, readingLength, params);
    if (!ends.visits(std::max(ends.first(), start + 1))) {
      continue;
    }
    QOC_TRY(beforeWindow());
    const std::int64_t fitting = std::int64_t{start} + admission.numLinePositions();
    for (std::int64_t end = std::max<std::int64_t>(fitting - 1, start + 1); goOn && end <= fitting + 1; ++end) {
      if (ends.visits(end)) {
        QOC_TRY(beforeWindow());
        QOC_TRY(run(start, static_cast<std::int32_t>(end - start), goOn));
      }
    }
  }
  return QSYS_STATUS_OK;
}

}  // namespace qoc
