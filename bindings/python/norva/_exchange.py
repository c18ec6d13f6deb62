"""Files of other formats: into a store and out of it."""

from __future__ import annotations

import json
import os
from dataclasses import dataclass, field
from typing import Any, Callable, Iterable, Optional, Union

from . import _norva
from ._survey import Survey
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
        settings: those of the file's format; None takes what its window would open with.
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
    progress: Progress | None = None,
    replace: bool = False,
) -> list[str]:
    """Writes a store in the form that the extension of `path` names: XYZ text, a worksheet, GBN, native.

    Args:
        store: its path, or the open survey.
        lines: names or numbers, in the order wanted; all that are shown when None.
        channels: names or numbers, in the order wanted; all of them when None.
        line_column: the line's name in a column of its own.
        point_column: a point number in a column of its own.
        units: units in the titles of the columns.
        progress: as of `import_file`.
        replace: whether a file of that name may be replaced.

    Returns:
        What the desktop program would have shown.
    """
    survey = store if isinstance(store, Survey) else Survey(store)
    settings = ExportSettings(label_as_channel=line_column, point_id=point_column, units=units)
    if lines is not None:
        settings.lines = [survey.line(name).number for name in lines]
    if channels is not None:
        settings.channels = [survey.number_of(name) for name in channels]
    if survey is not store:
        survey.close()
    return list(_norva.export_from_store(os.fsencode(survey.path), os.fsencode(path), settings, replace, progress))
