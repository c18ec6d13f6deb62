#!/usr/bin/env python3
"""Fills a folder with copies of the samples, every 50th of them cut to rubbish: make_files.py FOLDER COUNT."""

import random
import sys
from pathlib import Path

SAMPLES = Path(__file__).resolve().parent.parent
KINDS = ["survey.xyz", "survey.csv", "survey.gbn"]

folder, count = Path(sys.argv[1]), int(sys.argv[2])
draw = random.Random(1)
for i in range(count):
    sample = SAMPLES / draw.choice(KINDS)
    path = folder / f"{i // 100:03}" / f"{i:06}{sample.suffix}"
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(b"" if i % 50 == 7 else sample.read_bytes())
