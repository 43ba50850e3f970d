"""Swaps in the dictionary file: what they make equivalent, what runs make of them, and what messages of faults say."""

import json
import unittest

from program import ProgramTest


class SwapsTest(ProgramTest):
    def swaps(self, **swaps):
        """What `swaps --json` says of a dictionary: the groups, and the sequences."""
        self.write("dictionary.json", {"swaps": swaps})
        code, out, err = self.run_program("swaps", "--json", "-d", "dictionary.json")
        self.assertEqual((code, err), (0, ""))
        answer = json.loads(out)
        self.assertEqual((answer.pop("type"), answer.pop("version")), ("swaps", 1))
        self.assertEqual(sorted(answer), ["groups", "sequences"])
        return ["".join(group) for group in answer["groups"]], [tuple(swap.values()) for swap in answer["sequences"]]

    def read(self, reading, words, *arguments, **swaps):
        """The best result for a reading, a line of a file of readings, or None."""
        self.write("dictionary.json", {"lexicons": [{"words": words}], "swaps": swaps})
        code, out, err = self.run_program("run", "--json", "-d", "dictionary.json", *arguments, stdin=reading + "\n")
        self.assertIn(code, (0, 1), err)
        results = json.loads(out)["results"]
        return results[0] if results else None

    def assert_refused(self, swaps, *parts, **sections):
        self.write("dictionary.json", {"lexicons": [{"words": ["word"]}], "swaps": swaps, **sections})
        for command in ("run", "swaps"):
            self.assert_trouble([command, "-d", "dictionary.json"], "qoc: dictionary.json: /swaps", *parts,
                                stdin="word\n")

    def test_groups(self):
        self.assertEqual(self.swaps(groups=["O0", "lI1"]), (["0O", "1Il"], []))
        self.assertEqual(self.swaps(), ([], []))
        self.assertEqual(self.swaps(groups=[], sets=[], sequences=[]), ([], []))
        self.assertEqual(self.swaps(groups=["\U00010400é"]), (["é\U00010400"], []))

    def test_groups_that_share_a_character_count_as_one(self):
        self.assertEqual(self.swaps(groups=["0O", "OD", "1l"]), (["0DO", "1l"], []))

    def test_groups_stay_beside_sequences(self):
        # Two groups of two characters each are what swap characters alone cannot say.
        self.assertEqual(self.swaps(groups=["0O", "1l"], sequences=[["rn", "m"]]),
                         (["0O", "1l"], [("rn", "m", True)]))

    def test_sequences_and_their_directions(self):
        self.assertEqual(self.swaps(sequences=[["m", "rn"], ["vv", "yy"], ["AB", "B"]]),
                         ([], [("m", "rn", True), ("vv", "yy", False), ("AB", "B", True)]))

    def test_equal_sequences_stand_once(self):
        self.assertEqual(self.swaps(sets=["ocr-ligatures", "ocr-ligatures"], sequences=[["m", "rn"], ["rn", "m"]]),
                         self.swaps(sets=["ocr-ligatures"]))
        self.assertEqual(self.swaps(sequences=[["vv", "yy"], ["yy", "vv"], ["vv", "yy"]]),
                         ([], [("vv", "yy", False), ("yy", "vv", False)]))

    def test_ready_sets(self):
        digits = ["0DOQ", "1Il", "2Z", "5S", "6G", "8B"]
        ligatures = [("rn", "m", True), ("cl", "d", True), ("vv", "w", True), ("li", "h", True)]
        self.assertEqual(self.swaps(sets=["ocr-digits-letters"]), (digits, []))
        self.assertEqual(self.swaps(sets=["ocr-ligatures"]), ([], ligatures))
        self.assertEqual(self.swaps(sets=["ocr-ligatures", "ocr-digits-letters"]), (digits, ligatures))
        self.assertEqual(self.swaps(sets=["ocr-digits-letters"], groups=["l|", "ab"], sequences=[["ti", "n"]]),
                         (["0DOQ", "1Il|", "2Z", "5S", "6G", "8B", "ab"], [("ti", "n", True)]))

    def test_table(self):
        self.write("dictionary.json", {"swaps": {"groups": ["O0", "_ ", "\x1ba"],
                                                 "sequences": [["rn", "m"], ["vv", "yy"]]}})
        self.assertEqual(self.run_program("swaps", "--dictionary", "dictionary.json"),
                         (0, "\u241b a\n\u2423 _\n0 O\nrn <-> m\nvv -> yy\n", ""))
        self.write("dictionary.json", {"lexicons": [{"words": ["word"]}]})
        self.assertEqual(self.run_program("swaps", "-d", "dictionary.json"), (0, "no swaps\n", ""))

    def test_dictionary_from_standard_input(self):
        self.assertEqual(self.run_program("swaps", "-d", "-", stdin='{"swaps":{"groups":["ab"]}}'), (0, "a b\n", ""))

    def test_runs_swap_characters(self):
        self.assertIsNone(self.read("W0RD", ["WORD"]))
        result = self.read("W0RD", ["WORD"], groups=["0O", "1l"])
        self.assertEqual((result["text"], result["numEdits"]), ("WORD", 0))
        result = self.read("W0RT", ["WORD"], "--max-edits", "1", groups=["0O", "1l"])
        self.assertEqual(result["resultStringStatus"], ["primary", "primarySwap", "primary", "substituted"])
        result = self.read('{"positions":[[["W",9]],[["U",9],["0",8]],[["R",9]],[["T",9]]]}', ["WORD"],
                           "--max-edits", "1", groups=["0O"])
        self.assertEqual(result["resultStringStatus"], ["primary", "secondarySwap", "primary", "substituted"])
        self.assertIsNone(self.read("W0RD", ["WORD"], groups=["0U", "1l"]))

    def test_runs_swap_sequences(self):
        for reading in ("storm", "storrn"):
            for word in ("storm", "storrn"):
                result = self.read(reading, [word], sets=["ocr-ligatures"])
                self.assertEqual((result["text"], result["numEdits"]), (word, 0))
        self.assertEqual(self.read("avvay", ["ayyay"], sequences=[["vv", "yy"]])["text"], "ayyay")
        self.assertIsNone(self.read("ayyay", ["avvay"], sequences=[["vv", "yy"]]))

    def test_runs_swap_characters_and_sequences_together(self):
        result = self.read("st0rrn", ["storm"], sets=["ocr-ligatures"], groups=["0o", "1l"])
        self.assertEqual((result["text"], result["numEdits"]), ("storm", 0))

    def test_faults_of_groups(self):
        self.assert_refused({"groups": ["ab", ""]}, "/groups/1: ", 'the group "" is refused: ', "of the swap set is empty")
        self.assert_refused({"groups": ["ab", "c"]}, "/groups/1: ", 'the group "c" is refused: ', "a single character")
        self.assert_refused({"groups": ["0O0"]}, "/groups/0: ", 'the group "0O0" is refused: ', 'twice ("0")')
        self.assert_refused({"groups": ["a\uf800"]}, "/groups/0: ", "the character U+F800 is reserved")
        self.assert_refused({"groups": ["a\x00"]}, "/groups/0: ", "the character U+0000 is reserved")
        self.assert_refused({"groups": ["a\U000ff000"]}, "/groups/0: ", "the character U+FF000 is reserved")
        self.assert_refused({"groups": [["a", "b"]]}, "/groups/0: found array; expected a group")
        self.assert_refused({"groups": "ab"}, '/groups: found "ab"; expected an array of groups')

    def test_faults_of_sequences(self):
        self.assert_refused({"sequences": [["rn", "m"], ["", "m"]]}, "/sequences/1: ",
                            'the swap of "" and "m" is refused: the string is empty')
        self.assert_refused({"sequences": [["AB", "A"]]}, "/sequences/0: ",
                            'the swap of "AB" and "A" is refused: the sequences of the swap are equal, or one contains')
        self.assert_refused({"sequences": [["rn", "rn"]]}, "/sequences/0: ", "the sequences of the swap are equal")
        self.assert_refused({"sequences": [["m", "m"]]}, "/sequences/0: ", "the sequences of the swap are equal")
        self.assert_refused({"sequences": [["0", "O"]]}, "/sequences/0: ", "it swaps single characters", '"groups"')
        self.assert_refused({"sequences": [["iii", "m"]]}, "/sequences/0: ", "more than two characters has no effect")
        self.assert_refused({"sequences": [["r\uf801", "m"]]}, "/sequences/0: ", "the character U+F801 is reserved")
        self.assert_refused({"sequences": [["rn"]]}, "/sequences/0: found array; expected a swap of sequences")
        self.assert_refused({"sequences": [["rn", 1]]}, "/sequences/0/1: found 1; expected the second sequence")
        self.assert_refused({"sequences": ["rnm"]}, '/sequences/0: found "rnm"; expected a swap of sequences')

    def test_other_faults(self):
        self.assert_refused({"sets": ["ocr-digits"]}, '/sets/0: found "ocr-digits"; expected "ocr-digits-letters" or ')
        self.assert_refused({"sets": "ocr-ligatures"}, "/sets: found ", "expected an array of names")
        self.assert_refused([], ": found array; expected an object")
        self.assert_refused({"group": []}, '/group: unknown key; expected one of "sets", "groups", "sequences"')
        many = "".join(map(chr, range(0x100, 0x100 + 10001)))
        self.assert_refused({"groups": [many]}, "/groups/0: more than 10000 different characters")

    def test_beside_fieldings_swaps_lie_within_7_bits(self):
        self.assert_refused({"groups": ["0Ø"]}, "/groups/0: ", '"Ø" lies beyond 7 bits', fieldings=["99"])
        self.assert_refused({"sequences": [["fi", "ﬁ"]]}, "/sequences/0: ", '"ﬁ" lies beyond 7 bits', fieldings=["99"])

    def test_swaps_are_no_entries(self):
        self.write("dictionary.json", {"swaps": {"groups": ["0O"]}})
        self.assert_trouble(["run", "-d", "dictionary.json"], "dictionary.json: the dictionary has no entries")


if __name__ == "__main__":
    unittest.main()
