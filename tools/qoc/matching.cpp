#include "matching.hpp"

#include "fit.hpp"
#include "run_parameters.hpp"

namespace qoc::program {
namespace {

void prepareRun(const Options &options, DictionaryFile &file) {
  requireEntries(file);
  applyOverrides(options.overrides, runParameters, *file.params.get());
}

void matchEntries(const Options &, const DictionaryFile &file, const MultiString &reading, const std::string &where,
                  Answer &answer) {
  check(qoc_ocrDictionary_runMulti(file.dictionary.get(), reading.get(), file.params.get(), answer.results.get()),
        where);
}

} // namespace

const Task runTask = {prepareRun, matchEntries};
const Task fitTask = {prepareFit, fitLines};

} // namespace qoc::program
