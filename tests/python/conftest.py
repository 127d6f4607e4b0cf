"""Frames that several tests use."""

import pytest

import dataengine as de


def write(name="inventory/interfaces", **items):
    """Writes a frame: a dict is a table, whose values that are not lists are attributes."""
    writer = de.FrameWriter(name)
    for item, value in items.items():
        if not isinstance(value, dict):
            writer.add_leaf(item, 1, value)
            continue
        table = writer.add_table(item, True, list(value)[:1])
        for child, values in value.items():
            if isinstance(values, list) or values is None:
                table.add_column(child, 1, values)
            else:
                table.add_attribute(child, 1, values)
    return writer


@pytest.fixture
def interfaces():
    return write(hostname="acc-sw-17",
                 ifTable={"ifName": ["Gi0/1", "Gi0/2"], "speed": [1000, None], "vrf": "blue"})


def pytest_configure(config):
    config.addinivalue_line("markers", "cluster: needs a scheduler and workers")
