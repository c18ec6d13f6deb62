"""Reading stores."""

from __future__ import annotations

import os
import warnings
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any, Iterable, Iterator, Literal, Sequence, Union

import numpy as np
from numpy.typing import NDArray

from . import _norva

if TYPE_CHECKING:
    import pandas
    import xarray

Missing = Literal["nan", "mask", "raw"]
LineName = Union[str, int]

#: Names of the data types and displays, by their codes.
TYPES = {-1: "skipped", 0: "float", 1: "double", 2: "int", 3: "long", 4: "text", 5: "short"}
DISPLAYS = {-1: "unset", 0: "fixed", 1: "exponent", 2: "time", 3: "date", 4: "geographic"}
TYPE_CODES = {name: code for code, name in TYPES.items()}
_DISPLAY_CODES = {name: code for code, name in DISPLAYS.items()}

# What pandas and xarray can hold, whose dates and times are 64 bits of nanoseconds.
_PANDAS_LIMITS = {
    "M": (np.datetime64("1677-09-22", "ms"), np.datetime64("2262-04-10", "ms")),
    "m": (np.timedelta64(-106751, "D"), np.timedelta64(106751, "D")),
}


@dataclass(frozen=True)
class Channel:
    """What a store knows of a channel.

    Attributes:
        name: may be blank, and several channels may have one name.
        units: as written: "nT", "m".
        type: "float" (4 bytes), "double" (8), "int" or "long" (4), "short" (2), "text"; in settings of an import "skipped"
            for a column that is left out.
        size: characters of a text, elements of an array, else 1.
        array: whether a location has `size` numbers.
        display: "fixed", "exponent", "time" (hours), "date" (decimal years), "geographic" (decimal degrees), "unset".
        decimals: digits after the point when shown or exported.
        template: code of the date or time template, -1 for none.
    """

    name: str
    units: str = ""
    type: str = "float"
    size: int = 1
    array: bool = False
    display: str | int = "fixed"
    decimals: int = 2
    template: int = -1

    @property
    def is_date(self) -> bool:
        return self.display == "date" and self.type in ("float", "double")

    @property
    def is_time(self) -> bool:
        return self.display == "time" and self.type in ("float", "double")


def channel_of(
    name: str, units: str, type_code: int, size: int, array: bool, display: int, decimals: int, template: int
) -> Channel:
    """From the codes of a store."""
    return Channel(name, units, TYPES[type_code], size, array, DISPLAYS.get(display, display), decimals, template)


def channel_codes(channel: Channel) -> tuple[bytes, bytes, int, int, bool, int, int, int]:
    """The way back; ValueError for a type or display that does not exist."""
    display = _DISPLAY_CODES.get(channel.display, channel.display)
    if channel.type not in TYPE_CODES or not isinstance(display, int):
        raise ValueError(f'channel "{channel.name}" has the type {channel.type!r} and the display {channel.display!r}')
    name, units = (text.encode("utf-8", "surrogateescape") for text in (channel.name, channel.units))
    code = TYPE_CODES[channel.type]
    return name, units, code, channel.size, channel.array, display, channel.decimals, channel.template


def _decoded(raw: NDArray[Any], channel: Channel, missing: Missing, decoded: bool, has_missing: bool) -> NDArray[Any]:
    """Stored values as what `Survey.column` promises."""
    if missing not in ("nan", "mask", "raw"):
        raise ValueError(f'missing is "nan", "mask" or "raw", not {missing!r}')
    if missing == "raw":
        return raw
    values: NDArray[Any]
    if channel.type == "text":
        values = _texts(raw) if decoded else raw
    elif decoded and channel.is_date:
        values = _norva.dates(raw).view("datetime64[ms]")
    elif decoded and channel.is_time:
        values = _norva.times(raw).view("timedelta64[us]")
    elif has_missing and missing == "nan":
        values = _norva.filled(raw)
    else:
        values = raw
    if missing == "mask":
        return np.ma.MaskedArray(values, mask=_norva.missing_mask(raw) if has_missing else np.ma.nomask, copy=False)
    return values


def _texts(raw: NDArray[np.bytes_]) -> NDArray[np.str_]:
    ascii_texts = _norva.ascii_texts(raw)
    return _norva.texts(raw, False).astype(str) if ascii_texts is None else ascii_texts


def _pandas_column(raw: NDArray[Any], channel: Channel) -> NDArray[Any]:
    """A column of its own that pandas can keep as it is."""
    if channel.type == "text":
        return _norva.texts(raw, True)
    if channel.is_date or channel.is_time:
        values = _decoded(raw, channel, "nan", True, True)
        known = values[~np.isnat(values)]
        first, last = _PANDAS_LIMITS[values.dtype.kind]
        if known.size == 0 or (known.min() >= first and known.max() <= last):
            return values
        stays = "decimal years" if channel.is_date else "hours"
        warnings.warn(f'channel "{channel.name}" has values that pandas cannot hold; it stays in {stays}', stacklevel=3)
    if raw.dtype.kind == "f" or _norva.has_missing(raw):
        return _norva.filled(raw)
    return raw.copy()


class Line:
    """One survey line of an open store. `len(line)` counts the locations that are not deleted."""

    def __init__(self, survey: Survey, number: int, name: str, first: int, count: int, deleted: int, flag: int) -> None:
        self.survey = survey
        #: Place among the lines, from 0.
        self.number = number
        #: Several lines may have one name.
        self.name = name
        #: All locations, those marked deleted too.
        self.location_count = count
        self.deleted_count = deleted
        #: Programs leave a line that is not shown out of their exports.
        self.shown = flag == 0
        self._first = first

    def __len__(self) -> int:
        return self.location_count - self.deleted_count

    def __getitem__(self, channel: str | int) -> NDArray[Any]:
        """Values of a channel, shape (len(line),) or (len(line), elements); see `Survey.column`."""
        return self.column(channel)

    def column(
        self, channel: str | int, *, missing: Missing = "nan", deleted: bool = False, decoded: bool = True
    ) -> NDArray[Any]:
        """As `Survey.column`, of this line alone."""
        return self.survey._column(channel, [self], missing, deleted, decoded)

    def to_pandas(self, channels: Iterable[str | int] | None = None, *, deleted: bool = False) -> pandas.DataFrame:
        return self.survey.to_pandas([self.number], channels, deleted=deleted)

    def __repr__(self) -> str:
        return f"<norva.Line {self.name!r}: {len(self)} locations>"


class Survey:
    """An open store. Threads may share it; arrays that were taken from it stay valid after `close`.

    Attributes:
        path: as it was opened.
        lines: list of `Line`, in the order of the store.
        channels: list of `Channel`, in the order of the store.
    """

    def __init__(self, path: str | os.PathLike[str], *, mapped: bool = True) -> None:
        self.path = os.fspath(path)
        self._mapped = mapped
        self._store = _norva.Store(os.fsencode(path))
        self._missing: dict[int, bool] = {}
        self.channels = [channel_of(*codes) for codes in self._store.channels()]
        self.lines: list[Line] = []
        first = 0
        for number, (name, count, deleted_count, flag) in enumerate(self._store.lines()):
            self.lines.append(Line(self, number, name, first, count, deleted_count, flag))
            first += count
        self._kept = self._store.kept()

    def close(self) -> None:
        """Closes the file. Arrays that show it stay as they are, and keep it on the disk until they are gone."""
        self._store.close()

    @property
    def closed(self) -> bool:
        return self._store.closed

    def __enter__(self) -> Survey:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __iter__(self) -> Iterator[Line]:
        return iter(self.lines)

    def __len__(self) -> int:
        """Number of lines."""
        return len(self.lines)

    @property
    def location_count(self) -> int:
        """Locations of all lines that are not deleted."""
        return sum(len(line) for line in self.lines)

    def __repr__(self) -> str:
        return (
            f"<norva.Survey {self.path!r}: {len(self.lines)} lines, {len(self.channels)} channels, "
            f"{self.location_count} locations>"
        )

    def line(self, name: LineName) -> Line:
        """The line of that name, or of that number from 0. KeyError when there is none or more than one."""
        if isinstance(name, str):
            found = [line for line in self.lines if line.name == name]
            if len(found) == 1:
                return found[0]
            raise KeyError(
                f'{len(found)} lines are called "{name}"; take one by its number'
                if found
                else f'there is no line "{name}"'
            )
        if not 0 <= name < len(self.lines):
            raise KeyError(f"there is no line number {name}")
        return self.lines[name]

    def channel(self, name: str | int) -> Channel:
        """The channel of that name, or of that number from 0. KeyError when there is none or more than one."""
        return self.channels[self.number_of(name)]

    def number_of(self, name: str | int) -> int:
        """The channel's place, from 0. KeyError as of `channel`."""
        if isinstance(name, str):
            found = [number for number, channel in enumerate(self.channels) if channel.name == name]
            if len(found) == 1:
                return found[0]
            raise KeyError(
                f'{len(found)} channels are called "{name}"; take one by its number'
                if found
                else f'there is no channel "{name}"'
            )
        if not 0 <= name < len(self.channels):
            raise KeyError(f"there is no channel number {name}")
        return name

    def __contains__(self, name: object) -> bool:
        return any(channel.name == name for channel in self.channels)

    def __getitem__(self, channel: str | int) -> NDArray[Any]:
        """Values of a channel over all lines, shape (locations,) or (locations, elements); see `column`."""
        return self.column(channel)

    def column(
        self, channel: str | int, *, missing: Missing = "nan", deleted: bool = False, decoded: bool = True
    ) -> NDArray[Any]:
        """Values of a channel over all lines, in the channel's units.

        Args:
            channel: its name, or its number from 0.
            missing: "nan" gives NaN (NaT, "") for no-data, and doubles for a channel of whole numbers that has any;
                "mask" a masked array; "raw" what stands in the file: 1.0e30, 2147483647, 32767, b"*", and no decoding.
            deleted: also the locations that are marked deleted.
            decoded: dates as datetime64[ms], times as timedelta64[us], texts as str; False leaves decimal years, hours
                and bytes.

        Returns:
            Shape (locations,), for an array channel (locations, elements). Where nothing of the values has to be changed
            or left out, the array is the file itself, mapped read-only and not aligned; copy it to change it.
        """
        return self._column(channel, None, missing, deleted, decoded)

    def _column(
        self, name: str | int, lines: Sequence[Line] | None, missing: Missing, deleted: bool, decoded: bool
    ) -> NDArray[Any]:
        number = self.number_of(name)
        raw = self._raw(number, lines, deleted)
        return _decoded(raw, self.channels[number], missing, decoded, missing != "raw" and self._has_missing(number))

    def _has_missing(self, number: int) -> bool:
        found = self._missing.get(number)
        if found is None:
            found = self._missing[number] = _norva.has_missing(self._store.values(number, self._mapped))
        return found

    def _raw(self, number: int, lines: Sequence[Line] | None, deleted: bool) -> NDArray[Any]:
        return self._chosen(self._store.values(number, self._mapped), lines, deleted)

    def _chosen(self, values: NDArray[Any], lines: Sequence[Line] | None, deleted: bool) -> NDArray[Any]:
        """Those of all locations that belong to the lines and are not left out."""

        def piece(start: int, end: int) -> NDArray[Any]:
            part = values[start:end]
            return part if deleted or self._kept is None else part[self._kept[start:end]]

        if lines is None:
            return piece(0, len(values))
        pieces = [piece(line._first, line._first + line.location_count) for line in lines]
        return pieces[0] if len(pieces) == 1 else np.concatenate([values[:0], *pieces])

    def line_numbers(self, *, deleted: bool = False) -> NDArray[np.int32]:
        """Number of its line for every location, shape (locations,), beside what `column` gives."""
        counts = [line.location_count if deleted else len(line) for line in self.lines]
        return np.repeat(np.arange(len(counts), dtype=np.int32), counts)

    def to_pandas(
        self,
        lines: Iterable[LineName] | None = None,
        channels: Iterable[str | int] | None = None,
        *,
        deleted: bool = False,
        line_column: str = "line",
    ) -> pandas.DataFrame:
        """A table of one row per location.

        Its first column (`line_column`) has the line's name as a category, the others the channels by name; an array
        channel becomes one column per element, "Decay[0]". No-data is NaN, NaT or None. The table is the caller's own.

        Args:
            lines: names or numbers, in the order wanted; all of them when None.
            channels: names or numbers, in the order wanted; all of them when None.
            deleted: also the locations that are marked deleted.
        """
        import pandas

        chosen = None if lines is None else [self.line(name) for name in lines]
        numbers = range(len(self.channels)) if channels is None else [self.number_of(name) for name in channels]
        names = list(dict.fromkeys(line.name for line in self.lines))
        place = {name: code for code, name in enumerate(names)}
        of_lines = self.lines if chosen is None else chosen
        codes = np.repeat(
            np.array([place[line.name] for line in of_lines], dtype=np.int32),
            [line.location_count if deleted else len(line) for line in of_lines],
        )
        titles = [line_column]
        columns: list[Any] = [pandas.Categorical.from_codes(codes, categories=names)]
        for number in numbers:
            channel = self.channels[number]
            raw = self._raw(number, chosen, deleted)
            parts = [raw] if raw.ndim == 1 else [np.ascontiguousarray(raw[:, at]) for at in range(raw.shape[1])]
            columns += [_pandas_column(part, channel) for part in parts]
            titles += [channel.name] if raw.ndim == 1 else [f"{channel.name}[{at}]" for at in range(raw.shape[1])]
        table = pandas.DataFrame(dict(enumerate(columns)), copy=False)
        table.columns = pandas.Index(titles)
        return table

    def to_xarray(
        self,
        lines: Iterable[LineName] | None = None,
        channels: Iterable[str | int] | None = None,
        *,
        deleted: bool = False,
    ) -> xarray.Dataset:
        """A Dataset along the dimension "location", with the coordinate "line" and every channel's units as attribute.

        An array channel has a second dimension, "Decay_element". No-data is NaN, NaT or "". Channels need names of their
        own.
        """
        import xarray

        chosen = None if lines is None else [self.line(name) for name in lines]
        of_lines = self.lines if chosen is None else chosen
        names = np.array([line.name for line in of_lines], dtype=str)
        counts = [line.location_count if deleted else len(line) for line in of_lines]
        numbers = range(len(self.channels)) if channels is None else [self.number_of(name) for name in channels]
        variables = {}
        for number in numbers:
            channel = self.channels[number]
            if channel.name in variables or channel.name == "line":
                raise KeyError(f'more than one variable would be called "{channel.name}"')
            raw = self._raw(number, chosen, deleted)
            values = _texts(raw) if channel.type == "text" else _pandas_column(raw, channel)
            dimensions = ("location", f"{channel.name}_element")[: values.ndim]
            variables[channel.name] = (dimensions, values, {"units": channel.units} if channel.units else {})
        return xarray.Dataset(variables, coords={"line": ("location", np.repeat(names, counts))})

    def verify(self) -> None:
        """Reads all values and compares them with the checksums taken when they were written. Error when they differ."""
        self._store.verify()


def open(path: str | os.PathLike[str], *, mapped: bool = True) -> Survey:  # noqa: A001
    """Opens a store for reading. Error when it is none, is cut short or damaged.

    Args:
        mapped: columns are shown as they stand in the file where possible. Should another program shorten the file in
            place meanwhile, this one ends; False reads every column into memory instead. Norva's programs never do so:
            they put a new file into the place of the older one.
    """
    return Survey(path, mapped=mapped)
