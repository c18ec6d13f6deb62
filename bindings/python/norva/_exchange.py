"""Files of other formats: into a store and out of it."""

from __future__ import annotations

import hashlib
import json
import os
import pathlib
import tempfile
from dataclasses import dataclass, field
from typing import Any, Callable, Iterable, Optional, Union

import numpy as np

from . import _norva
from ._survey import Line, Survey
from .settings import (
    Cg3Settings,
    ColumnTextSettings,
    ExportSettings,
    GbnSettings,
    RecordSettings,
    SeaSpySettings,
)

Path = Union[str, "os.PathLike[str]"]
Settings = Union[ColumnTextSettings, SeaSpySettings, Cg3Settings, RecordSettings, GbnSettings]
#: Called with the step, the channel at hand ("" for none) and the percentage of the step; False cancels.
Progress = Callable[[str, str, int], Optional[bool]]


@dataclass(frozen=True)
class Report:
    """What an import made of every byte, line and value of its source.

    Attributes:
        data: the report as `norva import --report FILE.json` writes it.
        settings: those that the import ran by; None for a format without any.
        messages: what the desktop program would have shown.
    """

    data: dict[str, Any]
    settings: Settings | None = None
    messages: list[str] = field(default_factory=list)

    @property
    def format(self) -> str:
        """Label of the source's format."""
        return str(self.data["format"])

    @property
    def locations(self) -> int:
        """Locations of the store."""
        return int(self.data["locations"])

    @property
    def losses(self) -> int:
        """Values and rows that did not reach the store as they stand in the source."""
        return int(self.data["losses"])

    @property
    def accounted(self) -> bool:
        """Whether every byte and line of the source is accounted for."""
        return bool(self.data["read"]["accounted"])


@dataclass(frozen=True)
class Description:
    """What a file tells of itself without being imported.

    Attributes:
        format: label of its format.
        facts: by name.
        tables: by name, as titles of columns and rows: `tables["channels"]`.
        problem: what is wrong with a file that can be described all the same, else "".
    """

    format: str
    facts: dict[str, int | float | str]
    tables: dict[str, tuple[list[str], list[tuple[Any, ...]]]]
    problem: str = ""


def describe(path: Path, *, format: str = "") -> Description:
    """What a file of any format holds. Error when it cannot be read, or is not of the format.

    Args:
        format: label in the format list; "" has it recognised.
    """
    return Description(*_norva.describe(os.fsencode(path), format))


def import_file(
    path: Path,
    store: Path,
    settings: Settings | None = None,
    progress: Progress | None = None,
    *,
    format: str = "",
    replace: bool = False,
    checksum: bool = False,
) -> Report:
    """Imports a file into a new store. Error, and an older store as it was, when that fails or is cancelled.

    Args:
        settings: those of the file's format; None takes what the whole of a text proposes, and of other formats what
            their windows would open with.
        progress: called while it runs; returning False cancels. What it raises, as KeyboardInterrupt, cancels too and is
            raised again.
        format: label in the format list; "" has it recognised.
        replace: whether a store of that name may be replaced.
        checksum: also read the source for its SHA-256.
    """
    report, used, messages = _norva.import_into_store(
        os.fsencode(path), os.fsencode(store), format, settings, replace, checksum, progress
    )
    return Report(json.loads(report), used, messages)


def export(
    store: Path | Survey,
    path: Path,
    lines: Iterable[str | int] | None = None,
    channels: Iterable[str | int] | None = None,
    *,
    line_column: bool = False,
    point_column: bool = False,
    units: bool = True,
    unit_row: bool = False,
    progress: Progress | None = None,
    replace: bool = False,
) -> list[str]:
    """Writes a store in the form that the extension of `path` names: CSV, XYZ text, a worksheet, GBN, native.

    Args:
        store: its path, or the open survey.
        lines: names or numbers, in the order wanted; all that are shown when None.
        channels: names or numbers, in the order wanted; all of them when None.
        line_column: the line's name in a column of its own.
        point_column: a point number in a column of its own.
        units: units in the titles of the columns.
        unit_row: units of a CSV file in a row of their own below the titles.
        progress: as of `import_file`.
        replace: whether a file of that name may be replaced.

    Returns:
        What the desktop program would have shown.
    """
    survey = store if isinstance(store, Survey) else Survey(store)
    settings = ExportSettings(label_as_channel=line_column, point_id=point_column, units=units, unit_row=unit_row)
    if lines is not None:
        settings.lines = [survey.line(name).number for name in lines]
    if channels is not None:
        settings.channels = [survey.number_of(name) for name in channels]
    if survey is not store:
        survey.close()
    return list(_norva.export_from_store(os.fsencode(survey.path), os.fsencode(path), settings, replace, progress))


def _sha256(path: Path) -> str:
    digest = hashlib.sha256()
    with pathlib.Path(path).open("rb") as file:
        while block := file.read(1 << 20):
            digest.update(block)
    return digest.hexdigest()


def _difference(channel: int, found: Line, made: Line) -> str | None:
    """The first location of a line where two stores differ."""
    ours, theirs = (
        np.atleast_1d(line.column(channel, missing="raw", deleted=True)) for line in (found, made)
    )
    if ours.tobytes() == theirs.tobytes():
        return None
    width = ours.nbytes // len(ours)
    rows = (np.frombuffer(values.tobytes(), np.uint8).reshape(-1, width) for values in (ours, theirs))
    at = int(np.flatnonzero(np.not_equal(*rows).any(axis=1))[0])
    name = made.survey.channels[channel].name
    return f"line {made.name}, location {at}, {name}: the store has {ours[at]}, the source gives {theirs[at]}"


def _differences(found: Survey, made: Survey) -> Iterable[str]:
    if [(line.name, line.location_count) for line in found] != [(line.name, line.location_count) for line in made]:
        yield "its lines are not those that the source gives"
        return
    if found.channels != made.channels:
        yield "its channels are not those that the source gives"
        return
    for channel in range(len(made.channels)):
        for ours, theirs in zip(found, made):
            difference = _difference(channel, ours, theirs)
            if difference is not None:
                yield difference
                break


def verify(
    store: Path, report: Report | None = None, *, source: Path | None = None, progress: Progress | None = None
) -> list[str]:
    """Whether a store is what was written, and with a report, whether it is what its source gives.

    The source is imported once more, by the settings of the report, into a temporary store, and every value compared.
    Marks of deletion do not count.

    Args:
        report: of the import that made the store, as `import_file` returned it.
        source: where the source is now, when it is not where the report says.
        progress: as of `import_file`.

    Returns:
        What differs, at most one place per channel; nothing when all agrees. Error when the store or the source cannot
        be read, or the values of the store do not fit their checksums.
    """
    with Survey(store) as found:
        found.verify()
        if report is None:
            return []
        told = report.data["source"]
        path = told["path"] if source is None else source
        differences = []
        with tempfile.TemporaryDirectory() as folder:
            again = os.path.join(folder, "again.nvt")
            import_file(path, again, report.settings, progress, format=report.format)
            if told["sha256"] and _sha256(path) != told["sha256"]:
                differences.append(f"{os.fspath(path)}: its SHA-256 is not that of the report")
            with Survey(again) as made:
                differences += [f"{os.fspath(store)}: {text}" for text in _differences(found, made)]
        return differences
