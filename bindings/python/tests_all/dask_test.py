"""A local cluster of two worker processes.

The cluster is made by hand of a scheduler and two worker processes, so that one can be killed for good.
"""

import os
import pathlib
import subprocess
import sys
import tempfile
import time
import unittest

import dask.bag
import dask.dataframe
import distributed
import pandas

import qoc
import qoc.dask

DATA = pathlib.Path(__file__).resolve().parents[3] / "tests" / "data"
WORDS = (DATA / "words.txt").read_text(encoding="utf-8").split()


def expected(readings, dictionary, **changes):
    return [[result.text for result in results] for results in dictionary.run_many(readings, **changes)]


def texts(answers):
    return [[row["text"] for row in rows] for rows in answers]


def slowly(reading):
    time.sleep(0.02)
    return reading


def loads(dask_worker):
    return list(qoc.dask._dictionaries), os.getpid()


class Cluster(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.TemporaryDirectory()
        self.processes = []
        address_file = pathlib.Path(self.directory.name) / "scheduler.json"
        self.start("distributed.cli.dask_scheduler", "--port", "0", "--no-dashboard", "--no-show",
                   "--scheduler-file", str(address_file))  # fmt: skip
        for _ in range(600):
            if address_file.exists() and address_file.stat().st_size:
                break
            time.sleep(0.1)
        self.workers = [
            self.start("distributed.cli.dask_worker", "--scheduler-file", str(address_file), "--nthreads", "1",
                       "--no-nanny", "--no-dashboard", "--local-directory", self.directory.name)
            for _ in range(2)
        ]  # fmt: skip
        self.client = distributed.Client(scheduler_file=str(address_file), timeout=60)
        self.client.wait_for_workers(2, timeout=60)

    def tearDown(self):
        self.client.close()
        for process in self.processes:
            process.kill()
            process.wait()
        self.directory.cleanup()

    def start(self, module, *arguments):
        environment = os.environ | {"PYTHONPATH": os.pathsep.join([str(pathlib.Path(__file__).parent), *filter(None, sys.path)])}
        process = subprocess.Popen(
            [sys.executable, "-m", module, *arguments], env=environment,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)  # fmt: skip
        self.processes.append(process)
        return process

    def test_a_bag_keeps_its_order(self):
        dictionary = qoc.Dictionary([WORDS])
        readings = [word[1:] for word in WORDS[:400]]
        bag = dask.bag.from_sequence(readings, npartitions=8)
        answers = qoc.dask.run_bag(dictionary, bag, client=self.client, max_edits=1)
        self.assertEqual(answers.npartitions, 8)
        self.assertEqual(texts(answers.compute()), expected(readings, dictionary, max_edits=1))

    def test_readings_with_candidates_travel(self):
        dictionary = qoc.Dictionary([["Plum"]])
        readings = [qoc.Reading(["P", [("1", 70), ("l", 60)], "u", "m"])]
        (answer,) = qoc.dask.run_bag(dictionary, dask.bag.from_sequence(readings), client=self.client).compute()
        self.assertEqual(answer[0]["text"], "Plum")
        self.assertEqual(answer[0]["statuses"], "primary secondary primary primary")

    def test_a_frame_keeps_rows_and_index(self):
        dictionary = qoc.Dictionary([["Apple", "Pear"]], parameters=qoc.Parameters(max_edits=1))
        frame = pandas.DataFrame({"read": ["Aple", "nothing", "Pear", "Peer"], "camera": [4, 3, 2, 1]}, index=list("dcba"))
        lazy = qoc.dask.run_dataframe(
            dictionary, dask.dataframe.from_pandas(frame, npartitions=2, sort=False), "read", client=self.client)
        done = lazy.compute()
        self.assertEqual(list(done.index), list("dcba"))
        self.assertEqual(list(done.camera), [4, 3, 2, 1])
        self.assertEqual([text if isinstance(text, str) else None for text in done.text],
                         ["Apple", None, "Pear", "Pear"])  # fmt: skip
        self.assertEqual(list(done.edits.astype(object).where(done.edits.notna(), None)), [1, None, 0, 1])
        self.assertEqual([str(kind) for kind in done.dtypes], [str(kind) for kind in lazy.dtypes])
        with self.assertRaises(ValueError):
            qoc.dask.run_dataframe(dictionary, lazy, "absent", client=self.client)
        with self.assertRaises(ValueError):
            qoc.dask.run_dataframe(dictionary, lazy, "read", client=self.client)

    def test_a_frame_is_resolved(self):
        dictionary = qoc.Dictionary([["Apple", "Pear", "Peer"]], parameters=qoc.Parameters(max_edits=1))
        frame = pandas.DataFrame({"read": ["Aple", "nothing", "Pexr"]}, index=list("cba"))
        lazy = qoc.dask.run_dataframe(
            dictionary, dask.dataframe.from_pandas(frame, npartitions=2, sort=False), "read", client=self.client,
            resolve=True)
        done = lazy.compute()
        self.assertEqual(list(done.index), list("cba"))
        self.assertEqual(list(done.outcome), ["sure", "none", "unsure"])
        self.assertEqual(done.text.iloc[0], "Apple")
        self.assertTrue(done.margin.isna().all(), "a str has no scores")
        self.assertEqual([str(kind) for kind in done.dtypes], [str(kind) for kind in lazy.dtypes])

    def test_the_dictionary_is_sent_once_to_each_worker(self):
        dictionary = qoc.Dictionary([["Apple"]])
        bag = dask.bag.from_sequence(["Apple"] * 20, npartitions=10)
        for _ in range(3):
            qoc.dask.run_bag(dictionary, bag, client=self.client).compute()
        held = self.client.run(loads)
        self.assertEqual(len({pid for _, pid in held.values()}), 2)
        for keys, _ in held.values():
            self.assertEqual(len(keys), 1)

    def test_a_worker_that_dies_is_survived(self):
        dictionary = qoc.Dictionary([WORDS])
        readings = [word[1:] for word in WORDS[:300]]
        bag = dask.bag.from_sequence(readings, npartitions=30).map(slowly)
        lazy = qoc.dask.run_bag(dictionary, bag, client=self.client, max_edits=1)
        future = self.client.compute(lazy)
        time.sleep(1.0)
        self.assertFalse(future.done(), "the work was over before the worker died")
        self.workers[0].kill()
        self.assertEqual(texts(future.result(timeout=120)), expected(readings, dictionary, max_edits=1))
        self.assertEqual(len(self.client.scheduler_info()["workers"]), 1)


if __name__ == "__main__":
    unittest.main()
