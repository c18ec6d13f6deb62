#!/usr/bin/env python3
"""Prints a CSV table of a run, one row for each source file: summary.py SOURCE MADE.

status is "made", "losses", "failed" (norva said why in the log) or "missing" (not tried, or stopped on the way).
"""

import csv
import json
import sys
from pathlib import Path

STATUS = {"0": "made", "4": "losses"}


def row(source, made, path):
    name = str(path.relative_to(source))
    store, report, log = (made / (name + end) for end in (".nvt", ".json", ".log"))
    words = log.read_text(errors="replace").split() if log.exists() else []
    if words[-3:-1] != ["exit", "status"]:
        return [name, "", "", "missing"]
    if words[-1] not in STATUS or not store.exists():
        return [name, "", "", "failed"]
    facts = json.loads(report.read_text())
    return [name, facts["locations"], facts["losses"], STATUS[words[-1]]]


source, made = Path(sys.argv[1]), Path(sys.argv[2])
table = csv.writer(sys.stdout, lineterminator="\n")
table.writerow(["file", "locations", "losses", "status"])
table.writerows(row(source, made, p) for p in sorted(source.rglob("*")) if p.is_file())
