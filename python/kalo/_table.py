"""Tables, and their values as NumPy arrays, pandas data frames and Python objects."""
from __future__ import annotations

import datetime
from typing import TYPE_CHECKING, Any, Dict, Iterator, List, NamedTuple, Optional, Sequence, Union

from . import _kalo

if TYPE_CHECKING:
    import numpy as _numpy
    import pandas as _pandas

_EPOCH = datetime.datetime(1970, 1, 1, tzinfo=datetime.timezone.utc)
_FIRST_DAY = datetime.date(1970, 1, 1)

Names = Union[str, Sequence[str]]

# Forms whose values NumPy reads from memory.
_FIXED = ("boolean", "integer", "number", "instant", "date")
_EMPTY = {"boolean": "bool", "integer": "int64", "number": "float64", "instant": "datetime64[us]",
          "date": "datetime64[D]"}


class Column(NamedTuple):
    """What a column holds."""

    name: str
    form: str
    """boolean, integer, number, date, instant, text, bytes, list or object."""
    unit: str
    """Empty where there is none."""
    meaning: str


class Table:
    """The records of one type, a row each.

    Any library that knows the Arrow interface takes a table as it is, without a copy.
    """

    def __init__(self, batches: Sequence[_kalo.Batch], origin: str = "") -> None:
        self._batches = list(batches)
        self._origin = origin  # of live input, which can send the same again
        self._columns = [Column(*column) for column in self._batches[0].columns]

    @property
    def columns(self) -> List[Column]:
        """The columns in their order."""
        return list(self._columns)

    def __len__(self) -> int:
        return sum(map(len, self._batches))

    def __repr__(self) -> str:
        names = ", ".join(column.name for column in self._columns)
        return f"<kalo.Table: {len(self)} rows of {names}>"

    def __arrow_c_schema__(self) -> object:
        return self._batches[0].__arrow_c_schema__()

    def __arrow_c_stream__(self, requested_schema: Optional[object] = None) -> object:
        return _kalo.stream(self._batches)

    def to_numpy(self, columns: Optional[Names] = None) -> Dict[str, "_numpy.ndarray[Any, Any]"]:
        """The columns as arrays, by name; only those that are named, if any are.

        Numbers are float64 with NaN for null; times datetime64[us] (UTC) and dates datetime64[D]
        with NaT for null. Integers and booleans are masked arrays. Texts, bytes and lists are
        arrays of Python objects, with None for null. A column in one piece is not copied; such an
        array cannot be written to.
        """
        return {self._columns[i].name: self._array(i) for i in self._places(columns)}

    def to_pandas(self, columns: Optional[Names] = None) -> "_pandas.DataFrame":
        """The columns as a pandas data frame; only those that are named, if any are.

        Times have the zone UTC. Integers and booleans have the types of pandas that know null.
        Needs pandas 2 or later, and no pyarrow.
        """
        import pandas

        data: Dict[str, Any] = {}
        for i in self._places(columns):
            form, array = self._columns[i].form, self._array(i)
            if form == "instant":
                data[self._columns[i].name] = pandas.DatetimeIndex(array).tz_localize("UTC")
            elif form == "integer":
                data[self._columns[i].name] = pandas.arrays.IntegerArray(
                    array.data, _mask(array))
            elif form == "boolean":
                data[self._columns[i].name] = pandas.arrays.BooleanArray(
                    array.data, _mask(array))
            else:
                data[self._columns[i].name] = array
        return pandas.DataFrame(data, index=range(len(self)))

    def to_pylist(self) -> List[Dict[str, Any]]:
        """The rows as dictionaries. Times are datetime objects in UTC, dates date objects.

        None also stands for a time or date that these cannot hold: of the year 0, or in the leap
        second behind the year 9999. The arrays of ``to_numpy`` have it.
        """
        names = [column.name for column in self._columns]
        return [dict(zip(names, row)) for row in self._rows()]

    def _rows(self) -> Iterator[Sequence[Any]]:
        for batch in self._batches:
            yield from zip(*(_objects(batch, i, column.form)
                             for i, column in enumerate(self._columns)))

    def _places(self, columns: Optional[Names]) -> List[int]:
        names = [column.name for column in self._columns]
        if columns is None:
            return list(range(len(names)))
        columns = [columns] if isinstance(columns, str) else columns
        for name in columns:
            if name not in names:
                raise ValueError(f"no such column: {name}")
        return [names.index(name) for name in columns]

    def _array(self, place: int) -> Any:
        import numpy

        form = self._columns[place].form
        batches = [batch for batch in self._batches if len(batch) > 0]
        if form not in _FIXED:
            objects = numpy.empty(len(self), dtype=object)
            objects[:] = [value for batch in batches for value in batch.objects(place)]
            return objects
        parts = [_values(batch, place, form) for batch in batches]
        if not parts:
            empty = numpy.empty(0, _EMPTY[form])
            return numpy.ma.array(empty) if form in ("boolean", "integer") else empty
        if len(parts) == 1:
            return parts[0]
        join = numpy.ma.concatenate if form in ("boolean", "integer") else numpy.concatenate
        return join(parts)


def _mask(array: Any) -> Any:
    import numpy

    return numpy.array(numpy.ma.getmaskarray(array))


def _values(batch: _kalo.Batch, place: int, form: str) -> Any:
    """The values of a column of a batch that has rows."""
    import numpy

    validity, memory = batch.memory(place)
    values = numpy.asarray(memory)

    def bits(packed: Any) -> Any:
        return numpy.unpackbits(packed, count=len(batch), bitorder="little").view(bool)

    missing = None if validity is None else ~bits(numpy.asarray(validity))
    if form == "boolean":
        values = bits(values)
    elif form == "instant":
        values = values.view("datetime64[us]")
    elif form == "date":
        values = values.astype("datetime64[D]")
    if form in ("boolean", "integer"):
        return numpy.ma.array(values, mask=numpy.ma.nomask if missing is None else missing)
    if missing is not None:
        values = values.copy()
        values[missing] = numpy.nan if form == "number" else numpy.datetime64("NaT")
    return values


def _objects(batch: _kalo.Batch, place: int, form: str) -> List[Any]:
    values = batch.objects(place)
    if form == "instant":
        return [_after(_EPOCH, "microseconds", value) for value in values]
    if form == "date":
        return [_after(_FIRST_DAY, "days", value) for value in values]
    return values


def _after(begin: Any, unit: str, count: Optional[int]) -> Any:
    """So many units later; None if there is no such time."""
    if count is None:
        return None
    try:
        return begin + datetime.timedelta(**{unit: count})
    except OverflowError:
        return None
