"""Fieldings in the dictionary file, what runs make of them, and the command `fit`."""

import json
import unittest

from program import ProgramTest


def candidates(*positions):
    """A reading from texts, one a position, whose characters are the candidates."""
    return json.dumps({"positions": [[[character, 90 - k] for k, character in enumerate(position)]
                                     for position in positions]}) + "\n"


class FieldingsTest(ProgramTest):
    def answers(self, command, dictionary, readings, *arguments):
        self.write("dictionary.json", dictionary)
        code, out, err = self.run_program(command, "--json", "-d", "dictionary.json", *arguments, stdin=readings)
        self.assertIn(code, (0, 1), err)
        answers = [json.loads(line) for line in out.splitlines()]
        self.assertEqual(code, 0 if all(answer["results"] for answer in answers) else 1)
        return answers

    def matches(self, line, reading):
        """Whether a reading, a line of text, is the line without an edit."""
        answer, = self.answers("run", {"fieldings": [line]}, reading + "\n")
        return bool(answer["results"])

    def admitted(self, line):
        """The 7-bit characters that the first position of a line of one position admits."""
        codes = [code for code in range(1, 0x80) if chr(code) not in "\r\n"]
        answers = self.answers("run", {"fieldings": [line]},
                               "".join(json.dumps({"text": chr(code)}) + "\n" for code in codes))
        return {chr(code) for code, answer in zip(codes, answers) if answer["results"]}

    def assert_refused(self, line, path, *parts):
        self.write("dictionary.json", {"fieldings": ["99", line]})
        for command in ("run", "fit"):
            self.assert_trouble([command, "-d", "dictionary.json"], f"qoc: dictionary.json: /fieldings/1{path}: ",
                                *parts, stdin="12\n")

    def test_classes(self):
        upper, lower, digits = set(map(chr, range(65, 91))), set(map(chr, range(97, 123))), set("0123456789")
        every = {chr(code) for code in range(1, 0x80) if chr(code) not in "\r\n"}
        for name, expected in (("upper", upper), ("lower", lower), ("digit", digits), ("space", {" "}),
                               ("nonspace", every - {" "}), ("any", every)):
            with self.subTest(name=name):
                self.assertEqual(self.admitted([name]), expected)
                self.assertEqual(self.admitted([[name]]), expected)
                self.assertEqual(self.admitted([{"classes": name}]), expected)
        self.assertEqual(self.admitted([["upper", "digit"]]), upper | digits)
        self.assertEqual(self.admitted([{"characters": "-/"}]), set("-/"))
        self.assertEqual(self.admitted([{"classes": ["digit", "space"], "characters": "-A"}]), digits | set(" -A"))

    def test_signs_of_pictures(self):
        for sign, name in (("A", "upper"), ("a", "lower"), ("9", "digit"), ("*", "nonspace"), ("?", "any"),
                           ("_", "space")):
            with self.subTest(sign=sign):
                self.assertEqual(self.admitted(sign), self.admitted([name]))
                self.assertEqual(self.admitted("\\" + sign), {sign})
        for picture, character in (("\\\\", "\\"), ("-", "-"), ("\\-", "-"), ("B", "B"), (" ", " "), ("0", "0")):
            self.assertEqual(self.admitted(picture), {character})

    def test_pictures(self):
        self.assertTrue(self.matches("AA9999-99", "XY1234-56"))
        self.assertFalse(self.matches("AA9999-99", "XY1234+56"))
        self.assertFalse(self.matches("AA9999-99", "XY1234-5"))
        self.assertTrue(self.matches("LOT A9999A", "LOT Q1234B"))
        self.assertFalse(self.matches("LOT A9999A", "LIT Q1234B"))
        self.assertTrue(self.matches("\\A\\\\9_*?", "A\\9 x "))

    def test_a_line_of_positions(self):
        line = ["upper", ["upper", "digit"], {"characters": "-"}, {"classes": "digit", "characters": "X"}]
        for reading, expected in (("AB-1", True), ("A1-X", True), ("1A-1", False), ("AB-A", False), ("AB-", False)):
            with self.subTest(reading=reading):
                self.assertEqual(self.matches(line, reading), expected)

    def test_faults_of_pictures(self):
        self.assert_refused("", "", "the picture is empty")
        self.assert_refused("A9\\", "", "character 3: the backslash at the end marks nothing")
        self.assert_refused("A9\\\\\\", "", "character 5: the backslash at the end marks nothing")
        self.assert_refused("A9é", "", 'character 3: "é" lies beyond 7 bits')
        self.assert_refused("A\\é", "", 'character 3: "é" lies beyond 7 bits')
        self.assert_refused("A\uf800", "", "character 2: the character U+F800 is reserved")

    def test_faults_of_positions(self):
        self.assert_refused([], "", "the line has no position")
        self.assert_refused(5, "", "found 5; expected a line, as a picture or an array of positions")
        self.assert_refused(["digit", "letter"], "/1", 'found "letter"; expected a class, one of "upper", "lower"')
        self.assert_refused(["digit", ["upper", "letter"]], "/1/1", 'found "letter"; expected a class, one of')
        self.assert_refused(["digit", []], "/1", "the array is empty; expected at least one class")
        self.assert_refused([["upper", "upper"]], "/0/1", "the class stands there already")
        self.assert_refused([4], "/0", "found 4; expected a position")
        self.assert_refused([{}], "/0", 'the position admits nothing; expected "classes" or "characters" or both')
        self.assert_refused([{"class": "upper"}], "/0/class", "unknown key")
        self.assert_refused([{"classes": "letter"}], "/0/classes", 'found "letter"')
        self.assert_refused([{"classes": [1]}], "/0/classes/0", "found 1; expected a class")
        self.assert_refused([{"characters": ""}], "/0/characters", "the list is empty")
        self.assert_refused([{"characters": ["-"]}], "/0/characters", "expected the characters of the position")
        self.assert_refused([{"characters": "a-a"}], "/0/characters", 'the list holds a character twice ("a")')
        self.assert_refused([{"characters": "a\uf800"}], "/0/characters", "character 2: the character U+F800 is reser")
        self.assert_refused([{"characters": "a\uf802"}], "/0/characters", "character 2: the character U+F802 is reser")
        self.assert_refused([{"characters": "é"}], "/0/characters", 'character 1: "é" lies beyond 7 bits')
        self.write("dictionary.json", {"fieldings": "99"})
        self.assert_trouble(["run", "-d", "dictionary.json"], ': /fieldings: found "99"; expected an array of lines')

    def test_results_of_a_run(self):
        dictionary = {"fieldings": ["AA99"], "parameters": {"maxEdits": 1}}
        exact, other, edited = self.answers("run", dictionary,
                                            candidates("A", "B", "1", "2") + candidates("A", "8B", "lI1", "2") +
                                            candidates("A", "B", "-", "2"))
        result, = exact["results"]
        self.assertEqual((result["mode"], result["numEdits"], result["text"]), ("fielding", 0, "AB12"))
        result, = other["results"]
        self.assertEqual((result["numEdits"], result["text"]), (0, "AB12"))
        self.assertEqual(result["resultStringStatus"], ["primary", "secondary", "secondary", "primary"])
        result, = edited["results"]  # What digit it was is not known.
        self.assertEqual((result["numEdits"], result["text"]), (1, None))
        code, out, err = self.run_program("run", "-d", "dictionary.json", stdin="AB-2\n")
        self.assertEqual((code, err), (0, ""))
        self.assertRegex(out.splitlines()[1], r"^1 +AB-2 +AB∅2 +1 +fielding +\.\.x\. / \.\.x\.$")

    def test_characters_beyond_7_bits_are_left_out(self):
        dictionary = {"fieldings": ["A9-"], "swaps": {"sets": ["ocr-digits-letters"]}}
        one, two, none = self.answers("run", dictionary, candidates("A", "1é", "—-") + candidates("A", "é", "-") +
                                      candidates("A", "1", "-"), "--max-edits", "1")
        self.assertEqual(one["leftOut"], [{"position": 1, "candidate": ["é", 89]},
                                          {"position": 2, "candidate": ["—", 90]}])
        self.assertEqual((one["text"], one["results"][0]["text"]), ("A1—", "A1-"))
        self.assertEqual(one["results"][0]["given"], [[["A", 90]], [["1", 90]], [["-", 89]]])
        self.assertEqual(two["leftOut"], [{"position": 1, "candidate": ["é", 90]}])
        self.assertEqual(two["results"][0]["given"], [[["A", 90]], [[None, 0]], [["-", 90]]])
        self.assertEqual(two["results"][0]["resultStringStatus"], ["primary", "substituted", "primary"])
        self.assertEqual(none["leftOut"], [])
        code, out, err = self.run_program("run", "-d", "dictionary.json", stdin=candidates("A", "1é", "—-", "\x85"))
        self.assertEqual((code, err), (1, ""))
        self.assertEqual(out.splitlines()[2], "         left out, beyond 7 bits: é at 2, — at 3, \ufffd at 4")

    def test_without_fieldings_nothing_is_left_out(self):
        answer, = self.answers("run", {"lexicons": [{"words": ["é"]}]}, "é\n")
        self.assertEqual((answer["leftOut"], answer["results"][0]["text"]), ([], "é"))

    def fit(self, dictionary, readings, *arguments):
        return self.answers("fit", dictionary, readings, *arguments)

    def test_fit_keeps_swaps_and_fills(self):
        dictionary = {"fieldings": ["AA9_-A9"], "swaps": {"groups": ["0O"]}}
        answer, = self.fit(dictionary, candidates("A", "1B", "O", "x", "+", "B", "C"))
        result, = answer["results"]
        self.assertEqual((result["fielding"], result["mode"], result["text"]), (0, "fielding", None))
        self.assertEqual(result["positions"], [
            {"input": 0, "read": "A", "character": "A", "status": "primary"},
            {"input": 1, "read": "1", "character": "B", "status": "secondary"},
            {"input": 2, "read": "O", "character": "0", "status": "primarySwap"},
            {"input": 3, "read": "x", "character": " ", "status": "substituted"},
            {"input": 4, "read": "+", "character": "-", "status": "substituted"},
            {"input": 5, "read": "B", "character": "B", "status": "primary"},
            {"input": 6, "read": "C", "character": None, "status": "noMatch"},
        ])
        self.assertEqual(result["numEdits"], 3)

    def test_fit_adds_and_leaves_out(self):
        answer, = self.fit({"fieldings": ["AA99-A"]}, "B12-X;\n")
        result, = answer["results"]
        self.assertEqual([(entry["input"], entry["character"], entry["status"]) for entry in result["positions"]],
                         [(None, None, "inserted"), (0, "B", "primary"), (1, "1", "primary"), (2, "2", "primary"),
                          (3, "-", "primary"), (4, "X", "primary")])
        self.assertEqual((result["numEdits"], result["numIgnoredSuffixCharacters"]), (2, 1))

    def test_fit_table(self):
        self.write("dictionary.json", {"fieldings": ["9999", "AA99-"], "swaps": {"groups": ["0O"]}})
        code, out, err = self.run_program("fit", "-d", "dictionary.json", stdin="ABO2+\n")
        self.assertEqual((code, err), (0, ""))
        head, row = out.splitlines()
        self.assertIn("result", head)
        self.assertRegex(row, r"^1 +ABO2\+ +AB02- +1 +line 2 +\.\.~\.x / \.\.~\.x$")

    def test_fit_takes_the_line_with_the_fewest_edits(self):
        dictionary = {"fieldings": ["9999", "AA99", "A999"]}
        answer, = self.fit(dictionary, "AB12\n")
        self.assertEqual([result["fielding"] for result in answer["results"]], [1])
        answer, = self.fit(dictionary, "AB12\n", "--all")
        self.assertEqual([(result["fielding"], result["numEdits"]) for result in answer["results"]],
                         [(1, 0), (2, 1), (0, 2)])
        answer, = self.fit(dictionary, "....\n")
        self.assertEqual([result["fielding"] for result in answer["results"]], [0])

    def test_fit_leaves_out_characters_beyond_7_bits(self):
        answer, = self.fit({"fieldings": ["A9-"]}, candidates("A", "é1", "—"))
        self.assertEqual(answer["leftOut"], [{"position": 1, "candidate": ["é", 90]},
                                             {"position": 2, "candidate": ["—", 90]}])
        result, = answer["results"]
        self.assertEqual(result["text"], "A1-")
        self.assertEqual([(entry["read"], entry["character"], entry["status"]) for entry in result["positions"]],
                         [("A", "A", "primary"), ("é", "1", "primary"), ("—", "-", "substituted")])

    def test_empty_readings_have_no_fit(self):
        empty, full = self.fit({"fieldings": ["99"]}, "\n12\n")
        self.assertEqual((empty["results"], full["results"][0]["text"]), ([], "12"))

    def test_fit_parameters(self):
        dictionary = {"fieldings": ["AA99"]}
        best = lambda *arguments: self.fit(dictionary, "12\n", *arguments)[0]["results"][0]
        placed = lambda *arguments: [(entry["input"], entry["status"]) for entry in best(*arguments)["positions"]]
        self.assertEqual(placed(), [(None, "inserted"), (None, "inserted"), (0, "primary"), (1, "primary")])
        self.assertEqual(placed("--placement", "part"), [(0, "primary"), (1, "primary")])
        self.assertEqual(best("--placement", "part")["startFieldIndex"], 2)
        self.assertEqual(len(placed("--placement", "part", "--min-length", "3")), 3)
        self.assertEqual(len(placed("--placement", "part", "--max-length", "1")), 1)
        self.assertLessEqual(best("--placement", "part", "--max-skipped", "1")["startFieldIndex"], 1)
        dictionary["fitParameters"] = {"placement": "part", "ranking": "primary-secondary",
                                       "ignoreDeletedSpaces": False}
        result = best()
        self.assertEqual((result["startFieldIndex"], result["scoreStatusMask"], result["ignoreDeletedSpaces"]),
                         (2, 15, False))
        result = best("--placement", "whole", "--ranking", "primary", "--ignore-spaces")
        self.assertEqual((result["startFieldIndex"], result["scoreStatusMask"], result["ignoreDeletedSpaces"]),
                         (0, 3, True))

    def test_a_line_that_cannot_be_placed_has_no_result(self):
        answer, = self.fit({"fieldings": ["99"]}, "12\n", "--placement", "part", "--min-length", "3")
        self.assertEqual(answer["results"], [])

    def test_faults_of_fit(self):
        self.write("dictionary.json", {"fieldings": ["99"]})
        self.assert_trouble(["fit", "-d", "dictionary.json", "--min-length", "0"],
                            "fit parameters: the smallest length")
        self.assert_trouble(["fit", "-d", "dictionary.json", "--placement", "long-part", "--min-length", "3"],
                            "standard input:1: the line fielding is shorter than the smallest length", stdin="12\n",
                            output="reading  text                        result                      edits from      "
                                   "reading / result, position by position\n")
        self.assert_trouble(["fit", "-d", "dictionary.json", "--json"],
                            "standard input:1: the list holds a character twice", stdin=candidates("1", "22"))
        for fault, path, part in (({"placement": "all"}, "/placement", '"whole", "part" or "long-part"'),
                                  ({"minLength": 0}, "", "the smallest length is less than 1"),
                                  ({"maxEdits": 0}, "/maxEdits", "unknown key"),
                                  ({"trimEmptyEnds": 1}, "/trimEmptyEnds", "expected true or false")):
            self.write("dictionary.json", {"fieldings": ["99"], "fitParameters": fault})
            self.assert_trouble(["fit", "-d", "dictionary.json"], f": /fitParameters{path}: ", part)
        self.dictionary("word")
        self.assert_trouble(["fit", "-d", "dictionary.json"], "dictionary.json: the dictionary has no line")


if __name__ == "__main__":
    unittest.main()
