"""Files as blocks of bytes. Compressed files and archives are recognised by their first bytes."""
from __future__ import annotations

import bz2
import gzip
import importlib
import io
import lzma
import os
import tarfile
import zipfile
import zlib
from typing import IO, Any, Callable, Iterator, List, Optional, Tuple, Union

Path = Union[str, "os.PathLike[str]"]
Progress = Callable[[int, int], None]

_BLOCK = 1 << 18
_MOST_LAYERS = 4
_START = 512  # bytes that tell what a file holds
_TAR_MARK = slice(257, 262)


def _other(*modules: str) -> Callable[[Any], Any]:
    """Opens with the first of these modules that is there."""
    def opened(file: Any) -> Any:
        for name in modules:
            try:
                return importlib.import_module(name).open(file, "rb")
            except ImportError:
                pass
        raise OSError("compressed by a method that needs one of the packages "
                      + ", ".join(module.split(".")[0] for module in modules))
    return opened


_COMPRESSED: List[Tuple[bytes, Callable[[Any], Any]]] = [
    (b"\x1f\x8b", gzip.open),
    (b"BZh", bz2.open),
    (b"\xfd7zXZ\x00", lzma.open),
    (b"\x28\xb5\x2f\xfd", _other("compression.zstd", "zstandard")),
    (b"\x04\x22\x4d\x18", _other("lz4.frame"))]

_DAMAGED = (EOFError, gzip.BadGzipFile, lzma.LZMAError, tarfile.TarError, zipfile.BadZipFile,
            zlib.error)


class _Counting(io.RawIOBase):
    """A file that tells how far it was read."""

    def __init__(self, file: IO[bytes], tell: Callable[[int], None]) -> None:
        self._file = file
        self._tell = tell

    def readable(self) -> bool:
        return True

    def seekable(self) -> bool:
        return self._file.seekable()

    def seek(self, offset: int, whence: int = 0) -> int:
        return self._file.seek(offset, whence)

    def tell(self) -> int:
        return self._file.tell()

    def readinto(self, buffer: Any) -> int:
        block = self._file.read(len(buffer))
        buffer[:len(block)] = block
        self._tell(len(block))
        return len(block)


def blocks(paths: List[Path],
           progress: Optional[Progress] = None) -> Iterator[Tuple[str, Optional[bytes]]]:
    """The name of each input with its blocks, one after another; None at its end.

    The members of an archive are inputs of their own, with names such as "logs.tar:monday.log".
    """
    total = sum(os.stat(path).st_size for path in paths)
    done = 0

    def count(size: int) -> None:
        nonlocal done
        done += size
        if progress is not None:
            progress(done, total)

    for path in paths:
        name = os.fspath(path)
        with open(path, "rb", buffering=0) as file:
            try:
                yield from _content(name, io.BufferedReader(_Counting(file, count), _BLOCK), True)
            except _DAMAGED as error:
                raise OSError(f"{name}: {error}") from error


def _content(name: str, file: Any, mayBeArchive: bool,
             layers: int = 0) -> Iterator[Tuple[str, Optional[bytes]]]:
    start = file.peek(_START)[:_START]
    opened = next((opened for mark, opened in _COMPRESSED if start.startswith(mark)), None)
    members = _zip if start.startswith(b"PK\x03\x04") else \
        _tar if start[_TAR_MARK] == b"ustar" and (mayBeArchive or layers > 0) else None
    if layers == _MOST_LAYERS and (opened or members):
        raise OSError(f"{name}: packed too many times; unpack it first")
    if members and not mayBeArchive:
        raise OSError(f"{name}: an archive cannot be read here; unpack it into files first")
    if opened:
        with opened(file) as inner:
            yield from _content(name, _peekable(inner), True, layers + 1)
    elif members:
        for member, inner in members(file):
            yield from _content(f"{name}:{member}", _peekable(inner), False, layers + 1)
    else:
        while block := file.read(_BLOCK):
            yield name, block
        yield name, None


def _peekable(file: Any) -> Any:
    return file if hasattr(file, "peek") else io.BufferedReader(file, _BLOCK)


def _tar(file: Any) -> Iterator[Tuple[str, Any]]:
    with tarfile.open(fileobj=file, mode="r|") as archive:
        for member in archive:
            if member.isfile():
                yield member.name, archive.extractfile(member)


def _zip(file: Any) -> Iterator[Tuple[str, Any]]:
    with zipfile.ZipFile(file if file.seekable() else io.BytesIO(file.read())) as archive:
        for member in archive.infolist():
            if not member.is_dir():
                with archive.open(member) as inner:
                    yield member.filename, inner
