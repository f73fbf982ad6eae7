"""The package as a whole: records, enumeration, documentation and stubs."""

import ast
import copy
import inspect
import pathlib
import pickle

import kv_tr
import pytest

RECORDS = ("TR_PRM", "AFFIN_PRM", "typeXYs4Tr")
STUB = ast.parse(pathlib.Path(kv_tr.__file__).with_suffix(".pyi").read_text())


def members(body):
    """The public names of a module or class in the stub, with their nodes."""
    named = {}
    for node in body:
        name = getattr(node, "name", None) or getattr(getattr(node, "target", None), "id", "_")
        if isinstance(node, ast.Assign):
            name = node.targets[0].id
        if not name.startswith("_"):
            named.setdefault(name, node)
    return named


def parameters(node):
    return [argument.arg for argument in node.args.args + node.args.kwonlyargs]


def test_stubs_name_what_there_is():
    stub = members(STUB.body)
    assert set(stub) == set(kv_tr.__all__) | {"RuntimeError"}
    for name, node in stub.items():
        actual = getattr(kv_tr, name)
        assert actual.__doc__, name
        if isinstance(node, ast.FunctionDef) and inspect.isbuiltin(actual):
            signature = actual.__doc__.split(" -> ")[0]
            assert all(f"{parameter}: " in signature for parameter in parameters(node)), name
        if type(actual).__name__ != "pybind11_type":  # others have signatures of their own
            continue
        in_stub = members(node.body)
        assert set(in_stub) == {n for n in vars(actual) if not n.startswith("_")}, name
        for member, function in in_stub.items():
            documented = getattr(actual, member).__doc__ or ""
            assert documented or name in RECORDS, f"{name}.{member}"
            if inspect.isroutine(getattr(actual, member)):
                signature = documented.split(" -> ")[0].replace("(self: ", "(self")
                assert all(f"{p}: " in signature for p in parameters(function)[1:]), member


def test_stubs_tell_what_can_only_be_set():
    only_set = set()
    for name, node in members(STUB.body).items():
        kind = getattr(kv_tr, name)
        for member, actual in vars(kind).items() if isinstance(node, ast.ClassDef) else ():
            if name not in RECORDS and isinstance(actual, property) and actual.fset:
                annotation = ast.unparse(members(node.body)[member].annotation)
                assert annotation.startswith("_WriteOnly[") == (actual.fget is None), member
                only_set |= {member} if actual.fget is None else set()
    assert only_set == {"sInitDir", "udtTrAffinPrm", "udtTrPrmByDAT2M1"}


def test_the_enumeration_is_the_published_one():
    stub = members(next(n for n in STUB.body if getattr(n, "name", "") == "enuTR_TYPE").body)
    published = {name: ast.literal_eval(node.value) for name, node in stub.items()}
    assert {kind.name: kind.value for kind in kv_tr.enuTR_TYPE} == published
    assert all(getattr(kv_tr, name) is kv_tr.enuTR_TYPE[name] for name in published)


@pytest.mark.parametrize("record", [kv_tr.TR_PRM, kv_tr.AFFIN_PRM, kv_tr.typeXYs4Tr])
def test_every_field_of_a_record_is_its_own(record):
    fields = [name for name in vars(record) if not name.startswith("_")]
    values = {
        name: {"eType": kv_tr.TR_POLI_3, "sId": "é", "bNotUsed": True}.get(name, float(k + 1))
        for k, name in enumerate(fields)
    }
    made = record(**values)
    assert {name: getattr(made, name) for name in fields} == values
    assert made == copy.deepcopy(made) == pickle.loads(pickle.dumps(made)) != record()
    assert made == eval(repr(made), vars(kv_tr)) == record(*values.values())
    assert [name for name in vars(kv_tr.AFFIN_PRM) if name[0] == "d"][3:5] == ["dB1", "dB0"]


def test_a_star_import_leaves_pythons_names_alone():
    names = {}
    exec("from kv_tr import *", names)
    assert "clsTr" in names and "RuntimeError" not in names
