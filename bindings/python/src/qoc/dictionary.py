"""Dictionaries, their options and their runs."""

from __future__ import annotations

import json
import os
from dataclasses import dataclass, fields, replace
from typing import Any, Callable, Iterable, Literal, Mapping, Sequence, TypedDict, Union

from qoc import _qoc
from qoc._qoc import Reading, Resolution, Result

Candidate = "tuple[str, float]"
ReadingLike = Union[Reading, str, "Iterable[str | Iterable[tuple[str, float]]]"]
"""What a reading can be given as: a Reading, or what makes one."""
Position = Union[str, "Sequence[str]", "Mapping[str, Any]"]


@dataclass(frozen=True)
class Parameters:
    """How readings are matched."""

    max_edits: int = 0
    """Characters substituted, missing or extra that a result may need, in all; from 0."""
    substitution: bool = True
    """An edit may substitute a character."""
    missing: bool = True
    """An edit may add a character that the reading lacks."""
    extra: bool = True
    """An edit may leave out a character of the reading."""
    min_length: int = 1
    """Length in characters of the shortest texts that match; binds where no edits are allowed."""
    max_length: int = 2**31 - 1
    """Length in characters of the longest texts that match; binds where no edits are allowed."""
    best_only: bool = True
    """Give the best result of each reading only."""
    window: bool = False
    """Find texts within the reading too, ignoring what stands before and after."""
    without_inserted: bool = False
    """Take inserted positions out of the results."""
    ranking: Literal["edits", "primary", "primary-secondary"] = "edits"
    """What goes first among results with equally few edits: the fewest missing characters ("edits"), the most primary
    characters ("primary"), or the most primary and secondary ones ("primary-secondary")."""


@dataclass(frozen=True)
class FitParameters:
    """How readings are forced into lines of a fixed shape."""

    placement: Literal["whole", "part", "long-part"] = "whole"
    """What is placed along the reading: the whole line, any part of it, or the same where a line too short for
    min_length and min_reach is an error."""
    min_length: int = 1
    """Positions of the shortest part of a line that is placed; binds where parts are."""
    max_length: int = 2**31 - 1
    """Positions of the longest part of a line that is placed; binds where parts are."""
    max_skipped: int = 2**31 - 1
    """Positions at the start of a line that a part may leave out."""
    min_reach: int = 0
    """Positions of the line, from its start, beyond which a part must reach."""
    trim_empty_ends: bool = True
    """Positions without a candidate at the ends of a reading are no part of it; binds where parts are placed."""
    ignore_deleted_spaces: bool = True
    """Spaces of the reading that are left out count as ignored."""
    ranking: Literal["primary", "primary-secondary"] = "primary"
    """Which placement ranks first: that with the most first candidates used, or with the most candidates used."""


# The parameters by their names in the dictionary file.
_FILE_KEYS = {
    "max_edits": "maxEdits",
    "substitution": "substitution",
    "missing": "missing",
    "extra": "extra",
    "min_length": "minLength",
    "max_length": "maxLength",
    "best_only": "returnBestOnly",
    "window": "window",
    "ranking": "ranking",
}
_FIT_FILE_KEYS = {
    "placement": "placement",
    "min_length": "minLength",
    "max_length": "maxLength",
    "max_skipped": "maxSkipped",
    "min_reach": "minReach",
    "trim_empty_ends": "trimEmptyEnds",
    "ignore_deleted_spaces": "ignoreDeletedSpaces",
    "ranking": "ranking",
}


class Swaps(TypedDict, total=False):
    """What the reader confuses; see docs/dictionary-file.md."""

    sets: list[str]
    groups: list[str]
    sequences: list[list[str]]


class Dictionary:
    """What readings may be: word lists, lines of a fixed shape, regular expressions, and what the reader confuses.

    A dictionary never changes. Any number of threads may run it at once; it can be pickled.

    Args:
        lexicons: word lists. Each is an iterable of str, or a mapping as in the dictionary file.
        fieldings: lines of a fixed shape, in the notation of the dictionary file: a picture such as "AA-999", or a
            list with what each position admits.
        expressions: regular expressions, in the notation of the dictionary file.
        shapes: ready shapes, by name, and entries with check digits, as in the dictionary file.
        swaps: what the reader confuses, a mapping as in the dictionary file.
        resolving: how one text is chosen, a mapping as in the dictionary file.
        parameters: how readings are matched where a run does not say otherwise.
        fit_parameters: how readings are forced into lines where a fit does not say otherwise.
        directory: where relative paths of word list files start.

    Raises:
        Error: for what the dictionary file could not hold either; the message names the place.
    """

    def __init__(
        self,
        lexicons: Iterable[Iterable[str] | Mapping[str, Any]] = (),
        *,
        fieldings: Iterable[str | Sequence[Position]] = (),
        expressions: Iterable[str] = (),
        shapes: Iterable[str | Mapping[str, Any]] = (),
        swaps: Swaps | None = None,
        resolving: Mapping[str, Any] | None = None,
        parameters: Parameters | None = None,
        fit_parameters: FitParameters | None = None,
        directory: str | os.PathLike[str] = "",
    ) -> None:
        if isinstance(lexicons, str):
            raise TypeError("lexicons is a str; expected an iterable of word lists")
        content: dict[str, Any] = {
            "lexicons": [_lexicon_of(lexicon) for lexicon in lexicons],
            "fieldings": list(fieldings),
            "regularExpressions": list(expressions),
            "shapes": list(shapes),
            "swaps": dict(swaps or {}),
            "resolving": dict(resolving or {}),
        }
        content = {key: value for key, value in content.items() if value}
        self._core = _read_content(content, os.fspath(directory))
        self._parameters = parameters or Parameters()
        self._fit_parameters = fit_parameters or FitParameters()

    @classmethod
    def from_file(cls, path: str | os.PathLike[str]) -> Dictionary:
        """Reads a dictionary file of the program `qoc`; its parameters become those of the dictionary.

        Raises:
            Error: where it cannot be read or is not in order; the message says where and what was expected.
        """
        return cls._of_core(_qoc.Dictionary.read_file(os.fspath(path)))

    @classmethod
    def from_dict(cls, content: Mapping[str, Any], directory: str | os.PathLike[str] = "") -> Dictionary:
        """Makes a dictionary of what a dictionary file holds, as json.load gives it.

        Args:
            content: lexicons, fieldings, regularExpressions, shapes, swaps, parameters, resolving; see
                docs/dictionary-file.md.
            directory: where relative paths of word list files start.

        Raises:
            Error: where the content is not in order; the message says where and what was expected.
        """
        return cls._of_core(_read_content(dict(content), os.fspath(directory)))

    @property
    def parameters(self) -> Parameters:
        """How readings are matched where a run does not say otherwise."""
        return self._parameters

    @property
    def fit_parameters(self) -> FitParameters:
        """How readings are forced into lines where a fit does not say otherwise."""
        return self._fit_parameters

    def with_parameters(self, **changes: Any) -> Dictionary:
        """The same dictionary with other parameters. Costs no copy.

        Args:
            **changes: fields of Parameters.
        """
        return self._of_core(self._core, replace(self._parameters, **changes), self._fit_parameters)

    def to_dict(self) -> dict[str, Any]:
        """The content as a dictionary file holds it, words included: json.dump of it makes such a file."""
        described = self._content()
        for key, parameters, names in (
            ("parameters", self._parameters, _FILE_KEYS),
            ("fitParameters", self._fit_parameters, _FIT_FILE_KEYS),
        ):
            changes = {
                names[field.name]: getattr(parameters, field.name)
                for field in fields(parameters)
                if field.name in names and getattr(parameters, field.name) != field.default
            }
            if changes:
                described[key] = changes
        return described

    def _content(self) -> dict[str, Any]:
        """The content without the parameters."""
        resolving = self._core.resolving()
        return self._core.entries() | ({"resolving": json.loads(resolving)} if resolving else {})

    def run(self, reading: ReadingLike, parameters: Parameters | None = None, **changes: Any) -> list[Result]:
        """Matches one reading with everything in the dictionary.

        Ctrl-C interrupts it; other threads run meanwhile.

        Args:
            reading: a Reading, or what makes one: a str, or positions.
            parameters: how; by default the dictionary's own.
            **changes: fields of Parameters that are to be otherwise.

        Returns:
            The results, best first; an empty list where the reading can be nothing in the dictionary.

        Raises:
            Error: for parameters out of their range.

        Fieldings know characters up to U+007F only. Where the dictionary has some, other candidates are left out, and
        a position that has no other is taken as empty.
        """
        return self._core.run(_reading_of(reading), self._options(parameters, changes))

    def fit(
        self, reading: ReadingLike, parameters: FitParameters | None = None, **changes: Any
    ) -> tuple[int, Result] | None:
        """Forces a reading into the shape of a fielding, whatever it takes.

        Args:
            reading: a Reading, or what makes one.
            parameters: how; by default the dictionary's own fit_parameters.
            **changes: fields of FitParameters that are to be otherwise.

        Returns:
            The index of the fielding with the fewest edits, of equal ones the earliest, and the result; None for an
            empty reading, and where no part of any could be placed.

        Raises:
            Error: for parameters out of their range, and for a reading that has two candidates of one character at a
                position.
        """
        chosen = self._fit_parameters if parameters is None else parameters
        return self._core.fit(_reading_of(reading), replace(chosen, **changes) if changes else chosen)

    def run_many(
        self,
        readings: Iterable[ReadingLike],
        parameters: Parameters | None = None,
        *,
        threads: int | None = None,
        progress: Callable[[int, int], object] | None = None,
        **changes: Any,
    ) -> list[list[Result]]:
        """Matches many readings at once.

        Ctrl-C interrupts it.

        Args:
            readings: any number of readings.
            parameters: how; by default the dictionary's own.
            threads: how many threads match; by default one for each processor that the process may use.
            progress: called now and then, and at the end, in the calling thread, with the number of readings that
                are done and the number of all. An exception that it raises ends the work.
            **changes: fields of Parameters that are to be otherwise.

        Returns:
            For each reading, in order, its results, best first.

        Raises:
            Error: as from run; the message names the reading by its index.
        """
        options = self._options(parameters, changes)
        held = [_reading_of(reading) for reading in readings]
        return self._core.run_many(held, options, _number_of_threads(threads), progress)

    def resolve(
        self,
        reading: ReadingLike,
        parameters: Parameters | None = None,
        *,
        min_margin: float | None = None,
        require_check: bool | None = None,
        alternatives: int | None = None,
        **changes: Any,
    ) -> Resolution:
        """Matches one reading and chooses one text out of everything that the dictionary allows.

        It says the same as `qoc run` with the same dictionary file: among the texts of all results and all words
        within reach it takes the best by the reader's scores and the rules of "resolving", and calls it sure where it
        leads far enough and passes its check digits. Ctrl-C interrupts it; other threads run meanwhile.

        Args:
            reading: a Reading, or what makes one. One without scores, such as a str, is sure where no other text has
                as few differences from it.
            parameters: how it is matched; by default the dictionary's own.
            min_margin: points by which a text must lead to be sure; by default as the dictionary says.
            require_check: whether a text without check digits is never sure; by default as the dictionary says.
            alternatives: other texts to give behind the best one, up to 999; by default as the dictionary says.
            **changes: fields of Parameters that are to be otherwise.

        Raises:
            Error: for parameters out of their range.
        """
        changed = _resolving_changes(min_margin, require_check, alternatives)
        return self._core.resolve(_reading_of(reading), self._options(parameters, changes), *changed)

    def resolve_many(
        self,
        readings: Iterable[ReadingLike],
        parameters: Parameters | None = None,
        *,
        threads: int | None = None,
        progress: Callable[[int, int], object] | None = None,
        min_margin: float | None = None,
        require_check: bool | None = None,
        alternatives: int | None = None,
        **changes: Any,
    ) -> list[Resolution]:
        """Matches many readings at once and chooses one text for each.

        Args:
            readings: any number of readings.
            threads: as for run_many.
            progress: as for run_many.
            parameters: this and the others are as for resolve.

        Returns:
            For each reading, in order, its Resolution.

        Raises:
            Error: as from resolve; the message names the reading by its index.
        """
        changed = _resolving_changes(min_margin, require_check, alternatives)
        options = self._options(parameters, changes)
        held = [_reading_of(reading) for reading in readings]
        return self._core.resolve_many(held, options, _number_of_threads(threads), progress, *changed)

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Dictionary):
            return NotImplemented
        return (
            self._core.is_equal(other._core)
            and self._content() == other._content()
            and self._parameters == other._parameters
            and self._fit_parameters == other._fit_parameters
        )

    __hash__ = None  # type: ignore[assignment]

    def __reduce__(self) -> tuple[Any, ...]:
        return _restore, (self._content(), self._parameters, self._fit_parameters)

    def __repr__(self) -> str:
        words, fieldings, expressions = self._core.sizes()
        parts = [f"{n} words" for n in words]
        parts += [f"{n} {name}" for n, name in ((fieldings, "fieldings"), (expressions, "regular expressions")) if n]
        return f"<Dictionary: {', '.join(parts) or 'empty'}>"

    @classmethod
    def _of_core(
        cls,
        core: _qoc.Dictionary,
        parameters: Parameters | None = None,
        fit_parameters: FitParameters | None = None,
    ) -> Dictionary:
        made = cls.__new__(cls)
        made._core = core
        made._parameters = parameters or Parameters(**core.parameters())
        made._fit_parameters = fit_parameters or FitParameters(**core.fit_parameters())
        return made

    def _options(self, parameters: Parameters | None, changes: Mapping[str, Any]) -> Parameters:
        chosen = self._parameters if parameters is None else parameters
        return replace(chosen, **changes) if changes else chosen


def _number_of_threads(threads: int | None) -> int:
    if threads is None:
        return len(os.sched_getaffinity(0)) if hasattr(os, "sched_getaffinity") else os.cpu_count() or 1
    if threads < 1:
        raise ValueError(f"threads is {threads}; expected at least 1")
    return threads


def _resolving_changes(
    min_margin: float | None, require_check: bool | None, alternatives: int | None
) -> tuple[float | None, bool | None, int | None]:
    if min_margin is not None and not 0 <= min_margin <= 1_000_000:
        raise ValueError(f"min_margin is {min_margin}; expected points from 0 to 1000000")
    if alternatives is not None and not 0 <= alternatives <= 999:
        raise ValueError(f"alternatives is {alternatives}; expected a number from 0 to 999")
    return min_margin, require_check, alternatives


def _restore(content: dict[str, Any], parameters: Parameters, fit_parameters: FitParameters) -> Dictionary:
    return Dictionary._of_core(_read_content(content, ""), parameters, fit_parameters)


def _read_content(content: dict[str, Any], directory: str) -> _qoc.Dictionary:
    return _qoc.Dictionary.read_text(json.dumps(content), "dictionary", directory)


def _lexicon_of(lexicon: Iterable[str] | Mapping[str, Any]) -> dict[str, Any]:
    if isinstance(lexicon, str):
        raise TypeError(f"a lexicon is the str {lexicon!r}; expected an iterable of words")
    return dict(lexicon) if isinstance(lexicon, Mapping) else {"words": list(lexicon)}


def _reading_of(reading: ReadingLike) -> Reading:
    return reading if isinstance(reading, Reading) else Reading(reading)
