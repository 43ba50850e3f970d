#pragma once
// The alignment of one word with a reading, for callers that align many words.

#include <qoc/result_set.h>

#include <array>
#include <span>
#include <vector>

#include "platform/containers/shared_elements.hpp"
#include "text/edit_table.hpp"
#include "text/window_search.hpp"

namespace qoc {

/// What an alignment comes to, before a result is made of it. Its lists stand in the aligner's and hold until the next
/// word.
struct Outline {
  Window window = {0, 0};
  std::int32_t numEdits = 0;
  /// Results of the edit table show the window; the others, the whole reading.
  bool isOfTable = false;
  /// Extra positions in front of a table's path: they are not shown, and take as many characters of the word with them.
  std::int32_t numInFront = 0;
  std::span<const qoc_ocrDictionaryPositionStatus> statuses;
  std::span<const std::int32_t> deleted;
};

/// Aligns words with one reading. Nothing is constructed for a word that has no alignment.
class Aligner {
 public:
  /// The two kinds of alignment. The plain one shows every edit by the table's steps; the multi one builds a single
  /// edit by itself, from the dictionary's side, and stops early.
  enum class Kind { plain, multi };

  /// An alignment of a window is exact or has edits; both, with all results asked for.
  static constexpr std::size_t maxOutlines = 2;

  Aligner(const ReadingMatches &matches, Kind kind) : matches_(matches), kind_(kind) {}

  /// As qoc_ocrDictionaryString_matchMulti (or _match). `results` is reset.
  qsys_status align(const qoc_ocrDictionaryString &word, const qoc_ocrDictionaryRunParams *params,
                    qoc_ocrDictionaryResultSet &results);

  /// The alignments of the whole reading alone, in the order in which they are filed, without results.
  qsys_status outline(const qoc_ocrDictionaryString &word, const qoc_ocrDictionaryRunParams *params,
                      std::span<const Outline> &outlines);

  /// Makes a fresh or reset result of an outline of the word, as it is filed.
  qsys_status fill(const Outline &outline, const qoc_ocrDictionaryString &word, qoc_ocrDictionaryResult &result);
  /// The same for a fresh result, with its plain elements in a pool.
  qsys_status fill(const Outline &outline, const qoc_ocrDictionaryString &word, ElementPool &pool,
                   qoc_ocrDictionaryResult &result);

  std::int32_t numPositions() const noexcept { return matches_.size(); }

  ~Aligner();
  Aligner(const Aligner &) = delete;
  Aligner &operator=(const Aligner &) = delete;

 private:
  struct Task;  // One word's alignment into buckets.

  qsys_status alignWindow(Task &task, Window window);
  qsys_status outlineWindow(Characters word, const qoc_ocrDictionaryRunParams *params, Window window);
  bool outlineExactly(Characters word, Window window);
  qsys_status outlineByTable(const qoc_ocrDictionaryRunParams &params, Window window);
  void outlineWithOneEdit(Characters word, const qoc_ocrDictionaryRunParams &params, Window window);
  void scanEnds(Characters word, Window window, EndMatches &ends);
  void add(Window window, std::int32_t numEdits, std::size_t list, bool isOfTable, std::int32_t numInFront);
  qsys_status shareReading(std::int32_t start, const qoc_ocrDictionaryStringMulti *&shared);
  template <class Assign>
  qsys_status fillBy(Assign assign, const Outline &outline, const qoc_ocrDictionaryString &word,
                     qoc_ocrDictionaryResult &result);

  const ReadingMatches &matches_;
  Kind kind_;
  WordRows rows_;
  EditTable table_;
  std::vector<EditTable::Step> steps_;
  std::vector<qoc_ocrDictionaryPositionStatus> back_;

  std::array<Outline, maxOutlines> outlines_;
  std::size_t numOutlines_ = 0;
  std::array<std::vector<qoc_ocrDictionaryPositionStatus>, maxOutlines> statuses_;
  std::array<std::vector<std::int32_t>, maxOutlines> deleted_;

  /// The reading from a position on, as the results that show it share it.
  struct SharedReading {
    std::int32_t start;
    qoc_ocrDictionaryStringMulti reading;
  };
  std::vector<SharedReading> shared_;
};

}  // namespace qoc
