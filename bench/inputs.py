"""Makes the large files that bench/peers measures with. All numbers come from fixed seeds.

    python3 bench/inputs.py MAKER FILE BYTES
"""

import array
import random
import runpy
import struct
import sys
from pathlib import Path

ROWS_PER_LINE = 5000
SAMPLES = Path(__file__).resolve().parent.parent / "samples"


def rows():
    """A survey line of eight columns; repeated under other names, so that making takes less time than measuring."""
    draw = random.Random(1)
    for i in range(ROWS_PER_LINE):
        yield (f"{500000 + i * 1.25:.2f} {4100000 + draw.random() * 900:.2f} {draw.gauss(54000, 120):.3f} "
               f"{draw.gauss(0, 4):.4f} {80 + draw.random():.2f} {draw.randint(0, 32000)} {i} {draw.random():.6f}\n")


def repeat(path, size, block, before=None, start=b"", end=b""):
    """Writes `block` until the file has `size` bytes; `before(n)` comes before the n-th. Returns the repeats."""
    count = 0
    with open(path, "wb") as out:
        out.write(start)
        while out.tell() < size:
            if before:
                out.write(before(count))
            out.write(block)
            count += 1
        out.write(end)
    return count


def xyz(path, size):
    text = "".join(rows()).encode()
    repeat(path, size, text, lambda n: b"LINE %d\n" % (1000 + n))


def plain(path, size):
    """The rows of the XYZ file without its markers."""
    repeat(path, size, "".join(rows()).encode())


def csv(path, size):
    text = "".join(row.strip().replace(" ", ",") + f",S{i % 90}\n" for i, row in enumerate(rows()))
    repeat(path, size, text.encode(), start=b"East,North,Mag,Grad,Alt,Raw,Fid,Noise,Station\n")


def dump(kind):
    """One of the sample dumps' makers, with as many readings as `size` needs."""
    def make(path, size):
        lines = runpy.run_path(str(SAMPLES / "make_dumps.py"))[kind]
        scale = 200
        text = "".join(line + "\r\n" for line in lines(scale)).encode()
        if kind == "gpx":
            scale = max(1, int(scale * size / len(text)))
            path.write_text("".join(line + "\n" for line in lines(scale)))
        else:
            repeat(path, size, text)
    return make


def minified_gpx(path, size):
    neat = path.with_name("minified.tmp")
    dump("gpx")(neat, size)
    path.write_text("".join(line.strip() for line in neat.read_text().splitlines()))
    neat.unlink()


def binary(path, size):
    """Records of two doubles, two floats and a 32-bit integer."""
    draw = random.Random(5)
    records = (struct.pack("<ddffi", 500000 + i * 1.25, 4100000 + draw.random() * 900, draw.gauss(54000, 120),
                           draw.gauss(0, 4), i) for i in range(ROWS_PER_LINE))
    repeat(path, size, b"".join(records))


BINARY_RECORD = "X:double,Y:double,Mag:float,Grad:float,Id:int32"
GBN_WIDTHS = {1: 2, 2: 2, 3: 4, 4: 4, 5: 8}
GBN_CODES = {1: "H", 2: "h", 3: "i", 4: "f", 5: "d"}


def gbn_values(value_type, count, seed):
    if value_type < 0:
        return b"".join(b"%08d\0" % ((i * 7919 + seed) % 10**8) for i in range(count))
    return array.array(GBN_CODES[value_type], ((i * 7919 + seed) % 30000 for i in range(count))).tobytes()


def gbn(types, per_line=ROWS_PER_LINE):
    """A maker of GBN files with channels of these value types; with `per_line` None all values stand in one line."""
    def make(path, size):
        width = sum(GBN_WIDTHS.get(t, -t) for t in types)
        line_size = size // width if per_line is None else per_line
        piece = min(line_size, 100_000)
        blocks = [gbn_values(t, piece, 1000 * c) for c, t in enumerate(types)]
        with open(path, "wb") as out:
            out.write(b"OASIS BINARY DATA\r\n\x1a")
            for c, t in enumerate(types):
                out.write(struct.pack("<b64s4i", 1, b"C%d" % c, t, 0, 12, 3))
            line = 0
            while out.tell() < size:
                line += 1
                out.write(struct.pack("<b7i", 2, line, 0, 0, 0, 2020, 1, 1))
                for c, t in enumerate(types):
                    one = len(blocks[c]) // piece
                    out.write(struct.pack("<biiddi", 3, c, t, 1.0, 1.0, line_size))
                    for start in range(0, line_size, piece):
                        out.write(blocks[c][: min(piece, line_size - start) * one])
            out.write(b"\0")
    return make


TKI_RECORD_SIZE = 16 + 8 * 8 + 16 * 16 * 2
TKI_VALUES_PER_RECORD = 16 * (16 + 8 + 16)  # sixteen locations of sixteen characters and 24 numbers


def tki(path, size):
    """Records of a line name, 8 channels of one sample (interpolated) and 16 of sixteen (stored as they are)."""
    header = ["BEGIN", "line,16,as,,,"]
    header += [f"mag{c},1,db,1,0,nT," for c in range(8)] + [f"vlf{c},16,in,0.5,10,pct," for c in range(16)]
    records = b"".join(b"L100".ljust(16) + struct.pack("<8d", *(54000.0 + i + c for c in range(8))) +
                       struct.pack("<256h", *((i + c) % 3000 for c in range(256))) for i in range(1000))
    repeat(path, size, records, start="\n".join([*header, "END", "\x1a"]).encode())


MAKERS = {
    "xyz": xyz, "plain": plain, "csv": csv, "cg3": dump("cg3"), "ipr12": dump("ipr12"), "seaspy": dump("seaspy"),
    "gpx": dump("gpx"), "minified gpx": minified_gpx, "binary": binary, "tki": tki,
    "gbn floats": gbn([4] * 8), "gbn one line": gbn([4], None), "gbn mixed": gbn([5, 5, 4, 4, 3, 2, 1, -9]),
}

if __name__ == "__main__":
    MAKERS[sys.argv[1]](Path(sys.argv[2]), int(sys.argv[3]))
