"""Writes a folder of frames for flapping_interfaces.py: write_frames.py FOLDER [DEVICES] (400)."""

import pathlib
import random
import sys

import dataengine as de


def interfaces(draw, faults):
    """Returns the columns of a table of 24 or 48 interfaces, a part of which has faults."""
    count = draw.choice([24, 48])
    admin = [draw.choice(["up"] * 9 + ["down"]) for _ in range(count)]
    return {"ifName": [f"Gi0/{port}" for port in range(count)],
            "adminStatus": admin,
            "operStatus": ["up" if state == "up" and draw.random() >= faults else "down"
                           for state in admin]}


def main():
    folder = pathlib.Path(sys.argv[1])
    devices = int(sys.argv[2]) if len(sys.argv) > 2 else 400
    folder.mkdir(exist_ok=True)
    draw = random.Random(3)
    for device in range(devices):
        writer = de.FrameWriter("inventory/interfaces")
        writer.add_leaf("hostname", 1, f"{draw.choice(['acc', 'dist', 'core'])}-sw-{device}")
        table = writer.add_table("ifTable", hash_sort=True, hash_columns=["ifName"])
        for name, values in interfaces(draw, draw.choice([0, 0, 0.02, 0.05, 0.1])).items():
            table.add_column(name, 1, values)
        (folder / f"{device:06}.frame").write_bytes(writer.frame())


if __name__ == "__main__":
    main()
