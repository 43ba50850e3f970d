"""Results as rows of plain values, for a DataFrame or a file."""

from __future__ import annotations

from typing import Iterable, Iterator, TypedDict

from qoc._qoc import Resolution, Result
from qoc.dictionary import ReadingLike, _reading_of


class Row(TypedDict):
    """One result, or a reading that has none, as plain values."""

    reading: int
    """The reading's index, from 0."""
    given: str
    """The reading's primary candidates."""
    rank: int
    """The result's rank, from 0; -1 where the reading has none."""
    text: str | None
    """The result's text; None where there is no result, and where a position of it is open."""
    edits: int | None
    score: float | None
    mode: str | None
    """The label of the Mode."""
    line_status: str | None
    """The label of the worst PositionStatus."""
    statuses: str | None
    """The labels of the statuses, with spaces between them."""
    ignored_prefix: int | None
    ignored_suffix: int | None


def row_of(index: int, reading: ReadingLike, rank: int = -1, result: Result | None = None) -> Row:
    """One result of a reading as a row.

    Args:
        index: the reading's index.
        reading: the reading.
        rank: the result's rank, from 0.
        result: the result; without one the row says that there is none.
    """
    given = reading if isinstance(reading, str) else _reading_of(reading).text
    if result is None:
        return Row(reading=index, given=given, rank=-1, text=None, edits=None, score=None, mode=None,
                   line_status=None, statuses=None, ignored_prefix=None, ignored_suffix=None)  # fmt: skip
    return Row(
        reading=index,
        given=given,
        rank=rank,
        text=result.text,
        edits=result.edits,
        score=result.score,
        mode=result.mode.label if result.mode is not None else None,
        line_status=result.line_status.label if result.line_status is not None else None,
        statuses=" ".join(status.label for status in result.statuses),
        ignored_prefix=result.ignored_prefix,
        ignored_suffix=result.ignored_suffix,
    )


def rows(readings: Iterable[ReadingLike], results: Iterable[Iterable[Result]]) -> Iterator[Row]:
    """What run_many gave, as rows of plain values: `pandas.DataFrame(qoc.rows(readings, results))`.

    Args:
        readings: the readings, in the order in which they were run.
        results: the results of each.

    Yields:
        A dict for each result, best first; for a reading without results one that says so.
    """
    for index, (reading, ranked) in enumerate(zip(readings, results, strict=True)):
        empty = True
        for rank, result in enumerate(ranked):
            empty = False
            yield row_of(index, reading, rank, result)
        if empty:
            yield row_of(index, reading)


class ResolvedRow(TypedDict):
    """What a reading was resolved to, as plain values."""

    reading: int
    """The reading's index, from 0."""
    given: str
    """The reading's primary candidates."""
    text: str | None
    """The best text; None where there is none."""
    outcome: str
    """The label of the Outcome: "sure", "unsure" or "none"."""
    margin: float | None
    """None where there is no text, and where the reading has no scores."""
    check: bool | None
    """Whether the text passes its check digits; None where it has none."""
    mode: str | None
    """The label of the Mode."""


def resolved_row_of(index: int, reading: ReadingLike, resolution: Resolution) -> ResolvedRow:
    """What a reading was resolved to, as a row.

    Args:
        index: the reading's index.
        reading: the reading.
        resolution: what Dictionary.resolve gave.
    """
    return ResolvedRow(
        reading=index,
        given=reading if isinstance(reading, str) else _reading_of(reading).text,
        text=resolution.text,
        outcome=resolution.outcome.label,
        margin=resolution.margin,
        check=resolution.check,
        mode=resolution.mode.label if resolution.mode is not None else None,
    )


def resolved_rows(
    readings: Iterable[ReadingLike], resolutions: Iterable[Resolution]
) -> Iterator[ResolvedRow]:
    """What resolve_many gave, as rows: `pandas.DataFrame(qoc.resolved_rows(readings, resolutions))`.

    Args:
        readings: the readings, in the order in which they were resolved.
        resolutions: what each was resolved to.

    Yields:
        A dict for each reading.
    """
    for index, (reading, resolution) in enumerate(zip(readings, resolutions, strict=True)):
        yield resolved_row_of(index, reading, resolution)
