"""The command explain: results laid over readings, what statuses mean, why a result ranks where it does."""

import json
import unittest

from program import ProgramTest


class ExplainTest(ProgramTest):
    READING = '{"id":"r1","positions":[[["w",90.5]],[["0",80],["o",72.25]],[["r",99]],[["x",50]],[["d",93]]]}\n'

    def explain(self, *arguments, stdin, expected=0):
        code, out, err = self.run_program("explain", "--json", *arguments, stdin=stdin)
        self.assertEqual(code, expected, err)
        return [json.loads(line) for line in out.splitlines()]

    def marks(self, result):
        return "".join(position["mark"] for position in result["positions"])

    def test_text(self):
        code, out, err = self.run_program("explain", "-d", self.dictionary("word", maxEdits=1), stdin=self.READING)
        self.assertEqual((code, err), (0, ""))
        self.assertEqual(out, """reading r1 (standard input:1): "w0rxd", 1 result

  result 1: "word", 1 edit, from words
    read  w0rxd
          .:.-.
    is    wor·d
       2  :  secondary: candidate 2, score 72.25; printed was "0", score 80
       4  -  deleted: left out
          .  primary: the first candidate, at 3 positions

""")

    def test_inserted(self):
        answer, = self.explain("-d", self.dictionary("hate", maxEdits=1), stdin="hte\n")
        result, = answer["results"]
        self.assertEqual([(position["position"], position["read"], position["is"], position["status"])
                          for position in result["positions"]],
                         [(0, "h", "h", "primary"), (None, None, "a", "inserted"), (1, "t", "t", "primary"),
                          (2, "e", "e", "primary")])
        self.assertEqual(answer["type"], "explanation")
        self.assertEqual(answer["version"], 1)

    def test_substituted_and_ignored(self):
        answer, = self.explain("-d", self.dictionary("word", maxEdits=1, window=True), stdin="a wxrd here\n")
        self.assertIn(",,.x..,,,,,", [self.marks(result) for result in answer["results"]])

    def test_swaps(self):
        dictionary = self.write("swaps.json", {"lexicons": [{"words": ["SOS", "corn", "modern"]}],
                                               "swaps": {"groups": ["5S", "0O"], "sequences": [["rn", "m"]]}})
        answer, = self.explain("-d", dictionary, stdin="50S\n")
        self.assertEqual(self.marks(answer["results"][0]), "::.")
        self.assertEqual(answer["results"][0]["positions"][0]["meaning"],
                         'no candidate is "S", but "5" may stand for it')
        answer, = self.explain("-d", dictionary, stdin="com\n")
        self.assertEqual([(position["read"], position["is"]) for position in answer["results"][0]["positions"]],
                         [("c", "c"), ("o", "o"), ("m", "r"), (None, "n")])
        answer, = self.explain("-d", dictionary, stdin="rnodem\n")
        self.assertEqual("".join(position["is"] for position in answer["results"][0]["positions"]), "modern")
        self.assertEqual(answer["results"][0]["positions"][0]["read"], "rn")
        self.assertIn('"rn" swapped', answer["results"][0]["positions"][0]["meaning"])

    def test_every_result_and_what_decided(self):
        dictionary = self.dictionary("word", "wore", "ward", "wo", maxEdits=1)
        reading = '{"positions":[[["w",9]],[["o",8],["a",7]],[["r",9]],[["d",5],["e",4]]]}\n'
        answer, = self.explain("-d", dictionary, stdin=reading)
        results = answer["results"]
        self.assertEqual(results[0]["text"], "word")
        self.assertIsNone(results[0]["decidedBy"])
        self.assertEqual([result["rank"] for result in results], list(range(1, len(results) + 1)))
        self.assertEqual(results[1]["decidedBy"],
                         {"key": "first candidates used", "before": "4", "here": "3", "order": "higher first"})
        _, out, _ = self.run_program("explain", "-d", dictionary, stdin=reading)
        self.assertIn("behind result 1 by first candidates used: 3 against 4, higher first", out)
        self.assertIn("ranks first", out)

    def test_the_deciding_key_is_the_first_that_differs(self):
        # Edits come before everything else.
        answer, = self.explain("-d", self.dictionary("word", "cord", maxEdits=1), stdin="word\n")
        self.assertEqual((answer["results"][0]["text"], answer["results"][0]["decidedBy"]), ("word", None))
        self.assertEqual(answer["results"][1]["decidedBy"], {"key": "edits", "before": "0", "here": "1", "order": "lower first"})

    def test_the_orders_have_keys_of_their_own(self):
        # One word leaves out the last character, the other one replaces it.
        dictionary = self.dictionary("ab", "abx", maxEdits=1)
        found = {}
        for order in ("edits", "primary", "primary-secondary"):
            answer, = self.explain("-d", dictionary, "--ranking", order, stdin="abc\n")
            first, second = answer["results"][:2]
            found[order] = (first["text"], second["text"], *second["decidedBy"].values())
        self.assertEqual(found["edits"], ("abx", "ab", "characters left out", "0", "1", "lower first"))
        for order in ("primary", "primary-secondary"):
            self.assertEqual(found[order], ("ab", "abx", "worst status", "primary", "substituted", "lower first"))

    def test_selection(self):
        lines = '{"id":"a","text":"word"}\n{"id":7,"text":"word"}\n{"id":"b","text":"other"}\n'
        dictionary = self.dictionary("word")
        self.assertEqual([answer["id"] for answer in self.explain("-d", dictionary, "--id", "7", stdin=lines)], [7])
        self.assertEqual(self.explain("-d", dictionary, "--id", "b", stdin=lines, expected=1)[0]["results"], [])
        self.assert_trouble(["explain", "-d", dictionary, "--id", "c"], 'no reading is called "c"', stdin=lines)

    def test_tsv(self):
        code, out, err = self.run_program("explain", "--tsv", "-d", self.dictionary("a\tb", maxEdits=1), stdin="a\tb\n")
        self.assertEqual((code, err), (0, ""))
        rows = [line.split("\t") for line in out.splitlines()]
        self.assertEqual(rows[0], ["file", "line", "id", "rank", "position", "read", "is", "status", "mark", "meaning"])
        self.assertEqual({len(row) for row in rows}, {10})
        self.assertEqual(rows[2][4:9], ["1", "\\t", "\\t", "primary", "."])

    def test_long_readings_are_broken_into_lines(self):
        text = "word" * 50
        code, out, _ = self.run_program("explain", "-d", self.dictionary(text), stdin=text + "\n")
        self.assertEqual(code, 0)
        self.assertEqual(out.count("    read  "), 3)

    def test_nothing_commands_the_terminal(self):
        code, out, _ = self.run_program("explain", "-d", self.dictionary("\x1b[1m", maxEdits=1),
                                        stdin='{"id":"\\u001b[2m","text":"\\u001b[1m"}\n')
        self.assertEqual(code, 0)
        self.assertNotIn("\x1b", out)
        _, out, _ = self.run_program("explain", "-d", self.dictionary("ab", maxEdits=1), "--color", "always", stdin="ax\n")
        self.assertIn("\x1b[31mx\x1b[0m", out)


class CheckTest(ProgramTest):
    def check(self, content, *arguments):
        self.write("dictionary.json", content)
        return self.run_program("check", "-d", "dictionary.json", *arguments)

    def test_no_faults(self):
        code, out, err = self.check({"lexicons": [{"words": ["a", "b"]}], "swaps": {"groups": ["5S"]}})
        self.assertEqual((code, err), (0, ""))
        self.assertIn("no faults; 1 word list with 2 words", out)
        code, out, _ = self.check({"lexicons": [{"words": ["a", "b"]}]}, "--json")
        summary, = [json.loads(line) for line in out.splitlines()]
        self.assertEqual((code, summary["type"], summary["version"], summary["faults"], summary["words"]),
                         (0, "check", 1, 0, 2))

    def test_all_faults_are_named(self):
        self.write("words.txt", "a\n\na\nb\uf801\n")
        content = {
            "lexicon": [], "more": 1,
            "lexicons": [{"words": ["a", "", "a", 4]}, {"file": "nowhere.txt"}, {"file": "words.txt"}, {}, "x"],
            "fieldings": ["AA99", [], ["upper", "uper", {"characters": "aa"}]],
            "swaps": {"groups": ["5", "SS", "ok"], "sequences": [["rn", "m"], ["a", "b"], 3], "sets": ["none"]},
            "parameters": {"maxEdits": -1, "window": 1, "other": 2},
            "fitParameters": {"placement": "there"},
        }
        code, out, err = self.check(content)
        self.assertEqual((code, err), (1, ""))
        for part in ("/lexicon: unknown key", "/more: unknown key", "/lexicons/0/words/1: empty word",
                     "/lexicons/0/words/2: duplicate", "/lexicons/0/words/3: found 4", "nowhere.txt: cannot open",
                     "words.txt:2: empty word", "words.txt:3: duplicate", "words.txt:4: the character U+F801",
                     "/lexicons/3: expected either", '/lexicons/4: found "x"', "/fieldings/1: the line has no position",
                     '/fieldings/2/1: found "uper"', "/fieldings/2/2/characters: ", "/swaps/groups/0: ", "/swaps/groups/1: ",
                     "/swaps/sequences/1: ", "/swaps/sequences/2: found 3", '/swaps/sets/0: found "none"',
                     "/parameters/maxEdits: ", "/parameters/window: ", "/parameters/other: unknown key",
                     "/fitParameters/placement: "):
            self.assertIn(part, out)
        self.assertTrue(out.splitlines()[-1].endswith(f"{len(out.splitlines()) - 1} faults"))
        code, out, _ = self.check(content, "--json")
        objects = [json.loads(line) for line in out.splitlines()]
        self.assertEqual((code, objects[-1]["type"], objects[-1]["faults"]), (1, "check", len(objects) - 1))
        self.assertEqual({found["type"] for found in objects[:-1]}, {"fault"})

    def test_the_first_of_them_ends_a_run(self):
        self.write("dictionary.json", {"lexicons": [{"words": ["", ""]}]})
        self.assert_trouble(["run", "-d", "dictionary.json"], "/lexicons/0/words/0", stdin="a\n")

    def test_an_empty_dictionary(self):
        code, out, _ = self.check({})
        self.assertEqual(code, 1)
        self.assertIn("no entries", out)

    def test_what_cannot_be_read(self):
        self.assert_trouble(["check", "-d", "nowhere.json"], "nowhere.json: cannot open")
        self.assertEqual(self.check('{"lexicons": [}')[0], 2)
        self.assertEqual(self.run_program("check")[0], 2)


if __name__ == "__main__":
    unittest.main()
