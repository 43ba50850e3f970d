import os
import signal
import subprocess
import sys
import threading
import time

import pytest

import qoc

# How many times longer the work may take, where the module is built with a sanitizer.
SLOWDOWN = float(os.environ.get("QOC_TEST_SLOWDOWN", 1))


def texts(lists):
    return [[result.text for result in results] for results in lists]


@pytest.mark.parametrize("threads", [1, 2, 7])
def test_gives_in_order_what_single_runs_give(words, data, threads):
    readings = (data / "words.txt").read_text(encoding="utf-8").split()[:300]
    readings = [word[1:] if i % 3 else word for i, word in enumerate(readings)]
    expected = texts(words.run(reading, max_edits=1) for reading in readings)
    assert texts(words.run_many(readings, threads=threads, max_edits=1)) == expected


def test_takes_any_iterable_and_none_at_all(fruit):
    assert texts(fruit.run_many(reading for reading in ("Pear", "Plum"))) == [["Pear"], ["Plum"]]
    assert fruit.run_many([]) == []


def test_reports_progress_up_to_the_end(words, data):
    readings = (data / "words.txt").read_text(encoding="utf-8").split()[:2000]
    seen = []
    words.run_many(readings, progress=lambda done, total: seen.append((done, total)), max_edits=2)
    assert seen[-1] == (2000, 2000)
    assert all(total == 2000 for _, total in seen)
    assert [done for done, _ in seen] == sorted({done for done, _ in seen})


def test_an_exception_of_the_progress_callback_ends_the_work(words, data):
    readings = (data / "words.txt").read_text(encoding="utf-8").split() * 20

    def refuse(done, total):
        raise KeyError("enough")

    start = time.monotonic()
    with pytest.raises(KeyError):
        words.run_many(readings, progress=refuse, max_edits=3, best_only=False)
    assert time.monotonic() - start < 10 * SLOWDOWN


def test_a_failure_names_its_reading(words):
    with pytest.raises(qoc.Error) as caught:
        words.run_many(["fine", "fine"], min_length=0)
    assert "reading " in str(caught.value)
    with pytest.raises(ValueError):
        words.run_many(["fine"], threads=0)
    with pytest.raises(ValueError, match="reserved"):
        words.run_many(["fine", "\uf801"])


def test_other_threads_run_meanwhile(words):
    """The interpreter's lock is free during a run: another thread counts on."""
    stop = threading.Event()
    ticks = [0]

    def count():
        while not stop.is_set():
            ticks[0] += 1
            time.sleep(0.001)

    counter = threading.Thread(target=count)
    counter.start()
    try:
        while ticks[0] == 0:
            time.sleep(0.001)
        before, start = ticks[0], time.monotonic()
        words.run_many(["abcdefghijklmnopqrst"] * 5000, threads=1, max_edits=8, best_only=False)
        elapsed, counted = time.monotonic() - start, ticks[0] - before
    finally:
        stop.set()
        counter.join()
    assert elapsed > 0.05, "the work was too short to say anything"
    assert counted > 5


def test_one_dictionary_serves_many_threads(words):
    found = []
    threads = [
        threading.Thread(target=lambda: found.append([r.text for r in words.run("wrods", max_edits=2)]))
        for _ in range(8)
    ]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert len(found) == 8
    assert all(result == found[0] for result in found)


INTERRUPTED = """
import sys, qoc
dictionary = qoc.Dictionary([{"file": sys.argv[1]}])
readings = ["abcdefghijklmnopqrstuvwxyz"] * 100000
print("ready", flush=True)
try:
    %s
except KeyboardInterrupt:
    print("interrupted", flush=True)
"""


@pytest.mark.parametrize(
    "call",
    [
        "dictionary.run_many(readings, max_edits=20, best_only=False)",
        "[dictionary.run(reading, max_edits=20, best_only=False) for reading in readings]",
    ],
)
def test_ctrl_c_interrupts(data, call):
    with subprocess.Popen(
        [sys.executable, "-c", INTERRUPTED % call, str(data / "words.txt")],
        stdout=subprocess.PIPE,
        encoding="utf-8",
        env=os.environ | {"PYTHONPATH": os.pathsep.join(filter(None, sys.path))},
    ) as process:
        try:
            assert process.stdout.readline() == "ready\n"
            time.sleep(0.5)
            process.send_signal(signal.SIGINT)
            start = time.monotonic()
            assert process.stdout.readline() == "interrupted\n"
            assert time.monotonic() - start < 5 * SLOWDOWN
            assert process.wait(10) == 0
        finally:
            process.kill()
