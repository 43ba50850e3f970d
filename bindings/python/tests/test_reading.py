import copy
import pickle

import pytest
from hypothesis import given, strategies as st

import qoc

characters = st.characters(blacklist_characters="\0").filter(
    lambda c: not (0xF800 <= ord(c) <= 0xF8FF or 0xFF000 <= ord(c) <= 0xFFFFD)
)
scores = st.integers(-(2**31), 2**31 - 1).map(lambda units: units / 100)
positions = st.lists(st.lists(st.tuples(characters, scores), min_size=1, max_size=4), max_size=8)


@given(positions)
def test_positions_come_back(given_positions):
    reading = qoc.Reading(given_positions)
    assert reading.positions == given_positions
    assert reading.text == "".join(candidates[0][0] for candidates in given_positions)
    assert len(reading) == len(given_positions)
    assert qoc.Reading(reading.positions) == reading


@given(positions)
def test_pickles_and_copies_are_equal(given_positions):
    reading = qoc.Reading(given_positions)
    for other in (pickle.loads(pickle.dumps(reading)), copy.deepcopy(reading)):
        assert other.positions == reading.positions


@given(st.text(characters))
def test_text_has_one_candidate_a_character(text):
    reading = qoc.Reading(text)
    assert reading.text == text
    assert reading.positions == [[(character, 0.0)] for character in text]


def test_equality_looks_at_characters_only():
    assert qoc.Reading([[("a", 1)]]) == qoc.Reading([[("a", 2)]])
    assert qoc.Reading("a") != qoc.Reading("b")
    assert qoc.Reading("a") != "a"


def test_scores_are_kept_in_hundredths():
    assert qoc.Reading([[("a", 97.126)]]).positions == [[("a", 97.13)]]


@pytest.mark.parametrize(
    ("source", "error", "message"),
    [
        (5, TypeError, "iterable"),
        ([5], TypeError, "iterable"),
        ([["a"]], TypeError, "a pair of a character and its score"),
        ([[("a",)]], TypeError, "a pair of a character and its score"),
        ([[("ab", 1)]], TypeError, "one character"),
        ([[(1, 1)]], TypeError, "one character"),
        ([[("a", "b")]], TypeError, "real number"),
        ([["ab"]], TypeError, "a pair"),
        (["ab"], ValueError, "one character"),
        ([""], ValueError, "one character"),
        ([[]], ValueError, "no candidate"),
        ([[("a", float("nan"))]], ValueError, "a score is nan"),
        ([[("a", float("inf"))]], ValueError, "a score is inf"),
        ([[("a", 21474836.48)]], ValueError, "a score is"),
        ("a\0", ValueError, r"U\+0000"),
        ("\uf801", ValueError, r"U\+F801"),
        ([[("\U000ff000", 1)]], ValueError, r"U\+FF000"),
    ],
)
def test_says_what_is_wrong(source, error, message):
    with pytest.raises(error, match=message):
        qoc.Reading(source)


def test_an_error_on_the_way_comes_through():
    def broken():
        yield "a"
        raise KeyError("enough")

    with pytest.raises(KeyError):
        qoc.Reading(broken())
