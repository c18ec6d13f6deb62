"""The code of docs/python.md runs from top to bottom, and that of the first page."""

import os
import pathlib
import re
import shutil
import subprocess
import sys

import numpy as np
import pytest

import norva


def test_the_page_does_what_it_says(samples, tmp_path, monkeypatch, capsys):
    pytest.importorskip("matplotlib")
    shutil.copy(samples / "survey.xyz", tmp_path)
    # A record of the base station that is long enough for the whole survey.
    subprocess.run([sys.executable, samples / "make_binaries.py", tmp_path, "30"], check=True)
    page = pathlib.Path(os.environ["NORVA_DOCS"], "python.md").read_text()
    monkeypatch.chdir(tmp_path)
    names = {}
    for block in re.findall(r"^```python\n(.*?)^```", page, re.S | re.M):
        exec(block, names)
    assert "100 %" in capsys.readouterr().out
    with norva.open("levelled.nvt") as levelled, norva.open("survey.nvt") as survey:
        assert levelled.location_count == survey.location_count == 296
        assert levelled.channel("Levelled").units == "nT" and levelled.channel("Mag") == survey.channel("Mag")
        assert np.count_nonzero(~np.isnan(levelled["Levelled"])) > 250
        middles = [np.nanmedian(line["Levelled"]) for line in levelled]
        assert max(middles) - min(middles) < 0.01
        assert np.array_equal(levelled["Time"], survey["Time"])
    assert pathlib.Path("levelled.xyz").read_text().count("\n") > 296
    assert pathlib.Path("levelled.png").read_bytes().startswith(b"\x89PNG")


def test_the_first_page_does_what_it_says(store, monkeypatch):
    page = pathlib.Path(os.environ["NORVA_DOCS"]).parent.joinpath("README.md").read_text()
    monkeypatch.chdir(store.parent)
    (block,) = re.findall(r"^```python\n(import norva.*?)^```", page, re.S | re.M)
    exec(block, {})
    with norva.open("processed.nvt") as processed, norva.open(store) as survey:
        assert processed.location_count == survey.location_count
