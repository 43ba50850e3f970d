#include "matching.hpp"

#include "fit.hpp"
#include "run_parameters.hpp"

namespace qoc::program {
namespace {

void prepareRun(const Options &options, DictionaryFile &file) {
  requireEntries(file);
  applyOverrides(options.overrides, runParameters, *file.params.get());
  for (const auto &change : options.ruleOverrides) change(*file.rules.get());
  check(qoc_ocrDictionaryResolver_setRules(file.resolver.get(), file.rules.get()), "resolving");
  check(qoc_ocrDictionaryResolver_setDictionary(file.resolver.get(), file.dictionary.get()), file.name);
}

void matchEntries(const Options &, const DictionaryFile &file, const MultiString &reading, const std::string &where,
                  Answer &answer) {
  check(qoc_ocrDictionary_runMulti(file.dictionary.get(), reading.get(), file.params.get(), answer.results.get()),
        where);
  check(qoc_ocrDictionaryResolver_resolve(file.resolver.get(), reading.get(), file.params.get(),
                                          &file.dictionary->swapCharSet, answer.results.get(), answer.resolution.get()),
        where);
  answer.isResolved = true;
}

} // namespace

const Task runTask = {prepareRun, matchEntries};
const Task fitTask = {prepareFit, fitLines};

} // namespace qoc::program
