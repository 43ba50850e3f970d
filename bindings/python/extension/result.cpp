// Results.

#include "bindings.hpp"

namespace qoc::python {
namespace {

/// A member of one of the package's enumerations, or None for a value that is none.
py::object memberOf(const char *enumeration, std::int32_t value) {
  if (value == 0) return py::none();
  return py::module_::import("qoc.enums").attr(enumeration)(value);
}

template <class Statuses>
py::list statusesOf(const Statuses &statuses) {
  const py::object type = py::module_::import("qoc.enums").attr("PositionStatus");
  py::list list(statuses.size());
  for (std::size_t i = 0; i < statuses.size(); ++i) list[i] = type(static_cast<std::int32_t>(statuses[i]));
  return list;
}

template <class Numbers>
py::list numbersOf(const Numbers &numbers) {
  py::list list(numbers.size());
  for (std::size_t i = 0; i < numbers.size(); ++i) list[i] = py::int_(numbers[i]);
  return list;
}

py::object wholeTextOf(ResultView result) {
  const std::vector<Candidate> characters = result.characters();
  for (const Candidate &character : characters) {
    if (character.code == QOC_CHAR_EMPTY) return py::none();
  }
  return textOf(characters);
}

}  // namespace

py::list listOf(Results results) {
  const auto shared = std::make_shared<const Results>(std::move(results));
  py::list list(shared->size());
  for (std::size_t rank = 0; rank < shared->size(); ++rank) list[rank] = RankedResult{shared, rank};
  return list;
}

void defineResult(py::module_ &module) {
  py::class_<RankedResult> type(module, "Result", R"(One way in which a reading can be a text of the dictionary.

Comes from Dictionary.run and its kin. Positions are counted from 0.)");
  const auto property = [&type](const char *name, auto get, const char *doc) {
    type.def_property_readonly(
        name, [get](const RankedResult &result) { return get(result.get()); }, doc);
  };
  property(
      "text", [](ResultView r) { return wholeTextOf(r); },
      "The text that the reading is; None where a position of it is open: the reading has no character there, and "
      "more\n"
      "than one would do. With more than one edit it is the text as it was aligned, which may differ from the word.");
  property(
      "edits", [](ResultView r) { return r.numEdits(); }, "How many characters were inserted, deleted or substituted.");
  property(
      "score", [](ResultView r) { return r.score() / scoreUnitsPerPoint; },
      "The sum of the dictionary text's own scores at the positions that count; 0.0 for words of a dictionary file.");
  property(
      "mode", [](ResultView r) { return memberOf("Mode", static_cast<std::int32_t>(r.mode())); },
      "The Mode: the kind of dictionary entry that gave the result.");
  property(
      "statuses", [](ResultView r) { return statusesOf(r.statuses()); },
      "A list with a PositionStatus for every position of the result.");
  property(
      "reading_statuses", [](ResultView r) { return statusesOf(r.readingStatuses()); },
      "A list with a PositionStatus for every position of the reading as it was matched.");
  property(
      "line_status", [](ResultView r) { return memberOf("PositionStatus", static_cast<std::int32_t>(r.lineStatus())); },
      "The worst of `statuses`; None where there are none.");
  property(
      "deleted", [](ResultView r) { return numbersOf(r.deleted()); },
      "A list of positions of the reading that were left out, or at which it lacks something, in the order found.");
  property(
      "ignored_prefix", [](ResultView r) { return r.numIgnoredPrefix(); },
      "How many positions of the reading stand before the matched window.");
  property(
      "ignored_suffix", [](ResultView r) { return r.numIgnoredSuffix(); },
      "How many positions of the reading stand behind the matched window.");
  property(
      "start_field", [](ResultView r) { return r.startFieldIndex(); },
      "The position of a line fielding at which the match starts.");
  property(
      "characters", [](ResultView r) { return candidatesOf(r.characters()); },
      "The text as a list of (character, score); the character is None where the position is open.");
  property(
      "given", [](ResultView r) { return positionsOf(r.given()); },
      "The reading as it was matched, shaped as Reading.positions.");
  property(
      "given_swap", [](ResultView r) { return positionsOf(r.givenSwap()); },
      "The reading after swaps, shaped as Reading.positions.");
  property(
      "valid", [](ResultView r) { return positionsOf(r.valid()); },
      "What each position of the result may be, shaped as Reading.positions.");
  property(
      "input_indices", [](ResultView r) { return numbersOf(r.inputIndices()); },
      "For every position of the swapped reading the position of the reading from which it comes.");
  property(
      "reading_indices", [](ResultView r) { return numbersOf(r.readingIndices()); },
      "For every position of the result its position in the reading, or -1 where it is inserted.");
  property(
      "inserted", [](ResultView r) { return numbersOf(r.insertedIndices()); },
      "The positions of the result that are inserted, ascending.");
  property(
      "overlap", [](ResultView r) { return r.overlap(); },
      "How many positions of the reading the line covers, after a fielding run.");
  type.def("__repr__", [](const RankedResult &result) {
    const ResultView view = result.get();
    return "<Result " + py::repr(wholeTextOf(view)).cast<std::string>() + ", " + std::to_string(view.numEdits()) +
           (view.numEdits() == 1 ? " edit, " : " edits, ") + name(view.mode()) + ">";
  });
}

}  // namespace qoc::python
