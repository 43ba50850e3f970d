#pragma once

/// @file What the parts of the extension share. Everything crosses to Python here; qoc/__init__.py is what users see.

#include <pybind11/pybind11.h>
#include <qoc/qoc.hpp>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace qoc::python {

namespace py = pybind11;

/// The library's scores are whole numbers; Python's are the reader's own, with two decimals.
inline constexpr double scoreUnitsPerPoint = 100.0;

/// The character codes of a str, lone surrogates included.
std::vector<Char32> codesOf(py::handle text);

/// Codes as a str; the empty character is left out, and what is no code point becomes U+FFFD.
py::str textOf(std::span<const Candidate> characters);

/// A list of (character, score); the character is None for the library's empty one.
py::list candidatesOf(std::span<const Candidate> candidates);

/// A list with one such list for each position.
py::list positionsOf(ReadingView reading);

/// Options, Parameters or FieldingParameters, from an object with the attributes of qoc.Parameters or
/// qoc.FitParameters.
template <class Record>
Record optionsOf(py::handle object);

/// The same as a dict.
template <class Record>
py::dict describe(const Record &record);

/// Raises qoc.Error with a status of the library, or MemoryError.
[[noreturn]] void raise(Status status, const std::string &where = {});

/// Tells whether work in this thread shall stop; asks Python for signals now and then, without the lock held.
class SignalWatch {
 public:
  bool operator()();

 private:
  std::chrono::steady_clock::time_point next_{};
};

/// The results of a run, and one of them. They live as long as Python holds any.
struct RankedResult {
  std::shared_ptr<const Results> results;
  std::size_t rank;

  ResultView get() const { return (*results)[rank]; }
};

/// A run's results as a list of qoc.Result.
py::list listOf(Results results);

/// A reading's resolution and its results as a qoc.Resolution.
py::object resolutionOf(Resolution resolution, Results results);

void defineReading(py::module_ &module);
void defineResult(py::module_ &module);
void defineResolution(py::module_ &module);
void defineDictionary(py::module_ &module);

}  // namespace qoc::python
