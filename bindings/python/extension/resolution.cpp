// What resolving gives: the texts that a reading can be, and whether the best one is sure.

#include "bindings.hpp"

namespace qoc::python {
namespace {

/// One text of a resolution. It lives as long as Python holds it.
struct RankedText {
  std::shared_ptr<const Resolution> resolution;
  std::size_t rank;

  ResolvedTextView get() const { return resolution->texts()[rank]; }
};

/// A reading's results and its resolution.
struct Resolved {
  std::shared_ptr<const Resolution> resolution;
  py::list results;

  py::object best() const { return resolution->empty() ? py::none() : py::cast(RankedText{resolution, 0}); }
  /// A property of the best text, or None.
  py::object ofBest(const char *name) const {
    const py::object text = best();
    return text.is_none() ? text : py::object(text.attr(name));
  }
};

py::list numbersOf(std::span<const std::int32_t> numbers) {
  py::list list(numbers.size());
  for (std::size_t i = 0; i < numbers.size(); ++i) list[i] = py::int_(numbers[i]);
  return list;
}

py::object marginOf(const RankedText &text) {
  if (!text.resolution->hasScores()) return py::none();
  return py::float_(text.get().margin() / scoreUnitsPerPoint);
}

py::object checkOf(ResolvedTextView text) {
  return text.hasCheck() ? py::object(py::bool_(text.passesCheck())) : py::none();
}

py::object outcomeOf(const Resolution &resolution) {
  return py::module_::import("qoc.enums").attr("Outcome")(static_cast<std::int32_t>(resolution.outcome()));
}

void defineText(py::module_ &module) {
  py::class_<RankedText> type(module, "ResolvedText",
                              R"(One text that a reading can be, as Dictionary.resolve weighs it.

Comes from a Resolution. Scores and margins are in the reader's own scale.)");
  const auto property = [&type](const char *name, auto get, const char *doc) {
    type.def_property_readonly(
        name, [get](const RankedText &text) { return get(text.get()); }, doc);
  };
  property(
      "text", [](ResolvedTextView t) { return textOf(t.characters()); },
      "The text; \"?\" for a character that is not known.");
  property(
      "total", [](ResolvedTextView t) { return t.total() / scoreUnitsPerPoint; },
      "The scores of the candidates that it takes, less penalties.");
  type.def_property_readonly("margin", marginOf,
                             "Its lead over the next different text, or over the reading as free text, as far as "
                             "margins are counted;\nNone where the reading has no scores.");
  property(
      "mode",
      [](ResolvedTextView t) {
        return py::module_::import("qoc.enums").attr("Mode")(static_cast<std::int32_t>(t.mode()));
      },
      "The Mode: the kind of dictionary entry that describes it.");
  property("check", checkOf, "Whether it passes the check digits of its entry; None where the entry has none.");
  property(
      "open", [](ResolvedTextView t) { return t.numOpen(); }, "How many of its characters are not known.");
  property(
      "characters", [](ResolvedTextView t) { return candidatesOf(t.characters()); },
      "The text as a list of (character, score that it counts).");
  property(
      "reading_indices", [](ResolvedTextView t) { return numbersOf(t.readingIndices()); },
      "For each character its position in the reading, or -1 where it has none.");
  property(
      "candidate_indices", [](ResolvedTextView t) { return numbersOf(t.candidateIndices()); },
      "For each character the candidate of its position that it is or stands for, or -1.");
  property(
      "rank",
      [](ResolvedTextView t) {
        return t.resultIndex() < 0 ? py::object(py::none()) : py::object(py::int_(t.resultIndex()));
      },
      "The index of the result that it comes from in Resolution.results; None where they do not show it.");
  type.def("__repr__", [](const RankedText &text) {
    return "<ResolvedText " + py::repr(textOf(text.get().characters())).cast<std::string>() + ", margin " +
           py::repr(marginOf(text)).cast<std::string>() + ">";
  });
}

}  // namespace

py::object resolutionOf(Resolution resolution, Results results) {
  return py::cast(Resolved{std::make_shared<const Resolution>(std::move(resolution)), listOf(std::move(results))});
}

void defineResolution(py::module_ &module) {
  defineText(module);
  py::class_<Resolved> type(module, "Resolution", R"(The one text that a reading is taken for, and how sure that is.

Comes from Dictionary.resolve and resolve_many. False where there is no text.)");
  type.def_property_readonly(
      "outcome", [](const Resolved &resolved) { return outcomeOf(*resolved.resolution); },
      "The Outcome: whether the text is sure, unsure, or there is none.");
  type.def_property_readonly(
      "is_sure", [](const Resolved &resolved) { return resolved.resolution->outcome() == Outcome::sure; },
      "Whether the text can be taken.");
  type.def_property_readonly(
      "text", [](const Resolved &resolved) { return resolved.ofBest("text"); },
      "The best text, \"?\" for a character that is not known; None where there is none.");
  type.def_property_readonly(
      "margin", [](const Resolved &resolved) { return resolved.ofBest("margin"); },
      "The best text's margin; None where there is no text, and where the reading has no scores.");
  type.def_property_readonly(
      "check", [](const Resolved &resolved) { return resolved.ofBest("check"); },
      "Whether the best text passes its check digits; None where it has none.");
  type.def_property_readonly(
      "mode", [](const Resolved &resolved) { return resolved.ofBest("mode"); },
      "The Mode of the best text; None where there is none.");
  type.def_property_readonly(
      "texts",
      [](const Resolved &resolved) {
        py::list list(resolved.resolution->size());
        for (std::size_t rank = 0; rank < resolved.resolution->size(); ++rank) {
          list[rank] = RankedText{resolved.resolution, rank};
        }
        return list;
      },
      "The ResolvedTexts, all different, best first; as many as were asked for.");
  type.def_property_readonly(
      "results", [](const Resolved &resolved) { return resolved.results; },
      "The results of the run, as Dictionary.run gives them.");
  type.def("__bool__", [](const Resolved &resolved) { return !resolved.resolution->empty(); });
  type.def("__repr__", [](const Resolved &resolved) {
    const std::string text = py::repr(resolved.ofBest("text")).cast<std::string>();
    return "<Resolution " + (resolved.resolution->empty() ? "" : text + ", ") + name(resolved.resolution->outcome()) +
           ">";
  });
}

}  // namespace qoc::python
