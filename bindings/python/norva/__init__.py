"""Stores of geophysical survey data: lines, channels, locations.

    import norva

    with norva.open("survey.nvt") as survey:
        mag = survey["Mag"]                      # all lines, shape (locations,)
        first = survey.line("L1000")["Mag"]      # one line
        table = survey.to_pandas(channels=["X", "Y", "Mag"])
    norva.write("levelled.nvt", "line", table)

A line is a survey line, a channel a measured or computed quantity, a location one point of a line, with one value (or one
array) of every channel.
"""

from . import settings
from ._error import Cancelled, Error
from ._exchange import Description, Report, describe, export, import_file, verify
from ._inspection import Finding, Inspection, OddLine, inspect
from ._norva import library_version as __version__
from ._survey import Channel, Line, Survey, open
from ._writing import mark_deleted, write

__all__ = [
    "Cancelled",
    "Channel",
    "Description",
    "Error",
    "Finding",
    "Inspection",
    "Line",
    "OddLine",
    "Report",
    "Survey",
    "describe",
    "export",
    "import_file",
    "inspect",
    "mark_deleted",
    "open",
    "settings",
    "verify",
    "write",
]
