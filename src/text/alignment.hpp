#pragma once
// The alignment of one word with a reading, for callers that align many words.

#include <qoc/result_set.h>

#include "text/edit_table.hpp"
#include "text/window_search.hpp"

namespace qoc {

/// Aligns words with one reading into result sets. Nothing is constructed for a word that has no alignment.
class Aligner {
 public:
  /// The two kinds of alignment. The plain one shows every edit by the table's steps; the multi one builds a single edit by itself,
  /// from the dictionary's side, and stops early.
  enum class Kind { plain, multi };

  Aligner(ReadingMatches &matches, Kind kind) : matches_(matches), kind_(kind) {}

  /// As qoc_ocrDictionaryString_matchMulti (or _match). `results` is reset.
  qsys_status align(const qoc_ocrDictionaryString &word, const qoc_ocrDictionaryRunParams *params,
                    qoc_ocrDictionaryResultSet &results);

 private:
  struct Task;  // One word's alignment.

  qsys_status alignWindow(Task &task, Window window);
  qsys_status alignExactly(Task &task, Window window, bool &isExact);
  qsys_status alignByTable(Task &task, Window window);
  qsys_status alignWithOneEdit(Task &task, Window window);
  qsys_status scanEnds(const Task &task, Window window, EndMatches &ends);
  qsys_status fileOneEdit(Task &task, Window window, qoc_ocrDictionaryPositionStatus edit, std::int32_t deleted);

  ReadingMatches &matches_;
  Kind kind_;
  WordRows rows_;
  EditTable table_;
  std::vector<EditTable::Step> steps_;
  std::vector<qoc_ocrDictionaryPositionStatus> front_, back_;
};

}  // namespace qoc
