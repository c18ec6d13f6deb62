"""What a store gives, and for how long."""

import gc
import os
import threading

import numpy as np
import pandas
import pytest
from conftest import one_of_each

import norva


def same(found, expected):
    if found.dtype.kind == "m":
        return np.array_equal(found, expected.astype(found.dtype))
    return np.array_equal(found, expected)


@pytest.mark.parametrize("mapped", [True, False])
def test_every_type_comes_back(store, mapped):
    with norva.open(store, mapped=mapped) as survey:
        assert [len(line) for line in survey] == [3, 0, 4]
        assert survey.location_count == 7 and len(survey) == 3
        for name, expected in one_of_each(7).items():
            assert same(survey[name], expected), name
            assert same(survey.line("L1010 ü")[name], expected[3:]), name
            assert survey.line("Empty")[name].shape == (0,) + expected.shape[1:], name
        kinds = [survey[name].dtype for name in ("Mag", "Lat", "Fid", "Quality", "Date", "Time")]
        assert kinds == ["f4", "f8", "i4", "i2", "M8[ms]", "m8[us]"]
        assert survey["Remark"].dtype.kind == "U"
        assert survey.channel("Mag").units == "nT"
        assert survey.column("Date", decoded=False)[0] == pytest.approx(2023 + 364 / 365)
        survey.verify()


def test_what_needs_no_change_is_the_file_itself(store):
    with norva.open(store) as survey:
        for name in ("Mag", "Lat", "Fid", "Quality", "Decay", "Codes"):
            column = survey[name]
            assert not column.flags.owndata and not column.flags.writeable, name
            with pytest.raises(ValueError):
                column[...] = 0
        table = survey.to_pandas()
        table["Mag"] += 1
        assert table["Mag"][0] == survey["Mag"][0] + 1


MISSING = {
    "Float": (np.array([1, np.nan, 3], "f4"), np.float32(1e30), "f4"),
    "Double": (np.array([np.nan, 2, 3]), 1e30, "f8"),
    "Long": (np.ma.array([1, 2, 3], mask=[0, 0, 1]), 2147483647, "f8"),
    "Short": (np.ma.array([1, 2, 3], mask=[0, 1, 0], dtype="i2"), 32767, "f8"),
    "Text": (np.array(["A", None, "C"], dtype=object), b"*", "U1"),
    "Date": (np.array(["NaT", "2024-02-29", "2024-03-01"], "M8[D]"), 1e30, "M8[ms]"),
    "Time": (np.array([0, "NaT", 7200000], "m8[ms]"), 1e30, "m8[us]"),
    "Array": (np.array([[1, 2], [np.nan, 4], [5, 6]]), 1e30, "f8"),
}


def test_no_data_is_nan_masked_or_as_stored(tmp_path):
    path = tmp_path / "gaps.nvt"
    norva.write(path, [("L", 3)], {name: given for name, (given, _, _) in MISSING.items()})
    with norva.open(path) as survey:
        table = survey.to_pandas()
        for name, (given, stored, dtype) in MISSING.items():
            where = np.ma.getmaskarray(given) if isinstance(given, np.ma.MaskedArray) else pandas.isna(given)
            values = survey[name]
            assert values.dtype == dtype, name
            assert np.array_equal(values == "" if name == "Text" else pandas.isna(values), where), name
            masked = survey.column(name, missing="mask")
            assert np.array_equal(np.ma.getmaskarray(masked), where), name
            assert np.array_equal(np.asarray(masked.data)[~where], values[~where]), name
            raw = survey.column(name, missing="raw")
            assert np.array_equal(raw == stored, where), name
            if given.ndim == 1:
                assert np.array_equal(table[name].isna(), where), name


def test_deleted_locations_are_left_out_unless_asked_for(store):
    norva.mark_deleted(store, "L1000", [0, 2])
    norva.mark_deleted(store, 2, [3])
    with norva.open(store) as survey:
        kept = np.array([1, 3, 4, 5])
        assert [len(line) for line in survey] == [1, 0, 3]
        for name, expected in one_of_each(7).items():
            assert same(survey[name], expected[kept]), name
            assert same(survey.column(name, deleted=True), expected), name
            assert same(survey.line(0)[name], expected[1:2]), name
        assert list(survey.line_numbers()) == [0, 2, 2, 2]
        assert list(survey.to_pandas(["L1010 ü", 0])["Fid"]) == [0, 1, 2, -2]
        assert len(survey.to_pandas(deleted=True)) == 7
    norva.mark_deleted(store, "L1000", [0, 2], deleted=False)
    with norva.open(store) as survey:
        assert survey.location_count == 6
    with pytest.raises(norva.Error, match="no such location"):
        norva.mark_deleted(store, "L1000", [3])


def test_tables_have_lines_arrays_and_times(store):
    with norva.open(store) as survey:
        table = survey.to_pandas(channels=["Time", "Decay", "Date", "Remark"])
        assert list(table.columns) == ["line", "Time", "Decay[0]", "Decay[1]", "Date", "Remark"]
        assert list(table["line"]) == ["L1000"] * 3 + ["L1010 ü"] * 4
        assert (table["Date"] + table["Time"])[1] == pandas.Timestamp("2023-12-31 00:00:00.1")
        assert table["Remark"][1] == "SPIKE é"
        assert survey.line("L1000").to_pandas(["Fid"])["Fid"].tolist() == [-3, -2, -1]
        xarray = pytest.importorskip("xarray")
        data = survey.to_xarray(lines=["L1010 ü"])
        assert isinstance(data, xarray.Dataset)
        assert data["Mag"].attrs == {"units": "nT"} and data["Decay"].shape == (4, 2)
        assert list(data["line"].values) == ["L1010 ü"] * 4


def test_dates_that_pandas_cannot_hold_stay_numbers(tmp_path):
    path = tmp_path / "old.nvt"
    norva.write(path, [("L", 1)], {"Date": np.array(["1600-03-01"], "M8[D]"), "Time": np.array([10**9], "m8[h]")})
    with norva.open(path) as survey, pytest.warns(UserWarning, match="cannot hold"):
        table = survey.to_pandas()
        assert table["Date"][0] == pytest.approx(1600 + 61 / 366) and table["Time"][0] == 1e9
        assert survey["Date"][0] == np.datetime64("1600-03-01")


@pytest.mark.parametrize("year", [0, 1, 4, 100, 400, 1582, 1900, 1969, 1970, 2000, 2400, 9999])
def test_every_day_of_a_year_is_itself(tmp_path, year):
    days = np.arange(f"{year:04}-01-01", f"{year + 1:04}-01-01", dtype="M8[D]")
    norva.write(tmp_path / "days.nvt", [("L", len(days))], {"Date": days})
    assert np.array_equal(norva.open(tmp_path / "days.nvt")["Date"], days)


def test_names_may_repeat_be_odd_or_be_absent(tmp_path):
    path = tmp_path / "odd.nvt"
    norva.write(path, [("A", 1), ("A", 1), ("a,b\n\udcff", 1)], [("M", [1, 2, 3]), ("M", [4, 5, 6]), ("", [7, 8, 9])])
    with norva.open(path) as survey:
        assert [line.name for line in survey] == ["A", "A", "a,b\n\udcff"]
        assert list(survey[1]) == [4, 5, 6] and list(survey.line(1)[0]) == [2] and list(survey[""]) == [7, 8, 9]
        assert list(survey.to_pandas().columns) == ["line", "M", "M", ""]
        for ask in (lambda: survey["M"], lambda: survey["X"], lambda: survey[3], lambda: survey.line("A"),
                    lambda: survey.line("B"), lambda: survey.line(3), lambda: survey[-1], survey.to_xarray):
            with pytest.raises(KeyError):
                ask()


def test_arrays_outlive_the_survey_and_the_file(store):
    survey = norva.open(store)
    column, part = survey["Lat"], survey.line("L1010 ü")["Decay"]
    survey.close()
    with pytest.raises(norva.Error, match="closed"):
        survey["Lat"]
    del survey
    os.remove(store)
    gc.collect()
    norva.write(store, [("other", 1)], {"Lat": [0.0]})
    assert np.array_equal(column, one_of_each(7)["Lat"]) and np.array_equal(part, one_of_each(7)["Decay"][3:])


def test_threads_share_a_survey(store):
    survey = norva.open(store)
    expected = one_of_each(7)
    wrong = []

    def read():
        for _ in range(50):
            for name, values in expected.items():
                if not same(survey[name], values):
                    wrong.append(name)
            survey.verify()

    threads = [threading.Thread(target=read) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not wrong


def damaged(good):
    for size in range(0, len(good), 7):
        yield f"cut at {size}", good[:size]
    for at in range(len(good)):
        yield f"byte {at}", good[:at] + bytes([good[at] ^ 0x55]) + good[at + 1:]


def test_damage_is_an_error_and_never_a_crash(store, tmp_path):
    path = tmp_path / "damaged.nvt"
    refused = 0
    for what, content in damaged(store.read_bytes()):
        path.write_bytes(content)
        try:
            with norva.open(path) as survey:
                survey.to_pandas()
                [survey.column(number, missing="mask") for number in range(len(survey.channels))]
                survey.verify()
        except norva.Error as error:
            assert error.path == str(path) and error.reason and error.what.startswith("Couldn't"), what
            refused += 1
        else:  # a store may end there
            assert content.endswith(b"DATA END\n"), what
    assert refused > 1000


def test_errors_say_what_where_and_why(tmp_path):
    missing = tmp_path / "none.nvt"
    with pytest.raises(norva.Error) as caught:
        norva.open(missing)
    error = caught.value
    assert (error.what, error.path, error.reason) == (
        "Couldn't open the store", str(missing), "No such file or directory")
    assert str(error) == f"Couldn't open the store: {missing}: No such file or directory"
    huge = tmp_path / "huge.nvt"
    huge.write_bytes(b"PROFILES START\nL,9000000000000000000\nPROFILES END\nCHANNELS START\nM,,0,1,1,0,2,-1\n"
                     b"CHANNELS END\nDATA START\nDATA END\n")
    with pytest.raises(norva.Error, match="more bytes than a file can hold"):
        norva.open(huge)


def test_many_locations(tmp_path):
    path = tmp_path / "many.nvt"
    rows = 1_500_000
    given = one_of_each(rows)
    norva.write(path, np.arange(rows) // 1000, given)
    with norva.open(path) as survey:
        assert len(survey) == 1500
        for name, values in given.items():
            assert same(survey[name], values), name
        assert list(survey.line("1499")["Fid"][-2:]) == [rows - 5, rows - 4]
