"""Finds the interfaces that are administratively up and operationally down, per device.

Reads all frames of a folder, on this machine or on a cluster, prints a table and draws it:

    flapping_interfaces.py FOLDER [--cluster ADDRESS] [--plot FILE.png]

A frame needs the leaf "hostname" and the table "ifTable" with the columns "ifName", "adminStatus"
and "operStatus", whose values are "up" and "down".
"""

import argparse

import pandas
from dask.distributed import Client, progress

from dataengine.dask import BrokenFrame, read_frames

SELECT = ["hostname", {"table": "ifTable", "column": ["ifName", "adminStatus", "operStatus"]}]


def summary(frame):
    """Returns a device, the number of its interfaces, and the names of those that are down."""
    if isinstance(frame, BrokenFrame):
        return frame
    table = frame["ifTable"]
    states = zip(table["ifName"], table["adminStatus"], table["operStatus"])
    return {"device": frame["hostname"], "interfaces": len(table["ifName"]),
            "down": [name for name, admin, oper in states if (admin, oper) == ("up", "down")]}


def collect(folder):
    """Returns a table of the devices with interfaces that are down, and the broken frames."""
    results = read_frames(folder, select=SELECT).map(summary).persist()
    progress(results)
    results = results.compute()
    devices = [result for result in results if isinstance(result, dict) and result["down"]]
    table = pandas.DataFrame(devices, columns=["device", "interfaces", "down"])
    table.insert(2, "count", table["down"].map(len))
    table["down"] = table["down"].map(", ".join)
    broken = [result for result in results if isinstance(result, BrokenFrame)]
    return table.sort_values(["count", "device"], ascending=[False, True]), broken


def draw(table, path):
    """Draws the twenty devices with the most interfaces that are down."""
    from matplotlib.figure import Figure

    top = table.head(20).iloc[::-1]
    figure = Figure(figsize=(8, 1 + 0.3 * len(top)), layout="constrained")
    axes = figure.subplots()
    axes.barh(top["device"], top["count"], color="#c0392b")
    axes.set_xlabel("interfaces that are administratively up and operationally down")
    axes.xaxis.get_major_locator().set_params(integer=True)
    axes.spines[["top", "right"]].set_visible(False)
    figure.savefig(path, dpi=120)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("folder", help="a folder of frames, or a URL of one")
    parser.add_argument("--cluster", metavar="ADDRESS", help="scheduler; by default local workers")
    parser.add_argument("--plot", metavar="FILE", default="flapping_interfaces.png")
    options = parser.parse_args()
    with Client(options.cluster):
        table, broken = collect(options.folder)
    print("\n" + table.to_string(index=False))
    for frame in broken:
        print(f"{frame.file}: {frame.error}")
    draw(table, options.plot)


if __name__ == "__main__":
    main()
