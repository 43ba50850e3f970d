"""The schema of dictionary files: it takes what the program takes, and refuses what the program refuses."""

import json
import unittest

from program import ProgramTest, ROOT

try:
    import jsonschema
except ImportError:
    jsonschema = None

EXAMPLES = sorted((ROOT / "examples").glob("*.json"))
GOOD = (
    {"lexicons": [{"words": ["a"], "duplicates": "skip"}], "parameters": {"maxEdits": 1, "ranking": "primary"}},
    {"fieldings": ["AA9999-99", "\\A\\\\?", "LOT A9"]},
    {"fieldings": [["upper", ["upper", "digit"], {"characters": "-"}, {"classes": "any", "characters": "X"}]]},
    {"fieldings": ["99"], "fitParameters": {"placement": "long-part", "trimEmptyEnds": False}},
    {"regularExpressions": ["[A-Z]+"]},
    {"lexicons": [{"words": ["a"]}],
     "swaps": {"sets": ["ocr-ligatures", "ocr-digits-letters"], "groups": ["0O"], "sequences": [["rn", "m"]]}},
)
BAD = (
    {"lexicons": [{"words": ["a"], "file": "b"}]},
    {"lexicons": [{"words": ["a"]}], "other": 1},
    {"fieldings": "99"}, {"fieldings": [""]}, {"fieldings": ["9\\"]}, {"fieldings": ["é"]}, {"fieldings": [[]]},
    {"fieldings": [["letter"]]}, {"fieldings": [[[]]]}, {"fieldings": [[["upper", "upper"]]]}, {"fieldings": [[{}]]},
    {"fieldings": [[{"characters": ""}]]}, {"fieldings": [[{"characters": "\uf800"}]]},
    {"fieldings": [[{"class": "upper"}]]},
    {"fieldings": ["99"], "fitParameters": {"placement": "all"}},
    {"fieldings": ["99"], "fitParameters": {"minLength": 0}},
    {"regularExpressions": "a"}, {"regularExpressions": [1]}, {"regularExpressions": [""]},
    {"swaps": {"sets": ["other"]}}, {"swaps": {"groups": ["a"]}}, {"swaps": {"groups": [""]}},
    {"swaps": {"groups": [["a", "b"]]}}, {"swaps": {"sequences": [["rn"]]}}, {"swaps": {"sequences": [["", "m"]]}},
    {"swaps": {"sequences": [["iii", "m"]]}}, {"swaps": {"other": []}}, {"swaps": []},
    {"parameters": {"maxEdits": -1}}, {"parameters": {"ranking": "best"}},
)


class SchemaTest(ProgramTest):
    def test_the_program_takes_the_examples(self):
        self.assertGreater(len(EXAMPLES), 5)
        for path in EXAMPLES:
            with self.subTest(path=path.name):
                self.assertEqual(self.run_program("run", "-d", path, stdin="")[0], 0)

    def test_the_program_takes_what_is_good_and_refuses_what_is_bad(self):
        for contents, expected in ((GOOD, 0), (BAD, 2)):
            for content in contents:
                with self.subTest(content=content):
                    self.write("dictionary.json", content)
                    self.assertEqual(self.run_program("swaps", "-d", "dictionary.json")[0], expected)

    @unittest.skipUnless(jsonschema, "the module jsonschema is not installed")
    def test_the_schema_says_the_same(self):
        schema = json.loads((ROOT / "docs" / "dictionary.schema.json").read_text(encoding="utf-8"))
        jsonschema.Draft202012Validator.check_schema(schema)
        validator = jsonschema.Draft202012Validator(schema)
        for path in EXAMPLES:
            with self.subTest(path=path.name):
                validator.validate(json.loads(path.read_text(encoding="utf-8")))
        for contents, expected in ((GOOD, True), (BAD, False)):
            for content in contents:
                with self.subTest(content=content):
                    self.assertEqual(validator.is_valid(content), expected)


if __name__ == "__main__":
    unittest.main()
