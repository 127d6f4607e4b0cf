"""The documentation of the package."""

import doctest
import importlib
import inspect
import pathlib
import pkgutil
import pydoc

import pytest

import dataengine

MODULES = ["dataengine"] + [f"dataengine.{module.name}" for module in
                            pkgutil.iter_modules(dataengine.__path__) if module.name != "_core"]


@pytest.mark.parametrize("name", MODULES)
def test_examples(name):
    module = importlib.import_module(name)
    assert module.__doc__
    assert doctest.testmod(module, optionflags=doctest.ELLIPSIS).failed == 0


def test_help_describes_everything_public():
    for name in dataengine.__all__:
        part = getattr(dataengine, name)
        if not inspect.isclass(part):
            continue
        assert inspect.getdoc(part), name
        for attribute, value in vars(part).items():
            if not attribute.startswith("_"):
                assert inspect.getdoc(value), f"{name}.{attribute}"
    text = pydoc.plain(pydoc.render_doc(dataengine.FrameReader))
    assert "open(self, data: 'Any') -> 'Frame'" in text


def test_the_example_of_the_readme(capsys):
    text = (pathlib.Path(__file__).parents[2] / "README.md").read_text()
    exec(text.split("```python\n")[1].split("```")[0], {})
    assert capsys.readouterr().out.splitlines() == [
        "['Gi0/1', 'Gi0/2']", "[1000 --]", "  ifName  speed", "0  Gi0/1   1000", "1  Gi0/2   <NA>"]
