#!/usr/bin/env python3
"""Makes the sample survey: five magnetometer lines over a buried dipole.

    python3 samples/make_survey.py FOLDER

writes survey.xyz (marker lines, a comment line with the column names) and survey.csv (a title row, the line in a
column of its own). The numbers come from a fixed seed, so that two runs write the same bytes.
"""

import math
import random
import sys
from pathlib import Path

LINES = [1000, 1010, 1020, 1030, 1040]
STATIONS = 60
SPACING_M = 5.0
BASE_FIELD_NT = 54210.0
DIPOLE = (148.0, 1021.0, 18.0, 9.0e5)  # easting, northing, depth in metres, strength in nT m^3
COLUMNS = ["X:m", "Y:m", "Lat", "Lon", "Date", "Time", "Mag:nT", "Alt:m", "Quality", "Remark"]


def anomaly(x, y):
    """Total field of a dipole magnetised along an inclined field (inclination 70 degrees, declination 0)."""
    dx, dy, dz = x - DIPOLE[0], y - DIPOLE[1], DIPOLE[2]
    r = math.sqrt(dx * dx + dy * dy + dz * dz)
    along = (dy * math.cos(math.radians(70)) + dz * math.sin(math.radians(70))) / r
    return DIPOLE[3] * (3.0 * along * along - 1.0) / r**3


def degrees(value):
    milliseconds = round(abs(value) * 3600 * 1000)
    seconds, fraction = divmod(milliseconds, 1000)
    sign = "-" if value < 0 else ""
    return f"{sign}{seconds // 3600}.{seconds // 60 % 60:02d}.{seconds % 60:02d}.{fraction:03d}"


def clock(seconds):
    tenths = round(seconds * 10)
    return f"{tenths // 36000:02d}:{tenths // 600 % 60:02d}:{tenths // 10 % 60:02d}.{tenths % 10}"


def survey():
    """Yields (line, row) with a row of texts as COLUMNS names them."""
    draw = random.Random(20240614)
    seconds = 9 * 3600 + 12 * 60
    for number, line in enumerate(LINES):
        stations = range(STATIONS) if number % 2 == 0 else range(STATIONS - 1, -1, -1)
        for station in stations:
            seconds += 2.0 + draw.uniform(-0.2, 0.4)
            if line == 1020 and 20 <= station < 24:
                continue  # a pond: nothing was walked here
            x = station * SPACING_M + draw.gauss(0, 0.15)
            y = line + draw.gauss(0, 0.25)
            mag = BASE_FIELD_NT + anomaly(x, y) + 0.02 * x + draw.gauss(0, 0.4)
            alt = f"{2.0 + draw.gauss(0, 0.05):.2f}"
            quality = draw.randint(95, 99)
            remark = "ok"
            if draw.random() < 0.02:
                mag, remark, quality = None, "dropout", draw.randint(1, 9)
            elif line == 1030 and station == 41:
                mag, remark = mag + 812.5, "fence"
            if draw.random() < 0.03:
                alt = "*"
            yield line, [
                f"{x:.2f}", f"{y:.2f}",
                degrees(45.2084 + y / 111132.0), degrees(-75.6692 + x / 78500.0),
                "2024/06/14", clock(seconds), "*" if mag is None else f"{mag:.2f}", alt, str(quality), remark,
            ]


def main():
    folder = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).parent
    rows = list(survey())
    with open(folder / "survey.xyz", "w", newline="") as out:
        out.write("/ Ground magnetometer survey, sample data\n/ " + " ".join(COLUMNS) + "\n")
        current = None
        for line, row in rows:
            if line != current:
                out.write(f"LINE {line}\n")
                current = line
            widths = (8, 9, 14, 15, 11, 11, 10, 6, 4, 8)
            out.write(" ".join(text.rjust(width) for text, width in zip(row, widths)) + "\n")
    with open(folder / "survey.csv", "w", newline="") as out:
        out.write(",".join(["Line"] + COLUMNS) + "\r\n")
        for line, row in rows:
            out.write(",".join([f"L{line}"] + row) + "\r\n")


if __name__ == "__main__":
    main()
