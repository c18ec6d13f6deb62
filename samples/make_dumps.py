#!/usr/bin/env python3
"""Makes the sample dumps of four instruments.

    python3 samples/make_dumps.py FOLDER [SCALE]

writes cg3.dmp (a gravity loop on two lines, heights in A-lines), ipr12.dmp (induced polarisation on two lines),
seaspy.mag (a towed gradiometer with positions) and tracks.gpx (tracks, a route and waypoints). The numbers come from
a fixed seed, so that two runs write the same bytes. SCALE, 1 by default, multiplies the readings.
"""

import math
import random
import sys
from pathlib import Path


def clock(seconds):
    return f"{int(seconds) // 3600 % 24:02d}:{int(seconds) // 60 % 60:02d}:{int(seconds) % 60:02d}"


def cg3(scale):
    """Lines of a CG3 dump: a block a survey line, a reading and its height every 50 m."""
    draw = random.Random(94)
    seconds = 8 * 3600 + 5 * 60
    for line, date in ((100, "94/08/22"), (150, "94/08/23")):
        yield "-" * 79
        yield "  AUTOGRAV  Field Mode  R4.2                          Ser No:     308127."
        yield f"  Line:  {line:5d}.   Grid:     0.   Job:    17.   Date: {date}   Operator:     2."
        yield "  GREF.:     0.000 mGals       Tilt x sensit.:  251.3     Lat.:   46.4"
        yield "  GCAL.1:  5975.382            Tilt y sensit.:  248.9     Long.:  81.0"
        yield "-" * 79
        yield " Station    Grav.    SD.  Tilt x  Tilt y   Temp.  E.T.C.  Dur  # Rej      Time"
        for number in range(16 * scale):
            station = 1000 + 50 * number
            gravity = 4286.35 - 0.012 * number + 0.9 * math.exp(-((number % 16 - 7) / 3.0) ** 2) + draw.gauss(0, 0.004)
            tide = 0.06 * math.sin(seconds / 7100.0)
            seconds += 160 + draw.randint(0, 90)
            yield (f"{station:7d}. {gravity:9.3f} {draw.uniform(0.008, 0.06):6.3f} {draw.randint(-9, 9):6d}. "
                   f"{draw.randint(-9, 9):6d}. {draw.gauss(-0.3, 0.1):7.2f} {tide:7.3f} {60:4d} "
                   f"{draw.choice((0, 0, 0, 1, 3)):6d}  {clock(seconds)}")
            yield f"A: {312.4 + 0.4 * number % 40 + draw.gauss(0, 0.1):.2f}"
    yield ""


def ipr12(scale):
    """Lines of an IPR_12 dump: two survey lines, dipoles along each, six readings a current electrode pair."""
    draw = random.Random(12)
    for number, line in enumerate(("100N", "150N+00")):
        if number > 0:
            yield "-" * 70
        yield "IPR-12 Multi-channel receiver   Ver 2.1   Ser No 9108"
        yield f"P-Line: {line}   C-Line: {line}   Array: PD   Date: 94/06/02"
        yield "Station   P1   P2   P3   P4   P5   P6   P7   P8   P9"
        yield "  Stn   C1   C2   I   T   Cyc"
        yield "  D:   Vp   SP"
        yield "  M0   M1   M2   M3   M4   M5   M6 |   Ms   Tau"
        yield "  M7   M8   M9   M10  M11  M12  M13 |  RMS  Fit"
        yield "*" * 70
        for station in range(4 * scale):
            first = 25 * station
            yield "Pos.   " + "  ".join(f"{first + 25 * i}E" for i in range(7))
            yield f"  {station + 1}   {first + 25}W   {first}W   {draw.randint(800, 1600)}   2.0   {draw.randint(8, 14)}"
            for reading in range(6):
                primary = 820.0 / (reading + 1) ** 2 + draw.gauss(0, 0.6)
                decay = [draw.uniform(9.0, 14.0) * math.exp(-0.17 * i) for i in range(14)]
                yield f" D{reading + 1}:  {primary:9.3f}  {draw.randint(-60, 60)}"
                yield "  " + "  ".join(f"{v:.2f}" for v in decay[:7]) + f" |  {decay[4]:.2f}  {draw.uniform(0.1, 2):.3f}"
                yield "  " + "  ".join(f"{v:.2f}" for v in decay[7:]) + f" |  {draw.uniform(0.1, 1):.2f}"
            yield "*" * 70


def seaspy(scale):
    """Lines of a SeaSPY log: ten readings a second past a wreck, some positions interpolated."""
    draw = random.Random(7)
    yield "SeaLINK log, sensors F and R, 1.5 m apart"
    for number in range(48 * scale):
        tenths = (13 * 3600 + 4 * 60 + 58) * 10 + 5 * number
        time = f"{clock(tenths // 10)}.{tenths % 10}"
        x, y = 388120.0 + 1.1 * number, 4951860.0 + 0.3 * number
        field = 52840.0 + 310.0 / (1.0 + ((number % 48 - 25) / 4.0) ** 2) + draw.gauss(0, 0.02)
        rear = field - 40.0 / (1.0 + ((number % 48 - 26) / 4.0) ** 2) + draw.gauss(0, 0.02)
        kind = "REAL" if number % 10 == 0 else "INTERP"
        yield (f"*07.123/{time} F[{field:.3f} {draw.randint(140, 180)} {draw.randint(395, 405)} "
               f"{6.2 + draw.gauss(0, 0.1):.1f} {18.5 + draw.gauss(0, 0.4):.1f} 00] "
               f"R[{rear:.3f} {draw.randint(140, 180)} {draw.randint(395, 405)} {6.3 + draw.gauss(0, 0.1):.1f} 00] "
               f"{field - rear:.3f} x:{x:.2f} y:{y:.2f} <{kind}>")
        if number % 20 == 19:
            yield "Leak detector: dry"


def point(kind, indent, latitude, longitude, elevation, seconds):
    blank = " " * indent
    yield f'{blank}<{kind} lat="{latitude:.6f}" lon="{longitude:.6f}">'
    yield f"{blank}  <ele>{elevation:.1f}</ele>"
    yield f"{blank}  <time>2024-06-14T{clock(seconds)}Z</time>"


def gpx(scale):
    """Lines of a GPX file: two waypoints, two tracks (the second in two segments), a route."""
    draw = random.Random(11)
    yield '<?xml version="1.0" encoding="UTF-8"?>'
    yield '<gpx version="1.1" creator="make_dumps" xmlns="http://www.topografix.com/GPX/1/1">'
    for name, latitude, longitude in (("Base", 45.2101, -75.6702), ("Gate", 45.2144, -75.6655)):
        yield from point("wpt", 2, latitude, longitude, 91.5, 45000)
        yield f"    <name>{name}</name>"
        yield "  </wpt>"
    latitude, longitude, elevation, seconds = 45.2101, -75.6702, 91.5, 46000.0
    for name, segments in (("North_loop", 1), ("Ridge", 2)):
        yield "  <trk>"
        yield f"    <name>{name}</name>"
        for _ in range(segments):
            yield "    <trkseg>"
            for number in range(12 * scale):
                latitude += 0.00012 * math.cos(number / 5.0)
                longitude += 0.00015 * math.sin(number / 5.0)
                elevation += draw.gauss(0, 0.4)
                seconds += 5
                yield from point("trkpt", 6, latitude, longitude, elevation, seconds)
                yield "      </trkpt>"
            yield "    </trkseg>"
        yield "  </trk>"
    yield "  <rte>"
    yield "    <name>Back</name>"
    for number in range(4):
        yield f'    <rtept lat="{latitude - 0.001 * number:.6f}" lon="{longitude - 0.0012 * number:.6f}">'
        yield "    </rtept>"
    yield "  </rte>"
    yield "</gpx>"


def main():
    folder = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).parent
    scale = int(sys.argv[2]) if len(sys.argv) > 2 else 1
    for name, lines, end in (("cg3.dmp", cg3, "\r\n"), ("ipr12.dmp", ipr12, "\r\n"), ("seaspy.mag", seaspy, "\r\n"),
                             ("tracks.gpx", gpx, "\n")):
        with open(folder / name, "w", newline="") as out:
            out.writelines(line + end for line in lines(scale))


if __name__ == "__main__":
    main()
