import pathlib

import hypothesis
import pytest

import qoc

# Nothing is written beside the sources, and a slow machine is no fault.
hypothesis.settings.register_profile("qoc", database=None, deadline=None)
hypothesis.settings.load_profile("qoc")

DATA = pathlib.Path(__file__).resolve().parents[3] / "tests" / "data"


@pytest.fixture
def fruit():
    return qoc.Dictionary([["Apple", "Pear", "Plum"]])


@pytest.fixture(scope="session")
def words():
    return qoc.Dictionary([{"file": "words.txt"}], directory=DATA)


@pytest.fixture(scope="session")
def data():
    return DATA
