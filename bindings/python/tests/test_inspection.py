"""What is found out about a text file before it is imported."""

import pytest

import norva

MESSY = "; a log\nLine;Day;Mag [nT]\n" + "".join(
    f"L{row // 10};0{row % 9 + 1}/0{row % 7 + 1}/2024;5{row:03d},{row % 10}\n" for row in range(60))


def test_a_proposal_is_a_reading_with_its_reasons(tmp_path):
    source, store = tmp_path / "log.txt", tmp_path / "log.nvt"
    source.write_text(MESSY + "L5;2;3;4;x\n")
    found = norva.inspect(source)
    assert found.is_table and found.header_line == 2 and found.settings.label_column == 0
    assert found.counts["lines"] == 63 and found.counts["rows"] == 60
    assert [(line.line, line.what) for line in found.odd_lines] == [(63, "left out")]
    (doubt,) = [finding for finding in found.doubts if finding.subject == "Day"]
    assert "--dates" in doubt.option and f"? Day: {doubt.choice}" in str(found)
    assert not norva.inspect(source, dates="mdy").doubts
    assert found.settings.reading.separator == ";" and found.settings.reading.decimal_mark == ","

    report = norva.import_file(source, store)
    assert report.settings == found.settings
    with norva.open(store) as survey:
        assert [channel.name for channel in survey.channels] == ["Line", "Day", "Mag"]
        assert len(survey) == 6 and survey["Mag"][11] == pytest.approx(5011.1)
    changed = norva.inspect(source, label_column=-1, no_data=[5011.1], text_columns=[1]).settings
    norva.import_file(source, store, changed, replace=True)
    with norva.open(store) as survey:
        assert len(survey) == 1 and survey["Day"][1] == "02/02/2024" and survey["Mag"][11] != survey["Mag"][11]


def test_what_is_no_text_or_no_option_is_refused(samples, tmp_path):
    assert not norva.inspect(samples / "base.bin").is_table
    for path in (tmp_path / "none", tmp_path):
        with pytest.raises(norva.Error) as caught:
            norva.inspect(path)
        assert caught.value.path == str(path) and caught.value.reason
    with pytest.raises(ValueError, match="dates"):
        norva.inspect(samples / "survey.csv", dates="ydm")
