"""What goes into a store, and what is refused."""

import numpy as np
import pandas
import pytest
from conftest import one_of_each

import norva


def test_a_table_goes_there_and_back(store, tmp_path):
    with norva.open(store) as survey:
        table = survey.to_pandas(channels=["Mag", "Lat", "Fid", "Quality", "Remark", "Date", "Time"])
        norva.write(tmp_path / "again.nvt", "line", table, describe=survey)
        with norva.open(tmp_path / "again.nvt") as again:
            pandas.testing.assert_frame_equal(again.to_pandas(), table, check_categorical=False, check_exact=True)
            assert again.channels == survey.channels[:7]
            assert [line.name for line in again] == ["L1000", "L1010 ü"]


def test_lines_begin_where_the_name_changes(tmp_path):
    path = tmp_path / "lines.nvt"
    for labels in (["A", "A", "B", "A"], pandas.Series(["A", "A", "B", "A"], dtype="category"), [10, 10, 20, 10]):
        norva.write(path, labels, {"M": np.arange(4.0)})
        assert [(line.name, len(line)) for line in norva.open(path)] == [
            (str(labels[0]), 2), (str(labels[2]), 1), (str(labels[0]), 1)]
    norva.write(path, [], {"M": np.zeros(0)})
    assert len(norva.open(path)) == 0


@pytest.mark.parametrize(
    "values, kind, stored",
    [
        (np.array([1, 2], "u1"), "short", [1, 2]),
        (np.array([True, False]), "short", [1, 0]),
        (np.array([1, -2**31], "i8"), "long", [1, -2**31]),
        (pandas.Series([1, None], dtype="Int64"), "long", [1, np.nan]),
        (pandas.Series([1.5, None], dtype="Float64"), "double", [1.5, np.nan]),
        (pandas.Series(["B", "A"], dtype="category"), "text", ["B", "A"]),
        (pandas.Series(["B", None], dtype="string"), "text", ["B", ""]),
        ([1, 2.5, None], "double", [1, 2.5, np.nan]),
        (np.array([b"x\xff", b""]), "text", ["x\udcff", ""]),
        (np.arange(12)[::2], "long", [0, 2, 4, 6, 8, 10]),
        (np.array([1, 2], ">f4"), "float", [1, 2]),
    ],
)
def test_kinds_of_arrays(tmp_path, values, kind, stored):
    path = tmp_path / "a.nvt"
    norva.write(path, [("L", len(values))], {"C": values})
    with norva.open(path) as survey:
        assert survey.channel("C").type == kind
        np.testing.assert_array_equal(survey["C"], np.array(stored))


def test_displays_show_the_values(tmp_path):
    path = tmp_path / "a.nvt"
    norva.write(path, [("L", 2)], {"A": [1.25, 2.5], "B": np.array([0.1, 3], "f4"), "C": [1.0, 2.0], "D": [1 / 3, 1]})
    assert [channel.decimals for channel in norva.open(path).channels] == [2, 1, 0, 4]
    short = norva.Channel("A", "m", type="short", decimals=0)
    norva.write(path, [("L", 2)], {"A": [1.0, np.nan]}, describe=[short])
    assert norva.open(path).channels == [short]


REFUSED = {
    "infinite": ({"C": [1.0, np.inf]}, 'channel "C", row 1', "does not fit in the type double"),
    "too large": ({"C": np.array([0, 2**40])}, 'channel "C", row 1', "1099511627776 does not fit in the type long"),
    "time of day": ({"C": np.array(["2024-01-01T12", "2024-01-02"], "M8[h]")}, 'channel "C", row 0', "two channels"),
    "year": ({"C": np.array(["-0001-01-01", "NaT"], "M8[D]")}, 'channel "C", row 0', "before the year 0"),
    "mixed": ({"C": ["a", 1.5]}, None, None),
    "object": ({"C": np.array(["a", {}], dtype=object)}, 'channel "C", row 1', "neither a number nor a text"),
    "complex": ({"C": np.zeros(2, complex)}, 'channel "C"', "no values of the type complex128"),
    "cube": ({"C": np.zeros((2, 2, 2))}, 'channel "C"', "the shape"),
    "uneven": ({"B": [1, 2], "C": [1, 2, 3]}, 'channel "C"', "it has 3 rows, the ones before it 2"),
    "lines": ({"C": [1, 2, 3]}, "", "the lines have 2 locations, and the channels 3 rows"),
}


@pytest.mark.parametrize("case", REFUSED)
def test_what_a_store_cannot_hold_is_refused_and_the_older_one_stays(store, case):
    channels, place, reason = REFUSED[case]
    before = store.read_bytes()
    if place is None:
        norva.write(store, [("L", 2)], channels)  # numpy makes texts of both
        assert list(norva.open(store)["C"]) == ["a", "1.5"]
        return
    with pytest.raises(norva.Error, match="Couldn't write the store") as caught:
        norva.write(store, [("L", 2)], channels)
    assert (caught.value.path, caught.value.place) == (str(store), place)
    assert reason in caught.value.reason
    assert store.read_bytes() == before and len(list(store.parent.iterdir())) == 1


def test_described_types_are_kept_or_refused(tmp_path):
    path = tmp_path / "a.nvt"
    for values, described, reason in [
        ([1.5], norva.Channel("C", type="short"), "is not whole"),
        ([40000], norva.Channel("C", type="short"), "40000 does not fit in the type short"),
        ([1], norva.Channel("C", type="text", size=3), "numbers do not fit"),
        (["x"], norva.Channel("C", type="float"), "texts do not fit"),
    ]:
        with pytest.raises(norva.Error, match=reason):
            norva.write(path, [("L", 1)], {"C": values}, describe=[described])
    assert not path.exists()


def test_places_that_cannot_be_written(tmp_path):
    for path in (tmp_path, tmp_path / "none" / "a.nvt"):
        with pytest.raises(norva.Error) as caught:
            norva.write(path, [("L", 1)], {"C": [1]})
        assert caught.value.path == str(path) and caught.value.reason
    with pytest.raises(norva.Error, match="the table has 0 of that title"):
        norva.write(tmp_path / "a.nvt", "line", pandas.DataFrame({"C": [1]}))


def test_big_table_of_one_of_each_under_a_survey_that_is_open(store):
    with norva.open(store) as survey:
        remark = survey["Remark"]
        norva.write(store, [("L", 100)], one_of_each(100))
        assert survey.location_count == 7 and list(remark[:1]) == ["OK"]
        assert np.array_equal(survey["Lat"], one_of_each(7)["Lat"])
    assert norva.open(store).location_count == 100
