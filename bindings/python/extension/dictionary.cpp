// Dictionaries and their runs.

#include <pybind11/stl.h>

#include "bindings.hpp"

#include "dictionary_file.hpp"
#include "trouble.hpp"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <condition_variable>
#include <exception>
#include <iterator>
#include <mutex>
#include <optional>
#include <thread>

namespace qoc::python {
namespace {

constexpr auto waitInterval = std::chrono::milliseconds(50);

/// A dictionary and the options that its file gave. Python cannot change it, so any thread may use it at any time.
struct SharedDictionary {
  Dictionary dictionary;
  Parameters parameters;
  FieldingParameters fitParameters;
  ResolverRules rules;    ///< How one text is chosen.
  std::string resolving;  ///< What the file says of it, as JSON; empty where it says nothing.

  /// Made when it is first asked for: it keeps the words once more.
  const Resolver &resolver() const {
    std::call_once(isMade_, [this] { resolver_.emplace(dictionary, rules); });
    return *resolver_;
  }

 private:
  mutable std::once_flag isMade_;
  mutable std::optional<Resolver> resolver_;
};

/// Runs `work` without Python's lock; Ctrl-C interrupts it.
template <class Work>
void withoutLock(Work &&work) {
  const AttentionScope scope{SignalWatch()};
  std::exception_ptr raised;
  {
    const py::gil_scoped_release release;
    try {
      work();
    } catch (...) {
      raised = std::current_exception();
    }
  }
  scope.rethrow();  // What a signal handler raised comes before what the interrupted work said of it.
  if (raised) std::rethrow_exception(raised);
}

/// Reads a dictionary by the program's own reader.
template <class Read>
std::unique_ptr<SharedDictionary> readWith(Read &&read) {
  auto made = std::make_unique<SharedDictionary>();
  std::optional<std::string> trouble;
  withoutLock([&] {
    try {
      program::DictionaryFile file;
      read(file);
      std::swap(*made->dictionary.c(), *file.dictionary.get());
      made->parameters = Parameters::of(*file.params.get());
      made->fitParameters = FieldingParameters::of(*file.fitParams.get());
      std::swap(*made->rules.c(), *file.rules.get());
      made->resolving = file.resolving;
    } catch (const program::Trouble &refused) {
      trouble = refused.what();
    } catch (const program::Interrupted &) {
      throw Error(QSYS_STATUS_INTERRUPTED);
    }
  });
  if (trouble) {
    PyErr_SetString(py::module_::import("qoc._qoc").attr("Error").ptr(), trouble->c_str());
    throw py::error_already_set();
  }
  return made;
}

py::str textOfCodes(std::span<const Char32> codes) {
  std::vector<Candidate> characters;
  for (const Char32 code : codes) characters.push_back({code, 0});
  return textOf(characters);
}

py::dict describePosition(PositionFieldingView position) {
  constexpr std::pair<std::uint32_t, const char *> classes[] = {{QOC_FIELDING_UPPER, "upper"},
                                                                {QOC_FIELDING_LOWER, "lower"},
                                                                {QOC_FIELDING_DIGIT, "digit"},
                                                                {QOC_FIELDING_SPACE, "space"},
                                                                {QOC_FIELDING_NONSPACE, "nonspace"}};
  py::dict described;
  py::list names;
  for (const auto &[bit, name] : classes) {
    if ((position.classes() & bit) != 0) names.append(name);
  }
  if (!names.empty()) described["classes"] = names;
  if (!position.characters().empty()) described["characters"] = textOfCodes(position.characters());
  return described;
}

py::dict describeCheck(const qoc_checkDigitRule &rule) {
  py::dict described;
  described["method"] = qoc_checkDigitMethod_getName(rule.method);
  const qstd_span32 *parts = nullptr;
  std::int32_t numParts = 0;
  require(qstd_vector_qstd_span32_getBeginSizeConst(&rule.parts, &parts, &numParts));
  py::list list;
  for (const qstd_span32 &part : std::span(parts, static_cast<std::size_t>(numParts))) {
    py::list bounds;
    bounds.append(part.begin);
    if (part.end != QOC_CHECK_DIGIT_END) bounds.append(part.end);
    list.append(bounds);
  }
  if (!list.empty()) described["parts"] = list;
  if (rule.ignoresSeparators == 0) described["ignored"] = textOfCodes(detail::elements(rule.ignored));
  return described;
}

/// Adds the entries of one kind: those with checks, and what stands behind them, as shapes.
void addEntries(py::dict &described, const char *key, const py::list &entries, qoc_ocrDictionaryMode mode,
                const ResolverRules &rules) {
  const qoc_ocrDictionaryEntryCheck *checks = nullptr;
  std::int32_t numChecks = 0;
  require(qstd_vector_qoc_ocrDictionaryEntryCheck_getBeginSizeConst(&rules.c()->checks, &checks, &numChecks));
  py::list plain, shapes;
  std::int32_t index = 0;
  for (const py::handle entry : entries) {
    py::list own;
    for (const auto &check : std::span(checks, static_cast<std::size_t>(numChecks))) {
      if (check.mode == mode && check.entry == index) own.append(describeCheck(check.rule));
    }
    if (own.empty() && shapes.empty()) {
      plain.append(entry);
    } else {
      py::list one;
      one.append(entry);
      py::dict shape;
      shape[key] = one;
      if (!own.empty()) shape["checks"] = own;
      shapes.append(shape);
    }
    ++index;
  }
  if (!plain.empty()) described[key] = plain;
  if (shapes.empty()) return;
  if (!described.contains("shapes")) described["shapes"] = py::list();
  described["shapes"].attr("extend")(shapes);
}

/// The entries in the shape of the dictionary file.
py::dict describeEntries(const Dictionary &dictionary, const ResolverRules &rules) {
  py::dict described;
  py::list lexicons;
  for (const LexiconView lexicon : dictionary.lexicons()) {
    py::list words(lexicon.size());
    for (std::size_t k = 0; k < lexicon.size(); ++k) words[k] = textOf(lexicon.words()[k].characters());
    lexicons.append(py::dict(py::arg("words") = words));
  }
  addEntries(described, "lexicons", lexicons, qoc_ocrDictionaryMode_lexicon, rules);
  py::list fieldings;
  for (const LineFieldingView line : dictionary.lineFieldings()) {
    py::list positions;
    for (const PositionFieldingView position : line.positions()) positions.append(describePosition(position));
    fieldings.append(positions);
  }
  addEntries(described, "fieldings", fieldings, qoc_ocrDictionaryMode_fielding, rules);
  py::list expressions;
  for (const RegularExpressionView expression : dictionary.regularExpressions()) {
    expressions.append(expression.source());
  }
  addEntries(described, "regularExpressions", expressions, qoc_ocrDictionaryMode_regularExpression, rules);
  py::dict swaps;
  py::list groups, sequences;
  const SwapSet set = dictionary.swaps();
  for (const std::span<const Char32> group : set.groups()) groups.append(textOfCodes(group));
  for (const auto &[first, second] : set.swaps()) {
    py::list both;
    both.append(textOfCodes(first));
    both.append(textOfCodes(second));
    sequences.append(both);
  }
  if (!groups.empty()) swaps["groups"] = groups;
  if (!sequences.empty()) swaps["sequences"] = sequences;
  if (!swaps.empty()) described["swaps"] = swaps;
  return described;
}

/// A reading as the dictionary can take it. Line fieldings know 7-bit characters only: with them other candidates are
/// left out, and a position that has no other gets the empty character.
class FittingReading {
 public:
  FittingReading(const Dictionary &dictionary, const Reading &reading) : reading_(&reading) {
    constexpr Char32 max7Bits = 0x7F;
    const auto isOther = [](const Candidate &candidate) { return candidate.code > max7Bits; };
    const auto hasOther = [&](auto candidates) { return std::ranges::any_of(candidates, isOther); };
    if (dictionary.lineFieldings().empty() || std::ranges::none_of(reading, hasOther)) return;
    changed_.emplace();
    for (const std::span<const Candidate> candidates : reading) {
      std::vector<Candidate> kept;
      std::ranges::remove_copy_if(candidates, std::back_inserter(kept), isOther);
      if (kept.empty()) kept.push_back({QOC_CHAR_EMPTY, 0});
      changed_->append(kept);
    }
  }

  const Reading &get() const { return changed_ ? *changed_ : *reading_; }

 private:
  const Reading *reading_;
  std::optional<Reading> changed_;
};

py::list runOne(const SharedDictionary &shared, const Reading &reading, const py::object &options) {
  const Parameters parameters = optionsOf<Parameters>(options);
  Results results;
  withoutLock([&] {
    const FittingReading fitting(shared.dictionary, reading);
    require(shared.dictionary.tryRun(fitting.get(), parameters, results));
  });
  return listOf(std::move(results));
}

/// What a call says of resolving instead of the dictionary.
struct ResolvingChanges {
  std::optional<double> minMargin;
  std::optional<bool> requiresCheck;
  std::optional<std::int32_t> numAlternatives;

  bool any() const { return minMargin || requiresCheck || numAlternatives; }
};

/// The dictionary's resolver, or one with other rules that shares what it knows.
Resolver resolverOf(const SharedDictionary &shared, const ResolvingChanges &changes) {
  Resolver resolver = shared.resolver();
  if (!changes.any()) return resolver;
  ResolverRules rules = shared.rules;
  if (changes.minMargin) {
    rules.c()->minMargin = static_cast<std::int32_t>(std::lround(*changes.minMargin * scoreUnitsPerPoint));
  }
  if (changes.requiresCheck) rules.c()->requiresCheck = *changes.requiresCheck ? 1 : 0;
  if (changes.numAlternatives) rules.c()->maxTexts = *changes.numAlternatives + 1;
  resolver.setRules(rules);
  return resolver;
}

py::object resolveOne(const SharedDictionary &shared, const Reading &reading, const py::object &options,
                      const ResolvingChanges &changes) {
  const Parameters parameters = optionsOf<Parameters>(options);
  Results results;
  Resolution resolution;
  withoutLock([&] {
    const Resolver resolver = resolverOf(shared, changes);
    const FittingReading fitting(shared.dictionary, reading);
    require(shared.dictionary.tryRun(fitting.get(), parameters, results));
    const qoc_ocrDictionaryRunParams params = parameters.c();
    require(qoc_ocrDictionaryResolver_resolve(resolver.c(), fitting.get().c(), &params,
                                              &shared.dictionary.c()->swapCharSet, results.c(), resolution.c()));
  });
  return resolutionOf(std::move(resolution), std::move(results));
}

/// A reading forced into each line: the result with the fewest edits, of equal ones the earliest line's.
py::object fit(const SharedDictionary &shared, const Reading &reading, const py::object &options) {
  const auto parameters = optionsOf<FieldingParameters>(options);
  Results best;
  std::size_t bestLine = 0;
  if (reading.empty()) return py::none();
  withoutLock([&] {
    const FittingReading fitting(shared.dictionary, reading);
    const SwapSet swaps = shared.dictionary.swaps();
    const auto lines = shared.dictionary.lineFieldings();
    for (std::size_t i = 0; i < lines.size(); ++i) {
      Results results = lines[i].force(fitting.get(), parameters, &swaps);
      if (!results.front().isComputed()) continue;
      if (!best.empty() && best.front().numEdits() <= results.front().numEdits()) continue;
      best = std::move(results);
      bestLine = i;
    }
  });
  if (best.empty()) return py::none();
  return py::make_tuple(bestLine, listOf(std::move(best))[0]);
}

/// Many readings matched by several threads, in any order, into results in the order of the readings.
class ManyRuns {
 public:
  /// @param resolver where not null, resolves the results, too
  ManyRuns(const Dictionary &dictionary, std::vector<const Reading *> readings, const Parameters &parameters,
           const Resolver *resolver)
      : dictionary_(dictionary),
        readings_(std::move(readings)),
        parameters_(parameters),
        resolver_(resolver),
        results_(readings_.size()),
        resolutions_(resolver != nullptr ? readings_.size() : 0) {}

  /// Runs them. To be called with Python's lock, which is released. `report` is called with it, with the number of
  /// readings that are done.
  template <class Report>
  void run(std::size_t numThreads, Report &&report) {
    const py::gil_scoped_release release;
    std::exception_ptr raised;
    {
      std::vector<std::jthread> threads;
      const auto stopFor = [&](std::exception_ptr problem) {
        raised = std::move(problem);
        isStopped_ = true;
      };
      try {
        for (std::size_t i = 0; i < numThreads; ++i) {
          threads.emplace_back([this] { work(); });
          const std::lock_guard lock(mutex_);
          ++numWorking_;
        }
      } catch (...) {
        stopFor(std::current_exception());
      }
      while (!waitForEnd()) {
        if (isStopped_) continue;
        try {
          const py::gil_scoped_acquire acquire;
          if (PyErr_CheckSignals() != 0) throw py::error_already_set();
          report(numDone_.load());
        } catch (...) {
          stopFor(std::current_exception());
        }
      }
    }
    if (raised) std::rethrow_exception(raised);
  }

  /// The failure of the first reading that had one, as an Error that names the reading.
  void requireSuccess() const {
    if (!failure_.isSuccess()) raise(failure_, "reading " + std::to_string(failedIndex_));
  }

  std::vector<Results> &results() { return results_; }
  std::vector<Resolution> &resolutions() { return resolutions_; }

 private:
  /// @return whether all threads are through
  bool waitForEnd() {
    std::unique_lock lock(mutex_);
    return ended_.wait_for(lock, waitInterval, [this] { return numEnded_ == numWorking_; });
  }

  void work() {
    const AttentionScope scope([this] { return isStopped_.load(); });
    for (;;) {
      const std::size_t index = next_.fetch_add(1);
      if (index >= readings_.size() || isStopped_) break;
      const Status status = runOf(index);
      if (!status.isSuccess()) {
        fail(index, status);
        break;
      }
      ++numDone_;
    }
    const std::lock_guard lock(mutex_);
    ++numEnded_;
    ended_.notify_one();
  }

  Status runOf(std::size_t index) {
    Status status;
    const Status prepared = attempt([&] {
      const FittingReading fitting(dictionary_, *readings_[index]);
      status = dictionary_.tryRun(fitting.get(), parameters_, results_[index]);
      if (resolver_ == nullptr || !status.isSuccess()) return;
      const qoc_ocrDictionaryRunParams params = parameters_.c();
      status = Status(qoc_ocrDictionaryResolver_resolve(resolver_->c(), fitting.get().c(), &params,
                                                        &dictionary_.c()->swapCharSet, results_[index].c(),
                                                        resolutions_[index].c()));
    });
    return prepared.isSuccess() ? status : prepared;
  }

  void fail(std::size_t index, Status status) {
    const std::lock_guard lock(mutex_);
    if (isStopped_.exchange(true)) return;  // Interrupted for another reason, or by another failure.
    failure_ = status;
    failedIndex_ = index;
  }

  const Dictionary &dictionary_;
  const std::vector<const Reading *> readings_;
  const Parameters parameters_;
  const Resolver *resolver_;
  std::vector<Results> results_;
  std::vector<Resolution> resolutions_;

  std::atomic<std::size_t> next_ = 0, numDone_ = 0;
  std::atomic<bool> isStopped_ = false;
  std::mutex mutex_;
  std::condition_variable ended_;
  std::size_t numWorking_ = 0, numEnded_ = 0, failedIndex_ = 0;
  Status failure_;
};

/// @param resolver null for the results alone
py::list runMany(const SharedDictionary &shared, const py::list &readings, const py::object &options,
                 std::size_t numThreads, const py::object &progress, const Resolver *resolver) {
  const Parameters parameters = optionsOf<Parameters>(options);
  std::vector<const Reading *> pointers;
  for (const py::handle reading : readings) pointers.push_back(reading.cast<const Reading *>());
  const std::size_t total = pointers.size();
  ManyRuns runs(shared.dictionary, std::move(pointers), parameters, resolver);
  std::size_t numReported = 0;
  const auto report = [&](std::size_t numDone) {
    if (!progress.is_none() && numDone > numReported) progress(numDone, total);
    numReported = numDone;
  };
  runs.run(std::max<std::size_t>(1, std::min(numThreads, total)), report);
  runs.requireSuccess();
  report(total);
  py::list lists(total);
  for (std::size_t i = 0; i < total; ++i) {
    if (resolver != nullptr) {
      lists[i] = resolutionOf(std::move(runs.resolutions()[i]), std::move(runs.results()[i]));
    } else {
      lists[i] = listOf(std::move(runs.results()[i]));
    }
  }
  return lists;
}

}  // namespace

void defineDictionary(py::module_ &module) {
  py::class_<SharedDictionary>(module, "Dictionary", "A dictionary, read by the reader of dictionary files.")
      .def_static(
          "read_file",
          [](const std::string &path) {
            return readWith([&](program::DictionaryFile &file) { program::readDictionaryFile(path, file); });
          },
          py::arg("path"))
      .def_static(
          "read_text",
          [](const std::string &text, const std::string &name, const std::string &directory) {
            return readWith(
                [&](program::DictionaryFile &file) { program::readDictionaryText(text, name, directory, file); });
          },
          py::arg("text"), py::arg("name"), py::arg("directory"))
      .def("parameters", [](const SharedDictionary &shared) { return describe(shared.parameters); })
      .def("fit_parameters", [](const SharedDictionary &shared) { return describe(shared.fitParameters); })
      .def("entries", [](const SharedDictionary &shared) { return describeEntries(shared.dictionary, shared.rules); })
      .def("resolving", [](const SharedDictionary &shared) { return shared.resolving; })
      .def("sizes",
           [](const SharedDictionary &shared) {
             py::list words;
             for (const LexiconView lexicon : shared.dictionary.lexicons()) words.append(lexicon.size());
             return py::make_tuple(words, shared.dictionary.lineFieldings().size(),
                                   shared.dictionary.regularExpressions().size());
           })
      .def("is_empty", [](const SharedDictionary &shared) { return shared.dictionary.empty(); })
      .def("is_equal",
           [](const SharedDictionary &a, const SharedDictionary &b) { return a.dictionary == b.dictionary; })
      .def("run", runOne, py::arg("reading"), py::arg("parameters"))
      .def("fit", fit, py::arg("reading"), py::arg("parameters"))
      .def(
          "run_many",
          [](const SharedDictionary &shared, const py::list &readings, const py::object &options, std::size_t threads,
             const py::object &progress) { return runMany(shared, readings, options, threads, progress, nullptr); },
          py::arg("readings"), py::arg("parameters"), py::arg("threads"), py::arg("progress"))
      .def(
          "resolve",
          [](const SharedDictionary &shared, const Reading &reading, const py::object &options,
             std::optional<double> minMargin, std::optional<bool> requiresCheck,
             std::optional<std::int32_t> numAlternatives) {
            return resolveOne(shared, reading, options, {minMargin, requiresCheck, numAlternatives});
          },
          py::arg("reading"), py::arg("parameters"), py::arg("min_margin"), py::arg("require_check"),
          py::arg("alternatives"))
      .def(
          "resolve_many",
          [](const SharedDictionary &shared, const py::list &readings, const py::object &options, std::size_t threads,
             const py::object &progress, std::optional<double> minMargin, std::optional<bool> requiresCheck,
             std::optional<std::int32_t> numAlternatives) {
            std::optional<Resolver> resolver;
            withoutLock([&] { resolver = resolverOf(shared, {minMargin, requiresCheck, numAlternatives}); });
            return runMany(shared, readings, options, threads, progress, &*resolver);
          },
          py::arg("readings"), py::arg("parameters"), py::arg("threads"), py::arg("progress"), py::arg("min_margin"),
          py::arg("require_check"), py::arg("alternatives"));
}

}  // namespace qoc::python
