"""Batches: threads, order, memory, --skip, Ctrl-C, the progress bar."""

import json
import os
import pty
import re
import select
import signal
import subprocess
import time
import unittest

from program import DATA, PROGRAM, ProgramTest


class BatchTest(ProgramTest):
    def real_dictionary(self):
        return self.write("real.json", {"lexicons": [{"file": str(DATA / "words.txt")}], "parameters": {"maxEdits": 1}})

    def test_threads_give_what_one_gives(self):
        dictionary = self.real_dictionary()
        for command in (["run"], ["run", "--json"], ["run", "--tsv"], ["explain"], ["explain", "--json"]):
            one = self.run_program(*command, "-d", dictionary, DATA / "readings.ndjson")
            for jobs in (2, 3, 0):
                with self.subTest(command=command, jobs=jobs):
                    self.assertEqual(self.run_program(*command, "-d", dictionary, "--jobs", jobs, DATA / "readings.ndjson"),
                                     one)
        self.assertEqual(one[0], 1)

    def test_order_with_uneven_work(self):
        lines = "".join(json.dumps({"id": i, "text": "word" * (1 if i % 7 else 3000)}) + "\n" for i in range(500))
        answers = self.run_json("-d", self.dictionary("word", "x" * 12000, maxEdits=1), "-j", "4", stdin=lines, expected=1)
        self.assertEqual([answer["id"] for answer in answers], list(range(500)))

    def test_skip(self):
        lines = "word\nother\nword\nword\n"
        answers = self.run_json("-d", self.dictionary("word"), "--skip", "2", stdin=lines)
        self.assertEqual([answer["line"] for answer in answers], [3, 4])
        self.assertEqual(self.run_json("-d", self.dictionary("word"), "--skip", "9", "-j", "2", stdin=lines), [])

    def test_what_stands_before_a_fault_is_written(self):
        lines = "word\n" * 1000 + "\udcff\n"
        code, out, err = self.run_program("run", "--json", "-d", self.dictionary("word"), "-j", "3",
                                          stdin=lines.encode("utf-8", "surrogateescape") + b"word\n" * 1000)
        self.assertEqual(code, 2)
        self.assertIn("standard input:1001:", err)
        self.assertEqual([json.loads(line)["line"] for line in out.splitlines()], list(range(1, 1001)))

    def test_memory_stays_bounded_with_threads(self):
        def peak(num_readings):
            command = [PROGRAM, "run", "--json", "-j", "4", "-d", str(self.directory / self.dictionary("word"))]
            # AddressSanitizer would keep what is freed.
            options = os.environ.get("ASAN_OPTIONS", "") + ":quarantine_size_mb=1:thread_local_quarantine_size_kb=64"
            process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
                                       env={**os.environ, "ASAN_OPTIONS": options})
            for _ in range(num_readings // 1000):
                process.stdin.write(b'{"positions":[[["w",9.5]],[["o",1]],[["r",2]],[["d",3]]]}\n' * 1000)
            process.stdin.close()
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
            self.assertEqual(process.returncode, 0)
            return usage.ru_maxrss

        self.assertLess(peak(40000), peak(4000) + 8192)

    def test_answers_come_while_input_waits(self):
        command = [PROGRAM, "run", "--json", "-j", "2", "-d", str(self.directory / self.dictionary("word"))]
        process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        try:
            for _ in range(3):
                process.stdin.write(b"word\n")
                process.stdin.flush()
                self.assertTrue(select.select([process.stdout], [], [], 60)[0], "no answer within a minute")
                self.assertEqual(json.loads(process.stdout.readline())["text"], "word")
            process.stdin.close()
            self.assertEqual(process.wait(60), 0)
        finally:
            process.kill()
            process.wait()
            process.stdout.close()

    def interrupt(self, *arguments, num_answers=0, by=(signal.SIGINT,), ignored=()):
        """Runs on 40 readings, one that takes long and some more, and interrupts by one signal after the other.

        The long reading follows when the answers to the first, of which there must be so many, have come. Gives
        (exit code, output, messages).
        """
        words = ["".join("abcdefgh"[(i >> 3 * k) % 8] for k in range(6)) for i in range(4000)]
        dictionary = self.dictionary(*words, maxEdits=2, window=True)
        process = subprocess.Popen([PROGRAM, *arguments, "-d", dictionary], cwd=self.directory,
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   preexec_fn=lambda: [signal.signal(each, signal.SIG_IGN) for each in ignored])
        try:
            process.stdin.write(b"abcdef\n" * 40)
            process.stdin.flush()
            answers = b"".join(process.stdout.readline() for _ in range(num_answers))
            # A pipe holds less than the long reading: behind it, the program has begun to read it.
            process.stdin.write(b"abcdefgh" * 20000 + b"\n" + b"abcdef\n" * 100)
            process.stdin.close()
            process.stdin = None
            for each in by:
                time.sleep(0.5)
                self.assertIsNone(process.poll())
                process.send_signal(each)
            out, err = process.communicate(timeout=60)
        finally:
            process.kill()
            process.communicate()
        return process.returncode, (answers + out).decode(), err.decode()

    def test_interruption_with_threads(self):
        code, out, err = self.interrupt("run", "--json", "-j", "3", num_answers=40)
        self.assertEqual(code, 2)
        lines = [json.loads(line)["line"] for line in out.splitlines()]
        self.assertEqual(lines, list(range(1, 41)))
        self.assertIn("interrupted after 40 finished readings; go on with --skip 40", err)

    def test_going_on_counts_what_was_skipped(self):
        code, out, err = self.interrupt("run", "--json", "--skip", "30", num_answers=10)
        self.assertEqual((code, len(out.splitlines())), (2, 10))
        self.assertIn("interrupted after 10 finished readings; go on with --skip 40", err)

    def test_an_interrupted_report_is_not_written(self):
        for by in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            code, out, err = self.interrupt("report", "-o", "report.html", by=(by,))
            self.assertEqual((code, out), (2, ""))
            self.assertIn("the report is not written", err)
            self.assertEqual({path.name for path in self.directory.iterdir()}, {"dictionary.json"})

    def test_an_ignored_hangup_stays_ignored(self):
        code, _, err = self.interrupt("run", by=(signal.SIGHUP, signal.SIGINT), ignored=(signal.SIGHUP,))
        self.assertEqual(code, 2, err)

    def test_numbers_of_threads(self):
        dictionary = self.dictionary("word")
        for jobs in ("-1", "many", "1025"):
            self.assertEqual(self.run_program("run", "-d", dictionary, "--jobs", jobs, stdin="word\n")[0], 2)


class ProgressTest(ProgramTest):
    def on_terminal(self, *arguments):
        """What the program writes on a terminal that is its error stream."""
        reader, writer = pty.openpty()
        try:
            process = subprocess.Popen([PROGRAM, *arguments], cwd=self.directory, stdin=subprocess.DEVNULL,
                                       stdout=subprocess.PIPE, stderr=writer)
            os.close(writer)
            process.stdout.read()
            process.stdout.close()
            process.wait(60)
            shown = b""
            while True:
                try:
                    chunk = os.read(reader, 65536)
                except OSError:  # The other end is closed.
                    break
                if not chunk:
                    break
                shown += chunk
        finally:
            os.close(reader)
        return shown.decode()

    def test_the_bar(self):
        self.write("readings.txt", "word\nother\n" * 2000)
        arguments = ["run", "-d", self.dictionary("word"), "readings.txt"]
        for jobs in ("1", "2"):
            shown = self.on_terminal(*arguments, "-j", jobs)
            self.assertRegex(shown, r"\[#* *\] +\d+ %  \d+ readings, \d+/s, [\d.]+ % with a result, \d+:\d\d left")
            self.assertTrue(shown.endswith("\r\x1b[K"), "the bar is removed at the end")
        self.assertEqual(self.on_terminal(*arguments, "--progress", "never"), "")

    def test_the_share_with_a_result(self):
        self.write("readings.txt", "word\n" + "other\n" * 3)
        shown = self.on_terminal("run", "-d", self.dictionary("word"), "readings.txt")
        self.assertIn("100.0 % with a result", re.split("readings", shown)[1])

    def test_no_bar_where_nobody_looks(self):
        self.write("readings.txt", "word\n" * 2000)
        code, _, err = self.run_program("run", "-d", self.dictionary("word"), "readings.txt")
        self.assertEqual((code, err), (0, ""))


if __name__ == "__main__":
    unittest.main()
