"""What the package raises."""


class Error(Exception):
    """A store or a survey file that cannot be read, written or converted.

    Attributes:
        what: what failed, "Couldn't open the store".
        path: the file it is about, "" for none.
        place: line, channel or row, "" where it is about the whole.
        reason: why.
    """

    def __init__(self, what: str, path: str = "", place: str = "", reason: str = "") -> None:
        super().__init__(what, path, place, reason)
        self.what = what
        self.path = path
        self.place = place
        self.reason = reason

    def __str__(self) -> str:
        where = ", ".join(part for part in (self.path, self.place) if part)
        return ": ".join(part for part in (self.what, where, self.reason) if part)


class Cancelled(Error):
    """The progress callback gave up."""
