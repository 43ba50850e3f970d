#pragma once

/// @file The parameters of a run by name.

#include "parameter_table.hpp"

#include <qoc/run_params.h>

namespace qoc::program {

using RunRecord = qoc_ocrDictionaryRunParams;

inline constexpr NumberParameter<RunRecord> runNumbers[] = {
    {"maxEdits", "--max-edits", &RunRecord::maxEdits,
     "Characters substituted, missing or extra that a result may need, in all; default 0"},
    {"minLength", "--min-length", &RunRecord::minStringLength,
     "Length in characters of the shortest texts that match; binds where no edits are allowed; default 1"},
    {"maxLength", "--max-length", &RunRecord::maxStringLength,
     "Length in characters of the longest texts that match; binds where no edits are allowed; default 2147483647"},
};

inline constexpr FlagParameter<RunRecord> runFlags[] = {
    {"returnBestOnly", "--best", "--all", &RunRecord::returnBestOnly,
     "Give the best result of each reading only (default)",
     "Give all results, best first; of results that rank equally, one may stand for all"},
    {"substitution", "--substitution", "--no-substitution", &RunRecord::matchOption1,
     "An edit may substitute a character (default)", "No edit substitutes a character"},
    {"missing", "--missing", "--no-missing", &RunRecord::matchOption2,
     "An edit may add a character that the reading lacks (default)", "No edit adds a character"},
    {"extra", "--extra", "--no-extra", &RunRecord::matchOption4,
     "An edit may leave out a character of the reading (default)", "No edit leaves out a character"},
    {"window", "--window", "--no-window", &RunRecord::matchOption9,
     "Find texts within the reading too, ignoring what stands before and after",
     "Match the whole reading (default)"},
};

template <std::int32_t Mode, std::int32_t Variant> constexpr void setRunRanking(RunRecord &params) {
  params.rankingMode = Mode;
  params.rankingVariant = Variant;
}

inline constexpr Choice<RunRecord> runRankings[] = {
    {"edits", setRunRanking<0, 3>}, {"primary", setRunRanking<1, 3>}, {"primary-secondary", setRunRanking<1, 15>}};

inline constexpr ChoiceParameter<RunRecord> runChoices[] = {
    {"ranking", "--ranking", "ORDER", runRankings,
     "What ranks first: \"edits\" (fewest edits), \"primary\" (highest scores of the first candidates used) or "
     "\"primary-secondary\" (highest scores of all candidates used); default edits"},
};

inline constexpr ParameterTable<RunRecord> runParameters = {"run parameters", runNumbers, runFlags, runChoices,
                                                            qoc_ocrDictionaryRunParams_validate};

} // namespace qoc::program
