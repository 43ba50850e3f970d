#ifndef QOC_CPP_RESULTS_HPP
#define QOC_CPP_RESULTS_HPP

/// @file Results: the ways in which a reading is a dictionary text, and what happened at every position.

#include <qoc/cpp/string.hpp>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace qoc {
inline namespace v0 {

#define QOC_CPP_ENUMERATOR(name, value) name = value,

/// What happened at one position; see QOC_POSITION_STATUS_LIST for what each means.
enum class PositionStatus : std::int32_t { none = 0, QOC_POSITION_STATUS_LIST(QOC_CPP_ENUMERATOR) };
/// The kind of dictionary entry that gave a result.
enum class Mode : std::int32_t { none = 0, QOC_MODE_LIST(QOC_CPP_ENUMERATOR) };

#undef QOC_CPP_ENUMERATOR
#define QOC_CPP_NAME(name, value) \
  case value:                     \
    return #name;

/// The name of a status, such as "primarySwap"; "none" for what is none.
constexpr const char *name(PositionStatus status) noexcept {
  switch (static_cast<std::int32_t>(status)) {
    QOC_POSITION_STATUS_LIST(QOC_CPP_NAME)
    default:
      return "none";
  }
}
/// The name of a mode, such as "lexicon"; "none" for what is none.
constexpr const char *name(Mode mode) noexcept {
  switch (static_cast<std::int32_t>(mode)) {
    QOC_MODE_LIST(QOC_CPP_NAME)
    default:
      return "none";
  }
}
#undef QOC_CPP_NAME

namespace detail {
inline PositionStatus toPositionStatus(const qoc_ocrDictionaryPositionStatus &status) noexcept {
  return static_cast<PositionStatus>(status);
}

/// What a position is of all that it may be.
inline Candidate choose(std::span<const Candidate> valid, std::span<const Candidate> read) noexcept {
  constexpr Candidate open{QOC_CHAR_EMPTY, 0};
  const auto isValid = [valid](Char32 code) {
    return std::ranges::any_of(valid, [code](const Candidate &candidate) { return candidate.code == code; });
  };
  if (valid.empty() || isValid(QOC_CHAR_ANY) || isValid(QOC_CHAR_ANY_NONSPACE)) return open;
  for (const Candidate &candidate : read) {
    if (isValid(candidate.code)) return candidate;
  }
  return valid.front();
}
}  // namespace detail

/// What can be asked of a result, whoever owns it.
template <class Self>
class ResultQueries {
 public:
  using Statuses = Sequence<qoc_ocrDictionaryPositionStatus, detail::toPositionStatus>;

  /// The text that the reading is, character by character. With more than one edit it is the text as it was aligned,
  /// which may differ from the word. Where a position may be several characters, it is what the reading has before what
  /// is swapped for that, and the empty character 0xF800 where it may be anything.
  std::vector<Candidate> characters() const {
    std::vector<Candidate> text;
    if (mode() == Mode::lexicon) {
      const std::span<const Candidate> word = dictionaryString().characters();
      text.assign(word.begin(), word.end());
      return text;
    }
    const std::vector<std::int32_t> places = isComputed() ? readingIndices() : std::vector<std::int32_t>();
    for (const std::span<const Candidate> candidates : valid()) {
      const std::size_t i = text.size();
      const bool isRead = i < places.size() && places[i] >= 0 && static_cast<std::size_t>(places[i]) < givenSwap().size();
      text.push_back(detail::choose(
          candidates, isRead ? givenSwap()[static_cast<std::size_t>(places[i])] : std::span<const Candidate>()));
    }
    return text;
  }
  /// characters() as UTF-8, empty ones left out.
  std::string utf8() const { return toUtf8(characters()); }
  /// The dictionary string that the match was made with; empty for a line fielding.
  StringView dictionaryString() const noexcept { return record().dictionaryString; }
  /// Insertions, deletions and substitutions.
  std::int32_t numEdits() const noexcept { return record().numEdits; }
  /// The sum of the dictionary string's own scores at the positions that count; 0 where the ranking did not need it.
  std::int32_t score() const noexcept { return record().score; }
  Mode mode() const noexcept { return static_cast<Mode>(record().mode); }
  bool isComputed() const noexcept { return record().isComputed != 0; }

  /// A status for each position of the result.
  Statuses statuses() const noexcept { return Statuses(detail::elements(record().resultStringStatus)); }
  /// A status for each position of the reading as it was matched.
  Statuses readingStatuses() const noexcept {
    return Statuses(detail::elements(record().statusWRTInputStringSwapChar));
  }
  /// The worst of statuses().
  PositionStatus lineStatus() const noexcept { return static_cast<PositionStatus>(record().resultStringLineStatus); }
  /// The positions of the reading that have no character, or lack one; see qoc_ocrDictionaryString_matchMulti.
  std::span<const std::int32_t> deleted() const noexcept { return detail::elements(record().deleted); }
  std::int32_t numIgnoredPrefix() const noexcept { return record().numIgnoredPrefixCharacters; }
  std::int32_t numIgnoredSuffix() const noexcept { return record().numIgnoredSuffixCharacters; }
  /// The position of a line fielding at which the match starts.
  std::int32_t startFieldIndex() const noexcept { return record().startFieldIndex; }
  /// The overlap with the reading that a fielding run found.
  std::int32_t overlap() const noexcept { return record().overlapInputString; }

  /// The reading as it was matched; after multi-character swaps givenSwap(), and inputIndices() says where its
  /// positions come from.
  ReadingView given() const noexcept { return record().given; }
  ReadingView givenSwap() const noexcept { return record().givenSwap; }
  std::span<const std::int32_t> inputIndices() const noexcept { return detail::elements(record().inputIndices); }
  /// The dictionary's side of the result: for every position what it may be.
  ReadingView valid() const noexcept { return record().valid; }

  /// For each position of the result the position of the reading, or -1 where it is inserted.
  std::vector<std::int32_t> readingIndices() const {
    return list(qoc_ocrDictionaryResult_getInputStringIndicesOfResultStringCharacters);
  }
  /// The positions of the result that are inserted, ascending.
  std::vector<std::int32_t> insertedIndices() const {
    return list(qoc_ocrDictionaryResult_getInsertedDictionaryStringCharacterIndices);
  }

 private:
  const qoc_ocrDictionaryResult &record() const noexcept { return *static_cast<const Self &>(*this).c(); }

  std::vector<std::int32_t> list(qsys_status (*query)(const qoc_ocrDictionaryResult *, qstd_vector32s *)) const {
    Value<qstd_vector32s> numbers;
    require(query(&record(), numbers.c()));
    const std::span<const std::int32_t> all = detail::elements(*numbers.c());
    return {all.begin(), all.end()};
  }
};

/// A result that belongs to a set.
class ResultView : public View<qoc_ocrDictionaryResult>, public ResultQueries<ResultView> {
 public:
  using View::View;
};

/// A result of its own: `qoc::Result(results.front())` outlives the set.
class Result : public Value<qoc_ocrDictionaryResult>, public ResultQueries<Result> {
 public:
  using Value::Value;
};

namespace detail {
inline ResultView viewResult(const qoc_ocrDictionaryResult &result) noexcept { return result; }
}  // namespace detail

/// The results of a run, best first: a range of ResultView.
class Results : public Value<qoc_ocrDictionaryResultSet> {
 public:
  using Ranked = Sequence<qoc_ocrDictionaryResult, detail::viewResult>;
  using Value::Value;

  Ranked all() const noexcept { return Ranked(detail::elements(c()->results)); }
  auto begin() const noexcept { return all().begin(); }
  auto end() const noexcept { return all().end(); }
  std::size_t size() const noexcept { return all().size(); }
  bool empty() const noexcept { return all().empty(); }
  ResultView operator[](std::size_t rank) const { return all()[rank]; }
  /// The best result, which must be there.
  ResultView front() const { return all().front(); }
};

}  // namespace v0
}  // namespace qoc

#endif
