import os
import pathlib

import numpy as np
import pytest

import norva


@pytest.fixture
def samples():
    return pathlib.Path(os.environ["NORVA_SAMPLES"])


def one_of_each(rows):
    """A value of every type for every row, without any that is missing."""
    numbers = np.arange(rows)
    return {
        "Mag": (54000 + np.sin(numbers)).astype("f4"),
        "Lat": 45 + numbers * 1e-7,
        "Fid": numbers.astype("i4") - 3,
        "Quality": (numbers % 30000).astype("i2"),
        "Remark": np.array(["OK", "SPIKE é", "TURN"])[numbers % 3],
        "Date": np.datetime64("2023-12-30") + (numbers % 1000).astype("m8[D]"),
        "Time": (numbers * 100).astype("m8[ms]"),
        "Decay": np.stack([numbers * 1.5, -numbers], axis=1),
        "Codes": np.stack([numbers % 7, numbers % 5, numbers % 3], axis=1).astype("i2"),
    }


@pytest.fixture
def store(tmp_path):
    """Three lines of 3, 0 and 4 locations with one channel of every type."""
    path = tmp_path / "survey.nvt"
    norva.write(path, [("L1000", 3), ("Empty", 0), ("L1010 ü", 4)], one_of_each(7), units={"Mag": "nT"})
    return path
