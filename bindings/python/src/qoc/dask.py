"""Many readings on many machines, with Dask.

    client = distributed.Client("scheduler:8786")
    results = qoc.dask.run_bag(dictionary, bag, client=client, max_edits=1).compute()

The dictionary is sent to every worker once, also to workers that come later, and is unpacked there once. Partitions
keep their order and their readings theirs. A worker that dies loses nothing: Dask gives its partitions to others.
"""

from __future__ import annotations

import hashlib
import pickle
from typing import TYPE_CHECKING, Any, Iterable, Mapping, cast

import distributed
from distributed.diagnostics.plugin import WorkerPlugin

from qoc.dictionary import Dictionary, ReadingLike, _reading_of
from qoc.tables import Row, resolved_row_of, row_of

if TYPE_CHECKING:
    from dask.bag.core import Bag
    from dask.dataframe.core import DataFrame

# The dictionaries that this worker process holds, by their keys.
_dictionaries: dict[str, Dictionary] = {}


class _DictionaryPlugin(WorkerPlugin):
    """Holds a dictionary on a worker for as long as the plugin is registered."""

    def __init__(self, key: str, packed: bytes) -> None:
        self.name = key
        self._packed = packed

    def setup(self, worker: distributed.Worker) -> None:
        if self.name not in _dictionaries:
            _dictionaries[self.name] = pickle.loads(self._packed)

    def teardown(self, worker: distributed.Worker) -> None:
        _dictionaries.pop(self.name, None)


def ship(dictionary: Dictionary, client: distributed.Client) -> str:
    """Sends a dictionary to all workers, present and future.

    run_bag and run_dataframe do it themselves; sending the same dictionary again costs little.

    Args:
        dictionary: the dictionary, with its parameters.
        client: the client of the cluster.

    Returns:
        The key under which the workers hold it, for `client.unregister_worker_plugin(key)`.
    """
    packed = pickle.dumps(dictionary)
    key = "qoc-dictionary-" + hashlib.sha256(packed).hexdigest()[:16]
    client.register_worker_plugin(_DictionaryPlugin(key, packed), name=key)
    return key


def run_bag(
    dictionary: Dictionary, readings: Bag, *, client: distributed.Client, **changes: Any
) -> Bag:
    """Matches a bag of readings.

    Args:
        dictionary: what the readings may be.
        readings: a dask.bag of readings: Reading, or what makes one.
        client: the client of the cluster.
        **changes: fields of Parameters that are to be otherwise than in the dictionary.

    Returns:
        A dask.bag, lazy, with the same partitions: for each reading the list of its results as dicts (see
        qoc.tables.Row; `reading` counts within the partition), best first, empty where it has none.
    """
    key = ship(dictionary.with_parameters(**changes), client)
    return readings.map_partitions(_run_partition, key)


def run_dataframe(
    dictionary: Dictionary,
    frame: DataFrame,
    column: str,
    *,
    client: distributed.Client,
    resolve: bool = False,
    **changes: Any,
) -> DataFrame:
    """Matches a column of readings and joins the best result of each to its row, or the text that it is taken for.

    Args:
        dictionary: what the readings may be.
        frame: a dask.dataframe.
        column: the name of the column with the readings: str, Reading, or what makes one.
        client: the client of the cluster.
        resolve: choose one text for each reading, as Dictionary.resolve does.
        **changes: fields of Parameters that are to be otherwise than in the dictionary.

    Returns:
        The frame, lazy, with the same partitions, rows and index, and with these columns more: `text`, `edits`
        (Int64), `score` (Float64), `mode`, `line_status` and `statuses`, all missing where there is no result; see
        qoc.tables.Row. With resolve these instead: `text`, `outcome`, `margin` (Float64), `check` (boolean) and
        `mode`; see qoc.tables.ResolvedRow.

    Raises:
        ValueError: where the frame lacks the column, or has one of the new ones already.
    """
    if column not in frame.columns:
        raise ValueError(f"there is no column {column!r}; expected one of {list(frame.columns)}")
    columns = _RESOLVED_COLUMNS if resolve else _COLUMNS
    taken = sorted(set(columns) & set(frame.columns))
    if taken:
        raise ValueError(f"the frame has the columns {taken} already; expected none of {list(columns)}")
    key = ship(dictionary.with_parameters(**changes), client)
    meta = frame._meta.assign(**{name: _series((), kind) for name, kind in columns.items()})
    return frame.map_partitions(_resolve_frame if resolve else _run_frame, column, key, meta=meta)


# The columns that run_dataframe adds, and their types.
_COLUMNS = {
    "text": "object",
    "edits": "Int64",
    "score": "Float64",
    "mode": "object",
    "line_status": "object",
    "statuses": "object",
}
_RESOLVED_COLUMNS = {
    "text": "object",
    "outcome": "object",
    "margin": "Float64",
    "check": "boolean",
    "mode": "object",
}


def _dictionary(key: str) -> Dictionary:
    try:
        return _dictionaries[key]
    except KeyError:
        raise RuntimeError(
            f"this process does not hold the dictionary {key}; expected to run on a worker of the client's cluster"
        ) from None


def _run_partition(readings: Iterable[ReadingLike], key: str) -> list[list[Row]]:
    held = [_reading_of(reading) for reading in readings]
    # One thread: the cluster has a worker, or a thread of one, for every processor already.
    answers = _dictionary(key).run_many(held, threads=1)
    return [
        [row_of(index, reading, rank, result) for rank, result in enumerate(results)]
        for index, (reading, results) in enumerate(zip(held, answers, strict=True))
    ]


def _series(values: Iterable[Any], kind: str, index: Any = None) -> Any:
    import pandas

    return pandas.Series(list(values), dtype=kind, index=index)


def _run_frame(frame: Any, column: str, key: str) -> Any:
    answers = _run_partition(frame[column], key)
    best = [cast("Mapping[str, Any]", rows[0]) if rows else {} for rows in answers]
    return _joined(frame, best, _COLUMNS)


def _resolve_frame(frame: Any, column: str, key: str) -> Any:
    held = [_reading_of(reading) for reading in frame[column]]
    resolutions = _dictionary(key).resolve_many(held, threads=1)
    rows = [resolved_row_of(index, *both) for index, both in enumerate(zip(held, resolutions, strict=True))]
    return _joined(frame, cast("list[Mapping[str, Any]]", rows), _RESOLVED_COLUMNS)


def _joined(frame: Any, rows: list[Mapping[str, Any]], columns: Mapping[str, str]) -> Any:
    return frame.assign(
        **{name: _series((row.get(name) for row in rows), kind, frame.index) for name, kind in columns.items()}
    )
