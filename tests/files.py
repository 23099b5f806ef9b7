"""Tests that write files, and archives as bytes."""
import io
import os
import pathlib
import tarfile
import tempfile
import unittest
import zipfile


class FolderTest(unittest.TestCase):
    """A test in an empty folder."""
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(folder.name)


def write(name, data):
    pathlib.Path(os.fsdecode(name)).write_bytes(data)
    return name


def tarOf(members):
    """Of bytes by name. A header takes a block of 512 bytes, the end two."""
    packed = io.BytesIO()
    with tarfile.open(fileobj=packed, mode="w") as archive:
        for name, data in members.items():
            info = tarfile.TarInfo(name)
            info.size = len(data)
            archive.addfile(info, io.BytesIO(data))
    return packed.getvalue()


def zipOf(members, method=zipfile.ZIP_DEFLATED):
    packed = io.BytesIO()
    with zipfile.ZipFile(packed, "w", method) as archive:
        for name, data in members.items():
            archive.writestr(name, data)
    return packed.getvalue()
