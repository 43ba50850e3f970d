"""Measures readings per second: one thread, and a Dask cluster of one and of two worker processes.

    PYTHONPATH=build/release/bindings/python /usr/bin/python3 bench/scale_bench.py
"""

import pathlib
import time

import dask.bag
import distributed

import qoc
import qoc.dask

DATA = pathlib.Path(__file__).resolve().parents[1] / "tests" / "data"


def measure(dictionary, readings, edits):
    print(f"{len(readings)} readings, {edits} edit(s) allowed")
    start = time.monotonic()
    dictionary.run_many(readings, threads=1, max_edits=edits)
    print(f"  run_many, 1 thread:  {len(readings) / (time.monotonic() - start):.0f} readings/s")
    for workers in (1, 2):
        with distributed.LocalCluster(n_workers=workers, threads_per_worker=1, dashboard_address=None) as cluster:
            with distributed.Client(cluster) as client:
                bag = dask.bag.from_sequence(readings, npartitions=32).persist()
                distributed.wait(bag)
                qoc.dask.ship(dictionary.with_parameters(max_edits=edits), client)
                start = time.monotonic()
                counted = qoc.dask.run_bag(dictionary, bag, client=client, max_edits=edits).map(len).sum().compute()
                rate = len(readings) / (time.monotonic() - start)
                print(f"  Dask, {workers} worker(s):   {rate:.0f} readings/s, {counted} results")


def main():
    words = (DATA / "words.txt").read_text(encoding="utf-8").split()
    dictionary = qoc.Dictionary([words])
    print(f"{len(words)} words")
    readings = [qoc.Reading(word[:2] + word[3:]) for word in words]
    measure(dictionary, readings * 4, 1)
    measure(dictionary, readings[::2], 2)
    measure(dictionary, readings[::8], 3)


if __name__ == "__main__":
    main()
