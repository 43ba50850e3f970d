"""The module and the program say the same of the same dictionary file and readings."""

import json
import os
import subprocess

import pytest
from hypothesis import HealthCheck, example, given, settings, strategies as st

import qoc

program = os.environ.get("QOC_PROGRAM")
pytestmark = pytest.mark.skipif(not program, reason="the program is not built")

characters = st.sampled_from("abcA1\u00e4")
pictures = st.lists(st.text(st.sampled_from("Aa9*b"), min_size=1, max_size=4), max_size=2)
swaps = st.sampled_from([{}, {"groups": ["ab"]}, {"groups": ["bc"], "sequences": [["ab", "c"]]}])
words = st.lists(st.text(st.sampled_from("abcA1"), min_size=1, max_size=5), min_size=1, max_size=8, unique=True)
position = st.lists(st.tuples(characters, st.integers(0, 9999).map(lambda n: n / 100)), min_size=1, max_size=3)
readings = st.lists(st.lists(position, min_size=1, max_size=6), min_size=1, max_size=4)
parameters = st.fixed_dictionaries(
    {},
    optional={
        "maxEdits": st.integers(0, 4),
        "returnBestOnly": st.booleans(),
        "window": st.booleans(),
        "substitution": st.booleans(),
        "missing": st.booleans(),
        "extra": st.booleans(),
        "ranking": st.sampled_from(["edits", "primary", "primary-secondary"]),
    },
)


def by_program(path, given_readings):
    lines = "".join(json.dumps({"positions": positions}) + "\n" for positions in given_readings)
    done = subprocess.run(
        [program, "run", "--json", "--dictionary", path, "-"],
        input=lines, stdout=subprocess.PIPE, encoding="utf-8", check=False)  # fmt: skip
    assert done.returncode in (0, 1)
    return [json.loads(line) for line in done.stdout.splitlines()]


resolvings = st.fixed_dictionaries(
    {},
    optional={
        "minMargin": st.integers(0, 60),
        "alternatives": st.integers(0, 3),
        "requireCheck": st.booleans(),
        "swapPenalty": st.integers(0, 90),
        "confusions": st.just([{"read": "a", "meant": "b", "swapPenalty": 5}]),
    },
)


def described_text(text):
    return {
        "text": text.text,
        "total": text.total,
        "margin": text.margin,
        "mode": text.mode.label,
        "result": text.rank,
        "check": text.check,
        "open": text.open,
        "inputs": text.reading_indices,
        "candidates": text.candidate_indices,
    }


def described_resolution(resolution):
    texts = [described_text(text) for text in resolution.texts]
    best = texts[0] if texts else {}
    return {"outcome": resolution.outcome.label, **best, "alternatives": texts[1:]}


def described(result):
    return {
        "text": result.text,
        "numEdits": result.edits,
        "score": result.score,
        "mode": result.mode.label,
        "resultStringStatus": [status.label for status in result.statuses],
        "statusWRTInputStringSwapChar": [status.label for status in result.reading_statuses],
        "resultStringLineStatus": result.line_status.label if result.line_status else 0,
        "deleted": result.deleted,
        "numIgnoredPrefixCharacters": result.ignored_prefix,
        "numIgnoredSuffixCharacters": result.ignored_suffix,
        "startFieldIndex": result.start_field,
        "inputIndices": result.input_indices,
        "given": [[list(candidate) for candidate in candidates] for candidates in result.given],
        "valid": [[list(candidate) for candidate in candidates] for candidates in result.valid],
    }


@settings(max_examples=40, suppress_health_check=[HealthCheck.function_scoped_fixture])
@given(words, pictures, swaps, readings, parameters)
@example(  # A position of the reading as swaps have made it is not the one of that number in the reading as given.
    ["1"],
    ["a"],
    {"groups": ["bc"], "sequences": [["ab", "c"]]},
    [[[("b", 0.0)], [("c", 0.0)]]],
    {"returnBestOnly": False, "window": True},
)
def test_says_the_same(tmp_path, given_words, given_pictures, given_swaps, given_readings, given_parameters):
    path = tmp_path / "dictionary.json"
    content = {
        "lexicons": [{"words": given_words}],
        "fieldings": given_pictures,
        "swaps": given_swaps,
        "parameters": given_parameters,
    }
    path.write_text(json.dumps(content))
    dictionary = qoc.Dictionary.from_file(path)
    expected = [answer["results"] for answer in by_program(path, given_readings)]
    for ranked, results in zip(expected, dictionary.run_many(given_readings), strict=True):
        assert [described(result) for result in results] == [
            {key: entry[key] for key in described(result)} for entry, result in zip(ranked, results, strict=True)
        ]


@settings(max_examples=40, suppress_health_check=[HealthCheck.function_scoped_fixture])
@given(words, pictures, swaps, readings, parameters, resolvings, st.booleans())
def test_resolves_the_same(
    tmp_path, given_words, given_pictures, given_swaps, given_readings, given_parameters, given_resolving, has_scores
):
    if not has_scores:
        given_readings = [[[(c, 0) for c, _ in position] for position in reading] for reading in given_readings]
    path = tmp_path / "dictionary.json"
    content = {
        "lexicons": [{"words": given_words}],
        "fieldings": given_pictures,
        "shapes": [{"regularExpressions": ["1{2,4}"], "checks": [{"method": "luhn"}]}],
        "swaps": given_swaps,
        "parameters": given_parameters,
        "resolving": given_resolving,
    }
    path.write_text(json.dumps(content))
    dictionary = qoc.Dictionary.from_file(path)
    expected = [answer["resolved"] for answer in by_program(path, given_readings)]
    restored = qoc.Dictionary.from_dict(json.loads(json.dumps(dictionary.to_dict())))
    assert restored == dictionary
    for made in (dictionary, restored):
        resolutions = made.resolve_many(given_readings)
        assert [described_resolution(resolution) for resolution in resolutions] == expected
    assert described_resolution(dictionary.resolve(given_readings[0])) == expected[0]
