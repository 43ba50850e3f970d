"""Matches the readings of an OCR engine with what they can be.

    >>> import qoc
    >>> dictionary = qoc.Dictionary(lexicons=[["Apple", "Pear", "Plum"]])
    >>> dictionary.run("Aple", max_edits=1)
    [<Result 'Apple', 1 edit, lexicon>]

Dictionary.resolve chooses one text, and says whether it is sure:

    >>> dictionary.resolve("Aple", max_edits=1)
    <Resolution 'Apple', sure>

A dictionary says what readings may be; Dictionary.from_file reads the files of the program `qoc`. A reading is a str,
or better a Reading with scored candidates for every position. Results are ranked, best first, and say for every
position what happened there. All positions are counted from 0, scores are in the reader's own scale (higher is
better), lengths are in characters.
"""

from qoc._qoc import Error, Reading, Resolution, ResolvedText, Result
from qoc.dictionary import Dictionary, FitParameters, Parameters
from qoc.enums import Mode, Outcome, PositionStatus
from qoc.tables import resolved_row_of, resolved_rows, row_of, rows

__all__ = [
    "Dictionary",
    "Error",
    "FitParameters",
    "Mode",
    "Outcome",
    "Parameters",
    "PositionStatus",
    "Reading",
    "Resolution",
    "ResolvedText",
    "Result",
    "resolved_row_of",
    "resolved_rows",
    "row_of",
    "rows",
]
