#!/usr/bin/env python3
"""Times the Python module against pandas on the same data.

    PYTHONPATH=build/release/python bench/python_peers.py [ROWS]

Writes a store and a CSV file of 8 channels (default 2500000 rows, 500 lines) into a temporary folder and prints the best
and the median of five runs each, with both files in the system's cache.
"""

import pathlib
import statistics
import sys
import tempfile
import time

import numpy as np
import pandas

import norva

RUNS = 5


def survey_of(rows):
    numbers = np.arange(rows)
    random = np.random.default_rng(1)
    return {
        "X": np.round(numbers % 5000 * 0.5 + random.normal(0, 0.05, rows), 2),
        "Y": np.round(numbers // 5000 * 25.0 + random.normal(0, 0.05, rows), 2),
        "Lat": np.round(45 + numbers % 5000 * 4.5e-6, 8),
        "Lon": np.round(-75 + numbers // 5000 * 3e-4, 8),
        "Mag": np.round(54000 + random.normal(0, 20, rows), 2).astype("f4"),
        "Alt": np.round(2 + random.normal(0, 0.1, rows), 2).astype("f4"),
        "Fid": numbers.astype("i4"),
        "Quality": random.integers(80, 100, rows).astype("i2"),
    }


def timed(name, run, against=None):
    times = []
    for _ in range(RUNS):
        start = time.perf_counter()
        result = run()
        times.append(time.perf_counter() - start)
        del result
    middle = statistics.median(times)
    ratio = f"   {middle / against:6.3f} of read_csv" if against else ""
    print(f"{name:42} best {min(times):8.4f} s   median {middle:8.4f} s{ratio}")
    return middle


def arrays(path, **options):
    with norva.open(path) as survey:
        return [survey.column(number, **options) for number in range(len(survey.channels))]


def table(path):
    with norva.open(path) as survey:
        return survey.to_pandas()


def main():
    rows = int(sys.argv[1]) if len(sys.argv) > 1 else 2_500_000
    with tempfile.TemporaryDirectory() as folder:
        store, text = pathlib.Path(folder, "a.nvt"), pathlib.Path(folder, "a.csv")
        channels = survey_of(rows)
        lines = [f"L{number}" for number in range(-(-rows // 5000))]
        timed("norva.write", lambda: norva.write(store, [(line, min(5000, rows - 5000 * at))
                                                         for at, line in enumerate(lines)], channels))
        made = table(store)
        made.to_csv(text, index=False)
        print(f"{rows} rows x {len(channels)} channels, store {store.stat().st_size >> 20} MB, "
              f"CSV {text.stat().st_size >> 20} MB")
        csv = timed("pandas.read_csv", lambda: pandas.read_csv(text))
        timed("norva.open, all columns (looked through)", lambda: arrays(store), csv)
        timed("norva.open, all columns (as stored)", lambda: arrays(store, missing="raw"), csv)
        timed("norva.open, to_pandas", lambda: table(store), csv)
        read = pandas.read_csv(text)
        for name in channels:
            assert np.allclose(read[name], made[name], rtol=1e-7, atol=0), name


if __name__ == "__main__":
    main()
