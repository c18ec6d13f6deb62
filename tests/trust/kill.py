#!/usr/bin/env python3
"""Kills imports, exports and marks at random moments: kill.py NORVA COUNT.

After each, the file that was to be made is the older or the new one, byte for byte, and the inputs are as they were.
"""

import os
import random
import subprocess
import sys
import tempfile
import time
from pathlib import Path

NORVA, COUNT = sys.argv[1], int(sys.argv[2])
MOST_SECONDS = 60.0  # for one run that is not killed


def run(arguments, seconds=None):
    """Runs to the end, or kills after so many seconds; returns how long it took, and whether it came to its end."""
    start = time.monotonic()
    process = subprocess.Popen([NORVA, *map(str, arguments)], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                               stdin=subprocess.DEVNULL)
    try:
        status = process.wait(timeout=MOST_SECONDS if seconds is None else seconds)
        assert status == 0, (arguments, status)
        return time.monotonic() - start, True
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
        assert seconds is not None, f"{arguments} took more than {MOST_SECONDS} s"
        return time.monotonic() - start, False


def survey(rows):
    lines = ["/ X Y Mag"]
    for row in range(rows):
        if row % 1000 == 0:
            lines.append(f"LINE {row // 1000 + 10}")
        lines.append(f"{row * 0.25:.2f} {row * 31 % 997} {48000 + row % 613}.{row % 10}")
    return "\n".join(lines) + "\n"


def main():
    seed = int(os.environ.get("NORVA_TEST_SEED", time.time_ns() % 1_000_000))
    random.seed(seed)
    outcomes = {"older": 0, "new": 0, "finished": 0}
    with tempfile.TemporaryDirectory() as scratch:
        os.environ["TMPDIR"] = scratch
        folder = Path(scratch) / "files"
        folder.mkdir()
        text, store, output = folder / "in.xyz", folder / "s.nvt", folder / "out.nvt"
        text.write_text(survey(40_000))
        run(["import", text, "-o", store, "--quiet"])
        run(["export", store, folder / "in.gbn", "--quiet"])
        acts = [["import", text, "-o", output, "--force", "--quiet"],
                ["import", folder / "in.gbn", "-o", output, "--force", "--quiet"],
                ["export", store, output, "--force", "--quiet"],
                ["export", store, folder / "out.xyz", "--force", "--quiet"],
                ["mark", output, "--line", "1", "--rows", "0-400", "--delete"]]
        inputs = {path: path.read_bytes() for path in (text, store, folder / "in.gbn")}
        older = text.read_bytes()[:4000]
        measured = []
        for act in acts:
            target = Path(act[2] if act[0] == "export" else act[3] if act[0] == "import" else act[1])
            before = inputs[store] if act[0] == "mark" else older
            target.write_bytes(before)
            seconds, _ = run(act)
            measured.append((act, target, before, target.read_bytes(), seconds))
            assert measured[-1][3] != before, act
        for n in range(COUNT):
            act, target, before, new, seconds = random.choice(measured)
            target.write_bytes(before)
            _, finished = run(act, random.uniform(0, 1.1 * seconds))
            left = target.read_bytes()
            where = f"seed {seed}, kill {n}: {act}"
            assert left in (before, new), f"{where}: neither the older nor the new file ({len(left)} bytes)"
            assert not finished or left == new, f"{where}: finished, and the file is not there"
            outcomes["finished" if finished else "new" if left == new else "older"] += 1
            for path, bytes_ in inputs.items():
                assert path.read_bytes() == bytes_, f"{where}: {path} changed"
        # What a killed run leaves beside its target does not keep the next from its work.
        for act, target, before, new, _ in measured:
            target.write_bytes(before)
            run(act)
            assert target.read_bytes() == new, act
        debris = sorted(path.name for path in folder.iterdir() if path.name.startswith("."))
    print(f"{COUNT} kills: {outcomes}, {len(debris)} unfinished files left under hidden names")


if __name__ == "__main__":
    main()
