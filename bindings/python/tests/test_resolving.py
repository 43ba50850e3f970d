"""One text for a reading, and how sure it is."""

import json
import pickle

import pytest

import qoc
from qoc import Mode, Outcome


@pytest.fixture
def digits():
    return qoc.Dictionary(expressions=["[0-9]{2}"])


def scored(*positions):
    """Candidates ten points behind each other, from 90 on."""
    return [[(character, 90 - 10 * rank) for rank, character in enumerate(position)] for position in positions]


def test_a_text_that_leads_is_sure(digits):
    resolution = digits.resolve(scored("1", "74"), min_margin=20)
    assert (resolution.outcome, resolution.is_sure, resolution.text) == (Outcome.SURE, True, "17")
    assert resolution.margin == 20.0
    assert resolution.mode is Mode.REGULAR_EXPRESSION
    assert resolution.check is None
    assert bool(resolution)
    assert [result.text for result in resolution.results] == ["17"]
    (text,) = resolution.texts
    assert (text.text, text.total, text.margin, text.open, text.rank) == ("17", 180.0, 20.0, 0, 0)
    assert text.characters == [("1", 90.0), ("7", 90.0)]
    assert (text.reading_indices, text.candidate_indices) == ([0, 1], [0, 0])
    assert repr(resolution) == "<Resolution '17', sure>"
    assert repr(text) == "<ResolvedText '17', margin 20.0>"


def test_the_margin_decides(digits):
    assert digits.resolve(scored("1", "74"), min_margin=21).outcome is Outcome.UNSURE
    assert qoc.Dictionary(expressions=["[0-9]{2}"], resolving={"minMargin": 10}).resolve(scored("1", "74")).is_sure


def test_nothing_that_fits_is_none(digits):
    resolution = digits.resolve(scored("A", "B"))
    assert resolution.outcome is Outcome.NONE
    assert (resolution.text, resolution.margin, resolution.check, resolution.mode) == (None, None, None, None)
    assert (resolution.texts, resolution.results) == ([], [])
    assert not resolution
    assert repr(resolution) == "<Resolution none>"


def test_alternatives_come_behind_the_best(digits):
    texts = digits.resolve(scored("13", "74"), alternatives=2).texts
    assert texts[0].text == "17"
    assert sorted(text.text for text in texts[1:]) == ["14", "37"]


def test_without_scores_there_is_no_margin():
    dictionary = qoc.Dictionary([["cat", "car", "dog"]])
    resolution = dictionary.resolve("dig", max_edits=1)
    assert (resolution.text, resolution.margin, resolution.is_sure) == ("dog", None, True)
    assert dictionary.resolve("cax", max_edits=1).outcome is Outcome.UNSURE


def test_check_digits_decide_and_survive():
    shape = {"regularExpressions": ["[0-9]{11}"], "checks": [{"method": "luhn", "parts": [[0]], "ignored": "-"}]}
    dictionary = qoc.Dictionary(expressions=["X"], shapes=[shape, "iso-date"], resolving={"requireCheck": True})
    reading = scored(*"7992739871", "03")
    for made in (dictionary, pickle.loads(pickle.dumps(dictionary)),
                 qoc.Dictionary.from_dict(json.loads(json.dumps(dictionary.to_dict())))):  # fmt: skip
        assert made == dictionary
        resolution = made.resolve(reading)
        assert (resolution.text, resolution.check, resolution.is_sure) == ("79927398713", True, True)
        assert made.resolve(scored("X")).outcome is Outcome.UNSURE
        assert made.resolve(scored("X"), require_check=False).is_sure
    assert dictionary != qoc.Dictionary(expressions=["X", "[0-9]{11}"], shapes=["iso-date"])


@pytest.mark.parametrize("threads", [1, 3])
def test_many_are_resolved_as_single_ones_are(words, data, threads):
    with open(data / "readings.ndjson", encoding="utf-8") as file:
        readings = [entry["positions"] for entry in map(json.loads, file) if entry["kind"] == "word"]
    resolutions = words.resolve_many(readings, threads=threads, max_edits=2)
    singles = [words.resolve(reading, max_edits=2) for reading in readings]
    assert [(r.text, r.margin, r.outcome) for r in resolutions] == [(r.text, r.margin, r.outcome) for r in singles]
    assert {r.outcome for r in resolutions} == {Outcome.SURE, Outcome.UNSURE, Outcome.NONE}


def test_rows_are_plain_values(digits):
    readings = [scored("1", "7"), "AB", "17"]
    rows = list(qoc.resolved_rows(readings, digits.resolve_many(readings)))
    assert [(row["given"], row["text"], row["outcome"]) for row in rows] == [
        ("17", "17", "sure"), ("AB", None, "none"), ("17", "17", "sure")]  # fmt: skip
    assert {type(value) for row in rows for value in row.values()} <= {int, float, str, bool, type(None)}
    with pytest.raises(ValueError):
        list(qoc.resolved_rows(readings, []))


def test_what_is_out_of_range_is_refused(digits):
    for changes in ({"min_margin": -1}, {"min_margin": float("nan")}, {"alternatives": 1000}, {"threads": 0}):
        with pytest.raises(ValueError):
            digits.resolve_many(["17"], **changes)
    with pytest.raises(qoc.Error, match="reading 0"):
        digits.resolve_many(["17"], min_length=-1)
    with pytest.raises(qoc.Error, match="/resolving/minMargin"):
        qoc.Dictionary([["a"]], resolving={"minMargin": -1})


def test_progress_is_reported(digits):
    seen = []
    digits.resolve_many(["17"] * 50, progress=lambda done, total: seen.append((done, total)))
    assert seen[-1] == (50, 50)
