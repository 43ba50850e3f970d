"""The resolved text of `run`, ready shapes, check digits and rules of the dictionary file, and `learn`."""

import json
import random
import unittest

from program import ProgramTest


def reading(*positions, **fields):
    """A line of NDJSON. A position is a string of characters, each 10 points behind the one before it from 90 on."""
    return json.dumps({"positions": [[[character, 90 - 10 * i] for i, character in enumerate(position)]
                                     for position in positions], **fields}) + "\n"


class ResolvingTest(ProgramTest):
    def resolve(self, dictionary, stdin, *arguments):
        self.write("dictionary.json", dictionary)
        code, out, err = self.run_program("run", "--json", "-d", "dictionary.json", *arguments, stdin=stdin)
        self.assertIn(code, (0, 1), err)
        return [json.loads(line)["resolved"] for line in out.splitlines()]

    def test_a_text_with_a_lead_is_sure(self):
        resolved, = self.resolve({"regularExpressions": ["[0-9]{2}"]}, reading("1", "74"), "--min-margin", "20")
        self.assertEqual((resolved["outcome"], resolved["text"], resolved["alternatives"]), ("sure", "17", []))
        self.assertEqual((resolved["total"], resolved["margin"], resolved["inputs"], resolved["candidates"]),
                         (180, 20, [0, 1], [0, 0]))
        self.assertIsNone(resolved["check"])

    def test_the_margin_decides_between_sure_and_unsure(self):
        for margin, outcome in ((20, "sure"), (21, "unsure")):
            resolved, = self.resolve({"regularExpressions": ["[0-9]{2}"]}, reading("1", "74"), "--min-margin", margin)
            self.assertEqual(resolved["outcome"], outcome)

    def test_nothing_that_fits_is_none(self):
        resolved, = self.resolve({"regularExpressions": ["[0-9]{2}"]}, reading("A", "B"))
        self.assertEqual(resolved, {"outcome": "none", "alternatives": []})

    def test_alternatives_come_behind_the_best_text(self):
        resolved, = self.resolve({"regularExpressions": ["[0-9]{2}"]}, reading("13", "74"), "--alternatives", "2")
        self.assertEqual(resolved["text"], "17")
        self.assertEqual(sorted(text["text"] for text in resolved["alternatives"]), ["14", "37"])

    def test_two_words_that_fit_equally_are_unsure(self):
        resolved, = self.resolve({"lexicons": [{"words": ["winner", "winter"]}], "parameters": {"maxEdits": 1}},
                                 reading(*"winxer"))
        self.assertEqual((resolved["outcome"], resolved["margin"]), ("unsure", 0))

    def test_a_check_digit_decides(self):
        shape = {"regularExpressions": ["[0-9]{11}"], "checks": [{"method": "luhn"}]}
        digits = list("7992739871") + ["03"]
        resolved, = self.resolve({"shapes": [shape]}, reading(*digits))
        self.assertEqual((resolved["text"], resolved["check"], resolved["outcome"]), ("79927398713", True, "sure"))
        resolved, = self.resolve({"shapes": [shape]}, reading(*"79927398710"))
        self.assertEqual((resolved["text"], resolved["check"], resolved["outcome"]), ("79927398710", False, "unsure"))

    def test_a_check_can_be_demanded(self):
        dictionary = {"regularExpressions": ["[0-9]{2}"], "resolving": {"requireCheck": True}}
        self.assertEqual(self.resolve(dictionary, reading("1", "7"))[0]["outcome"], "unsure")
        dictionary = {"regularExpressions": ["[0-9]{2}"]}
        self.assertEqual(self.resolve(dictionary, reading("1", "7"), "--require-check")[0]["outcome"], "unsure")
        self.assertEqual(self.resolve(dictionary, reading("1", "7"))[0]["outcome"], "sure")

    def test_confusions_of_the_file_go_before_the_programs_own(self):
        dictionary = {"regularExpressions": ["[A-Z]"], "swaps": {"groups": ["0OD"]},
                      "resolving": {"confusions": [{"read": "0", "meant": "D", "swapPenalty": 5}]}}
        resolved, = self.resolve(dictionary, reading("0"), "--alternatives", "1")
        self.assertEqual((resolved["text"], resolved["total"], resolved["margin"]), ("D", 85, 40))

    def test_the_table_shows_the_text_its_margin_and_the_outcome(self):
        self.write("dictionary.json", {"shapes": ["container-number"]})
        code, out, err = self.run_program("run", "-d", "dictionary.json", stdin="CSQU3054383\n")
        self.assertEqual(code, 0, err)
        self.assertRegex(out, r"\n +sure +CSQU3054383 +margin -, check passed\n")

    def test_readings_without_scores_have_no_margin(self):
        words = {"lexicons": [{"words": ["winner", "winter"]}], "parameters": {"maxEdits": 2}}
        exact, = self.resolve(words, "winter\n", "--alternatives", "1")
        self.assertEqual((exact["outcome"], exact["text"], exact["margin"]), ("sure", "winter", None))
        self.assertEqual([(text["text"], text["margin"]) for text in exact["alternatives"]], [("winner", None)])
        nearer, = self.resolve(words, "wintex\n")
        self.assertEqual((nearer["outcome"], nearer["text"]), ("sure", "winter"))
        self.assertEqual(self.resolve(words, "winxer\n")[0]["outcome"], "unsure")
        unscored = json.dumps({"positions": [[[character, 0]] for character in "winxer"]}) + "\n"
        self.assertEqual(self.resolve(words, unscored)[0]["outcome"], "unsure")
        code, out, err = self.run_program("run", "--tsv", "-d", "dictionary.json", stdin="winter\n")
        self.assertEqual(code, 0, err)
        head, row = (line.split("\t") for line in out.splitlines())
        self.assertEqual(row[head.index("outcome"):head.index("margin") + 1], ["sure", "winter", "-"])

    def test_ready_sets_bring_their_penalties(self):
        for name, penalty in (("ocr-slashed-zeros", 45), ("ocr-learnt", 67.44)):
            resolved, = self.resolve({"regularExpressions": ["0"], "swaps": {"sets": [name]}}, reading("8"))
            self.assertEqual((resolved["text"], resolved["total"]), ("0", round(90 - penalty, 2)), name)

    def test_margins_are_counted_as_far_as_the_file_says(self):
        dictionary = {"regularExpressions": ["[0-9]"], "resolving": {"maxMargin": 7, "minMargin": 5}}
        self.assertEqual(self.resolve(dictionary, reading("17"))[0]["margin"], 7)

    def test_it_can_be_left_out(self):
        self.write("dictionary.json", {"regularExpressions": ["[0-9]{2}"]})
        answer, = self.run_json("-d", "dictionary.json", "--no-resolving", stdin="17\n")
        self.assertNotIn("resolved", answer)
        self.assertEqual(answer["results"][0]["text"], "17")

    def test_ready_shapes_take_what_they_describe(self):
        examples = {
            "iso-date": (["2026-11-21", "1999-01-31"], ["2026-13-01", "2026-11-32", "26-11-21"]),
            "iso-time": (["23:59", "00:00:00"], ["24:00", "12:60"]),
            "iso-date-time": (["2026-11-21T17:30:05Z", "2026-11-21T17:30+01:00"], ["2026-11-21 17:30"]),
            "account-code": (["GB82 WEST 1234 5698 7654 32", "DE89370400440532013000"],
                             ["GB82 WEST 1234 5698 7654 33", "DE8937"]),
            "vehicle-code": (["1M8GDM9AXKP042788", "11111111111111111"], ["1M8GDM9A1KP042788", "1M8GDM9AXKO042788"]),
            "passport-line": (["L898902C36UTO7408122F1204159ZE184226B<<<<<10"],
                              ["L898902C36UTO7408122F1204159ZE184226B<<<<<11",
                               "L898902C37UTO7408122F1204159ZE184226B<<<<<10"]),
            "gtin": (["73513537", "036000291452", "6291041500213"], ["6291041500214", "629104150021"]),
            "container-number": (["CSQU 305438 3", "TOLU4734787"], ["CSQU3054384", "CSQX3054383"]),
            "card-number": (["4111 1111 1111 1111", "4111111111111111"], ["4111 1111 1111 1112"]),
            "plate": (["B-AB 1234", "M X1"], ["B-AB 0123", "1-AB 12"]),
        }
        for name, (valid, invalid) in examples.items():
            with self.subTest(shape=name):
                for text, outcome in [(text, "sure") for text in valid] + [(text, "other") for text in invalid]:
                    resolved, = self.resolve({"shapes": [name]}, text + "\n")
                    self.assertEqual(resolved["outcome"] == "sure", outcome == "sure", text)

    def test_checks_that_do_not_fit_are_refused(self):
        def refused(shape, *parts):
            self.write("dictionary.json", {"shapes": [shape]})
            self.assert_trouble(["run", "-d", "dictionary.json"], "dictionary.json: /shapes/0", *parts, stdin="x\n")

        refused("no-such-shape", "iso-date")
        refused({"fieldings": ["99"], "checks": [{"method": "no"}]}, "/checks/0/method", "luhn")
        refused({"fieldings": ["99"], "checks": [{}]}, "method")
        refused({"fieldings": ["9999"], "checks": [{"method": "vehicle"}]}, "does not fit", "4 characters", "length")
        refused({"fieldings": ["9999"], "checks": [{"method": "luhn", "parts": [[2, 6]]}]}, "does not fit",
                "leaves the text")
        refused({"regularExpressions": ["9"], "checks": [{"method": "luhn", "parts": [[2, 2]]}]}, "refused", "empty")
        refused({"regularExpressions": ["9"], "checks": [{"method": "vehicle", "parts": [[0, 16]]}]}, "refused",
                "length")
        refused({"lexicons": [{"words": ["79927398713", "79927398710"]}], "checks": [{"method": "luhn"}]},
                "79927398710", "does not pass")

    def test_faulty_rules_are_refused(self):
        for resolving, part in (({"minMargin": -1}, "/resolving/minMargin"), ({"no": 1}, "/resolving/no"),
                                ({"confusions": [{"read": "ab", "meant": ""}]}, "/confusions/0/read"),
                                ({"confusions": [{"read": "a"}]}, "meant"), ({"alternatives": 1000}, "alternatives"),
                                ({"freeWord": {"x": 1}}, "/freeWord")):
            self.write("dictionary.json", {"lexicons": [{"words": ["a"]}], "resolving": resolving})
            self.assert_trouble(["run", "-d", "dictionary.json"], "dictionary.json: ", part, stdin="x\n")


class LearnTest(ProgramTest):
    def lessons(self, confused, seed=1, n=120):
        """Made readings of three digits; now and then one is read as what it is confused with, without the truth."""
        source = random.Random(seed)
        lines = []
        for i in range(n):
            truth = "".join(source.choice("0123456789") for _ in range(3))
            positions = []
            for character in truth:
                is_confused = character in confused and source.random() < 0.5
                positions.append(confused[character] if is_confused else character)
            lines.append(reading(*positions, truth=truth, id=f"{i}"))
        return "".join(lines)

    def learn(self, stdin, *arguments):
        self.write("dictionary.json", {"regularExpressions": ["[0-9]{3}"]})
        code, out, err = self.run_program("learn", "--json", "-d", "dictionary.json", *arguments, stdin=stdin)
        self.assertEqual(code, 0, err)
        return json.loads(out)

    def test_planted_confusions_are_found_and_help_on_readings_they_were_not_learnt_from(self):
        learnt = self.learn(self.lessons({"7": "T", "4": "A"}))
        self.assertEqual({(c["read"], c["meant"]) for c in learnt["confusions"]}, {("T", "7"), ("A", "4")})
        for confusion in learnt["confusions"]:
            self.assertEqual(confusion["times"], confusion["of"])
            self.assertGreater(confusion["right"], 0)
        self.assertEqual(sorted(learnt["dictionary"]["swaps"]["groups"]), ["4A", "7T"])
        before, after = learnt["crossValidation"]["before"], learnt["crossValidation"]["after"]
        self.assertEqual(sum(before.values()), 120)
        self.assertEqual(sum(after.values()), 120)
        self.assertEqual((after["right"], after["wrong"]), (120, 0))
        self.assertLess(before["right"], 100)

    def test_what_was_learnt_works_in_a_dictionary_file(self):
        learnt = self.learn(self.lessons({"7": "T"}))
        self.write("dictionary.json", {"regularExpressions": ["[0-9]{3}"], **learnt["dictionary"]})
        answer, = self.run_json("-d", "dictionary.json", stdin=reading("1", "T", "2"))
        self.assertEqual((answer["resolved"]["text"], answer["resolved"]["outcome"]), ("172", "sure"))

    def test_rare_confusions_are_left_alone(self):
        stdin = reading("T", "1", "2", truth="712") + reading("7", "1", "T", truth="717")
        self.assertEqual(self.learn(stdin)["confusions"], [])
        self.assertEqual([c["times"] for c in self.learn(stdin, "--threshold", "2")["confusions"]], [2])

    def test_two_characters_for_one_are_a_sequence(self):
        stdin = "".join(reading(*read, truth=truth) for read, truth in
                        [("1rn", "10"), ("rn2", "02"), ("3rn", "30"), ("rn4", "04")])
        self.write("dictionary.json", {"regularExpressions": ["[0-9]{2}"]})
        code, out, err = self.run_program("learn", "--json", "-d", "dictionary.json", stdin=stdin)
        self.assertEqual(code, 0, err)
        self.assertEqual(json.loads(out)["dictionary"]["swaps"]["sequences"], [["rn", "0"]])

    def test_readings_without_truth_teach_nothing(self):
        learnt = self.learn(reading("1", "2", "3"))
        self.assertEqual((learnt["readings"], learnt["withTruth"], learnt["confusions"]), (1, 0, []))


if __name__ == "__main__":
    unittest.main()
