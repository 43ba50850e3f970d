#ifndef QOC_CPP_PARAMETERS_HPP
#define QOC_CPP_PARAMETERS_HPP

/// @file The options of runs.

#include <qoc/fielding_run.h>
#include <qoc/run_params.h>

#include <cstdint>
#include <limits>

namespace qoc {
inline namespace v0 {

/// What ranks first.
enum class Ranking {
  edits,            ///< The fewest edits, then the fewest missing characters, then the most primary ones.
  primary,          ///< The fewest edits, then the most primary characters, then the mildest line status.
  primarySecondary  ///< The same with primary and secondary characters counted together.
};

/// The options of a run: `{.maxEdits = 1}`.
struct Parameters {
  /// Characters substituted, missing or extra that a result may need, in all.
  std::int32_t maxEdits = 0;
  bool substitution = true;  ///< An edit may substitute a character.
  bool missing = true;       ///< An edit may add a character that the reading lacks.
  bool extra = true;         ///< An edit may leave out a character of the reading.
  /// Lengths in characters of the shortest and the longest texts that match; they bind where no edits are allowed.
  std::int32_t minLength = 1, maxLength = std::numeric_limits<std::int32_t>::max();
  bool bestOnly = true;          ///< Give the best result only.
  bool window = false;           ///< Find texts within the reading too, ignoring what stands before and after.
  bool withoutInserted = false;  ///< Take inserted positions out of the results.
  Ranking ranking = Ranking::edits;

  /// The library's record.
  qoc_ocrDictionaryRunParams c() const noexcept {
    qoc_ocrDictionaryRunParams params{};
    // Cannot fail.
    (void)qoc_ocrDictionaryRunParams_construct(&params);
    params.maxEdits = maxEdits;
    params.matchOption1 = substitution;
    params.matchOption2 = missing;
    params.matchOption4 = extra;
    params.minStringLength = minLength;
    params.maxStringLength = maxLength;
    params.returnBestOnly = bestOnly;
    params.matchOption9 = window;
    params.finalizeEachResult = withoutInserted;
    params.rankingMode = ranking == Ranking::edits ? 0 : 1;
    params.rankingVariant = ranking == Ranking::primarySecondary ? 15 : 3;
    return params;
  }

  /// The options that a record of the library stands for.
  static Parameters of(const qoc_ocrDictionaryRunParams &params) noexcept {
    return {.maxEdits = params.maxEdits,
            .substitution = params.matchOption1 != 0,
            .missing = params.matchOption2 != 0,
            .extra = params.matchOption4 != 0,
            .minLength = params.minStringLength,
            .maxLength = params.maxStringLength,
            .bestOnly = params.returnBestOnly != 0,
            .window = params.matchOption9 != 0,
            .withoutInserted = params.finalizeEachResult != 0,
            .ranking = params.rankingMode != 1      ? Ranking::edits
                       : params.rankingVariant == 3 ? Ranking::primary
                                                    : Ranking::primarySecondary};
  }

  friend bool operator==(const Parameters &, const Parameters &) noexcept = default;
};

/// What of a line is placed along a reading.
enum class Placement {
  longPart = 0,  ///< Any part of it; a line that is too short for minLength and minReach is a failure.
  whole = 1,     ///< The whole line, at every offset.
  part = 2       ///< Any part of it.
};

/// The options of a fielding run; see qoc_ocrDictionaryFieldingRunParams.
struct FieldingParameters {
  Placement placement = Placement::whole;
  /// Positions of the shortest and the longest part of a line that is placed; they bind where parts are.
  std::int32_t minLength = 1, maxLength = std::numeric_limits<std::int32_t>::max();
  /// Positions at the start of a line that a part may leave out.
  std::int32_t maxSkipped = std::numeric_limits<std::int32_t>::max();
  std::int32_t minReach = 0;           ///< Positions of the line, from its start, beyond which a part must reach.
  bool trimEmptyEnds = true;           ///< Empty ends of the reading are no part of it; binds where parts are placed.
  bool ignoreDeletedSpaces = true;     ///< Spaces of the reading that are left out count as ignored.
  Ranking ranking = Ranking::primary;  ///< Ranking::primarySecondary to let the other candidates decide too.

  /// The library's record.
  qoc_ocrDictionaryFieldingRunParams c() const noexcept {
    return {.fieldingMode = static_cast<std::int32_t>(placement),
            .minStringLength = minLength,
            .maxStringLength = maxLength,
            .limitA = maxSkipped,
            .limitB = minReach,
            .trimEmptyEnds = trimEmptyEnds,
            .fieldingOption7 = ignoreDeletedSpaces,
            .rankingVariant = ranking == Ranking::primarySecondary ? 15 : 3};
  }

  /// The options that a record of the library stands for.
  static FieldingParameters of(const qoc_ocrDictionaryFieldingRunParams &params) noexcept {
    return {.placement = params.fieldingMode == 0   ? Placement::longPart
                         : params.fieldingMode == 1 ? Placement::whole
                                                    : Placement::part,
            .minLength = params.minStringLength,
            .maxLength = params.maxStringLength,
            .maxSkipped = params.limitA,
            .minReach = params.limitB,
            .trimEmptyEnds = params.trimEmptyEnds != 0,
            .ignoreDeletedSpaces = params.fieldingOption7 != 0,
            .ranking = params.rankingVariant == 15 ? Ranking::primarySecondary : Ranking::primary};
  }

  friend bool operator==(const FieldingParameters &, const FieldingParameters &) noexcept = default;
};

}  // namespace v0
}  // namespace qoc

#endif
