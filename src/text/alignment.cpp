// The alignment of a dictionary string with a reading.
//
// The whole reading is aligned, and, where the parameters ask for it, every window of it. A window yields the exact
// alignment, if position for position matches, and alignments with edits: through the edit table, or, in the multi kind
// with exactly one edit allowed, by the one-edit builder. Candidates are filed by their number of edits and merged from
// the fewest up.
//
// The two ways of showing edits differ on purpose. The table speaks from the reading's side: a position without
// character is `inserted`, a character without position adds the position's index to `deleted`. The one-edit builder
// speaks from the dictionary's side: a character without position is `inserted`, an extra position is `deleted`.

#include "text/alignment.hpp"

#include <algorithm>
#include <cstdlib>

#include "frame/frame.hpp"
#include "platform/containers/shared_elements.hpp"
#include "platform/system/shortcuts.hpp"
#include "run/result_set_ops.hpp"
#include "text/reading_of.hpp"
#include "text/shared_reading.hpp"

namespace qoc {

namespace {

using Status = qoc_ocrDictionaryPositionStatus;

}  // namespace

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

  void open() {
    if (isOpen) {
      qoc_ocrDictionaryResult_reset(&candidate);
    } else {
      qoc_ocrDictionaryResult_construct(&candidate);
      qstd_vector_vector_qoc_ocrDictionaryResult_constructEmpty(&buckets);
      isOpen = true;
    }
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
    if (stopsOnceExact(params) && hasExact()) {
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

Aligner::~Aligner() {
  for (SharedReading &shared : shared_) {
    qoc_ocrDictionaryStringMulti_destruct(&shared.reading);
  }
}

qsys_status Aligner::align(const qoc_ocrDictionaryString &word, const qoc_ocrDictionaryRunParams *params,
                           qoc_ocrDictionaryResultSet &results) {
  reset(results);
  rows_.set(view(word), matches_);
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

qsys_status Aligner::outline(const qoc_ocrDictionaryString &word, const qoc_ocrDictionaryRunParams *params,
                             std::span<const Outline> &outlines) {
  rows_.set(view(word), matches_);
  const qsys_status status = outlineWindow(view(word), params, {0, matches_.size()});
  outlines = {outlines_.data(), numOutlines_};
  return status;
}

qsys_status Aligner::alignWindow(Task &task, Window window) {
  QOC_TRY(outlineWindow(view(task.word), task.params, window));
  for (std::size_t i = 0; i < numOutlines_; ++i) {
    task.open();
    QOC_TRY(fill(outlines_[i], task.word, task.candidate));
    QOC_TRY(qoc_ocrDictionaryResultBuckets_add(&task.buckets, &task.candidate));
  }
  return QSYS_STATUS_OK;
}

qsys_status Aligner::outlineWindow(Characters word, const qoc_ocrDictionaryRunParams *params, Window window) {
  numOutlines_ = 0;
  if (!admitsLength(params, window)) {
    return QSYS_STATUS_OK;
  }
  const bool allowsEdits = params != nullptr && params->maxEdits != 0;
  if (kind_ == Kind::plain) {
    if (allowsEdits) {
      QOC_TRY(outlineByTable(*params, window));
    }
    outlineExactly(word, window);
    return QSYS_STATUS_OK;
  }
  const bool isExact = outlineExactly(word, window);
  if (!allowsEdits || (isExact && params->returnBestOnly != 0)) {
    return QSYS_STATUS_OK;
  }
  if (params->maxEdits == 1) {
    outlineWithOneEdit(word, *params, window);
    return QSYS_STATUS_OK;
  }
  return outlineByTable(*params, window);
}

/// Adds an outline of the lists that stand in the given place.
void Aligner::add(Window window, std::int32_t numEdits, std::size_t list, bool isOfTable, std::int32_t numInFront) {
  outlines_[numOutlines_++] = {window, numEdits, isOfTable, numInFront, statuses_[list], deleted_[list]};
}

bool Aligner::outlineExactly(Characters word, Window window) {
  const std::int32_t m = rows_.size();
  if (m != window.size() || matchEnds(rows_, window).numFront != m) {
    return false;
  }
  const std::size_t list = numOutlines_;
  const Positions positions = view(matches_.reading());
  statuses_[list].resize(word.size());
  deleted_[list].clear();
  for (std::size_t i = 0; i < word.size(); ++i) {
    // Deliberate: secondary, never a swap status, also when it was the set that made the match.
    const Char32 primary = view(positions[static_cast<std::size_t>(window.start) + i]).front().code;
    statuses_[list][i] =
        primary == word[i].code ? qoc_ocrDictionaryPositionStatus_primary : qoc_ocrDictionaryPositionStatus_secondary;
  }
  add(window, 0, list, false, 0);
  return true;
}

qsys_status Aligner::outlineByTable(const qoc_ocrDictionaryRunParams &params, Window window) {
  bool isWithin = false;
  QOC_TRY(table_.fill(rows_, window, params, isWithin));
  if (!isWithin) {
    return QSYS_STATUS_OK;
  }
  std::int32_t i = 0;
  std::int32_t j = 0;
  table_.trace(steps_, i, j);
  const std::size_t list = numOutlines_;
  std::vector<Status> &statuses = statuses_[list];
  std::vector<std::int32_t> &deleted = deleted_[list];
  statuses.clear();
  deleted.clear();

  // Where the path begins: i characters that the reading lacks, or j positions that are extra; `given` holds nothing of
  // them.
  const std::int32_t numInFront = i > 0 ? 0 : j;
  std::int32_t numEdits = i > 0 ? i : j;
  statuses.insert(statuses.end(), static_cast<std::size_t>(j), qoc_ocrDictionaryPositionStatus_inserted);
  for (auto step = steps_.rbegin(); step != steps_.rend(); ++step) {
    j += *step != EditTable::Step::deletion ? 1 : 0;
    if (*step == EditTable::Step::deletion) {
      deleted.push_back(j - 1);
    } else {
      statuses.push_back(*step == EditTable::Step::match       ? qoc_ocrDictionaryPositionStatus_primary
                         : *step == EditTable::Step::insertion ? qoc_ocrDictionaryPositionStatus_inserted
                                                               : qoc_ocrDictionaryPositionStatus_substituted);
    }
    numEdits += *step != EditTable::Step::match ? 1 : 0;
  }
  add(window, numEdits, list, true, numInFront);
  return QSYS_STATUS_OK;
}

/// Grades the positions that match from either end, and clamps the back so that the two do not overlap: the front into
/// the list of the outline to come, the back into `back_`.
void Aligner::scanEnds(Characters word, Window window, EndMatches &ends) {
  const std::int32_t m = rows_.size();
  const std::int32_t k = window.size();
  const Positions positions = view(matches_.reading());
  const auto grade = [&](std::int32_t i, std::int32_t position, std::vector<Status> &out) {
    qsys_bool isMatch = 0;
    Status status = qoc_ocrDictionaryPositionStatus_primary;
    const qoc_ocrDictionaryChar &character = word[static_cast<std::size_t>(i)];
    const qoc_ocrDictionaryCharMulti &candidates = positions[static_cast<std::size_t>(position)];
    // The reader's first choice, as it is, is what most positions are; it has the best grade.
    if (view(candidates).front().code != character.code) {
      qoc_ocrDictionaryChar_isMatchMultiStatus(&character, &candidates.candidates, matches_.set(), &isMatch, &status);
    }
    out.push_back(status);
  };
  std::vector<Status> &front = statuses_[numOutlines_];
  front.clear();
  back_.clear();
  for (std::int32_t i = 0; i < ends.numFront; ++i) {
    grade(i, window.start + i, front);
  }
  for (std::int32_t i = 0; i < ends.numBack; ++i) {
    grade(m - 1 - i, window.end - 1 - i, back_);
  }
  const std::int32_t p = ends.numFront;
  std::int32_t &s = ends.numBack;
  s = std::min(s, (k == m ? m - 1 : std::min(m, k)) - p);  // A substituted character is in neither.
  if (s >= 0) {  // Below 0 only where everything matches in place: the back list then stays as it was collected.
    back_.resize(static_cast<std::size_t>(s));
    std::ranges::reverse(back_);
  }
}

void Aligner::outlineWithOneEdit(Characters word, const qoc_ocrDictionaryRunParams &params, Window window) {
  const std::int32_t m = rows_.size();
  const std::int32_t k = window.size();
  if (std::abs(m - k) > 1) {
    return;
  }
  // Clamping never takes away what the conditions below need, so hopeless windows end before anything is graded.
  EndMatches ends = matchEnds(rows_, window);
  if (shortcuts().usesEarlyTest && std::int64_t{ends.numFront} + ends.numBack + 1 < m) {
    return;
  }
  scanEnds(word, window, ends);
  // Front, the edit's status if it has one, and back; or the index of the position that is extra.
  const std::int32_t numEnds = ends.numFront + ends.numBack;
  const bool isSubstituted = k == m && params.matchOption1 != 0 && numEnds + 1 >= m;
  const bool isMissing = m == k + 1 && params.matchOption2 != 0 && numEnds + 1 >= m;
  const bool isExtra = m == k - 1 && params.matchOption4 != 0 && numEnds >= m;
  if (!isSubstituted && !isMissing && !isExtra) {
    return;
  }
  const std::size_t list = numOutlines_;
  std::vector<Status> &statuses = statuses_[list];
  deleted_[list].clear();
  if (isExtra) {
    deleted_[list].push_back(window.start + ends.numFront);
  } else {
    statuses.push_back(isSubstituted ? qoc_ocrDictionaryPositionStatus_substituted
                                     : qoc_ocrDictionaryPositionStatus_inserted);
  }
  statuses.insert(statuses.end(), back_.begin(), back_.end());
  add(window, 1, list, false, 0);
}

/// Makes the copy of the reading from a position on that results show: one for all of them.
qsys_status Aligner::shareReading(std::int32_t start, const qoc_ocrDictionaryStringMulti *&shared) {
  auto found = std::ranges::find(shared_, start, &SharedReading::start);
  if (found == shared_.end()) {
    SharedReading fresh = {start, {}};
    qoc_ocrDictionaryStringMulti_construct(&fresh.reading);
    shared_.push_back(fresh);  // Should there be no room, an empty reading leaves nothing behind.
    found = shared_.end() - 1;
    QOC_TRY(makeShared(view(matches_.reading()).subspan(static_cast<std::size_t>(start)), found->reading));
  }
  shared = &found->reading;
  return QSYS_STATUS_OK;
}

/// assign(vector, elements) gives a vector of plain elements copies of a span.
template <class Assign>
qsys_status Aligner::fillBy(Assign assign, const Outline &outline, const qoc_ocrDictionaryString &word,
                            qoc_ocrDictionaryResult &result) {
  result.isComputed = 1;
  result.mode = qoc_ocrDictionaryMode_lexicon;
  result.numIgnoredPrefixCharacters = outline.window.start;
  result.numIgnoredSuffixCharacters = matches_.size() - outline.window.end;
  result.numEdits = outline.numEdits;
  const Window shown = outline.isOfTable ? Window{outline.window.start + outline.numInFront, outline.window.end}
                                         : Window{0, matches_.size()};
  constexpr std::int32_t lastSharedStart = 8;  // Others are rare, and all of them together could be very much.
  if (shown.end == matches_.size() && shown.start <= lastSharedStart && shortcuts().sharesStorage) {
    const qoc_ocrDictionaryStringMulti *shared = nullptr;
    QOC_TRY(shareReading(shown.start, shared));
    qoc_ocrDictionaryStringMulti_assign(&result.given, shared);  // It joins, which takes no memory.
  } else {
    QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_assignElements(
        &result.given.positions, view(matches_.reading()).data() + shown.start, shown.size()));
  }
  // Deliberate: extra positions in front take as many characters of the word with them.
  if (outline.numInFront > 0) {
    QOC_TRY(qoc_ocrDictionaryString_getSubstrExtend(&word, 0, outline.numInFront, &result.dictionaryString.characters));
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_append(&result.dictionaryString.characters, &word.characters));
  } else {
    QOC_TRY(assign(result.dictionaryString.characters.core, view(word)));
  }
  QOC_TRY(assign(result.resultStringStatus.core, outline.statuses));
  return assign(result.deleted.core, outline.deleted);
}

qsys_status Aligner::fill(const Outline &outline, const qoc_ocrDictionaryString &word,
                          qoc_ocrDictionaryResult &result) {
  const auto assign = [](qstd_vector &vector, auto elements) {
    return qstd_vector__assignElements(&vector, elements.data(), static_cast<std::int32_t>(elements.size()));
  };
  return fillBy(assign, outline, word, result);
}

qsys_status Aligner::fill(const Outline &outline, const qoc_ocrDictionaryString &word, ElementPool &pool,
                          qoc_ocrDictionaryResult &result) {
  const auto assign = [&pool](qstd_vector &vector, auto elements) {
    return pool.placeCopies(vector, elements.data(), static_cast<std::int32_t>(elements.size()));
  };
  return fillBy(assign, outline, word, result);
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
    const qoc::ReadingMatches matches(*reading, set);
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
    const qoc::ReadingMatches matches(reading, set);
    return qoc::Aligner(matches, qoc::Aligner::Kind::plain).align(*string, params, *results);
  });
}
