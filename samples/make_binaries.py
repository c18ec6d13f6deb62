#!/usr/bin/env python3
"""Makes the sample files of binary records.

    python3 samples/make_binaries.py FOLDER [SCALE]

writes base.bin (a magnetic base station: time, field and a quality number, ten records a second), survey.gbn (three
lines with positions, field, a note) and airborne.p01 (a TKI recording of two flight lines, with samples at two rates).
The numbers come from a fixed seed, so that two runs write the same bytes. SCALE, 1 by default, multiplies the records.
"""

import math
import random
import struct
import sys
from pathlib import Path


def field(x, y=0.0):
    """Total field over a body at (300, 60), in nT."""
    r2 = ((x - 300) ** 2 + (y - 60) ** 2) / 2500 + 1
    return 54200 + 180 * (1 - (x - 300) / 120) / r2 ** 1.5


def base(scale):
    """Records of 14 bytes: seconds (double), field (float), quality (int16)."""
    draw = random.Random(10)
    for number in range(600 * scale):
        seconds = 33120 + number / 10
        value = 54210 + 12 * math.sin(seconds / 900) + draw.gauss(0, 0.03)
        yield struct.pack("<dfh", seconds, value, draw.choice((99, 99, 98, 95)))


def gbn(scale):
    """The records of a GBN file: signature, five channels, a line record and five data blocks a line."""
    draw = random.Random(4)
    yield b"OASIS BINARY DATA\r\n\x1a"
    for name, value_type, decimals in ((b"X", 5, 2), (b"Y", 5, 2), (b"Mag", 4, 2), (b"Sat", 2, 0), (b"Note", -9, 0)):
        yield b"\x01" + name.ljust(64, b"\0") + struct.pack("<4i", value_type, 0, 12, decimals)
    for line in range(3):
        count = (40 + 4 * line) * scale
        xs = [15.0 * n + draw.gauss(0, 0.4) for n in range(count)]
        ys = [60.0 * line + draw.gauss(0, 0.4) for _ in range(count)]
        yield b"\x02" + struct.pack("<7i", line + 1, 0, 0, 2000 + 10 * line, 2024, 6, 14)
        dropped = draw.randrange(count)
        mags = [-1.0e32 if n == dropped else field(x, y) + draw.gauss(0, 0.1) for n, (x, y) in enumerate(zip(xs, ys))]
        sats = [draw.randint(7, 12) for _ in range(count)]
        notes = [b"dropout" if n == dropped else b"fence" if n % 17 == 9 else b"" for n in range(count)]
        columns = ((0, 5, "d", xs), (1, 5, "d", ys), (2, 4, "f", mags), (3, 2, "h", sats))
        for channel, value_type, layout, values in columns:
            yield b"\x03" + struct.pack("<2i2di", channel, value_type, 1000.0, 1.0, count)
            yield struct.pack(f"<{count}{layout}", *values)
        yield b"\x03" + struct.pack("<2i2di", 4, -9, 1000.0, 1.0, count) + b"".join(n.ljust(9, b"\0") for n in notes)
    yield b"\0"


def tki(scale):
    """A TKI header and its records, one a second: positions once, the field and the altitude ten and five times."""
    draw = random.Random(2)
    yield (b"Airborne magnetic recording\r\nBEGIN\r\nline,8,as,,,\r\nseconds,1,li,1,0,s\r\nx,1,db,1,0,m\r\n"
           b"y,1,db,1,0,m\r\nmag,10,li,0.001,0,nT\r\naltitude,5,in,0.1,0,m\r\nEND\r\n\x1a")
    seconds = 41000
    for line, count in (("L2010", 12 * scale), ("T9010", 8 * scale)):
        for second in range(count):
            x = 62.0 * second
            mags = [round(1000 * (field(x + 6.2 * n, 40) + draw.gauss(0, 0.02))) for n in range(10)]
            heights = [round(10 * (80 + 3 * math.sin((x + 12 * n) / 90) + draw.gauss(0, 0.1))) for n in range(5)]
            y = 40 + draw.gauss(0, 0.5)
            yield struct.pack("<8sidd10i5h", line.encode().ljust(8), seconds, x, y, *mags, *heights)
            seconds += 1


def main():
    folder = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).parent
    scale = int(sys.argv[2]) if len(sys.argv) > 2 else 1
    for name, pieces in (("base.bin", base), ("survey.gbn", gbn), ("airborne.p01", tki)):
        with open(folder / name, "wb") as out:
            out.writelines(pieces(scale))


if __name__ == "__main__":
    main()
