"""Matches the readings of an OCR engine with what they can be.

    >>> import qoc
    >>> dictionary = qoc.Dictionary(lexicons=[["Apple", "Pear", "Plum"]])
    >>> dictionary.run("Aple", max_edits=1)
    [<Result 'Apple', 1 edit, lexicon>]

A dictionary says what readings may be; Dictionary.from_file reads the files of the program `qoc`. A reading is a str,
or better a Reading with scored candidates for every position. Results are ranked, best first, and say for every
position what happened there. All positions are counted from 0, scores are in the reader's own scale (higher is
better), lengths are in characters.
"""

from qoc._qoc import Error, Reading, Result
from qoc.dictionary import Dictionary, FitParameters, Parameters
from qoc.enums import Mode, PositionStatus
from qoc.tables import row_of, rows

__all__ = [
    "Dictionary",
    "Error",
    "FitParameters",
    "Mode",
    "Parameters",
    "PositionStatus",
    "Reading",
    "Result",
    "row_of",
    "rows",
]
