// The extension module: errors, conversions, and what it defines.

#include "bindings.hpp"

#include <chrono>
#include <cstdlib>
#include <utility>

namespace qoc::python {
namespace {

/// qoc.Error, for the life of the process.
PyObject *errorType = nullptr;

constexpr auto signalInterval = std::chrono::milliseconds(50);

/// The options of a record by their names in Python.
template <class Record>
struct Options;

template <class Value>
struct Choice {
  const char *name;
  Value value;
};

template <>
struct Options<Parameters> {
  static constexpr std::pair<const char *, std::int32_t Parameters::*> numbers[] = {
      {"max_edits", &Parameters::maxEdits},
      {"min_length", &Parameters::minLength},
      {"max_length", &Parameters::maxLength},
  };
  static constexpr std::pair<const char *, bool Parameters::*> flags[] = {
      {"substitution", &Parameters::substitution},
      {"missing", &Parameters::missing},
      {"extra", &Parameters::extra},
      {"best_only", &Parameters::bestOnly},
      {"window", &Parameters::window},
      {"without_inserted", &Parameters::withoutInserted},
  };
  static constexpr Choice<Ranking> rankings[] = {
      {"edits", Ranking::edits}, {"primary", Ranking::primary}, {"primary-secondary", Ranking::primarySecondary}};
  template <class Visit>
  static void eachChoice(Visit &&visit) {
    visit("ranking", &Parameters::ranking, rankings);
  }
};

template <>
struct Options<FieldingParameters> {
  static constexpr std::pair<const char *, std::int32_t FieldingParameters::*> numbers[] = {
      {"min_length", &FieldingParameters::minLength},
      {"max_length", &FieldingParameters::maxLength},
      {"max_skipped", &FieldingParameters::maxSkipped},
      {"min_reach", &FieldingParameters::minReach},
  };
  static constexpr std::pair<const char *, bool FieldingParameters::*> flags[] = {
      {"trim_empty_ends", &FieldingParameters::trimEmptyEnds},
      {"ignore_deleted_spaces", &FieldingParameters::ignoreDeletedSpaces},
  };
  static constexpr Choice<Placement> placements[] = {
      {"whole", Placement::whole}, {"part", Placement::part}, {"long-part", Placement::longPart}};
  static constexpr Choice<Ranking> rankings[] = {{"primary", Ranking::primary},
                                                 {"primary-secondary", Ranking::primarySecondary}};
  template <class Visit>
  static void eachChoice(Visit &&visit) {
    visit("placement", &FieldingParameters::placement, placements);
    visit("ranking", &FieldingParameters::ranking, rankings);
  }
};

template <class List>
py::dict valuesOf(const List &list) {
  py::dict values;
  for (const auto &[name, value] : list) values[name] = value;
  return values;
}

}  // namespace

void raise(Status status, const std::string &where) {
  if (status == Status(QSYS_STATUS_OUT_OF_MEMORY)) throw std::bad_alloc();
  const std::string sentence = where.empty() ? status.text() : where + ": " + status.text();
  py::object error = py::reinterpret_borrow<py::object>(errorType)(sentence);
  error.attr("status") = status.value();
  error.attr("name") = status.name();
  PyErr_SetObject(errorType, error.ptr());
  throw py::error_already_set();
}

std::vector<Char32> codesOf(py::handle text) {
  if (!PyUnicode_Check(text.ptr())) throw py::type_error("expected a str");
  const std::unique_ptr<Py_UCS4, decltype(&PyMem_Free)> codes(PyUnicode_AsUCS4Copy(text.ptr()), PyMem_Free);
  if (!codes) throw py::error_already_set();
  return std::vector<Char32>(codes.get(), codes.get() + PyUnicode_GET_LENGTH(text.ptr()));
}

py::str textOf(std::span<const Candidate> characters) {
  std::vector<Py_UCS4> codes;
  codes.reserve(characters.size());
  for (const Candidate &character : characters) {
    if (character.code != QOC_CHAR_EMPTY) codes.push_back(character.code <= 0x10FFFF ? character.code : 0xFFFD);
  }
  PyObject *text = PyUnicode_FromKindAndData(PyUnicode_4BYTE_KIND, codes.data(), static_cast<Py_ssize_t>(codes.size()));
  if (text == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(text);
}

py::list candidatesOf(std::span<const Candidate> candidates) {
  py::list list(candidates.size());
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    const Candidate &candidate = candidates[i];
    py::object character = py::none();
    if (candidate.code != QOC_CHAR_EMPTY) character = textOf({&candidate, 1});
    list[i] = py::make_tuple(std::move(character), candidate.score / scoreUnitsPerPoint);
  }
  return list;
}

py::list positionsOf(ReadingView reading) {
  py::list list(reading.size());
  for (std::size_t i = 0; i < reading.size(); ++i) list[i] = candidatesOf(reading[i]);
  return list;
}

template <class Record>
Record optionsOf(py::handle object) {
  Record record;
  for (const auto &[name, field] : Options<Record>::numbers)
    record.*field = object.attr(name).template cast<std::int32_t>();
  for (const auto &[name, field] : Options<Record>::flags) record.*field = object.attr(name).template cast<bool>();
  Options<Record>::eachChoice([&](const char *name, auto field, const auto &choices) {
    const auto chosen = object.attr(name).template cast<std::string>();
    std::string known;
    for (const auto &choice : choices) {
      if (chosen == choice.name) {
        record.*field = choice.value;
        return;
      }
      known += (known.empty() ? "\"" : ", \"") + std::string(choice.name) + "\"";
    }
    throw py::value_error(std::string(name) + " is \"" + chosen + "\"; expected one of " + known);
  });
  return record;
}

template <class Record>
py::dict describe(const Record &record) {
  py::dict values;
  for (const auto &[name, field] : Options<Record>::numbers) values[name] = record.*field;
  for (const auto &[name, field] : Options<Record>::flags) values[name] = record.*field;
  Options<Record>::eachChoice([&](const char *name, auto field, const auto &choices) {
    for (const auto &choice : choices) {
      if (record.*field == choice.value) values[name] = choice.name;
    }
  });
  return values;
}

template Parameters optionsOf<Parameters>(py::handle);
template FieldingParameters optionsOf<FieldingParameters>(py::handle);
template py::dict describe<Parameters>(const Parameters &);
template py::dict describe<FieldingParameters>(const FieldingParameters &);

bool SignalWatch::operator()() {
  const auto now = std::chrono::steady_clock::now();
  if (now < next_) return false;
  next_ = now + signalInterval;
  const py::gil_scoped_acquire lock;
  if (PyErr_CheckSignals() != 0) throw py::error_already_set();
  return false;
}

}  // namespace qoc::python

PYBIND11_MODULE(_qoc, module) {
  using namespace qoc::python;
  namespace py = pybind11;
  module.doc() = "The library behind the package qoc; use that.";

  errorType = py::exception<qoc::Error>(module, "Error", PyExc_ValueError).release().ptr();
  py::handle(errorType).attr("__doc__") =
      "The library refused something.\n\n"
      "Attributes:\n"
      "    status: the library's status code, negative; 0 where the fault was found before the library was asked.\n"
      "    name: the name of its constant, such as \"QOC_STATUS_STRING_DUPLICATE\"; \"\" with status 0.";
  py::handle(errorType).attr("status") = 0;
  py::handle(errorType).attr("name") = "";
  py::register_exception_translator([](std::exception_ptr raised) {
    try {
      std::rethrow_exception(std::move(raised));
    } catch (const qoc::Error &error) {
      if (error.status() == qoc::Status(QSYS_STATUS_OUT_OF_MEMORY)) {
        PyErr_NoMemory();
        return;
      }
      py::object made = py::reinterpret_borrow<py::object>(errorType)(error.what());
      made.attr("status") = error.status().value();
      made.attr("name") = error.status().name();
      PyErr_SetObject(errorType, made.ptr());
    }
  });

  // The enumerations are written in Python, for type checkers; a test compares them with these.
  const std::pair<const char *, int> statuses[] = {
#define QOC_PYTHON_ENTRY(name, value) {#name, value},
      QOC_POSITION_STATUS_LIST(QOC_PYTHON_ENTRY)};
  const std::pair<const char *, int> modes[] = {QOC_MODE_LIST(QOC_PYTHON_ENTRY)};
  const std::pair<const char *, int> outcomes[] = {QOC_OUTCOME_LIST(QOC_PYTHON_ENTRY)};
#undef QOC_PYTHON_ENTRY
  module.attr("position_statuses") = valuesOf(statuses);
  module.attr("modes") = valuesOf(modes);
  module.attr("outcomes") = valuesOf(outcomes);

  defineReading(module);
  defineResult(module);
  defineResolution(module);
  defineDictionary(module);
}
