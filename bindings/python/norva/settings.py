"""Settings of imports and exports, as the windows of the desktop program ask for them.

Each class is made with its members by name, `RecordSettings(channels=[...], fiducial=False)`, has a default for each of
them and compares by value. A member that is a list is replaced as a whole.
"""

from ._norva import (
    Cg3Settings,
    ColumnLook,
    ColumnReading,
    ColumnTextSettings,
    ExportSettings,
    GbnChannel,
    GbnLine,
    GbnSettings,
    RecordChannel,
    RecordSettings,
    SeaSpySettings,
    TextReading,
)

__all__ = [
    "Cg3Settings",
    "ColumnLook",
    "ColumnReading",
    "ColumnTextSettings",
    "ExportSettings",
    "GbnChannel",
    "GbnLine",
    "GbnSettings",
    "RecordChannel",
    "RecordSettings",
    "SeaSpySettings",
    "TextReading",
]
