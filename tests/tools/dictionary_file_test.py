"""Dictionary files: what is read, and what each fault's message says."""

import json
import unittest

from program import ProgramTest, ROOT


class DictionaryFileTest(ProgramTest):
    def assert_refused(self, content, *parts):
        self.write("dictionary.json", content)
        self.assert_trouble(["run", "-d", "dictionary.json"], "qoc: dictionary.json:", *parts, stdin="word\n")

    def read(self, text, *arguments):
        """The dictionary text of the best result for a reading, or None."""
        code, out, err = self.run_program("run", "--json", "-d", "dictionary.json", *arguments, stdin=text + "\n")
        self.assertIn(code, (0, 1), err)
        results = json.loads(out)["results"]
        return results[0]["dictionaryString"] if results else None

    def test_missing_file(self):
        self.assert_trouble(["run", "-d", "nowhere.json"], "nowhere.json: cannot open: No such file")

    def test_directory(self):
        self.assert_trouble(["run", "-d", "."], ".: cannot read: ")

    def test_broken_json_names_line_and_column(self):
        self.assert_refused('{\n  "lexicons": [}\n', ":2:16: not JSON", "expected")
        self.assert_refused("", ":1:", "not JSON")
        self.assert_refused('{"lexicons": []', "not JSON")
        self.assert_refused('{"lexicons": []} more', ":1:18: not JSON")

    def test_column_counts_characters(self):
        self.assert_refused('{"lexicons": ["äöü" x]}', ":1:21: not JSON")
        # Begins as a byte order mark does, so that the parser stops within the character.
        self.assert_refused("\N{ARABIC LIGATURE LAM WITH ALEF ISOLATED FORM}", ":1:1: not JSON")

    def test_deep_nesting(self):
        self.assert_refused('{"lexicons":' + "[" * 100000, "not JSON")
        self.assert_refused('{"lexicons":' + "[" * 100000 + "]" * 100000 + "}", "/lexicons/0", "expected")

    def test_invalid_utf8(self):
        self.assert_refused(b'{"lexicons":\n [{"words": ["a\xff"]}]}', ":2: byte 16 (0xFF) is not UTF-8")

    def test_numbers_beyond_a_double(self):
        self.assert_refused('{"parameters": {"maxEdits": 1e999}}', "expected numbers that a double can hold")

    def test_wrong_types(self):
        self.assert_refused([], " /: found", "expected an object")
        self.assert_refused({"lexicons": {}}, " /lexicons: found", "expected an array")
        self.assert_refused({"lexicons": ["a"]}, ' /lexicons/0: found "a"; expected an object')
        self.assert_refused({"lexicons": [{"words": "a"}]}, " /lexicons/0/words: ", "expected an array of words")
        self.assert_refused({"lexicons": [{"words": ["a", "b", "c", 4]}]},
                            " /lexicons/0/words/3: found 4; expected a word, as a string")
        self.assert_refused({"lexicons": [{"file": 1}]}, " /lexicons/0/file: found 1; expected the path")
        self.assert_refused({"lexicons": [{"file": ""}]}, " /lexicons/0/file: ")
        self.assert_refused({"lexicons": [{"words": [], "duplicates": "no"}]}, " /lexicons/0/duplicates: ",
                            'expected "refuse" or "skip"')
        self.assert_refused({"parameters": []}, " /parameters: ", "expected an object")
        self.assert_refused({"parameters": {"maxEdits": "1"}}, ' /parameters/maxEdits: found "1"; expected a whole')
        self.assert_refused({"parameters": {"maxEdits": 1.5}}, " /parameters/maxEdits: found 1.5; expected a whole")
        self.assert_refused({"parameters": {"maxEdits": -1}}, " /parameters/maxEdits: found -1; expected a whole")
        self.assert_refused({"parameters": {"maxEdits": 2**31}}, " /parameters/maxEdits: ", "from 0 to 2147483647")
        self.assert_refused({"parameters": {"maxEdits": 2**64 - 1}}, " /parameters/maxEdits: ", "from 0 to 2147483647")
        self.assert_refused({"parameters": {"window": 1}}, " /parameters/window: found 1; expected true or false")
        self.assert_refused({"parameters": {"ranking": "score"}}, " /parameters/ranking: ", '"primary-secondary"')

    def test_unknown_keys(self):
        self.assert_refused({"lexicon": []}, " /lexicon: unknown key; expected one of ",
                            '"lexicons", "fieldings", "regularExpressions", "shapes", "swaps", "parameters", '
                            '"fitParameters", "resolving"')
        self.assert_refused({"lexicons": [{"word": []}]}, " /lexicons/0/word: unknown key", '"words", "file"')
        self.assert_refused({"parameters": {"max/edits": 1}}, " /parameters/max~1edits: unknown key", '"maxEdits"')

    def test_keys_with_characters_that_command_a_terminal(self):
        self.assert_refused({"parameters": {"a\x00\x1b[1m": 1}}, " /parameters/a\u2400\u241b[1m: unknown key",
                            '"maxEdits"')

    def test_keys_that_stand_twice(self):
        self.assert_refused('{"lexicons": [],\n "lexicons": []}', ':2:11: the key "lexicons" stands twice')
        self.assert_refused('{"lexicons": [{"words": [], "words": []}]}', 'the key "words" stands twice')

    def test_words_and_file(self):
        self.assert_refused({"lexicons": [{}]}, ' /lexicons/0: expected either "words" or "file"')
        self.assert_refused({"lexicons": [{"words": [], "file": "x"}]}, ' /lexicons/0: expected either')

    def test_no_path_has_a_zero_character(self):
        self.write("words.txt", "a\n")
        self.assert_refused({"lexicons": [{"file": "words.txt\x00x"}]}, ' /lexicons/0/file: found "words.txt\\u0000x"; '
                            "expected the path of a text file with one word a line")

    def test_parameters_are_validated(self):
        self.assert_refused({"lexicons": [{"words": ["a"]}], "parameters": {"minLength": 0}},
                            " /parameters: the smallest length is less than 1")
        self.assert_refused({"lexicons": [{"words": ["a"]}], "parameters": {"minLength": 3, "maxLength": 2}},
                            " /parameters: the smallest length is greater than the largest")

    def test_no_entries(self):
        self.assert_refused({}, "the dictionary has no entries")
        self.assert_refused({"lexicons": []}, "the dictionary has no entries")

    def test_empty_and_duplicate_words(self):
        self.assert_refused({"lexicons": [{"words": ["a", ""]}]}, " /lexicons/0/words/1: empty word")
        self.assert_refused({"lexicons": [{"words": ["x"]}, {"words": ["a", "b", "a"]}]}, " /lexicons/1/words/2: ",
                            "duplicate of the word at dictionary.json: /lexicons/1/words/0")

    def test_skipped_duplicates(self):
        self.write("dictionary.json", {"lexicons": [{"words": ["a", "", "b", "a"], "duplicates": "skip"}]})
        self.assertEqual(self.read("a"), "a")
        self.assertEqual(self.read("b"), "b")
        code, out, _ = self.run_program("run", "--json", "--all", "-d", "dictionary.json", stdin="a\n")
        self.assertEqual((code, len(json.loads(out)["results"])), (0, 1))

    def test_reserved_characters(self):
        for code in (0, 0xF800, 0xF801, 0xF8FF, 0xFF000, 0xFFFFD):
            with self.subTest(code=hex(code)):
                self.assert_refused({"lexicons": [{"words": ["a" + chr(code)]}]}, " /lexicons/0/words/0: ",
                                    f"the character U+{code:04X} is reserved")
        self.write("dictionary.json", {"lexicons": [{"words": ["\uf7ff\uf900\U000fefff\U000fffff"]}]})
        self.assertEqual(self.read("\uf7ff\uf900\U000fefff\U000fffff"), "\uf7ff\uf900\U000fefff\U000fffff")

    def test_word_file(self):
        (self.directory / "lists").mkdir()
        self.write("lists/words.txt", b"\xef\xbb\xbfcrlf\r\n two words \n\xc3\xa4pfel")
        self.write("lists/dictionary.json", {"lexicons": [{"file": "words.txt"}]})
        for word in ("crlf", " two words ", "äpfel"):
            answer, = self.run_json("-d", "lists/dictionary.json", stdin=word + "\n")
            self.assertEqual(answer["results"][0]["dictionaryString"], word)

    def assert_word_file_refused(self, content, *parts):
        self.write("words.txt", content)
        self.write("dictionary.json", {"lexicons": [{"file": "words.txt"}]})
        self.assert_trouble(["run", "-d", "dictionary.json"], *parts, "dictionary.json: /lexicons/0/file", stdin="a\n")

    def test_faults_of_word_files(self):
        self.assert_word_file_refused("a\n\nb\n", "words.txt:2: empty word")
        self.assert_word_file_refused("a\r\n\r\nb\n", "words.txt:2: empty word")
        self.assert_word_file_refused("a\nb\na\n", "words.txt:3: duplicate of the word at words.txt:1")
        self.assert_word_file_refused(b"a\nb\nab\xc3\n", "words.txt:3: byte 3 (0xC3) is not UTF-8")
        self.assert_word_file_refused("a\nb\uf800\n", "words.txt:2: the character U+F800 is reserved")
        self.assert_word_file_refused(b"a\x00\n", "words.txt:1: the character U+0000 is reserved")
        self.write("dictionary.json", {"lexicons": [{"file": "nowhere.txt"}]})
        self.assert_trouble(["run", "-d", "dictionary.json"], "nowhere.txt: cannot open: No such file",
                            "/lexicons/0/file", stdin="a\n")

    def test_skipped_duplicates_of_a_word_file(self):
        self.write("words.txt", "a\n\nb\na\n")
        self.write("dictionary.json", {"lexicons": [{"file": "words.txt", "duplicates": "skip"}]})
        self.assertEqual(self.read("b"), "b")

    def test_dictionary_from_standard_input(self):
        self.write("readings.txt", "word\n")
        answer, = self.run_json("-d", "-", "readings.txt", stdin='{"lexicons": [{"words": ["word"]}]}')
        self.assertEqual(answer["results"][0]["dictionaryString"], "word")

    def test_the_schema_knows_the_keys(self):
        with open(ROOT / "docs" / "dictionary.schema.json", encoding="utf-8") as file:
            properties = json.load(file)["properties"]
        self.assert_known_keys({"unknown": 1}, properties)
        self.assert_known_keys({"swaps": {"unknown": 1}}, properties["swaps"]["properties"])
        for section in ("parameters", "fitParameters"):
            parameters = properties[section]["properties"]
            defaults = {key: parameter["default"] for key, parameter in parameters.items()}
            self.write("dictionary.json", {"lexicons": [{"words": ["word"]}], section: defaults})
            self.assertEqual(self.read("word"), "word")
            self.assert_known_keys({section: {"unknown": 1}}, parameters)

    def assert_known_keys(self, content, keys):
        self.write("dictionary.json", content)
        _, _, err = self.run_program("run", "-d", "dictionary.json", stdin="")
        self.assertEqual({word for word in err.split('"') if word.isalpha()}, set(keys))


if __name__ == "__main__":
    unittest.main()
