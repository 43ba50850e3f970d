#include "matching.hpp"

#include "fit.hpp"
#include "run_parameters.hpp"

namespace qoc::program {
namespace {

void prepareMatch(const Options &options, DictionaryFile &file) {
  requireEntries(file);
  applyOverrides(options.overrides, runParameters, *file.params.get());
}

void matchEntries(const Options &, const DictionaryFile &file, const MultiString &reading, const std::string &where,
                  Answer &answer) {
  check(qoc_ocrDictionary_runMulti(file.dictionary.get(), reading.get(), file.params.get(), answer.results.get()),
        where);
}

/// Documents that are written back take the best result; nothing is to be resolved for them.
bool isToResolve(const Options &options) { return options.isResolving && options.to.empty(); }

void prepareRun(const Options &options, DictionaryFile &file) {
  prepareMatch(options, file);
  if (!isToResolve(options)) return;
  for (const auto &change : options.ruleOverrides) change(*file.rules.get());
  check(qoc_ocrDictionaryResolver_setRules(file.resolver.get(), file.rules.get()), "resolving");
  check(qoc_ocrDictionaryResolver_setDictionary(file.resolver.get(), file.dictionary.get()), file.name);
}

void runEntries(const Options &options, const DictionaryFile &file, const MultiString &reading,
                const std::string &where, Answer &answer) {
  matchEntries(options, file, reading, where, answer);
  answer.isResolved = isToResolve(options);
  if (!answer.isResolved) return;
  check(qoc_ocrDictionaryResolver_resolve(file.resolver.get(), reading.get(), file.params.get(),
                                          &file.dictionary->swapCharSet, answer.results.get(), answer.resolution.get()),
        where);
}

} // namespace

const Task matchTask = {prepareMatch, matchEntries};
const Task runTask = {prepareRun, runEntries};
const Task fitTask = {prepareFit, fitLines};

} // namespace qoc::program
