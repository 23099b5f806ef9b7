"""Reading: whole files, files in parts, live input."""
from __future__ import annotations

import datetime
import os
import time
import uuid
from typing import Any, Dict, Iterator, List, Optional, Sequence, Tuple, Union

from . import _kalo
from ._inputs import Path, Paths, PlacedFile, Progress, blocks, texts
from ._table import Names, Table

_Date = Union[str, datetime.date]
_Range = Tuple[int, Optional[int]]
_FILE_END = (1 << 64) - 1


class Decoder:
    """Decodes bytes as they come: of a serial port, a socket, an object store.

        decoder = kalo.Decoder()
        decoder.feed(chunk)
        tables = decoder.take()

    ``source`` is the name of the input, which stands in the column of that name. The other
    arguments are the options of ``kalo decode``:

    types
        Only records of these types, such as "GGA"; also "malformed" and "unknown". Tables of these
        types are there even if they have no rows.
    columns
        Only these columns, in this order. Tables that have none of them are left out.
    radians
        Angles in radians, rates of turn in radians per second.
    raw
        The bytes of every record in the column raw, not only of those with bytes that no value
        holds.
    date
        The day on which the input begins, for records with a time but no date: a date, a text such
        as "2026-03-11", or "today" for live input.
    not_before
        Dates before this day are moved forward by 1024 weeks or a multiple, for receivers past
        their week rollover.
    date_order
        "dmy" or "mdy": the order of day and month in stamps such as 03/04/2026.
    kind
        Read every line as "nmea", "tss1", "ats" or "ntrip".
    strict
        Accept a sentence only if it ends in CR LF and nothing stands in front of it.
    require_checksum
        A sentence without a checksum is malformed.
    sentences
        TOML files that describe further sentences.
    """

    def __init__(
        self,
        source: str = "-",
        *,
        types: Optional[Names] = None,
        columns: Optional[Names] = None,
        radians: bool = False,
        raw: bool = False,
        date: Optional[_Date] = None,
        not_before: Optional[_Date] = None,
        date_order: Optional[str] = None,
        kind: Optional[str] = None,
        strict: bool = False,
        require_checksum: bool = False,
        sentences: Union[Path, Sequence[Path]] = (),
    ) -> None:
        isLive = date == "today"
        self._decoder = _kalo.Decoder(
            types=_names(types), columns=_names(columns), radians=radians, raw=raw,
            date=None if isLive else _dateText(date), begin=time.time() if isLive else None,
            not_before=_dateText(not_before), date_order=date_order, kind=kind, strict=strict,
            require_checksum=require_checksum, sentences=_texts(sentences))
        self._decoder.begin(source)
        self._origin = uuid.uuid4().hex

    def feed(self, chunk: Union[bytes, bytearray, memoryview]) -> None:
        """Decodes more bytes of the input, which may be cut anywhere.

        Other threads run meanwhile. A last line without its line end waits for the next bytes.
        """
        self._decoder.feed(chunk if isinstance(chunk, bytes) else bytes(memoryview(chunk)))

    def begin(self, source: str) -> None:
        """The bytes that follow are those of another input."""
        self._decoder.end()
        self._decoder.begin(source)

    def finish(self) -> None:
        """The input is at its end: decodes a last line without a line end."""
        self._decoder.end()

    def take(self) -> Dict[str, Table]:
        """The rows that were decoded since the last call: a table for each type of record."""
        return {name: Table(batches, self._origin)
                for name, batches in self._decoder.take().items()}

    def tables(self) -> Dict[str, Table]:
        """A table without rows for each type of record that the decoder knows."""
        return {name: Table([batch]) for name, batch in self._decoder.tables().items()}


def read(paths: Paths, *, range: Optional[_Range] = None, progress: Optional[Progress] = None,
         **options: Any) -> Dict[str, Table]:
    """Decodes files in one pass: a dict of tables by type of record.

    ``paths`` is a path or several. Files compressed by gzip, bzip2 or xz, and tar and zip archives
    of files are unpacked; lz4 with the package lz4, zstd with Python 3.14 or the package
    backports.zstd. A member of an archive is an input with a name such as "logs.tar:monday.log".
    ``progress(done, total)`` is called with the number of bytes read so far and that of all files;
    what it raises ends the reading. The other arguments are those of ``Decoder``. For more than
    memory holds use ``scan``.

    ``range=(begin, end)`` decodes the lines that begin at these offsets of one file (end None: to
    its end). Ranges that follow one another give the rows of the whole file. The column line is
    null in a range that does not begin at 0; offset counts from the start of the file. The 64 KiB
    in front of the range tell its day; if no record there has a date, eight times as much is read,
    and so on. ``date`` is the day on which the range begins, where that is not enough.
    """
    decoder = _fileDecoder(options)
    for _ in _feed(decoder, paths, range, progress):
        pass
    return decoder.take()


def scan(paths: Paths, *, batch_bytes: int = 8 << 20, range: Optional[_Range] = None,
         progress: Optional[Progress] = None, **options: Any) -> Iterator[Dict[str, Table]]:
    """Decodes files part by part, in bounded memory.

    Yields a dict of tables by type of record, as ``read`` does, whenever the columns take about
    ``batch_bytes`` bytes, and at the end. Where a file cannot be read further, yields what was read
    so far and then raises OSError. The other arguments are those of ``read``.
    """
    if batch_bytes < 1:
        raise ValueError(f"batch_bytes must be above 0, not {batch_bytes}")
    decoder = _fileDecoder(options)
    return _scan(decoder, _feed(decoder, paths, range, progress), batch_bytes)


def schema(type: str, **options: Any) -> Table:
    """A table without rows, which has the columns of a type of record.

    The arguments are those of ``Decoder``.
    """
    table, = Decoder(types=[type], **options).tables().values()
    return table


def _fileDecoder(options: Dict[str, Any]) -> Decoder:
    decoder = Decoder(**options)
    decoder._origin = ""  # what is read again is the same
    return decoder


def _scan(decoder: Decoder, steps: Iterator[None],
          batch_bytes: int) -> Iterator[Dict[str, Table]]:
    failure = None
    try:
        for _ in steps:
            if decoder._decoder.size() >= batch_bytes:
                yield decoder.take()
    except OSError as error:
        failure = error
        decoder.finish()
    if rest := decoder.take():
        yield rest
    if failure:
        raise failure


def _feed(decoder: Decoder, paths: Paths, range: Optional[_Range],
          progress: Optional[Progress]) -> Iterator[None]:
    """Feeds all blocks, and yields after each."""
    files = texts(paths)
    if range is not None and tuple(range) != (0, None):
        yield from _feedRange(decoder, files, range, progress)
        return
    isBegun = False
    for name, block in blocks(files, progress):
        if not isBegun:
            decoder.begin(name)
        isBegun = block is not None
        if block is None:
            decoder.finish()
        else:
            decoder.feed(block)
            yield


def _feedRange(decoder: Decoder, files: List[str], range: _Range,
               progress: Optional[Progress]) -> Iterator[None]:
    begin, end = range
    if len(files) != 1:
        raise ValueError(f"a range is one of a single file, not of {len(files)}")
    if begin < 0 or (end is not None and end < begin):
        raise ValueError(f"not a range: {range}")
    with PlacedFile(files[0], begin) as file:
        first, last, isLast = decoder._decoder.begin_range(
            files[0], file.read, file.size, begin, min(_FILE_END if end is None else end, _FILE_END))
        done = 0
        for block in file.blocks(first, last):
            decoder.feed(block)
            done += len(block)
            if progress is not None:
                progress(done, last - first)
            yield
    if isLast:
        decoder._decoder.end()
    else:
        decoder._decoder.end_range()


def _names(names: Optional[Names]) -> Optional[List[str]]:
    if names is None:
        return None
    return [names] if isinstance(names, str) else list(names)


def _dateText(date: Optional[_Date]) -> Optional[str]:
    if isinstance(date, datetime.datetime):
        date = date.date()
    return date.isoformat() if isinstance(date, datetime.date) else date


def _texts(paths: Union[Path, Sequence[Path]]) -> List[str]:
    """Name and text of each file."""
    texts = []
    for path in [paths] if isinstance(paths, (str, os.PathLike)) else paths:
        with open(path, encoding="utf-8", errors="surrogateescape", newline="") as file:
            texts += [os.fspath(path), file.read()]
    return texts
