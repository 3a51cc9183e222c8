#!/usr/bin/python3
"""A study, evaluated as in a notebook: how does the speed of closing change the forces of the clamps?

usage: evaluate.py FOLDER

Makes results for several speeds in FOLDER with solver.py, adds them to a study under a limit, and asks it.
"""

import json
import pathlib
import sys

import pandas
import result_tables
import solver

pandas.set_option("display.width", 120)
folder = pathlib.Path(sys.argv[1] if len(sys.argv) == 2 else sys.exit(__doc__))

# The closing force of clamps has no kind of limit: a text of limits gives the column one.
policy = folder / "policy.limits.json"
limits = {"format": "limits", "version": 1, "all": {"columns": {"Clamps": {"ClampClosingForce": 1000}}}}
policy.write_text(json.dumps(limits))

with result_tables.Study(folder / "speeds.study", create=True) as study:
    for speed in (0.5, 1.0, 1.5, 2.0):
        path = folder / f"speed-{speed}.json"
        solver.simulate(speed).write(path)
        study.add(path, run=f"speed {speed}", labels={"speed": str(speed)}, limits=policy)

    print("# The highest utilisations")
    worst = study.worst(top=3)
    print(worst[["run", "item", "value", "limit", "utilisation", "time"]].round(3).to_string(index=False))

    print("\n# The forces by speed")
    values = study.values(families="Clamps")
    forces = values[values["key"] == "ClampClosingForce"]
    print(forces.pivot(index="run", columns="item", values="value").astype(float).round(1).to_string())

    print("\n# What a step of speed adds to Clamp 2")
    trend = study.trend("OP10 Clamping", "Clamps", "Clamp 2", "ClampClosingForce", by="speed")
    print(trend.set_index("label")["value"].astype(float).diff().dropna().round(1).to_string())
