"""The documentation of the package."""

import doctest
import importlib
import inspect
import pathlib
import pkgutil
import pydoc

import dask.bag
import pytest

import dataengine
import dataengine.dask

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


def example_of(page):
    text = (pathlib.Path(__file__).parents[2] / page).read_text()
    return text.split("```python\n")[1].split("```")[0]


def test_the_example_of_the_readme(capsys):
    exec(example_of("README.md"), {})
    assert capsys.readouterr().out.splitlines() == [
        "['Gi0/1', 'Gi0/2']", "[1000 --]", "  ifName  speed", "0  Gi0/1   1000", "1  Gi0/2   <NA>"]


def test_the_example_of_many_folders(tmp_path):
    writer = dataengine.FrameWriter("unit")
    writer.add_leaf("hostname", 1, "acc-sw-17")
    for folder in "ab":
        (tmp_path / folder).mkdir()
        (tmp_path / folder / "unit.frame").write_bytes(writer.frame())
    names = {"pathlib": pathlib, "dask": dask, "dataengine": dataengine,
             "folders": sorted(tmp_path.iterdir())}
    exec(example_of("docs/scale.md"), names)
    assert names["frames"].compute(scheduler="synchronous") == [{"hostname": "acc-sw-17"}] * 2
