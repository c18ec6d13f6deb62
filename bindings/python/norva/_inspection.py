"""How a text file is best imported, from the whole of it."""

from __future__ import annotations

import os
from dataclasses import dataclass
from typing import Iterable, Union

from . import _norva
from .settings import ColumnTextSettings

Path = Union[str, "os.PathLike[str]"]


@dataclass(frozen=True)
class Finding:
    """One choice and why it was made.

    Attributes:
        subject: "separator", "header line", or the name of a column.
        choice: "semicolon", "31", "double".
        evidence: a sentence with counts and line numbers.
        doubt: whether another reading suits as well, or nearly so.
        option: of the command line, which would settle the doubt; or "".
    """

    subject: str
    choice: str
    evidence: str
    doubt: bool
    option: str

    def __str__(self) -> str:
        return f"{'? ' if self.doubt else ''}{self.subject}: {self.choice} ({self.evidence})"


@dataclass(frozen=True)
class OddLine:
    """A line of the file that does not agree with the table, or several in sequence.

    Attributes:
        line, last: numbers in the file, from 1; the same for a single line.
        what: "mended" (stored, read otherwise than the rows around it), "left out", "another table" (left out as well),
            "spoilt cell" (stored with one missing value).
        text: of the line or the cell, cut to a length that can be shown.
        reason: why it does not agree, and what was done.
    """

    line: int
    last: int
    what: str
    text: str
    reason: str


@dataclass(frozen=True)
class Inspection:
    """A proposal for the import of a text file.

    Attributes:
        settings: to be given to `import_file`, as they are or changed.
        findings: every choice with its evidence, doubts among them.
        odd_lines: the first thousand, in the order of the file.
        survey_lines: names of the first lines of the survey, where lines of the file name them.
        counts: lines of the file by what they are; "lines" is their sum, "mended" counts among "rows".
        header_line: line of the file with the names, from 1; 0 for none.
        unit_line: line of the file with the units; 0 for none.
        is_table: whether the file reads as rows of one table; if not, the settings are of little use.
    """

    settings: ColumnTextSettings
    findings: list[Finding]
    odd_lines: list[OddLine]
    survey_lines: list[str]
    counts: dict[str, int]
    header_line: int
    unit_line: int
    is_table: bool

    @property
    def doubts(self) -> list[Finding]:
        """The findings that a person should look at."""
        return [finding for finding in self.findings if finding.doubt]

    def __str__(self) -> str:
        return "\n".join(map(str, self.findings))


def inspect(
    path: Path,
    *,
    dates: str | None = None,
    no_data: Iterable[float] = (),
    keep: Iterable[float] = (),
    markers: Iterable[str] = (),
    finds_markers: bool = True,
    label_column: int | None = None,
    separator: str | None = None,
    header_line: int | None = None,
    text_columns: Iterable[int] = (),
) -> Inspection:
    """Reads a text file once and proposes how to import it. Error when it cannot be read.

    What is given is settled; all else is found out. Columns are those of the file, from 0.

    Args:
        dates: "dmy", "mdy" or "ymd", where dates allow it.
        no_data: numbers that stand for a missing value, however rare.
        keep: numbers that do not.
        markers: further words that start a line of the survey.
        finds_markers: False: no other words do.
        label_column: column whose changes start a line of the survey; -1 for none.
        separator: one of "," ";" "|" and tab, or a blank for runs of blanks and tabs.
        header_line: line of the file with the names, from 1; 0 for none.
        text_columns: columns that are stored as texts.
    """
    if dates not in (None, "dmy", "mdy", "ymd"):
        raise ValueError(f'dates is "dmy", "mdy" or "ymd", not {dates!r}')
    options = {
        "no_data": [float(number) for number in no_data],
        "keep": [float(number) for number in keep],
        "markers": list(markers),
        "finds_markers": finds_markers,
        "text_columns": list(text_columns),
    }
    settled = {"dates": dates, "label_column": label_column, "separator": separator, "header_line": header_line}
    options.update((name, value) for name, value in settled.items() if value is not None)
    found = _norva.inspect_text(os.fsencode(path), options)
    found["findings"] = [Finding(*one) for one in found["findings"]]
    found["odd_lines"] = [OddLine(*one) for one in found["odd_lines"]]
    return Inspection(**found)
