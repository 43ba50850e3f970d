#pragma once
// Which lines a reading may have the shape of: a test that refuses most of a dictionary's line fieldings in a few
// nanoseconds each, so that only the others are aligned.
//
// The idea. What the positions of a reading may be is worked out once for all lines: for each set of classes, and each
// listed character, a row of bits says which positions of the reading have a candidate, or an equivalent of one, that
// is in it. A line then goes through the reading with sets of the places between its positions, as bits:
//
//     exact     where the line's first positions may end
//     edited    where they may end with one edit in them
//
// and every position of the line moves both sets on: one place, where its row admits the position of the reading
// behind it; and from exact to edited, one place where any character is substituted, none where one is missing, and one
// more where one is extra. The line may fit when the sets hold the end of the reading then, or, where windows are
// searched, anything at all.
//
// The invariant: no line that fits, and none whose alignment asks for what is a failure, is refused. So a line that
// comes to a position with a character that is no text character is left to the alignment.

#include <qoc/line_fielding.h>
#include <qoc/run_params.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "text/views.hpp"

namespace qoc {

class LineScreen {
 public:
  /// The reading and the set, which may be null, stay as they are while the object lives.
  LineScreen(const qoc_ocrDictionaryStringMulti &reading, const qoc_swapCharSet *set) noexcept
      : reading_(view(reading)), set_(set), numWords_(reading_.size() / 64 + 1) {}

  /// Whether a position of a line may admit one of the reading's.
  bool mayAdmit(const qoc_ocrDictionaryPositionFielding &position, std::size_t index) {
    prepare();
    return (rowOf(position)[index / 64] >> (index % 64) & 1) != 0;
  }
  /// Whether a position of a line may admit any of the reading's.
  bool mayAdmitAny(const qoc_ocrDictionaryPositionFielding &position) {
    prepare();
    const Word *row = rowOf(position);
    return std::any_of(row, row + numWords_, [](Word word) { return word != 0; });
  }
  /// Whether it may be a failure to ask whether a position of the reading is admitted.
  bool mayFail(std::size_t index) {
    prepare();
    return (undecided_[index / 64] >> (index % 64) & 1) != 0;
  }

  /// Whether nothing that can be asked about the reading is a failure.
  bool isEveryCharacterText() {
    prepare();
    return std::ranges::all_of(undecided_, [](Word word) { return word == 0; });
  }

  /// The work that was done since this was asked for last, as a WorkMeter counts it.
  std::size_t takeWork() noexcept { return std::exchange(work_, 0); }

  /// Whether the line may fit the reading, or a window of it where the params, which may be null, ask for these.
  bool mayFit(const qoc_ocrDictionaryLineFielding &line, const qoc_ocrDictionaryRunParams *params);

 private:
  using Word = std::uint64_t;

  void prepare();
  const Word *rowOf(const qoc_ocrDictionaryPositionFielding &position);
  const Word *rowOfClasses(std::uint32_t bits);
  const Word *rowOfCharacter(Char32 code);

  Positions reading_;
  const qoc_swapCharSet *set_;
  std::size_t numWords_;
  std::vector<std::uint32_t> classes_;  ///< Of each position of the reading.
  std::vector<Word> any_;               ///< The row of all positions of the reading.
  std::vector<Word> undecided_;         ///< The row of positions that it may be a failure to ask about.
  std::vector<std::vector<Word>> rowsOfClasses_, rowsOfCharacters_;
  std::vector<Word> row_;  ///< The last row that was put together.
  std::vector<Word> exact_, edited_;
  std::size_t workPerRow_ = 0, work_ = 0;
};

}  // namespace qoc
