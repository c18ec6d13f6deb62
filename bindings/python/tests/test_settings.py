"""Imports and exports by settings: what they make."""

import ast
import operator
import pathlib

import numpy as np
import pytest

import norva
from norva.settings import RecordChannel, RecordSettings


def test_a_survey_goes_in_and_out(samples, tmp_path):
    store = tmp_path / "survey.nvt"
    report = norva.import_file(samples / "survey.xyz", store, checksum=True)
    assert (report.format, report.locations, report.accounted) == ("ASCII XYZ", 296, True)
    assert len(report.data["source"]["sha256"]) == 64
    with norva.open(store) as survey:
        assert survey.location_count == 296
        before = store.read_bytes()
        with pytest.raises(norva.Error, match="exists already") as caught:
            norva.import_file(samples / "survey.xyz", store)
        assert caught.value.path == str(store) and store.read_bytes() == before
        norva.export(survey, tmp_path / "part.xyz", lines=["1010"], channels=["Mag", "X"])
        norva.export(store, tmp_path / "copy.nvt")
        with norva.open(tmp_path / "copy.nvt") as copy:
            assert copy.to_pandas().equals(survey.to_pandas())
        rows = [row.split() for row in (tmp_path / "part.xyz").read_text().splitlines()]
        numbers = np.array([row for row in rows if row[0][0].isdigit()], dtype=float)
        mag = survey.line("1010")["Mag"]
        np.testing.assert_allclose(numbers[:, 0], mag[~np.isnan(mag)], atol=0.006)


def test_settings_decide(samples, tmp_path):
    store = tmp_path / "base.nvt"
    channels = [
        RecordChannel(name="Clock", units="s", format=RecordChannel.Format.DOUBLE, type="double"),
        RecordChannel(name="Mag", units="nT", format=RecordChannel.Format.FLOAT, type="double"),
        RecordChannel(name="Quality", format=RecordChannel.Format.INT16, type="short"),
    ]
    settings = RecordSettings(channels=channels, fiducial=False, points_per_line=100)
    report = norva.import_file(samples / "base.bin", store, settings, format="Binary XYZ")
    settings.records = 600  # counted in the file
    assert report.settings == settings
    records = np.fromfile(samples / "base.bin", dtype=[("Clock", "<f8"), ("Mag", "<f4"), ("Quality", "<i2")])
    with norva.open(store) as survey:
        assert [len(line) for line in survey] == [100] * 6 and survey.channel("Mag").type == "double"
        for name in records.dtype.names:
            assert np.array_equal(survey[name], records[name])


def members_of_stub(text):
    """Class, nested ones as "Outer.Inner", with its annotated members or enumerators."""
    found = {}

    def walk(body, outer):
        for node in body:
            if isinstance(node, ast.ClassDef):
                name = outer + node.name
                found[name] = {item.target.id for item in node.body if isinstance(item, ast.AnnAssign)}
                found[name] |= {target.id for item in node.body if isinstance(item, ast.Assign) for target in item.targets}
                walk(node.body, name + ".")

    walk(ast.parse(text).body, "")
    return found


def test_the_stub_names_what_there_is():
    stub = pathlib.Path(norva.__file__).with_name("_norva.pyi").read_text()
    for name, members in members_of_stub(stub).items():
        if name == "Store":
            continue
        made = operator.attrgetter(name)(norva.settings)
        there = set(made.__members__) if hasattr(made, "__members__") else {
            member for member, value in vars(made).items() if isinstance(value, property)}
        assert members == there, name
