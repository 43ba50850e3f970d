"""The command line itself: help, version, bad usage, options, colours."""

import re
import unittest

from program import ProgramTest


class UsageTest(ProgramTest):
    def test_help(self):
        code, out, err = self.run_program("--help")
        self.assertEqual((code, err), (0, ""))
        self.assertIn("run", out)
        self.assertIn("Exit codes", out)

    def test_help_of_run_names_every_option_with_defaults(self):
        code, out, err = self.run_program("run", "--help")
        self.assertEqual((code, err), (0, ""))
        for option in ("--dictionary", "--max-edits", "--all", "--best", "--window", "--no-substitution",
                       "--no-missing", "--no-extra", "--min-length", "--max-length", "--ranking", "--json", "--from", "--color"):
            self.assertIn(option, out)
        for default in ("default 0", "default 1", "default 2147483647", "default edits", "default auto"):
            self.assertIn(default, re.sub(r"\s+", " ", out))

    def test_version(self):
        code, out, err = self.run_program("--version")
        self.assertEqual((code, err), (0, ""))
        self.assertRegex(out, r"^qoc \d+\.\d+\.\d+\n$")

    def test_bad_usage_ends_with_2(self):
        self.dictionary("word")
        for arguments in ([], ["walk"], ["run"], ["run", "--dictionary"], ["run", "-d", "dictionary.json", "--bad"],
                          ["run", "-d", "dictionary.json", "--max-edits", "-1"],
                          ["run", "-d", "dictionary.json", "--max-edits", "many"],
                          ["run", "-d", "dictionary.json", "--max-edits", "2147483648"],
                          ["run", "-d", "dictionary.json", "--ranking", "best"],
                          ["run", "-d", "dictionary.json", "--color", "red"],
                          ["run", "-d", "dictionary.json", "--from", "xml"],
                          ["run", "-d", "dictionary.json", "--best", "--all"],
                          ["run", "-d", "dictionary.json", "-", "-"],
                          ["run", "-d", "-"]):
            with self.subTest(arguments=arguments):
                code, out, err = self.run_program(*arguments, stdin="word\n")
                self.assertEqual(code, 2, err)
                self.assertEqual(out, "")
                self.assertNotEqual(err, "")

    def test_exit_codes(self):
        dictionary = self.dictionary("word")
        self.assertEqual(self.run_program("run", "-d", dictionary, stdin="word\nword\n")[0], 0)
        self.assertEqual(self.run_program("run", "-d", dictionary, stdin="word\nother\n")[0], 1)
        self.assertEqual(self.run_program("run", "-d", dictionary, stdin="")[0], 0)
        self.assertEqual(self.run_program("run", "-d", "nowhere.json", stdin="word\n")[0], 2)

    def test_parameters_are_validated(self):
        dictionary = self.dictionary("word")
        self.assert_trouble(["run", "-d", dictionary, "--min-length", "0"], "run parameters",
                            "the smallest length is less than 1")
        self.assert_trouble(["run", "-d", dictionary, "--min-length", "5", "--max-length", "4"], "run parameters",
                            "the smallest length is greater than the largest")

    def test_options_override_the_file(self):
        dictionary = self.dictionary("word", maxEdits=1)
        self.assertEqual(self.run_program("run", "-d", dictionary, stdin="ward\n")[0], 0)
        self.assertEqual(self.run_program("run", "-d", dictionary, "--max-edits", "0", stdin="ward\n")[0], 1)
        self.assertEqual(self.run_program("run", "-d", dictionary, "--no-substitution", stdin="ward\n")[0], 1)
        self.assertEqual(self.run_program("run", "-d", dictionary, stdin="wrd\n")[0], 0)
        self.assertEqual(self.run_program("run", "-d", dictionary, "--no-missing", stdin="wrd\n")[0], 1)
        self.assertEqual(self.run_program("run", "-d", dictionary, stdin="woord\n")[0], 0)
        self.assertEqual(self.run_program("run", "-d", dictionary, "--no-extra", stdin="woord\n")[0], 1)
        self.assertEqual(self.run_program("run", "-d", dictionary, "--max-edits", "0", "--min-length", "5",
                                          stdin="word\n")[0], 1)
        self.assertEqual(self.run_program("run", "-d", dictionary, "--max-edits", "0", "--max-length", "3",
                                          stdin="word\n")[0], 1)
        self.assertEqual(self.run_program("run", "-d", dictionary, stdin="a word here\n")[0], 1)
        self.assertEqual(self.run_program("run", "-d", dictionary, "--window", stdin="a word here\n")[0], 0)

    def test_options_restore_what_the_file_changed(self):
        dictionary = self.dictionary("word", maxEdits=1, substitution=False, window=True)
        self.assertEqual(self.run_program("run", "-d", dictionary, "--no-window", stdin="ward\n")[0], 1)
        self.assertEqual(self.run_program("run", "-d", dictionary, "--no-window", "--substitution",
                                          stdin="ward\n")[0], 0)

    def test_all_and_best(self):
        # Without an edit from the first candidates, and from the other ones.
        reading = '{"positions":[[["c",9]],[["a",8]],[["t",7],["r",6]]]}\n'
        dictionary = self.dictionary("cat", "car", "dog")
        best, = self.run_json("-d", dictionary, stdin=reading)
        every, = self.run_json("-d", dictionary, "--all", stdin=reading)
        self.assertEqual(len(best["results"]), 1)
        self.assertEqual(best["results"][0]["dictionaryString"], "cat")
        self.assertEqual([result["dictionaryString"] for result in every["results"]], ["cat", "car"])
        dictionary = self.dictionary("cat", "car", returnBestOnly=False)
        self.assertEqual(len(self.run_json("-d", dictionary, stdin=reading)[0]["results"]), 2)
        self.assertEqual(len(self.run_json("-d", dictionary, "--best", stdin=reading)[0]["results"]), 1)

    def test_ranking_by_scores(self):
        # Two words read without an edit; the second one from candidates with the higher scores.
        dictionary = self.dictionary("ab", "cd", returnBestOnly=False)
        reading = '{"positions":[[["a",10],["c",90]],[["b",10],["d",90]]]}\n'
        ranked = {}
        for order in ("edits", "primary", "primary-secondary"):
            answer, = self.run_json("-d", dictionary, "--ranking", order, stdin=reading)
            ranked[order] = [(result["dictionaryString"], result["scoreStatusMask"]) for result in answer["results"]]
        self.assertEqual({text for text, mask in ranked["edits"]}, {"ab", "cd"})
        self.assertEqual([mask for text, mask in ranked["primary-secondary"]], [15, 15])
        self.assertEqual([mask for text, mask in ranked["primary"]], [3, 3])
        self.assertEqual(ranked["primary"][0][0], "ab")

    def test_table(self):
        dictionary = self.dictionary("word", maxEdits=1)
        code, out, err = self.run_program("run", "-d", dictionary, stdin="ward\nother\n")
        self.assertEqual((code, err), (1, ""))
        head, first, resolved, second = out.splitlines()
        self.assertIn("result", head)
        self.assertRegex(first, r"^1 +ward +word +1 +words +\.x\.\. / \.x\.\.$")
        self.assertRegex(resolved, r"^ +sure +word +margin -$")
        self.assertRegex(second, r"^2 +other +no result$")

    def test_colours(self):
        dictionary = self.dictionary("word")
        for arguments, environment, is_colored in ((["--color", "auto"], {}, False), (["--color", "never"], {}, False),
                                                   (["--color", "always"], {}, True), ([], {}, False),
                                                   (["--color", "always"], {"NO_COLOR": "1"}, True)):
            with self.subTest(arguments=arguments):
                code, out, _ = self.run_program("run", "-d", dictionary, *arguments, stdin="word\n",
                                                environment=environment)
                self.assertEqual(code, 0)
                self.assertEqual("\x1b[" in out, is_colored)

    def test_the_table_passes_no_control_characters_on(self):
        dictionary = self.dictionary("word")
        code, out, _ = self.run_program("run", "-d", dictionary, stdin="\x1b[31mred\x07\n")
        self.assertEqual(code, 1)
        self.assertNotIn("\x1b", out)
        self.assertIn("\u241b[31mred\u2407", out)


if __name__ == "__main__":
    unittest.main()
