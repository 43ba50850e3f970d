#pragma once
// The table of edit costs between a dictionary string and a window of a reading, and the one path that is kept through
// it.
//
// Cell (i, j) is the least cost of turning the first j positions of the window into the first i characters of the
// string: a match is free, every other step costs 1 and is open only where the run parameters allow it. Among steps
// that tie, substitution is kept before insertion before deletion.
//
// Every step off the diagonal costs 1, so a cell further than maxEdits from the diagonal costs more than maxEdits and
// cannot lie on an accepted path (the bound of Ukkonen, 1985). Only the band of cells within it is worked out; the
// others count as unreachable, which leaves every cost of at most maxEdits, and the choice of steps into such a cell,
// as they are in the full table.
//
//     "abc" in the window "axc", one edit:   diagonal 0, 0, 1, 1: match, substitution, match
//
// Where all steps are open and the window has at most 64 positions, neither costs nor steps are written down: cells
// differ from their neighbours by at most 1, so each character's costs are two words of bits (see bitDistance). A third
// tells where a cell costs what the one diagonally before it does. Of a cell on the path these give the step: a match
// where there is one; a substitution where the cell costs more than that one; else an insertion where it costs more
// than the one before it in the window.

#include <qoc/run_params.h>

#include <cstdint>
#include <vector>

#include "platform/system/work_meter.hpp"
#include "text/reading_matches.hpp"

namespace qoc {

class EditTable {
 public:
  enum class Step : std::uint8_t { match, deletion, insertion, substitution };

  /// The cost of a step that is not open, and of a cell that cannot be reached.
  static constexpr std::int32_t unreachable = 0x3FFFFFFF;

  /// Works out the costs, and whether the whole word is the whole window within params.maxEdits.
  /// @return 0, or the attention status when interrupted: asked where the tables filled so far are large
  qsys_status fill(const WordRows &word, Window window, const qoc_ocrDictionaryRunParams &params, bool &isWithin);

  /// The path into the last cell, from its end to its beginning: `steps` from the cell (row, column) on the first row
  /// or column. Call only after fill said yes.
  void trace(std::vector<Step> &steps, std::int32_t &firstI, std::int32_t &firstJ) const;

 private:
  std::size_t at(std::int32_t i, std::int32_t j) const noexcept {
    return static_cast<std::size_t>(std::int64_t{j} * stride_ + i - (isBanded_ ? std::int64_t{j} - band_ : 0));
  }

  /// The costs of one character: the positions that match it, where a cell costs as much as the one diagonally before
  /// it, and where it costs one more than the one before it in the window.
  struct Column {
    std::uint64_t matches, diagonal, up;
  };

  static constexpr std::size_t largeTable = std::size_t{1} << 16;
  static constexpr std::int32_t mostPositionsOfBits = 64;

  qsys_status fillBits(const WordRows &word, Window window, std::int32_t maxEdits, bool &isWithin);
  qsys_status fillCells(const WordRows &word, Window window, const qoc_ocrDictionaryRunParams &params, bool &isWithin);
  Step stepInto(std::int32_t i, std::int32_t j) const noexcept;

  /// Makes room for the first n rows. What earlier tables left there stays.
  void makeRows(std::int32_t n) {
    const std::size_t numCells = static_cast<std::size_t>(stride_) * static_cast<std::size_t>(n);
    if (costs_.size() < numCells) {
      costs_.resize(numCells);
      steps_.resize(numCells);
    }
  }

  WorkMeter meter_;
  std::vector<std::int32_t> costs_;
  std::vector<Step> steps_;
  std::vector<Column> columns_;
  bool hasColumns_ = false;
  std::int64_t stride_ = 0;
  std::int32_t m_ = 0, k_ = 0, band_ = 0;
  bool isBanded_ = false;
};

}  // namespace qoc
