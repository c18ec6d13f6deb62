#!/usr/bin/env python3
"""Fills a folder with copies of the samples, two in a hundred of them spoilt: make_files.py FOLDER COUNT."""

import random
import sys
from pathlib import Path

SAMPLES = Path(__file__).resolve().parent.parent
KINDS = ["survey.xyz", "survey.csv", "survey.gbn", "tracks.gpx", "cg3.dmp", "ipr12.dmp", "seaspy.mag", "airborne.p01"]
SPOIL = [lambda data: b"", lambda data: bytes(len(data)), lambda data: data[:len(data) // 2]]

folder, count = Path(sys.argv[1]), int(sys.argv[2])
draw = random.Random(1)
for i in range(count):
    sample = SAMPLES / draw.choice(KINDS)
    path = folder / f"{i // 100:03}" / f"{i:06}{sample.suffix}"
    path.parent.mkdir(parents=True, exist_ok=True)
    data = sample.read_bytes()
    path.write_bytes(SPOIL[i // 50 % 3](data) if i % 50 == 7 else data)
