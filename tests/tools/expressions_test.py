"""Regular expressions in the dictionary file: what they match, and where their errors are shown."""

import json
import unittest

from program import ProgramTest


class ExpressionsTest(ProgramTest):
    def best(self, expression, reading, *arguments, **sections):
        """The best result for a reading, a line of a file of readings, or None."""
        self.write("dictionary.json", {"regularExpressions": [expression], **sections})
        code, out, err = self.run_program("run", "--json", "-d", "dictionary.json", *arguments, stdin=reading + "\n")
        self.assertIn(code, (0, 1), err)
        results = json.loads(out)["results"]
        return results[0] if results else None

    def assert_refused(self, expression, message, shown, caret):
        self.write("dictionary.json", {"regularExpressions": ["a", expression]})
        code, out, err = self.run_program("run", "-d", "dictionary.json", stdin="a\n")
        self.assertEqual((code, out), (2, ""))
        self.assertEqual(err, f"qoc: dictionary.json: /regularExpressions/1: {message}\n  {shown}\n  {' ' * caret}^\n")

    def test_matches(self):
        serial = "[A-Z]{2}[0-9]{4}-[0-9]{2}"
        result = self.best(serial, "AB1234-56")
        self.assertEqual((result["mode"], result["text"], result["numEdits"]), ("regularExpression", "AB1234-56", 0))
        self.assertIsNone(self.best(serial, "AB12345-6"))
        self.assertIsNone(self.best(serial, "xAB1234-56"))
        self.assertEqual(self.best(serial, "xAB1234-56", "--window")["text"], "AB1234-56")
        self.assertEqual(self.best("[a-zäöü]+\U00010400", "äpfel\U00010400")["text"], "äpfel\U00010400")

    def test_edits(self):
        self.assertEqual(self.best("[0-9]{3}", "1a23", "--max-edits", "1")["text"], "123")
        result = self.best("[0-9]{3}", "1a3", "--max-edits", "1")
        self.assertEqual((result["text"], result["numEdits"]), (None, 1))

    def test_candidates_go_before_swaps(self):
        reading = json.dumps({"positions": [[["0", 9], ["O", 8]], [["1", 9]]]})
        groups = {"groups": ["0DO"]}
        result = self.best("[A-Z]1", reading, swaps=groups)
        self.assertEqual((result["text"], result["resultStringStatus"]), ("O1", ["secondary", "primary"]))
        self.assertEqual(self.best("[A-Z]1", "01", swaps=groups)["text"], "D1")
        self.assertIsNone(self.best("[A-Z]1", "01"))

    def test_candidates_behind_swapped_sequences(self):
        reading = json.dumps({"positions": [[["r", 9]], [["n", 9]], [["0", 9], ["O", 8]]]})
        result = self.best("m[A-Z]", reading, swaps={"groups": ["0DO"], "sequences": [["rn", "m"]]})
        self.assertEqual(result["text"], "mO")
        reading = json.dumps({"positions": [[["m", 9]], [["0", 9], ["O", 8]]]})
        result = self.best("rn[A-Z]", reading, swaps={"groups": ["0DO"], "sequences": [["rn", "m"]]})
        self.assertEqual(result["text"], "rnO")

    def test_table(self):
        self.write("dictionary.json", {"regularExpressions": ["[0-9]{2}-[0-9]"]})
        code, out, err = self.run_program("run", "-d", "dictionary.json", stdin="12-3\n")
        self.assertEqual((code, err), (0, ""))
        self.assertRegex(out.splitlines()[1], r"^1 +12-3 +12-3 +0 +pattern +\.\.\.\. / \.\.\.\.$")

    def test_errors_show_the_place(self):
        self.assert_refused("[A-Z]{2}(*)", "the regular expression repeats nothing", "[A-Z]{2}(*)", 9)
        self.assert_refused("ab)", "the regular expression has an unbalanced parenthesis", "ab)", 2)
        self.assert_refused("äöü[", "the regular expression opens a class and does not close it", "äöü[", 3)
        self.assert_refused("a\tb\\q", "the regular expression has a malformed backslash sequence", "a\u2409b\\q", 3)
        self.assert_refused("a\uf801b", "the character U+F801 is reserved; expected characters other than U+0000, "
                            "U+F800 to U+F8FF and U+FF000 to U+FFFFD", "a\uf801b", 1)

    def test_long_expressions_are_cut(self):
        self.assert_refused("a" * 100 + "(*)" + "b" * 100, "the regular expression repeats nothing",
                            "…" + "a" * 59 + "(*)" + "b" * 18 + "…", 61)

    def test_other_faults(self):
        for content, path, part in (("a", "", 'found "a"; expected an array of regular expressions'),
                                    ([1], "/0", "found 1; expected a regular expression, as a string"),
                                    ([""], "/0", "the expression is empty")):
            self.write("dictionary.json", {"regularExpressions": content})
            self.assert_trouble(["run", "-d", "dictionary.json"], f"dictionary.json: /regularExpressions{path}: {part}")

    def test_check_names_every_fault(self):
        self.write("dictionary.json", {"regularExpressions": ["a(", "b", "[c"]})
        code, out, _ = self.run_program("check", "--json", "-d", "dictionary.json")
        *faults, summary = map(json.loads, out.splitlines())
        self.assertEqual((code, summary["faults"]), (1, 2))
        self.assertEqual([fault["message"].splitlines()[1:] for fault in faults], [["  a(", "   ^"], ["  [c", "  ^"]])


if __name__ == "__main__":
    unittest.main()
