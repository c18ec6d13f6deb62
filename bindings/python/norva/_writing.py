"""Writing stores."""

from __future__ import annotations

import dataclasses
import os
from typing import TYPE_CHECKING, Any, Iterable, Mapping, Union

import numpy as np
from numpy.typing import ArrayLike, NDArray

from . import _norva
from ._error import Error
from ._survey import Channel, Survey, channel_codes

if TYPE_CHECKING:
    import pandas

Lines = Union[str, Iterable[Any]]
Channels = Union["pandas.DataFrame", Mapping[str, Any], Iterable[tuple[str, Any]]]

_STORED = {"float": "<f4", "double": "<f8", "int": "<i4", "long": "<i4", "short": "<i2"}
#: The smallest and the largest value; whole numbers end before their no-data value.
_LIMITS = {
    "float": (-1.0e30, 1.0e30),
    "double": (-1.0e30, 1.0e30),
    "int": (-2147483648, 2147483646),
    "long": (-2147483648, 2147483646),
    "short": (-32768, 32766),
}
_NO_DATA = {"float": 1.0e30, "double": 1.0e30, "int": 2147483647, "long": 2147483647, "short": 32767}
_MOST_DECIMALS = {"float": 5, "double": 9}
_ISO_DATE = 6
_MILLISECONDS = 2


class _Problem(Exception):
    """What is wrong with the values of a channel; `row` where it is about one."""

    def __init__(self, reason: str, row: int | None = None) -> None:
        super().__init__(reason)
        self.row = row


def _first(where: NDArray[np.bool_]) -> int:
    return int(np.argwhere(where)[0][0])


def _split(values: Any) -> tuple[NDArray[Any], NDArray[np.bool_] | None]:
    """Values as a plain array, and which of them a mask or an extension type says are missing."""
    if isinstance(values, np.ma.MaskedArray):
        return values.data, np.ma.getmaskarray(values)
    kind = getattr(values, "dtype", None)
    if kind is not None and not isinstance(kind, np.dtype):  # one of pandas' own types
        missing = np.asarray(values.isna(), dtype=bool)
        plain = getattr(kind, "numpy_dtype", None)
        if isinstance(plain, np.dtype) and plain.kind in "iufb":
            return values.to_numpy(dtype=plain, na_value=plain.type(0)), missing
        objects = values.astype(object).to_numpy(copy=True)
        objects[missing] = None
        return objects, missing
    return np.asarray(values), None


def _packed_texts(values: NDArray[Any], missing: NDArray[np.bool_] | None, channel: Channel) -> tuple[Any, Channel]:
    if values.ndim != 1:
        raise _Problem("an array of texts has no place in a store")
    if values.dtype.kind == "O":
        texts = []
        for row, value in enumerate(values):
            if isinstance(value, str):
                texts.append(value.encode("utf-8", "surrogateescape"))
            elif isinstance(value, bytes):
                texts.append(value)
            elif value is None or value != value:
                texts.append(b"")
            else:
                raise _Problem(f"{value!r} is neither a number nor a text", row)
        packed = np.array(texts, dtype=bytes)
    elif values.dtype.kind == "U":
        try:
            packed = values.astype(bytes)
        except UnicodeEncodeError:
            packed = np.char.encode(values, "utf-8", "surrogateescape")
    else:
        packed = values
    packed = np.where(packed == b"", b"*", packed)
    if missing is not None:
        packed = np.where(missing, b"*", packed)
    width = max(packed.dtype.itemsize, channel.size if channel.type == "text" else 1)
    padded = np.char.ljust(packed, width, b" ").astype(f"S{width}")
    return padded, dataclasses.replace(channel, type="text", size=width, array=False)


def _packed_numbers(values: NDArray[Any], missing: NDArray[np.bool_] | None, channel: Channel) -> tuple[Any, Channel]:
    if values.ndim > 2 or (values.ndim == 2 and values.shape[1] == 0):
        raise _Problem(f"a channel has one or two dimensions, not the shape {values.shape}")
    if missing is None:
        missing = np.zeros(values.shape, dtype=bool)
    if values.dtype.kind == "f":
        missing = missing | np.isnan(values)
    smallest, largest = _LIMITS[channel.type]
    # The no-data value itself stands for no-data.
    missing = missing | (values == _NO_DATA[channel.type])
    outside = ~missing & ((values > largest) | (values < smallest))
    if outside.any():
        raise _Problem(f"{values[outside][0]} does not fit in the type {channel.type}", _first(outside))
    if channel.type not in ("float", "double") and values.dtype.kind == "f":
        broken = ~missing & (np.where(missing, 0, values) % 1 != 0)
        if broken.any():
            raise _Problem(f"{values[broken][0]} is not whole, and the type is {channel.type}", _first(broken))
    stored = np.where(missing, np.asarray(0, values.dtype), values).astype(_STORED[channel.type])
    stored[missing] = _NO_DATA[channel.type]
    size = values.shape[1] if values.ndim == 2 else 1
    return np.ascontiguousarray(stored), dataclasses.replace(channel, size=size, array=values.ndim == 2)


def _decimals(values: NDArray[Any], kind: str) -> int:
    """As few decimals as show a sample of the values as they are; 4 when no reasonable number does."""
    sample = values.reshape(-1)[:: max(1, values.size // 2000)]
    sample = sample[np.isfinite(sample) & (np.abs(sample) < 1e15)]
    for decimals in range(_MOST_DECIMALS[kind]):
        if np.array_equal(np.round(sample.astype(np.float64), decimals).astype(sample.dtype), sample):
            return decimals
    return 4


def _packed(name: str, given: Any, described: Channel | None) -> tuple[Any, Channel]:
    """The values as a store has them, and the channel that they make."""
    values, missing = _split(given)
    kind = values.dtype.kind
    if kind == "O" and all(isinstance(value, (int, float, np.number)) or value is None for value in values.flat):
        values = np.array([np.nan if value is None else float(value) for value in values.flat]).reshape(values.shape)
        kind = "f"
    if kind in "OUS":
        if described is not None and described.type != "text":
            raise _Problem(f"texts do not fit in the type {described.type}")
        return _packed_texts(values, missing, described or Channel(name, type="text", display="unset", decimals=0))
    if described is not None and described.type == "text":
        raise _Problem("numbers do not fit in the type text")
    if kind == "M":
        days = values.astype("datetime64[D]")
        broken = ~np.isnat(values) & (days != values)
        if broken.any():
            raise _Problem("a date with a time of day needs two channels, one for each", _first(broken))
        years = _norva.decimal_years(np.ascontiguousarray(days).view(np.int64))
        lost = ~np.isnat(values) & (years == _NO_DATA["double"])
        if lost.any():
            raise _Problem(f"{days[lost][0]} is before the year 0", _first(lost))
        made = described or Channel(name, type="double", display="date", template=_ISO_DATE, decimals=0)
        return _packed_numbers(years, missing, made)
    if kind == "m":
        hours = np.where(np.isnat(values), np.nan, values / np.timedelta64(1, "h"))
        made = described or Channel(name, "h", type="double", display="time", template=_MILLISECONDS, decimals=3)
        return _packed_numbers(hours, missing, made)
    if kind not in "fiub":
        raise _Problem(f"a store has no values of the type {values.dtype}")
    if kind == "b":
        values = values.astype(np.int16)
    if described is not None:
        return _packed_numbers(values, missing, described)
    if kind == "f":
        made = "float" if values.dtype.itemsize <= 4 else "double"
        return _packed_numbers(values, missing, Channel(name, type=made, decimals=_decimals(values, made)))
    made = "short" if values.dtype.itemsize == 1 or values.dtype == np.int16 else "long"
    return _packed_numbers(values, missing, Channel(name, type=made, decimals=0))


def _runs(labels: Any, rows: int) -> list[tuple[str, int]]:
    """Lines as (name, locations): a new one begins where the label changes."""
    values = labels.to_numpy() if hasattr(labels, "to_numpy") else np.asarray(labels)
    if values.ndim != 1 or len(values) != rows:
        raise _Problem(f"the lines have the shape {values.shape}, and the channels {rows} rows")
    if rows == 0:
        return []
    if values.dtype.kind in "OfM":
        unnamed = np.array([value is None or value != value for value in values])
        if unnamed.any():
            raise _Problem("there is no name of a line", _first(unnamed))
    starts = np.concatenate([[0], np.flatnonzero(values[1:] != values[:-1]) + 1, [rows]])
    return [(str(values[start]), int(end - start)) for start, end in zip(starts[:-1], starts[1:])]


def _is_pairs(lines: Any) -> bool:
    return isinstance(lines, (list, tuple)) and all(isinstance(line, tuple) and len(line) == 2 for line in lines)


def _descriptions(describe: Any) -> dict[str, Channel]:
    if describe is None:
        return {}
    if isinstance(describe, Survey):
        describe = describe.channels
    if isinstance(describe, Mapping):
        return dict(describe)
    found: dict[str, Channel] = {}
    for channel in describe:
        found.setdefault(channel.name, channel)
    return found


def write(
    path: str | os.PathLike[str],
    lines: Lines,
    channels: Channels,
    *,
    units: Mapping[str, str] | None = None,
    describe: Survey | Mapping[str, Channel] | Iterable[Channel] | None = None,
) -> None:
    """Writes a new store, which takes its name once it is complete; until then an older one stays as it was.

    Args:
        lines: the name of a line for every row, shape (rows,), where each change of the name begins a line; or a list of
            (name, locations); or, when `channels` is a DataFrame, the title of its column with the names.
        channels: values by channel name, each of shape (rows,) or (rows, elements), line after line; or pairs of name
            and values; or a DataFrame. NaN, NaT, None, "" and masked values become no-data. float32 becomes "float",
            float64 "double", 8 and 16 bits "short", longer whole numbers "long", datetime64 a date, timedelta64 a time
            in hours, texts "text".
        units: units by channel name: {"Mag": "nT"}.
        describe: channels whose type, units and display those of the same name take over, as of the survey that the
            values came from.

    Error, with channel and row, for a value that the store cannot hold as it is; a number is only ever rounded to the
    type of its channel.
    """
    what, name = "Couldn't write the store", os.fspath(path)
    described = _descriptions(describe)
    columns: list[tuple[str, Any]]
    if isinstance(channels, Mapping):
        columns = list(channels.items())
    elif hasattr(channels, "columns"):
        columns = [(str(title), channels.iloc[:, at]) for at, title in enumerate(channels.columns)]
        if isinstance(lines, str):
            places = [at for at, (title, _) in enumerate(columns) if title == lines]
            if len(places) != 1:
                raise Error(what, name, f'column "{lines}"', f"the table has {len(places)} of that title")
            lines = columns.pop(places[0])[1]
    else:
        columns = list(channels)
    if isinstance(lines, str):
        raise Error(what, name, "", "lines is the title of a column only where the channels are a DataFrame")

    packed = []
    rows = None
    for title, values in columns:
        try:
            stored, channel = _packed(title, values, described.get(title))
        except _Problem as problem:
            place = f'channel "{title}"' + (f", row {problem.row}" if problem.row is not None else "")
            raise Error(what, name, place, str(problem)) from None
        if rows is not None and len(stored) != rows:
            raise Error(what, name, f'channel "{title}"', f"it has {len(stored)} rows, the ones before it {rows}")
        rows = len(stored)
        channel = dataclasses.replace(channel, name=title, units=(units or {}).get(title, channel.units))
        packed.append((*channel_codes(channel), stored))
    try:
        if _is_pairs(lines):
            counts = [(str(line), int(count)) for line, count in lines]
            total = sum(count for _, count in counts)
            if rows is not None and total != rows:
                raise _Problem(f"the lines have {total} locations, and the channels {rows} rows")
        else:
            counts = _runs(lines, len(list(lines)) if rows is None else rows)
    except _Problem as problem:
        raise Error(what, name, "" if problem.row is None else f"row {problem.row}", str(problem)) from None
    _norva.write_store(os.fsencode(path), [(line.encode("utf-8", "surrogateescape"), count) for line, count in counts], packed)


def mark_deleted(
    path: str | os.PathLike[str], line: str | int, locations: ArrayLike, deleted: bool = True
) -> None:
    """Marks locations of a line deleted, or not any more, and saves the store.

    Args:
        line: its name, or its number from 0.
        locations: numbers of the line's locations, from 0, those counted that are deleted already.
    """
    with Survey(path) as survey:
        number = survey.line(line).number
    _norva.mark_deleted(os.fsencode(path), number, np.asarray(locations, dtype=np.int64).reshape(-1), deleted)
