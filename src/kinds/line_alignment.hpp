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
// rise, so the bits of three are kept. Positions that are classes alone mostly have the same few classes: what these
// admit is kept for the whole reading.
//
// A run of bits is tested for its first refusal, and that tells more than yes or no: behind place k a refusal at
// position r refuses every place up to r as well, so that the next place to try is found at once.
//
// The invariant: pairs are asked in the order in which plain enumeration would ask them first, so that the first
// failure is the same. Cost: P questions and a few words for every start, and for every alignment that holds.

#include <qoc/line_fielding.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>

#include "frame/frame.hpp"
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
      : line_(view(lineFielding)),
        reading_(view(reading)),
        set_(set),
        ask_(ask),
        numWords_(line_.size() / 64 + 1),
        words_(static_cast<std::uint64_t *>(qsys_memory_alloc_internal(numDiagonals * 2 * numWords_ * 8))),
        answers_(static_cast<std::uint64_t *>(qsys_memory_alloc_internal((reading_.size() + 1) * 8))) {
    if (words_ == nullptr || answers_ == nullptr) {
      throw std::bad_alloc();
    }
    std::memset(answers_.get(), 0, (reading_.size() + 1) * 8);
  }

  std::int32_t numLinePositions() const noexcept { return static_cast<std::int32_t>(line_.size()); }
  std::int32_t numReadingPositions() const noexcept { return static_cast<std::int32_t>(reading_.size()); }
  const qoc_ocrDictionaryPositionFielding &linePosition(std::int32_t position) const noexcept {
    return line_[static_cast<std::size_t>(position)];
  }

  /// The first of the positions begin to end - 1 of the line that refuses what the reading holds on the diagonal, or
  /// `end`; asks up to that.
  qsys_status findRefusal(std::int32_t diagonal, std::int32_t begin, std::int32_t end, std::int32_t &refusal) {
    const Diagonal bits = bitsOf(diagonal);
    for (; begin < end; ++begin) {
      const auto word = static_cast<std::size_t>(begin) / 64;
      const int bit = begin % 64;
      const int numAdmitted = std::countr_one(bits.admitted[word] >> bit);
      if (numAdmitted > 0) {
        begin += std::min(numAdmitted, 64 - bit) - 1;
        continue;
      }
      const std::uint64_t mask = std::uint64_t{1} << bit;
      if ((bits.known[word] & mask) != 0) {
        break;
      }
      bool isAdmitted = false;
      QOC_TRY(ask(static_cast<std::size_t>(begin), static_cast<std::size_t>(diagonal + begin), isAdmitted));
      bits.known[word] |= mask;
      if (!isAdmitted) {
        break;
      }
      bits.admitted[word] |= mask;
    }
    refusal = std::min(begin, end);
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

  /// What a position without a list admits depends on its classes alone: known and admitted, a bit for each set of
  /// classes, are the two halves of the reading position's word.
  qsys_status ask(std::size_t position, std::size_t read, bool &isAdmitted) {
    const qoc_ocrDictionaryPositionFielding &positionFielding = line_[position];
    if (positionFielding.fieldingCharacters.core.size != 0 || positionFielding.fieldingBits >= 32) {
      return ask_(positionFielding, reading_[read], set_, isAdmitted);
    }
    std::uint64_t &answers = answers_[read];
    const std::uint64_t known = std::uint64_t{1} << positionFielding.fieldingBits;
    if ((answers & known) == 0) {
      QOC_TRY(ask_(positionFielding, reading_[read], set_, isAdmitted));
      answers |= known | (isAdmitted ? known << 32 : 0);
    }
    isAdmitted = (answers & known << 32) != 0;
    return QSYS_STATUS_OK;
  }

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
  std::unique_ptr<std::uint64_t[], Free> answers_;
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

/// Hands every alignment of the range to onAlignment(alignment, goOn) in order, until that clears goOn.
template <class OnAlignment>
qsys_status forEachAlignment(Admission &admission, std::int32_t start, std::int32_t length,
                             const qoc_ocrDictionaryRunParams *params, EmptyPositionRule rule,
                             OnAlignment &&onAlignment) {
  const std::int32_t numPositions = admission.numLinePositions();
  bool goOn = true;
  if (length == numPositions && lengthPasses(params, length)) {
    std::int32_t refusal = 0;
    QOC_TRY(admission.findRefusal(start, 0, numPositions, refusal));
    if (refusal == numPositions) {
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
        qsys_bool isEmpty = 0;
        QOC_TRY(qoc_ocrDictionaryPositionFielding_isEmpty(&admission.linePosition(place), &isEmpty));
        if (isEmpty != 0) {
          ++place;
          continue;
        }
      }
      std::int32_t refusal = 0;
      QOC_TRY(admission.findRefusal(start, 0, place, refusal));
      if (refusal < place) {
        break;  // Nor does any later place hold.
      }
      QOC_TRY(admission.findRefusal(start + kind.diagonal, place + kind.next, numPositions, refusal));
      if (refusal < numPositions) {
        place = refusal + 1 - kind.next;
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
    QOC_TRY(beforeWindow());
    const std::int64_t fitting = std::int64_t{start} + admission.numLinePositions();
    const std::int64_t lastFitting = std::min<std::int64_t>(ends.last, fitting + 1);
    for (std::int64_t end = std::max<std::int64_t>(ends.first, fitting - 1); goOn && end <= lastFitting; ++end) {
      QOC_TRY(beforeWindow());
      QOC_TRY(run(start, static_cast<std::int32_t>(end - start), goOn));
    }
  }
  return QSYS_STATUS_OK;
}

}  // namespace qoc
