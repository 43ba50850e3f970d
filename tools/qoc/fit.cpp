#include "fit.hpp"

#include "fit_parameters.hpp"
#include "trouble.hpp"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <span>
#include <vector>

namespace qoc::program {

void prepareFit(const Options &options, DictionaryFile &file) {
  if (file.lines().empty()) {
    throw Trouble(file.name + ": the dictionary has no line; expected \"fieldings\" with at least one");
  }
  applyOverrides(options.fitOverrides, fitParameters, *file.fitParams.get());
}

void fitLines(const Options &options, const DictionaryFile &file, const MultiString &reading, const std::string &where,
              Answer &answer) {
  check(qoc_ocrDictionaryResultSet_reset(answer.results.get()), where);
  answer.lines.clear();
  if (elements(reading->positions).empty()) return;

  ResultSet one;
  ResultSet every;
  std::vector<std::size_t> lines; // By result of `every`.
  for (std::size_t i = 0; i < file.lines().size(); ++i) {
    check(qoc_ocrDictionaryLineFielding_runFieldingParams(&file.lines()[i], &file.dictionary->swapCharSet,
                                                          reading.get(), file.fitParams.get(), one.get()),
          where);
    const qoc_ocrDictionaryResult &result = elements(one->results).front();
    if (result.isComputed == 0) continue;
    check(qstd_vector_qoc_ocrDictionaryResult_pushBack(&every->results, &result), where);
    lines.push_back(i);
  }

  const std::span<const qoc_ocrDictionaryResult> results = elements(every->results);
  std::vector<std::size_t> ranked(results.size());
  std::iota(ranked.begin(), ranked.end(), std::size_t{0});
  std::stable_sort(ranked.begin(), ranked.end(),
                   [&](std::size_t a, std::size_t b) { return results[a].numEdits < results[b].numEdits; });
  const std::size_t numKept = options.isEveryLine ? ranked.size() : std::min<std::size_t>(ranked.size(), 1);
  for (const std::size_t index : std::span(ranked).first(numKept)) {
    check(qstd_vector_qoc_ocrDictionaryResult_pushBack(&answer.results->results, &results[index]), where);
    answer.lines.push_back(lines[index]);
  }
}

} // namespace qoc::program
