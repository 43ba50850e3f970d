#pragma once

/// @file The parameters of a fielding run by name.

#include "parameter_table.hpp"

#include <qoc/fielding_run.h>

namespace qoc::program {

using FitRecord = qoc_ocrDictionaryFieldingRunParams;

inline constexpr NumberParameter<FitRecord> fitNumbers[] = {
    {"minLength", "--min-length", &FitRecord::minStringLength,
     "Positions of the shortest part of a line that is placed; binds where parts are; default 1"},
    {"maxLength", "--max-length", &FitRecord::maxStringLength,
     "Positions of the longest part of a line that is placed; binds where parts are; default 2147483647"},
    {"maxSkipped", "--max-skipped", &FitRecord::limitA,
     "Positions at the start of a line that a part may leave out; default 2147483647"},
    {"minReach", "--min-reach", &FitRecord::limitB,
     "Positions of the line, from its start, beyond which a part must reach; default 0"},
};

inline constexpr FlagParameter<FitRecord> fitFlags[] = {
    {"trimEmptyEnds", "--trim-empty", "--no-trim-empty", &FitRecord::trimEmptyEnds,
     "Positions without a candidate at the ends of a reading are no part of it; binds where parts are placed (default)",
     "They are"},
    {"ignoreDeletedSpaces", "--ignore-spaces", "--no-ignore-spaces", &FitRecord::fieldingOption7,
     "Spaces of the reading that are left out count as ignored (default)", "They count as deleted"},
};

template <std::int32_t Mode> constexpr void setFieldingMode(FitRecord &params) { params.fieldingMode = Mode; }
template <std::int32_t Variant> constexpr void setFitRanking(FitRecord &params) { params.rankingVariant = Variant; }

inline constexpr Choice<FitRecord> fitPlacements[] = {
    {"whole", setFieldingMode<1>}, {"part", setFieldingMode<2>}, {"long-part", setFieldingMode<0>}};
inline constexpr Choice<FitRecord> fitRankings[] = {{"primary", setFitRanking<3>},
                                                    {"primary-secondary", setFitRanking<15>}};

inline constexpr ChoiceParameter<FitRecord> fitChoices[] = {
    {"placement", "--placement", "WHAT", fitPlacements,
     "What is placed along the reading: \"whole\" (the whole line), \"part\" (any part of it) or \"long-part\" (the "
     "same, and a line that is too short for --min-length and --min-reach is an error); default whole"},
    {"ranking", "--ranking", "ORDER", fitRankings,
     "Which placement ranks first: \"primary\" (most first candidates used) or \"primary-secondary\" (most candidates "
     "used); default primary"},
};

inline constexpr ParameterTable<FitRecord> fitParameters = {"fit parameters", fitNumbers, fitFlags, fitChoices,
                                                            qoc_ocrDictionaryFieldingRunParams_validate};

} // namespace qoc::program
