import json
import pickle

import pytest

import qoc
from qoc import Mode, PositionStatus


def test_a_result_explains_itself(fruit):
    (result,) = fruit.run("Aple", max_edits=1)
    assert result.text == "Apple"
    assert result.edits == 1
    assert result.mode is Mode.LEXICON
    assert result.statuses == [PositionStatus.PRIMARY] * 2 + [PositionStatus.INSERTED] + [PositionStatus.PRIMARY] * 2
    assert result.line_status is PositionStatus.INSERTED
    assert result.reading_statuses == [PositionStatus.PRIMARY] * 4
    assert result.inserted == [2]
    assert result.reading_indices == [0, 1, -1, 2, 3]
    assert result.given == qoc.Reading("Aple").positions
    assert [character for character, _ in result.characters] == list("Apple")
    assert repr(result) == "<Result 'Apple', 1 edit, lexicon>"


def test_candidates_and_their_scores_count():
    dictionary = qoc.Dictionary([["Plum"]])
    reading = qoc.Reading(["P", [("1", 60.5), ("l", 55.25)], "u", "m"])
    (result,) = dictionary.run(reading, ranking="primary-secondary")
    assert result.statuses[1] is PositionStatus.SECONDARY
    assert result.given[1] == [("1", 60.5), ("l", 55.25)]


def test_results_outlive_dictionary_and_list(fruit):
    result = qoc.Dictionary([["Apple"]]).run("Apple")[0]
    assert result.text == "Apple"


def test_all_results_come_ranked():
    results = qoc.Dictionary([["hat", "hate", "that"]]).run("hat", max_edits=1, best_only=False)
    assert [(result.text, result.edits) for result in results][0] == ("hat", 0)
    assert {result.text for result in results} == {"hat", "hate", "that"}
    assert [result.edits for result in results] == sorted(result.edits for result in results)


def test_nothing_fits(fruit):
    assert fruit.run("Banana") == []
    assert fruit.run("") == []


def test_parameters_belong_to_the_dictionary_and_can_be_changed(fruit):
    assert fruit.parameters == qoc.Parameters()
    tolerant = fruit.with_parameters(max_edits=1)
    assert tolerant.run("Aple") and not fruit.run("Aple")
    assert not tolerant.run("Aple", max_edits=0)
    assert fruit.run("Aple", qoc.Parameters(max_edits=1))
    assert not tolerant.run("Aple", qoc.Parameters())
    with pytest.raises(TypeError):
        fruit.run("Aple", maxEdits=1)


@pytest.mark.parametrize(
    ("changes", "name"),
    [
        ({"min_length": 0}, "QOC_STATUS_MIN_LENGTH_INVALID"),
        ({"min_length": 3, "max_length": 2}, "QOC_STATUS_LENGTHS_REVERSED"),
    ],
)
def test_the_library_refuses_parameters_by_name(fruit, changes, name):
    with pytest.raises(qoc.Error) as caught:
        fruit.run("Aple", **changes)
    assert caught.value.name == name
    assert caught.value.status < 0
    assert isinstance(caught.value, ValueError)


def test_other_parameters_of_the_wrong_kind_are_refused(fruit):
    with pytest.raises(ValueError, match="primary-secondary"):
        fruit.run("Aple", ranking="best")
    with pytest.raises((TypeError, RuntimeError)):
        fruit.run("Aple", max_edits="1")


def test_reads_the_programs_dictionary_files(tmp_path):
    (tmp_path / "words.txt").write_text("Äpfel\nBirnen\n", encoding="utf-8")
    path = tmp_path / "dictionary.json"
    path.write_text(json.dumps({"lexicons": [{"file": "words.txt"}], "parameters": {"maxEdits": 1}}))
    dictionary = qoc.Dictionary.from_file(path)
    assert dictionary.parameters == qoc.Parameters(max_edits=1)
    assert dictionary.run("Apfel")[0].text == "Äpfel"


@pytest.mark.parametrize(
    ("content", "message"),
    [
        ('{"lexicons": [{"words": ["a", "a"]}]}', "/lexicons/0/words/1: duplicate"),
        ('{"lexicons": [{"file": "absent.txt"}]}', "absent.txt"),
        ('{"lexicon": []}', "unknown key"),
        ("{", "not JSON"),
    ],
)
def test_faults_of_a_file_name_the_place(tmp_path, content, message):
    path = tmp_path / "dictionary.json"
    path.write_text(content)
    with pytest.raises(qoc.Error, match=message) as caught:
        qoc.Dictionary.from_file(path)
    assert str(path) in str(caught.value) or str(tmp_path) in str(caught.value)


def test_an_absent_file_is_named(tmp_path):
    with pytest.raises(qoc.Error, match="absent.json"):
        qoc.Dictionary.from_file(tmp_path / "absent.json")


def test_what_is_no_list_of_word_lists_is_refused():
    with pytest.raises(TypeError):
        qoc.Dictionary("words")
    with pytest.raises(TypeError):
        qoc.Dictionary(["words"])


def test_survives_pickle_and_dict(fruit):
    dictionary = fruit.with_parameters(max_edits=1, without_inserted=True)
    for other in (pickle.loads(pickle.dumps(dictionary)),):
        assert other == dictionary
        assert other.parameters == dictionary.parameters
    content = json.loads(json.dumps(fruit.with_parameters(max_edits=1).to_dict()))
    assert qoc.Dictionary.from_dict(content) == fruit.with_parameters(max_edits=1)


def test_rows_are_plain_values(fruit):
    readings = ["Aple", "nothing", qoc.Reading("Pear")]
    rows = list(qoc.rows(readings, fruit.run_many(readings, max_edits=1)))
    assert [row["text"] for row in rows] == ["Apple", None, "Pear"]
    assert rows[0]["mode"] == "lexicon"
    assert rows[0]["statuses"] == "primary primary inserted primary primary"
    assert rows[1]["rank"] == -1
    assert rows[2]["given"] == "Pear"
    assert {type(value) for row in rows for value in row.values()} <= {int, float, str, type(None)}
    with pytest.raises(ValueError):
        list(qoc.rows(readings, []))


def test_shapes_and_swaps_work_as_in_the_file():
    dictionary = qoc.Dictionary(fieldings=["AA-99"], swaps={"groups": ["O0", "B8"]})
    (result,) = dictionary.run("8C-O1")
    assert result.text == "BC-01"
    assert result.mode is Mode.FIELDING
    assert pickle.loads(pickle.dumps(dictionary)) == dictionary
    modern = qoc.Dictionary([["modern"]], swaps={"sequences": [["rn", "m"]]})
    assert modern.run("modem")[0].text == "modern"
    assert pickle.loads(pickle.dumps(modern)) == modern


def test_an_open_position_has_no_text():
    dictionary = qoc.Dictionary(fieldings=["A9"])
    (result,) = dictionary.run("A", max_edits=1)
    assert result.text is None
    assert [character for character, _ in result.characters] == ["A", None]


def test_fieldings_pass_over_candidates_that_they_do_not_know():
    dictionary = qoc.Dictionary(fieldings=["A9"])
    assert dictionary.run([[("Ä", 90), ("A", 80)], "1"])[0].text == "A1"
    assert dictionary.run("Ä1") == []
    assert [len(results) for results in dictionary.run_many(["A1", "Ä1"])] == [1, 0]


def test_a_reading_is_forced_into_the_best_fielding():
    dictionary = qoc.Dictionary(fieldings=["99", "A9"], swaps={"groups": ["B8"]})
    fielding, result = dictionary.fit([[("8", 90)], "7"])
    assert (fielding, result.text) == (0, "87")
    fielding, result = dictionary.fit([[("B", 90), ("3", 20)], "7"], placement="whole")
    assert result.text in ("B7", "87", "37")
    assert result.mode is Mode.FIELDING
    assert dictionary.fit("") is None
    with pytest.raises(ValueError, match="placement"):
        dictionary.fit("A7", placement="half")
    with pytest.raises(qoc.Error):
        dictionary.fit([[("A", 1), ("A", 2)], "7"])


def test_expressions_match_and_survive():
    dictionary = qoc.Dictionary(expressions=["[A-Z]{2}[0-9]+ä?"])
    (result,) = dictionary.run("AB12ä")
    assert (result.text, result.mode) == ("AB12ä", Mode.REGULAR_EXPRESSION)
    assert pickle.loads(pickle.dumps(dictionary)) == dictionary
    with pytest.raises(qoc.Error, match="regularExpressions/0"):
        qoc.Dictionary(expressions=["(a"])


def test_fit_parameters_come_from_the_file_and_go_back():
    content = {"fieldings": ["A9"], "fitParameters": {"placement": "part", "minReach": 1}}
    dictionary = qoc.Dictionary.from_dict(content)
    assert dictionary.fit_parameters == qoc.FitParameters(placement="part", min_reach=1)
    assert dictionary.to_dict()["fitParameters"] == content["fitParameters"]
    assert pickle.loads(pickle.dumps(dictionary)) == dictionary
