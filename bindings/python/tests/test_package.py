import ast
import importlib.resources
import inspect

import pytest

import qoc
from qoc import _qoc


def stub():
    return ast.parse((importlib.resources.files("qoc") / "_qoc.pyi").read_text(encoding="utf-8"))


def public_names(owner):
    return {name for name in vars(owner) if not name.startswith("_")}


def test_the_stub_names_what_the_extension_has():
    declared = {}
    for node in stub().body:
        if isinstance(node, ast.ClassDef):
            declared[node.name] = {
                item.name if isinstance(item, ast.FunctionDef) else item.target.id
                for item in node.body
                if not (isinstance(item, ast.FunctionDef) and item.name.startswith("_"))
            }
        elif isinstance(node, ast.AnnAssign):
            declared[node.target.id] = None
    assert set(declared) == public_names(_qoc)
    for name, members in declared.items():
        if members is not None:
            assert members == public_names(getattr(_qoc, name)), name


def test_the_package_is_typed():
    assert (importlib.resources.files("qoc") / "py.typed").is_file()


def test_the_enumerations_are_the_librarys():
    assert {status.label: status.value for status in qoc.PositionStatus} == _qoc.position_statuses
    assert {mode.label: mode.value for mode in qoc.Mode} == _qoc.modes
    assert {outcome.label: outcome.value for outcome in qoc.Outcome} == _qoc.outcomes


@pytest.mark.parametrize("name", qoc.__all__)
def test_everything_public_is_described(name):
    thing = getattr(qoc, name)
    assert inspect.getdoc(thing)
    for member in public_names(thing) if inspect.isclass(thing) else ():
        value = inspect.getattr_static(thing, member)
        if callable(value) or isinstance(value, (property, classmethod, staticmethod)):
            assert inspect.getdoc(value), f"{name}.{member}"


def test_the_parameters_are_the_extensions():
    core = _qoc.Dictionary.read_text('{"lexicons": [{"words": ["a"]}]}', "name", "")
    assert qoc.Parameters(**core.parameters()) == qoc.Parameters()
    assert qoc.FitParameters(**core.fit_parameters()) == qoc.FitParameters()
