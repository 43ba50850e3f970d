// A dictionary of any entries and swaps, a reading of any candidates, any parameters: all runs on them.

#include "kinds/lexicon_roads.hpp"
#include "objects.hpp"

namespace {

using namespace qoc::fuzz;

/// A set that a run has finished with.
void checkResults(const qoc_ocrDictionaryResultSet &results, const qoc_ocrDictionaryRunParams &params) {
  check(results.isComputed == 1);
  check(params.returnBestOnly == 0 || resultsOf(results).size() <= 1);
  for (const qoc_ocrDictionaryResult &result : resultsOf(results)) {
    check(result.isComputed == 1);
    check(result.numEdits >= 0);
    check(elements(result.statusWRTInputStringSwapChar).size() == elements(result.given.positions).size());
  }
}

void runFielding(Input &input, const qoc_ocrDictionaryStringMulti *reading, const qoc_swapCharSet *set) {
  Owned<qoc_ocrDictionaryFieldingRunParams> params;
  for (std::int32_t *field : {&params->fieldingMode, &params->minStringLength, &params->maxStringLength,
                              &params->limitA, &params->limitB, &params->trimEmptyEnds, &params->rankingVariant}) {
    *field = input.flag() ? input.number() : *field;
  }
  Owned<qoc_ocrDictionaryResultSet> results;
  const Polls polls(300);
  const qsys_status status =
      qoc_ocrDictionaryLineFielding_runFieldingParams(lineOf(input), set, reading, params, results);
  check(status < 0 || (results->isComputed == 1 && resultsOf(*results).size() == 1));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  return qoc::fuzz::run(data, size, [](Input &input) {
    const auto params = paramsOf(input);
    const auto dictionary = dictionaryOf(input);
    const auto reading = readingOf(input);
    Owned<qoc_ocrDictionaryResultSet> results, again;
    qsys_status status = 0;
    {
      const Polls polls(300);
      status = qoc_ocrDictionary_runMulti(dictionary, reading, params, results);
    }
    check(status <= 0);
    if (status == 0) {
      checkResults(*results, *params);
      // Once more, by the plainest ways that there are.
      const qoc::LexiconRoads before = std::exchange(qoc::lexiconRoads(), {false, false, false, false, false, 512});
      status = qoc_ocrDictionary_runMulti(dictionary, reading, params, again);
      qoc::lexiconRoads() = before;
      require(status);
      check(input.isShortOfMemory || describe(*again) == describe(*results));
    }
    runFielding(input, reading, &dictionary->swapCharSet);
  });
}
