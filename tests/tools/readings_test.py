"""Readings: the formats, faults, standard input, big input, interruption."""

import json
import os
import select
import signal
import subprocess
import unittest

from program import DATA, PROGRAM, ProgramTest

MILLION = 1000000


class ReadingsTest(ProgramTest):
    def texts(self, *arguments, stdin=b"", expected=0):
        return [answer["text"] for answer in self.run_json("-d", self.dictionary("word", "äpfel"), *arguments,
                                                           stdin=stdin, expected=expected)]

    def test_standard_input(self):
        self.assertEqual(self.texts(stdin="word\nword\n"), ["word", "word"])
        self.assertEqual(self.texts("-", stdin="word"), ["word"])

    def test_files_in_order(self):
        self.write("a.txt", "word\n")
        self.write("b.ndjson", '{"text":"äpfel"}\n')
        answers = self.run_json("-d", self.dictionary("word", "äpfel"), "b.ndjson", "-", "a.txt", stdin="word\n")
        self.assertEqual([(answer["file"], answer["line"], answer["text"]) for answer in answers],
                         [("b.ndjson", 1, "äpfel"), ("standard input", 1, "word"), ("a.txt", 1, "word")])

    def test_crlf_and_byte_order_mark(self):
        self.assertEqual(self.texts(stdin=b"\xef\xbb\xbfword\r\nword\r\n"), ["word", "word"])
        self.assertEqual(self.texts(stdin=b'\xef\xbb\xbf{"text":"word"}\r\n\r\n{"text":"word"}\r\n'), ["word", "word"])

    def test_format_by_content_and_by_option(self):
        self.assertEqual(self.texts(stdin=' {"text":"word"}\n'), ["word"])
        self.assertEqual(self.texts("--from", "text", stdin='{"text":"word"}\n', expected=1), ['{"text":"word"}'])
        self.assert_trouble(["run", "--json", "-d", "dictionary.json", "--from", "ndjson"],
                            "standard input:1:1: not JSON", stdin="word\n")

    def test_empty_readings_have_no_result(self):
        self.assertEqual(self.texts(stdin="\nword\n", expected=1), ["", "word"])
        self.assertEqual(self.texts(stdin='{"text":""}\n', expected=1), [""])
        self.assertEqual(self.texts(stdin='{"text":"word","positions":[]}\n', expected=1), [""])

    def test_ids_are_given_back(self):
        lines = '{"id":"r1","text":"word"}\n{"id":7,"text":"word"}\n{"id":1.5,"text":"word"}\n{"text":"word"}\n'
        answers = self.run_json("-d", self.dictionary("word"), stdin=lines)
        self.assertEqual([answer["id"] for answer in answers], ["r1", 7, 1.5, None])

    def test_scores_are_given_back_as_they_came(self):
        scores = [93.2, 0.001, -5, 12345.678901, 21474836.47, -21474836.48, 1e-300, 0.004, 7.0, 33.333333333333336]
        positions = [[["abcdefghij"[i], score], ["z", score / 3]] for i, score in enumerate(scores)]
        answer, = self.run_json("-d", self.dictionary("abcdefghij"), stdin=json.dumps({"positions": positions}) + "\n")
        result, = answer["results"]
        self.assertEqual(result["given"], positions)
        self.assertEqual(result["givenSwap"], positions)
        for text in ("93.2", "-5", "12345.678901", "33.333333333333336"):
            self.assertIn(text, json.dumps(result["given"]))

    def test_equal_hundredths_keep_their_own_scores(self):
        positions = [[["a", 1.001]], [["a", 1.002]], [["a", 1.003]]]
        answer, = self.run_json("-d", self.dictionary("aaa"), stdin=json.dumps({"positions": positions}) + "\n")
        self.assertEqual(answer["results"][0]["given"], positions)

    def assert_refused(self, line, *parts):
        """A good reading before the fault is written in full, nothing of the faulty one or those behind it is."""
        dictionary = self.dictionary("word")
        good = b'{"id":"good","text":"word"}\n'
        fault = line if isinstance(line, bytes) else line.encode()
        code, out, err = self.run_program("run", "--json", "-d", dictionary, stdin=good + fault + b"\n" + good)
        self.assertEqual(code, 2, err)
        for part in ("qoc: standard input:2:", *parts):
            self.assertIn(part, err)
        self.assertEqual([json.loads(text)["id"] for text in out.splitlines()], ["good"])

    def test_broken_json(self):
        self.assert_refused('{"positions":[[["w",1]]', "standard input:2:24: not JSON")
        self.assert_refused('{"text":"word"} {', ":17: not JSON")
        self.assert_refused("word", ":1: not JSON")
        self.assert_refused('{"text":"\\ud800"}', "not JSON")
        self.assert_refused('{"text":"a","text":"b"}', 'the key "text" stands twice')
        self.assert_refused("{" * 1, "not JSON")
        self.assert_refused('{"a":' * 50000, "not JSON")

    def test_wrong_types(self):
        self.assert_refused("[]", " /: found array; expected a reading")
        self.assert_refused("{}", 'neither "positions" nor "text"')
        self.assert_refused('{"text":1}', " /text: found 1; expected the reading, as a string")
        self.assert_refused('{"id":[],"text":"word"}', " /id: found array; expected a string or a number")
        self.assert_refused('{"positions":{}}', " /positions: found object; expected an array of positions")
        self.assert_refused('{"positions":["w"]}', ' /positions/0: found "w"; expected a position')

    def test_candidates(self):
        self.assert_refused('{"positions":[[["w",1]],[]]}', " /positions/1: the position has no candidate")
        self.assert_refused('{"positions":[["w"]]}', ' /positions/0/0: found "w"; expected a candidate')
        self.assert_refused('{"positions":[[["w"]]]}', " /positions/0/0: ", "expected a candidate")
        self.assert_refused('{"positions":[[["w",1,2]]]}', " /positions/0/0: ", "expected a candidate")
        self.assert_refused('{"positions":[[["w",null]]]}', " /positions/0/0/1: found null; expected a score")
        self.assert_refused('{"positions":[[["w","1"]]]}', " /positions/0/0/1: ", "expected a score")
        self.assert_refused('{"positions":[[[1,1]]]}', " /positions/0/0/0: ", "expected a single character")
        self.assert_refused('{"positions":[[["",1]]]}', " /positions/0/0/0: ", "expected a single character")
        self.assert_refused('{"positions":[[["wo",1]]]}', " /positions/0/0/0: ", "expected a single character")

    def test_scores_out_of_range(self):
        for score in ("21474836.48", "-21474836.49", "1e300", "99999999999999999999999"):
            with self.subTest(score=score):
                self.assert_refused('{"positions":[[["w",1],["v",%s]]]}' % score, " /positions/0/1/1: ",
                                    "expected a score from -21474836.48 to 21474836.47")
        self.assert_refused('{"positions":[[["w",1e999]]]}', "a double can hold")
        self.assert_refused('{"positions":[[["w",NaN]]]}', "not JSON")

    def test_invalid_utf8(self):
        self.assert_refused(b'{"text":"a\xff"}', "standard input:2: byte 11 (0xFF) is not UTF-8; expected UTF-8 text")
        dictionary = self.dictionary("word")
        self.assert_trouble(["run", "--json", "-d", dictionary], "standard input:1: byte 3 (0xE4) is not UTF-8",
                            stdin=b"ab\xe4c\n")

    def test_reserved_characters(self):
        self.assert_refused('{"text":"a\\uf800"}', " /text: the character U+F800 is reserved")
        self.assert_refused('{"positions":[[["w",1],["\\uf801",1]]]}', " /positions/0/1/0: the character U+F801")
        self.assert_refused('{"text":"\\u0000"}', "the character U+0000 is reserved")
        self.assert_trouble(["run", "--json", "-d", "dictionary.json"], "standard input:1: the character U+FF000",
                            stdin="\U000ff000\n")

    def test_missing_readings(self):
        dictionary = self.dictionary("word")
        self.write("a.txt", "word\n")
        code, out, err = self.run_program("run", "--json", "-d", dictionary, "a.txt", "nowhere.txt")
        self.assertEqual(code, 2)
        self.assertIn("nowhere.txt: cannot open: No such file", err)
        self.assertEqual(len(out.splitlines()), 1)

    def test_a_reading_of_a_million_characters(self):
        dictionary = self.dictionary("word", "a" * MILLION, maxEdits=1)
        self.assertEqual(self.run_json("-d", dictionary, stdin="b" * MILLION + "\n", expected=1)[0]["results"], [])
        answers = self.run_json("-d", dictionary, "--max-edits", "0", stdin="a" * MILLION + "\nword\n")
        self.assertEqual([len(answer["results"][0]["dictionaryString"]) for answer in answers], [MILLION, 4])

    def test_a_million_positions(self):
        line = '{"positions":[' + ",".join(['[["b",1]]'] * MILLION) + "]}\n"
        answer, = self.run_json("-d", self.dictionary("word", maxEdits=1), stdin=line, expected=1)
        self.assertEqual((len(answer["text"]), answer["results"]), (MILLION, []))

    def test_memory_does_not_grow_with_the_input(self):
        def peak(num_readings):
            """The largest resident size of a run, in KiB."""
            command = [PROGRAM, "run", "--json", "-d", str(self.directory / self.dictionary("word"))]
            process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL)
            for _ in range(num_readings // 1000):
                process.stdin.write(b'{"positions":[[["w",9.5]],[["o",1]],[["r",2]],[["d",3]]]}\n' * 1000)
            process.stdin.close()
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
            self.assertEqual(process.returncode, 0)
            return usage.ru_maxrss

        self.assertLess(peak(40000), peak(4000) + 4096)

    def test_interruption_ends_after_finished_readings(self):
        fifo = self.directory / "readings"
        os.mkfifo(fifo)
        process = subprocess.Popen(
            [PROGRAM, "run", "--json", "-d", str(self.directory / self.dictionary("word")), str(fifo)],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        try:
            with open(fifo, "wb", buffering=0) as writer:
                writer.write(b"word\nword\nwor")  # The last line is not finished.
                out = b""
                while out.count(b"\n") < 2:
                    self.assertTrue(select.select([process.stdout], [], [], 60)[0], "no output within a minute")
                    chunk = os.read(process.stdout.fileno(), 65536)
                    self.assertNotEqual(chunk, b"")
                    out += chunk
                process.send_signal(signal.SIGINT)
                rest, err = process.communicate(timeout=60)
        finally:
            process.kill()
            process.communicate()
        self.assertEqual(process.returncode, 2)
        self.assertEqual(rest, b"")
        self.assertEqual([json.loads(line)["text"] for line in out.splitlines()], ["word", "word"])
        self.assertIn(b"interrupted after 2 finished readings", err)

    def test_interruption_of_a_long_match(self):
        # Every window of a long reading against every word takes far longer than the test waits.
        words = ["".join("abcdefgh"[(i >> 3 * k) % 8] for k in range(6)) for i in range(4000)]
        dictionary = self.dictionary(*words, maxEdits=2, window=True)
        self.write("readings.txt", "abcdefgh" * 20000 + "\n")
        process = subprocess.Popen([PROGRAM, "run", "--json", "-d", dictionary, "readings.txt"], cwd=self.directory,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        try:
            with self.assertRaises(subprocess.TimeoutExpired):
                process.wait(2)
            process.send_signal(signal.SIGINT)
            out, err = process.communicate(timeout=60)
        finally:
            process.kill()
            process.communicate()
        self.assertEqual((process.returncode, out), (2, b""))
        self.assertIn(b"interrupted after 0 finished readings", err)

    def test_a_full_disk_is_told(self):
        if not os.path.exists("/dev/full"):
            self.skipTest("this system has no /dev/full")
        with open("/dev/full", "wb") as full:
            done = subprocess.run([PROGRAM, "run", "--json", "-d", str(self.directory / self.dictionary("word"))],
                                  input=b"word\n", stdout=full, stderr=subprocess.PIPE, check=False)
        self.assertEqual(done.returncode, 2)
        self.assertIn(b"standard output: cannot write", done.stderr)

    def test_the_real_readings(self):
        self.write("dictionary.json", {"lexicons": [{"file": str(DATA / "words.txt")}], "parameters": {"maxEdits": 1}})
        with open(DATA / "readings.ndjson", encoding="utf-8") as file:
            readings = [json.loads(line) for line in file]
        answers = self.run_json("-d", "dictionary.json", DATA / "readings.ndjson", expected=1)
        self.assertEqual([(answer["id"], answer["text"]) for answer in answers],
                         [(reading["id"], reading["text"]) for reading in readings])
        for answer, reading in zip(answers, readings):
            for result in answer["results"]:
                self.assertEqual(result["given"], reading["positions"])
        pairs = [(reading, answer) for reading, answer in zip(readings, answers) if reading["kind"] == "word"]
        before = sum(reading["text"] == reading["truth"] for reading, _ in pairs)
        after = sum(bool(answer["results"]) and answer["results"][0]["dictionaryString"] == reading["truth"]
                    for reading, answer in pairs)
        self.assertGreater(after, before)


class JsonOutputTest(ProgramTest):
    FIELDS = {"text": str, "isComputed": bool, "given": list, "dictionaryString": str, "dictionaryCharacters": list,
              "resultStringStatus": list, "statusWRTInputStringSwapChar": list, "resultStringLineStatus": str,
              "deleted": list, "numIgnoredPrefixCharacters": int, "numIgnoredSuffixCharacters": int,
              "startFieldIndex": int, "scoreStatusMask": int, "mode": str, "givenSwap": list, "inputIndices": list,
              "valid": list, "numEdits": int, "ignoreDeletedSpaces": bool, "scoreIsCached": bool,
              "score": (int, float), "overlapInputString": int, "numInsertedIsCached": bool, "numInserted": int,
              "orderIndex": int, "numMatchedPositionsIsCached": bool, "numMatchedPositions": int}

    def test_every_field(self):
        answer, = self.run_json("-d", self.dictionary("word", maxEdits=1), stdin='{"id":"x","text":"ward"}\n')
        keys = ["type", "version", "file", "line", "id", "text", "leftOut", "resolved", "results"]
        self.assertEqual(list(answer), keys)
        self.assertEqual((answer["type"], answer["version"], answer["file"], answer["line"], answer["id"],
                          answer["text"]), ("reading", 1, "standard input", 1, "x", "ward"))
        result, = answer["results"]
        self.assertEqual(set(result), set(self.FIELDS))
        for field, kind in self.FIELDS.items():
            self.assertIsInstance(result[field], kind, field)

    def test_values(self):
        answer, = self.run_json("-d", self.dictionary("word"),
                                stdin='{"positions":[[["w",9.5]],[["0",8],["o",7.25]],[["r",2]],[["d",1]]]}\n')
        result, = answer["results"]
        self.assertTrue(result["isComputed"])
        self.assertEqual(result["mode"], "lexicon")
        self.assertEqual(result["dictionaryString"], "word")
        self.assertEqual([character for character, _ in result["dictionaryCharacters"]], list("word"))
        self.assertEqual(result["resultStringStatus"], ["primary", "secondary", "primary", "primary"])
        self.assertEqual(result["statusWRTInputStringSwapChar"], ["primary", "secondary", "primary", "primary"])
        self.assertEqual(result["resultStringLineStatus"], "secondary")
        self.assertEqual((result["numEdits"], result["deleted"]), (0, []))

    def test_a_left_out_position(self):
        answer, = self.run_json("-d", self.dictionary("word", maxEdits=1), stdin="woxrd\n")
        result, = answer["results"]
        self.assertEqual((result["deleted"], result["numEdits"]), ([2], 1))
        self.assertEqual(result["statusWRTInputStringSwapChar"],
                         ["primary", "primary", "deleted", "primary", "primary"])


if __name__ == "__main__":
    unittest.main()
