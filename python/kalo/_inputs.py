"""Files as blocks of bytes. Compressed files and archives are recognised by their first bytes."""
from __future__ import annotations

import bz2
import gzip
import importlib
import io
import lzma
import os
import re
import stat
import tarfile
import zipfile
from typing import IO, Any, Callable, Iterable, Iterator, List, Optional, Tuple, Union

Path = Union[str, "os.PathLike[str]"]
Paths = Union[Path, Iterable[Path]]
Progress = Callable[[int, int], None]
Range = Tuple[str, int, Optional[int]]

_BLOCK = 1 << 18
_MOST_LAYERS = 4
_START = 512  # bytes that tell what a file holds


class _Unreadable(OSError):
    """A file that cannot be read, or not further."""


def texts(paths: Paths) -> List[str]:
    """A path or several."""
    several = [paths] if isinstance(paths, (str, bytes, os.PathLike)) else paths
    return [os.fsdecode(path) for path in several]


def _other(package: str, *modules: str) -> Callable[[Any], Any]:
    """Opens with the first of these modules that is there; the package has one of them."""
    def opened(file: Any) -> Any:
        for name in modules:
            try:
                module = importlib.import_module(name)
            except ImportError:
                continue
            return module.open(file, "rb")
        raise ImportError(f"compressed by a method that needs the package {package}")
    return opened


_COMPRESSED: List[Tuple[bytes, Callable[[Any], Any]]] = [
    (rb"\x1f\x8b\x08", gzip.open),
    (rb"BZh[1-9](1AY&SY|\x17rE8P\x90)", bz2.open),
    (rb"\xfd7zXZ\x00", lzma.open),
    (rb"\x28\xb5\x2f\xfd", _other("backports.zstd", "compression.zstd", "backports.zstd")),
    (rb"\x04\x22\x4d\x18", _other("lz4", "lz4.frame"))]


class _TarMember(tarfile.TarInfo):
    """tarfile takes a damaged header for the end of the archive, which here ends with zeros only."""

    @classmethod
    def frombuf(cls, buf: Any, encoding: Any, errors: Any) -> Any:
        try:
            return super().frombuf(buf, encoding, errors)
        except tarfile.HeaderError as error:
            if len(buf) == tarfile.BLOCKSIZE and not any(buf):
                raise
            raise tarfile.ReadError(f"the archive is damaged or cut off: {error}") from error


def _tar(file: Any) -> Iterator[Tuple[str, Any]]:
    with tarfile.open(fileobj=file, mode="r|", tarinfo=_TarMember) as archive:
        for member in archive:
            if member.isfile():
                yield member.name, archive.extractfile(member)


def _zip(file: Any) -> Iterator[Tuple[str, Any]]:
    with zipfile.ZipFile(file if file.seekable() else io.BytesIO(file.read())) as archive:
        for member in archive.infolist():
            if not member.is_dir():
                with archive.open(member) as inner:
                    yield member.filename, inner


_ARCHIVES = [(rb"PK(\x03\x04|\x05\x06)", _zip), (rb"[^\r\n]{100}[\x00-\xff]{157}ustar", _tar)]


class _Filled(io.RawIOBase):
    """A file whose reads are only short at its end. It counts the bytes that are read."""

    def __init__(self, file: IO[bytes]) -> None:
        self._file = file
        self.count = 0

    def readable(self) -> bool:
        return True

    def seekable(self) -> bool:
        return self._file.seekable()

    def seek(self, offset: int, whence: int = 0) -> int:
        return self._file.seek(offset, whence)

    def tell(self) -> int:
        return self._file.tell()

    def readinto(self, buffer: Any) -> int:
        done = 0
        while done < len(buffer) and (block := self._file.read(len(buffer) - done)):
            buffer[done:done + len(block)] = block
            done += len(block)
        self.count += done
        return done


def _isPacked(start: bytes) -> bool:
    return any(re.match(mark, start) for mark, _ in _COMPRESSED + _ARCHIVES)


def ranges(paths: Paths, *, size: Union[int, str] = "64MiB") -> List[Range]:
    """Divides files into ranges that can be read one by one, on any number of computers.

    Returns ``(path, begin, end)`` for each, at least one for a file: ``kalo.read(path,
    range=(begin, end))`` decodes the lines that begin in these bytes. ``size`` is a number of bytes
    or a text such as "64MiB". Compressed files and archives stay whole: ``end`` is None.
    """
    step = _bytes(size)
    found: List[Range] = []
    for path in texts(paths):
        with open(path, "rb") as file:
            total = os.fstat(file.fileno()).st_size
            if _isPacked(file.peek(_START)):
                found.append((path, 0, None))
            else:
                found += [(path, begin, min(begin + step, total))
                          for begin in range(0, max(total, 1), step)]
    return found


def _bytes(size: Union[int, str]) -> int:
    if isinstance(size, str):
        number = re.fullmatch(r"([0-9]+)(|[KMG]iB)", size)
        if not number:
            raise ValueError(f"not a number of bytes: {size!r} (expected one such as 64MiB)")
        size = int(number[1]) << 10 * ["", "KiB", "MiB", "GiB"].index(number[2])
    if size < 1:
        raise ValueError(f"size must be above 0, not {size}")
    return size


class PlacedFile:
    """A file in which a range is read."""

    def __init__(self, path: str, begin: int) -> None:
        self._path = path
        self._file = open(path, "rb")
        status = os.fstat(self._file.fileno())
        self.size = status.st_size
        fault = ("cannot be read in ranges" if not stat.S_ISREG(status.st_mode) else
                 "compressed files and archives cannot be read in ranges"
                 if _isPacked(self._file.peek(_START)) else
                 f"the range begins after the end of the file, which has {self.size} bytes"
                 if begin > self.size else None)
        if fault:
            self._file.close()
            raise ValueError(f"{path}: {fault}")

    def __enter__(self) -> PlacedFile:
        return self

    def __exit__(self, *_: Any) -> None:
        self._file.close()

    def read(self, offset: int, count: int) -> bytes:
        """Fewer bytes only at the end of the file."""
        try:
            self._file.seek(offset)
            return self._file.read(count)
        except OSError as error:
            raise OSError(error.errno, error.strerror, self._path) from error

    def blocks(self, begin: int, end: int) -> Iterator[bytes]:
        while begin < end:
            block = self.read(begin, min(_BLOCK, end - begin))
            if not block:
                raise OSError(f"{self._path}: the file was truncated while it was read")
            yield block
            begin += len(block)


def blocks(paths: List[str],
           progress: Optional[Progress] = None) -> Iterator[Tuple[str, Optional[bytes]]]:
    """The bytes of each input with its name, and None at its end.

    The members of an archive are inputs of their own, with names such as "logs.tar:monday.log".
    """
    sizes = [os.stat(path).st_size for path in paths]
    total = sum(sizes)
    before = 0
    for path, size in zip(paths, sizes):
        with open(path, "rb", buffering=0) as file:
            filled = _Filled(file)
            for block in _readable(path, filled):
                yield block
                if progress is not None and block[1] is not None:
                    progress(before + min(filled.count, size), total)  # a zip's end is read twice
        before += size
        if progress is not None:
            progress(before, total)


def _readable(path: str, file: _Filled) -> Iterator[Tuple[str, Optional[bytes]]]:
    """The blocks of a file. The modules that unpack it have many exceptions; here it is one."""
    try:
        yield from _content(path, file)
    except (_Unreadable, MemoryError):
        raise
    except Exception as error:
        if isinstance(error, OSError) and error.errno is not None:
            raise OSError(error.errno, error.strerror, path) from error
        raise _Unreadable(f"{path}: {error}") from error


def _content(name: str, file: Any, layers: int = 0,
             isMember: bool = False) -> Iterator[Tuple[str, Optional[bytes]]]:
    file = io.BufferedReader(file if isinstance(file, _Filled) else _Filled(file), _BLOCK)
    start = file.peek(_START)
    opened = next((opened for mark, opened in _COMPRESSED if re.match(mark, start)), None)
    members = next((members for mark, members in _ARCHIVES if re.match(mark, start)), None)
    if members and isMember:
        raise _Unreadable(f"{name}: an archive cannot be read here; unpack it into files first")
    if layers == _MOST_LAYERS and (opened or members):
        raise _Unreadable(f"{name}: packed too many times; unpack it first")
    if opened:
        with opened(file) as inner:
            yield from _content(name, inner, layers + 1)
    elif members:
        for member, inner in members(file):
            yield from _content(f"{name}:{member}", inner, layers + 1, True)
    else:
        while block := file.read(_BLOCK):
            yield name, block
        yield name, None
