// The alignment of a dictionary string with a reading.
//
// The whole reading is aligned, and, where the parameters ask for it, every window of it. A window yields the exact alignment, if
// position for position matches, and alignments with edits: through the edit table, or, in the multi kind with exactly one edit
// allowed, by the one-edit builder. Candidates are filed by their number of edits and merged from the fewest up.
//
// The two ways of showing edits differ on purpose. The table speaks from the reading's side: a position without character is
// `inserted`, a character without position adds the position's index to `deleted`. The one-edit builder speaks from the dictionary's
// side: a character without position is `inserted`, an extra position is `deleted`.

#include "text/alignment.hpp"

#include <algorithm>
#include <cstdlib>

#include "frame/frame.hpp"
#include "run/result_set_ops.hpp"
#include "text/reading_of.hpp"

namespace qoc {

/// The buckets, and the result that candidates are put together in, made when the first candidate turns up.
struct Aligner::Task {
  Task(const qoc_ocrDictionaryString &wordAligned, const qoc_ocrDictionaryRunParams *callersParams)
      : word(wordAligned), params(callersParams) {
    if (callersParams != nullptr) {
      copy = *callersParams;
      params = &copy;
    }
  }
  ~Task() {
    if (isOpen) {
      qstd_vector_vector_qoc_ocrDictionaryResult_destruct(&buckets);
      qoc_ocrDictionaryResult_destruct(&candidate);
    }
  }
  Task(const Task &) = delete;
  Task &operator=(const Task &) = delete;

  /// Opens the buckets, and gives the candidate the values that all of a window's candidates have.
  qsys_status begin(Window window, std::int32_t n) {
    if (!isOpen) {
      QOC_TRY(qoc_ocrDictionaryResult_construct(&candidate));
      if (const qsys_status status = qstd_vector_vector_qoc_ocrDictionaryResult_constructEmpty(&buckets); status < 0) {
        qoc_ocrDictionaryResult_destruct(&candidate);
        return status;
      }
      isOpen = true;
    }
    QOC_TRY(qoc_ocrDictionaryResult_reset(&candidate));
    candidate.isComputed = 1;
    candidate.mode = qoc_ocrDictionaryMode_lexicon;
    candidate.numIgnoredPrefixCharacters = window.start;
    candidate.numIgnoredSuffixCharacters = n - window.end;
    return QSYS_STATUS_OK;
  }

  bool hasExact() const {
    qsys_bool has = 0;
    if (isOpen) {
      qoc_ocrDictionaryResultBuckets_hasResults(&buckets, &has);
    }
    return has != 0;
  }

  /// Once an exact alignment is there and only the best result counts, one edit need not be looked for any more.
  void stopEarly() {
    if (params != nullptr && copy.returnBestOnly != 0 && copy.maxEdits == 1 && hasExact()) {
      copy.maxEdits = 0;
    }
  }

  const qoc_ocrDictionaryString &word;
  const qoc_ocrDictionaryRunParams *params;  // Null, or the private copy.
  qoc_ocrDictionaryRunParams copy = {};
  bool isOpen = false;
  qstd_vector_vector_qoc_ocrDictionaryResult buckets = {};
  qoc_ocrDictionaryResult candidate = {};
};

namespace {

qsys_status append(qoc_ocrDictionaryResult &result, qoc_ocrDictionaryPositionStatus status) {
  return qstd_vector_qoc_ocrDictionaryPositionStatus_pushBack(&result.resultStringStatus, &status);
}

qsys_status append(qoc_ocrDictionaryResult &result, std::span<const qoc_ocrDictionaryPositionStatus> statuses) {
  return qstd_vector_qoc_ocrDictionaryPositionStatus_insert(&result.resultStringStatus, sizeOf(result.resultStringStatus),
                                                            statuses.data(), static_cast<std::int32_t>(statuses.size()));
}

}  // namespace

qsys_status Aligner::align(const qoc_ocrDictionaryString &word, const qoc_ocrDictionaryRunParams *params,
                           qoc_ocrDictionaryResultSet &results) {
  QOC_TRY(qoc_ocrDictionaryResultSet_reset(&results));
  QOC_TRY(rows_.set(view(word), matches_));
  Task task(word, params);
  const std::int32_t n = matches_.size();
  QOC_TRY(alignWindow(task, {0, n}));
  if (params != nullptr && params->matchOption9 != 0) {
    QOC_TRY(searchWindows(n, rows_.size(), *params, [&](Window window, bool &) -> qsys_status {
      if (kind_ == Kind::multi) {
        task.stopEarly();
      }
      return alignWindow(task, window);
    }));
  }
  results.isComputed = 1;
  if (!task.isOpen) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_ocrDictionaryResultSet_mergeBuckets(&results, &task.buckets, params));
  return qoc_ocrDictionaryResultSet_finalize(&results, params);
}

qsys_status Aligner::alignWindow(Task &task, Window window) {
  if (!admitsLength(task.params, window)) {
    return QSYS_STATUS_OK;
  }
  const bool allowsEdits = task.params != nullptr && task.params->maxEdits != 0;
  bool isExact = false;
  if (kind_ == Kind::plain) {
    if (allowsEdits) {
      QOC_TRY(alignByTable(task, window));
    }
    return alignExactly(task, window, isExact);
  }
  QOC_TRY(alignExactly(task, window, isExact));
  if (!allowsEdits || (isExact && task.params->returnBestOnly != 0)) {
    return QSYS_STATUS_OK;
  }
  return task.params->maxEdits == 1 ? alignWithOneEdit(task, window) : alignByTable(task, window);
}

qsys_status Aligner::alignExactly(Task &task, Window window, bool &isExact) {
  const std::int32_t m = rows_.size();
  isExact = m == window.size() && matchEnds(rows_, window).numFront == m;
  if (!isExact) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(task.begin(window, matches_.size()));
  const Characters characters = view(task.word);
  const Positions positions = view(matches_.reading());
  for (std::int32_t i = 0; i < m; ++i) {
    // Deliberate: secondary, never a swap status, also when it was the set that made the match.
    const Char32 primary = view(positions[static_cast<std::size_t>(window.start + i)]).front().code;
    QOC_TRY(append(task.candidate, primary == characters[static_cast<std::size_t>(i)].code
                                       ? qoc_ocrDictionaryPositionStatus_primary
                                       : qoc_ocrDictionaryPositionStatus_secondary));
  }
  QOC_TRY(qoc_ocrDictionaryStringMulti_assign(&task.candidate.given, &matches_.reading()));
  QOC_TRY(qoc_ocrDictionaryString_assign(&task.candidate.dictionaryString, &task.word));
  return qoc_ocrDictionaryResultBuckets_add(&task.buckets, &task.candidate);
}

qsys_status Aligner::alignByTable(Task &task, Window window) {
  bool isWithin = false;
  QOC_TRY(table_.fill(rows_, window, *task.params, isWithin));
  if (!isWithin) {
    return QSYS_STATUS_OK;
  }
  std::int32_t i = 0;
  std::int32_t j = 0;
  table_.trace(steps_, i, j);
  QOC_TRY(task.begin(window, matches_.size()));
  qoc_ocrDictionaryResult &result = task.candidate;
  const Characters characters = view(task.word);
  const Positions positions = view(matches_.reading());

  // Where the path begins: i characters that the reading lacks, or j positions that are extra; `given` holds nothing of them.
  // Deliberate: j extra positions take j characters of the word with them.
  QOC_TRY(qoc_ocrDictionaryString_getSubstrExtend(&task.word, 0, i > 0 ? i : j, &result.dictionaryString.characters));
  for (std::int32_t extra = 0; extra < j; ++extra) {
    QOC_TRY(append(result, qoc_ocrDictionaryPositionStatus_inserted));
  }
  result.numEdits = i > 0 ? i : j;

  for (auto step = steps_.rbegin(); step != steps_.rend(); ++step) {
    i += *step != EditTable::Step::insertion ? 1 : 0;
    j += *step != EditTable::Step::deletion ? 1 : 0;
    if (*step != EditTable::Step::insertion) {
      QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_pushBack(&result.dictionaryString.characters,
                                                         &characters[static_cast<std::size_t>(i - 1)]));
    }
    if (*step == EditTable::Step::deletion) {
      const std::int32_t indexInWindow = j - 1;
      QOC_TRY(qstd_vector32s_pushBack(&result.deleted, &indexInWindow));
    } else {
      QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(
          &result.given.positions, &positions[static_cast<std::size_t>(window.start + j - 1)]));
      QOC_TRY(append(result, *step == EditTable::Step::match       ? qoc_ocrDictionaryPositionStatus_primary
                             : *step == EditTable::Step::insertion ? qoc_ocrDictionaryPositionStatus_inserted
                                                                   : qoc_ocrDictionaryPositionStatus_substituted));
    }
    result.numEdits += *step != EditTable::Step::match ? 1 : 0;
  }
  return qoc_ocrDictionaryResultBuckets_add(&task.buckets, &result);
}

/// Grades the positions that match from either end, and clamps the back so that the two do not overlap.
qsys_status Aligner::scanEnds(const Task &task, Window window, EndMatches &ends) {
  const std::int32_t m = rows_.size();
  const std::int32_t k = window.size();
  const Characters characters = view(task.word);
  const Positions positions = view(matches_.reading());
  const auto grade = [&](std::int32_t i, std::int32_t position, std::vector<qoc_ocrDictionaryPositionStatus> &out) {
    qsys_bool isMatch = 0;
    qoc_ocrDictionaryPositionStatus status = 0;
    QOC_TRY(qoc_ocrDictionaryChar_isMatchMultiStatus(&characters[static_cast<std::size_t>(i)],
                                                     &positions[static_cast<std::size_t>(position)].candidates,
                                                     matches_.set(), &isMatch, &status));
    out.push_back(status);
    return static_cast<qsys_status>(QSYS_STATUS_OK);
  };
  front_.clear();
  back_.clear();
  for (std::int32_t i = 0; i < ends.numFront; ++i) {
    QOC_TRY(grade(i, window.start + i, front_));
  }
  for (std::int32_t i = 0; i < ends.numBack; ++i) {
    QOC_TRY(grade(m - 1 - i, window.end - 1 - i, back_));
  }
  const std::int32_t p = ends.numFront;
  std::int32_t &s = ends.numBack;
  if (k == m + 1 && p + s >= m) {
    s = m - p;
  } else if (k == m && p + s >= k - 1) {
    s = k - 1 - p;
  } else if (k == m - 1 && p + s > k) {
    s = k - p;
  }
  if (s >= 0) {  // Below 0 only where everything matches in place: the back list then stays as it was collected.
    back_.resize(static_cast<std::size_t>(s));
    std::ranges::reverse(back_);
  }
  return QSYS_STATUS_OK;
}

qsys_status Aligner::alignWithOneEdit(Task &task, Window window) {
  const std::int32_t m = rows_.size();
  const std::int32_t k = window.size();
  const qoc_ocrDictionaryRunParams &params = *task.params;
  if (std::abs(m - k) > 1) {
    return QSYS_STATUS_OK;
  }
  // Clamping never takes away what the conditions below need, so hopeless windows end before anything is graded.
  EndMatches ends = matchEnds(rows_, window);
  if (std::int64_t{ends.numFront} + ends.numBack + 1 < m) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(scanEnds(task, window, ends));
  const std::int32_t numEnds = ends.numFront + ends.numBack;
  if (k == m && params.matchOption1 != 0 && numEnds + 1 >= m) {
    QOC_TRY(fileOneEdit(task, window, qoc_ocrDictionaryPositionStatus_substituted, -1));
  }
  if (m == k + 1 && params.matchOption2 != 0 && numEnds + 1 >= m) {
    QOC_TRY(fileOneEdit(task, window, qoc_ocrDictionaryPositionStatus_inserted, -1));
  }
  if (m == k - 1 && params.matchOption4 != 0 && numEnds >= m) {
    QOC_TRY(fileOneEdit(task, window, 0, window.start + ends.numFront));
  }
  return QSYS_STATUS_OK;
}

/// Files front, the edit's status unless it is 0, and back; and the deleted index unless it is negative.
qsys_status Aligner::fileOneEdit(Task &task, Window window, qoc_ocrDictionaryPositionStatus edit,
                                 std::int32_t deleted) {
  QOC_TRY(task.begin(window, matches_.size()));
  qoc_ocrDictionaryResult &result = task.candidate;
  QOC_TRY(append(result, front_));
  if (edit != 0) {
    QOC_TRY(append(result, edit));
  }
  QOC_TRY(append(result, back_));
  if (deleted >= 0) {
    QOC_TRY(qstd_vector32s_pushBack(&result.deleted, &deleted));
  }
  result.numEdits = 1;
  QOC_TRY(qoc_ocrDictionaryStringMulti_assign(&result.given, &matches_.reading()));
  QOC_TRY(qoc_ocrDictionaryString_assign(&result.dictionaryString, &task.word));
  return qoc_ocrDictionaryResultBuckets_add(&task.buckets, &result);
}

}  // namespace qoc

qsys_status qoc_ocrDictionaryString_matchMulti(const qoc_ocrDictionaryString *string,
                                               const qoc_ocrDictionaryStringMulti *reading,
                                               const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                               qoc_ocrDictionaryResultSet *results) {
  if (!qoc::present({string, reading, results})) {
    return QSYS_STATUS_OK;
  }
  return qoc::inFrame<1>([&](qoc::Frame<1> &) -> qsys_status {
    qoc::ReadingMatches matches(*reading, set);
    return qoc::Aligner(matches, qoc::Aligner::Kind::multi).align(*string, params, *results);
  });
}

qsys_status qoc_ocrDictionaryString_match(const qoc_ocrDictionaryString *string, const qoc_ocrDictionaryString *input,
                                          const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                          qoc_ocrDictionaryResultSet *results) {
  if (!qoc::present({string, input, results})) {
    return QSYS_STATUS_OK;
  }
  return qoc::withReadingOf(*input, [&](const qoc_ocrDictionaryStringMulti &reading) -> qsys_status {
    qoc::ReadingMatches matches(reading, set);
    return qoc::Aligner(matches, qoc::Aligner::Kind::plain).align(*string, params, *results);
  });
}
