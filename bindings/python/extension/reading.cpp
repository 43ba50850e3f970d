// Readings.

#include "bindings.hpp"

#include <cmath>
#include <cstdio>
#include <limits>

namespace qoc::python {
namespace {

void requireAllowed(Char32 code) {
  if (!isReserved(code)) return;
  char name[16];
  std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(code));
  throw py::value_error(std::string("the character ") + name +
                        " is reserved; expected characters other than U+0000, U+F800 to U+F8FF and U+FF000 to U+FFFFD");
}

std::int32_t scoreOf(py::handle score) {
  const double points = PyFloat_AsDouble(score.ptr());
  if (PyErr_Occurred() != nullptr) throw py::error_already_set();
  const double scaled = std::round(points * scoreUnitsPerPoint);
  if (!(scaled >= std::numeric_limits<std::int32_t>::min() && scaled <= std::numeric_limits<std::int32_t>::max())) {
    throw py::value_error("a score is " + py::repr(score).cast<std::string>() +
                          "; expected a number from -21474836.48 to 21474836.47");
  }
  return static_cast<std::int32_t>(scaled);
}

Candidate candidateOf(py::handle pair) {
  if (!PySequence_Check(pair.ptr()) || PyUnicode_Check(pair.ptr()) || py::len(pair) != 2) {
    throw py::type_error("a candidate is " + py::repr(pair).cast<std::string>() +
                         "; expected a pair of a character and its score");
  }
  const auto both = py::reinterpret_borrow<py::sequence>(pair);
  const py::object character = both[0], score = both[1];
  if (!PyUnicode_Check(character.ptr()) || PyUnicode_GET_LENGTH(character.ptr()) != 1) {
    throw py::type_error("a candidate's character is " + py::repr(character).cast<std::string>() +
                         "; expected a str of one character");
  }
  const Char32 code = codesOf(character).front();
  requireAllowed(code);
  return {code, scoreOf(score)};
}

/// A reading of a str, or of an iterable of positions: each a str of one character, or an iterable of pairs.
Reading readingOf(py::handle source) {
  std::vector<Candidate> candidates;
  Reading reading;
  const auto appendText = [&](py::handle text) {
    for (const Char32 code : codesOf(text)) {
      requireAllowed(code);
      const Candidate candidate{code, 0};
      reading.append({&candidate, 1});
    }
  };
  if (PyUnicode_Check(source.ptr())) {
    appendText(source);
    return reading;
  }
  for (const py::handle position : py::iter(source)) {
    if (PyUnicode_Check(position.ptr())) {
      if (PyUnicode_GET_LENGTH(position.ptr()) != 1) {
        throw py::value_error("a position is " + py::repr(position).cast<std::string>() +
                              "; expected one character, or candidates");
      }
      appendText(position);
      continue;
    }
    candidates.clear();
    for (const py::handle pair : py::iter(position)) candidates.push_back(candidateOf(pair));
    if (candidates.empty()) throw py::value_error("a position has no candidate; expected at least one");
    reading.append(candidates);
  }
  return reading;
}

}  // namespace

void defineReading(py::module_ &module) {
  py::class_<Reading>(module, "Reading", R"(What an OCR engine read: for every position its candidates.

Args:
    positions: a str (one candidate with score 0 for every character), or an iterable with an entry for every
        position: a str of one character, or an iterable of candidates, the primary one first. A candidate is a pair
        of a str of one character and its score, a finite number from -21474836.48 to 21474836.47; higher is better.
        Scores are kept in hundredths.

Raises:
    TypeError: for something of another shape.
    ValueError: for a position without candidates, for a score out of range, and for the characters U+0000, U+F800 to
        U+F8FF and U+FF000 to U+FFFFD, which are reserved.

Equal readings have the same characters; scores are not compared.)")
      .def(py::init([](const py::object &positions) { return readingOf(positions); }), py::arg("positions"))
      .def_property_readonly(
          "positions", [](const Reading &reading) { return positionsOf(reading); },
          "A list with a list of (character, score) for every position, the primary candidate first.")
      .def_property_readonly(
          "text",
          [](const Reading &reading) {
            std::vector<Candidate> primary;
            for (const std::span<const Candidate> candidates : reading) primary.push_back(candidates.front());
            return textOf(primary);
          },
          "The primary candidates put together.")
      .def("__len__", [](const Reading &reading) { return reading.size(); })
      .def(
          "__eq__", [](const Reading &a, const Reading &b) { return a == b; }, py::is_operator())
      .def("__repr__",
           [](const Reading &reading) { return "Reading(" + py::repr(positionsOf(reading)).cast<std::string>() + ")"; })
      .def(py::pickle([](const Reading &reading) { return py::make_tuple(positionsOf(reading)); },
                      [](const py::tuple &state) { return readingOf(state[0]); }))
      .attr("__hash__") = py::none();
}

}  // namespace qoc::python
