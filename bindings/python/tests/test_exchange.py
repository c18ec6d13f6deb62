"""Imports and exports without windows: how they run, and end early."""

import _thread
import threading

import pytest

import norva
from norva.settings import ColumnTextSettings, ExportSettings


def test_progress_cancels_and_what_it_raises_comes_out(samples, tmp_path):
    store = tmp_path / "survey.nvt"
    calls = []
    report = norva.import_file(samples / "airborne.p01", store, progress=lambda *call: calls.append(call))
    assert (report.format, report.locations, report.accounted) == ("Tarko", 182, True)
    assert calls and all(0 <= percent <= 100 for _, _, percent in calls)
    before = store.read_bytes()
    with pytest.raises(norva.Cancelled):
        norva.import_file(samples / "airborne.p01", store, progress=lambda *_: False, replace=True)
    with pytest.raises(ZeroDivisionError):
        norva.import_file(samples / "airborne.p01", store, progress=lambda *_: 1 / 0, replace=True)
    with pytest.raises(KeyboardInterrupt):
        norva.import_file(samples / "airborne.p01", store, progress=lambda *_: _thread.interrupt_main(), replace=True)
    assert store.read_bytes() == before and list(tmp_path.iterdir()) == [store]


def test_imports_run_side_by_side(samples, tmp_path):
    stores = [tmp_path / f"{number}.nvt" for number in range(8)]
    threads = [threading.Thread(target=norva.import_file, args=(samples / "airborne.p01", store)) for store in stores]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert len({store.read_bytes() for store in stores}) == 1


def test_failures_say_why(samples, tmp_path):
    (tmp_path / "empty.xyz").write_bytes(b"")
    (tmp_path / "prose.txt").write_text("A letter.\nIt has no table, only words, many or few.\nSincerely\n" * 5)
    for source, given in [(tmp_path / "none.xyz", {}), (tmp_path / "empty.xyz", {}), (tmp_path / "prose.txt", {}),
                          (samples / "survey.xyz", {"format": "No format"}),
                          (samples / "survey.gbn", {"format": "Tarko"})]:
        with pytest.raises(norva.Error) as caught:
            norva.import_file(source, tmp_path / "out.nvt", **given)
        assert caught.value.path == str(source) and str(caught.value)
        assert not (tmp_path / "out.nvt").exists()
    with pytest.raises(norva.Error):
        norva.export(tmp_path / "none.nvt", tmp_path / "out.xyz")
    norva.write(tmp_path / "a.nvt", [("L", 1)], {"M": [1.0]})
    with pytest.raises(norva.Error, match="cannot be written"):
        norva.export(tmp_path / "a.nvt", tmp_path / "out.pdf")


def test_a_store_is_compared_with_its_source(samples, tmp_path):
    store, source = tmp_path / "flown.nvt", tmp_path / "flown.p01"
    source.write_bytes((samples / "airborne.p01").read_bytes())
    report = norva.import_file(source, store, checksum=True)
    assert norva.verify(store) == norva.verify(store, report) == []
    with norva.open(store) as survey:
        names = [channel.name for channel in survey.channels]
        values = [survey[name].copy() for name in names]
        lines = [(line.name, len(line)) for line in survey]
        values[names.index("mag")][7] += 1
        norva.write(tmp_path / "changed.nvt", lines, list(zip(names, values)), describe=survey)
        norva.write(tmp_path / "short.nvt", [(lines[0][0], lines[0][1])],
                    [(name, column[:lines[0][1]]) for name, column in zip(names, values)], describe=survey)
    (difference,) = norva.verify(tmp_path / "changed.nvt", report)
    assert f"line {lines[0][0]}, location 7, mag: the store has" in difference
    (difference,) = norva.verify(tmp_path / "short.nvt", report)
    assert "its lines are not" in difference
    content = bytearray(source.read_bytes())
    content[-1] ^= 1
    source.write_bytes(content)
    assert any("SHA-256" in text for text in norva.verify(store, report))
    content = bytearray(store.read_bytes())
    content[content.index(b"DATA START\n") + 20] ^= 1
    store.write_bytes(content)
    with pytest.raises(norva.Error, match="checksum"):
        norva.verify(store)


def test_describe(samples):
    told = norva.describe(samples / "survey.gbn")
    assert told.format == "Geosoft GBN" and told.facts and told.problem == ""
    titles, rows = told.tables["channels"]
    assert len(rows) == 5 and len(titles) == len(rows[0])
    with pytest.raises(norva.Error):
        norva.describe(samples / "none")


def test_settings_are_values():
    columns = [norva.Channel("Mag", "nT", type="double"), norva.Channel("Note", type="skipped")]
    settings = ColumnTextSettings(skip=2, columns=columns, label_column=0)
    assert settings == ColumnTextSettings(skip=2, columns=columns, label_column=0) != ColumnTextSettings()
    assert settings.columns == columns and settings.reading is None
    assert ExportSettings(lines=[1, 0]).lines == [1, 0] and ExportSettings().channels is None
    with pytest.raises(TypeError, match="no setting 'skips'"):
        ColumnTextSettings(skips=1)
    with pytest.raises(ValueError, match="type 'triple'"):
        ColumnTextSettings(columns=[norva.Channel("Mag", type="triple")])
