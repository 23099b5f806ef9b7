"""Compressed inputs and archives give the records of what they hold."""
import bz2
import gzip
import lzma
import pathlib
import subprocess
import tarfile
import unittest
import zipfile
import zlib

from kalo import ROOT, Test, Tool, completed, run, write
from files import tarOf, zipOf

VOYAGE = (ROOT / "examples/recordings/voyage.log").read_bytes()
DEPTH = completed(b"$SDDPT,4.2*hh\n")

SKIPPED = b"\x50*M\x18\4\0\0\0abcd", b"\x5F*M\x18\0\0\0\0"  # frames without records
CUT_OFF = "kalo: -: the compressed data or archive is cut off; records may be missing\n"
DAMAGED = ("kalo: -: the compressed data or archive is damaged; "
           "records may be missing or wrong\n")


def packedBy(program, *options):
    return lambda data: subprocess.run([program, "-q", "-c", *options], input=data, check=True,
                                       stdout=subprocess.PIPE).stdout


FORMATS = {"gz": gzip.compress, "xz": lzma.compress, "bz2": bz2.compress,
           "zst": packedBy("zstd"), "lz4": packedBy("lz4")}


def gzippedWithoutEnd(data):
    packer = zlib.compressobj(wbits=31)
    return packer.compress(data) + packer.flush(zlib.Z_SYNC_FLUSH)


def changed(data, place, new):
    return data[:place] + new + data[place + len(new):]


def decoded(words, data=b"", chunk=32768):
    status, out, err = run(["decode", "-q", *words], data, chunk)
    return status, out.decode().splitlines(), err


def renamed(lines, name):
    return [line.replace('"source":"-"', f'"source":"{name}"') for line in lines]


class Packed(Test):
    def setUp(self):
        super().setUp()
        self.expected = decoded([], VOYAGE)[1]
        self.assertGreater(len(self.expected), 1000)

    def testFormats(self):
        """By their first bytes, whatever the name; several members, also with something between."""
        for name, pack in FORMATS.items():
            with self.subTest(name):
                data = pack(VOYAGE)
                write("voyage.log", data)
                self.assertEqual(decoded(["voyage.log"]),
                                 (0, renamed(self.expected, "voyage.log"), ""))
                self.assertEqual(decoded([], data, 1000), (0, self.expected, ""))
                self.assertEqual(decoded([], pack(b"")), (0, [], ""))
                for between in b"", bytes(8), *(SKIPPED if name in ("zst", "lz4") else ()):
                    twice = pack(DEPTH) + between + pack(DEPTH) + between
                    self.assertEqual([len(part) for part in decoded([], twice)[1:]], [2, 0])
        self.assertEqual(run(["time"], gzip.compress(b"1930:18\n"))[0], 0)
        self.assertIn("kalo: -: line 1: ", run(["encode", "tss1"], gzip.compress(b"{}\n"))[2])

    def testArchives(self):
        """Members are inputs; they may be compressed, and so may the archive."""
        write("a.log", VOYAGE)
        write("b.log.gz", gzip.compress(DEPTH))

        def ofLargeUser(member):
            member.uid = 1 << 40  # which the header holds in binary
            return member

        with tarfile.open("x.tar", "w", format=tarfile.GNU_FORMAT) as tar, zipfile.ZipFile(
                "x.zip", "w", zipfile.ZIP_DEFLATED) as archive:
            for name in "a.log", "b.log.gz":
                tar.add(name, "logs/" + name, filter=ofLargeUser)
                archive.write(name, "logs/" + name)
        for archive in "x.tar", "x.zip":
            status, lines, err = decoded([archive])
            self.assertEqual((status, err), (0, ""))
            self.assertEqual(lines[:-1], renamed(self.expected, archive + ":logs/a.log"))
            self.assertIn(f'"source":"{archive}:logs/b.log.gz","line":1', lines[-1])
            packed = gzip.compress(pathlib.Path(archive).read_bytes())
            lines = decoded([], packed)[1]
            self.assertEqual(lines[:-1], renamed(self.expected, "-:logs/a.log"))
        with tarfile.open("outer.tar", "w") as tar:
            tar.add("x.tar")
        status, lines, err = decoded(["outer.tar"])
        self.assertEqual((status, lines), (1, []))
        self.assertIn("kalo: outer.tar:x.tar: an archive cannot be read here", err)

    def testDamage(self):
        """What can be had comes out; then comes the reason."""
        for name, pack in FORMATS.items():
            with self.subTest(name):
                data = pack(VOYAGE)
                damaged = bytearray(data)
                damaged[len(data) // 2] ^= 0x55
                self.assertEqual(decoded([], data[:-1]), (1, self.expected, CUT_OFF))
                self.assertEqual(decoded([], data[:11]), (1, [], CUT_OFF))
                self.assertEqual(decoded([], data + b"x"),
                                 (1, self.expected,
                                  "kalo: -: other bytes follow the compressed data\n"))
                self.assertEqual(decoded([], bytes(damaged))[::2], (1, DAMAGED))
        for name in "gz", "xz":
            data = FORMATS[name](VOYAGE)
            status, lines, err = decoded([], data[:len(data) // 2])
            self.assertEqual((status, err), (1, CUT_OFF))
            self.assertGreater(len(lines), 400)
            self.assertEqual(lines[:-2], self.expected[:len(lines) - 2])
        # Of blocks those in front of the fault.
        data = b"".join(completed(b"$SDDPT,%d,%d*hh\n" % (number * 7919 % 10007, number))
                        for number in range(30000))
        expected = decoded([], data)[1]
        for name, pack, least in (("bz2", lambda data: bz2.compress(data, 1), 0.5),
                                  ("lz4", packedBy("lz4", "-B4"), 0.5),
                                  ("zst", packedBy("zstd"), 0.5),
                                  ("zst of short blocks", packedBy("zstd", "--zstd=wlog=10"), 0.7)):
            with self.subTest(name):
                packed = bytearray(pack(data))
                place = len(packed) * 3 // 4
                cut = decoded([], packed[:place])
                packed[place] ^= 0x55
                for (status, lines, err), text in (cut, CUT_OFF), (decoded([], packed), DAMAGED):
                    self.assertEqual((status, err), (1, text))
                    self.assertGreater(len(lines), len(expected) * least)
                    kept = int(len(expected) * least)
                    self.assertEqual(lines[:kept], expected[:kept])

    def testArchiveDamage(self):
        """What is lost of an archive is said, be it in a member, between members or at the end."""
        members = {"a.log": DEPTH, "b.log": DEPTH}  # each fits into a block of a tar archive
        tar, stored, deflated = tarOf(members), zipOf(members, zipfile.ZIP_STORED), zipOf(members)
        end = 4 * 512
        directory = stored.index(b"PK\1\2")
        second = stored.index(b"PK\3\4", 4)
        rows = [
            # what, records, member with the fault, its reason
            ("tar with two blocks at its end", tar[:end + 1024], 2, "", ""),
            ("tar with one block at its end", tar[:end + 512], 2, "", CUT_OFF),
            ("tar without an end", tar[:end], 2, "", CUT_OFF),
            ("tar cut behind a member", tar[:1024], 1, "", CUT_OFF),
            ("tar cut in a header", tar[:1124], 1, "", CUT_OFF),
            ("tar cut behind the first bytes of a member", tar[:512 + 300], 1, ":a.log", CUT_OFF),
            ("tar.gz cut behind a member", gzippedWithoutEnd(tar[:1024]), 1, "", CUT_OFF),
            ("tar.gz without its end", gzippedWithoutEnd(tar), 2, "", CUT_OFF),
            ("tar.gz with a wrong checksum", changed(gzip.compress(tar), -8, bytes(4)), 2, "",
             DAMAGED),
            ("zip cut behind a member", stored[:second], 1, "", CUT_OFF),
            ("zip cut in front of its directory", stored[:directory], 2, "", CUT_OFF),
            ("zip cut in its directory", stored[:directory + 20], 2, "", CUT_OFF),
            ("zip cut in its last record", stored[:-1], 2, "", CUT_OFF),
            ("zip with a comment", stored[:-2] + b"\5\0hello", 2, "", ""),
            ("zip with a comment that is cut off", stored[:-2] + b"\5\0hell", 2, "", CUT_OFF),
            ("zip with padding", stored + bytes(100), 2, "", ""),
            ("zip with other bytes behind it", stored + b"x", 2, "", DAMAGED),
            ("zip in which a member is not found", changed(stored, second, b"QK"), 1, "", DAMAGED),
            ("zip with a wrong checksum", changed(stored, 30 + 5, b"#"), 2, ":a.log", DAMAGED),
            ("zip with wrong compressed data", changed(deflated, 30 + 5, b"\xFF"), 0, ":a.log",
             DAMAGED),
            ("zip cut in compressed data", deflated[:30 + 5 + 10], 1, ":a.log", CUT_OFF)]
        rows += [(f"{what} in {name} without its last byte", pack(archive)[:-1], 2, "", CUT_OFF)
                 for name, pack in FORMATS.items()
                 for what, archive in (("tar", tar), ("zip", stored))]
        for what, archive, records, member, reason in rows:
            with self.subTest(what):
                status, lines, err = decoded([write("x", archive)])
                self.assertEqual((status, len(lines)), (1 if reason else 0, records))
                self.assertEqual(err, reason.replace("-", "x" + member, 1))
        status, lines, err = decoded([write("x", changed(deflated, 8, b"\x4D"))])
        self.assertEqual((status, len(lines)), (1, 1))
        self.assertRegex(err, r"^kalo: x:a.log: cannot be unpacked here \(.* method .*\); "
                         r"unpack it into a file first\n$")

    def testLookAlikes(self):
        """What only begins like a compressed file is text."""
        for data in (b"\x1F\x8B\x08", b"BZh91AY&SY", b"BZh1\x17rE8P\x90", b"\xFD7zXZ\0",
                     b"\x28\xB5\x2F\xFD", b"\x04\x22\x4D\x18", b"PK\x03\x04", b"PK\x05\x06"):
            for text in data[:-1], data[:-1] + b"x", b"BZhub: " + DEPTH, b"begin 644 x\n":
                for chunk in 1, 1000:
                    self.assertEqual(len(decoded([], text, chunk)[1]), 1, text)

    def testLive(self):
        """Records come as they are unpacked."""
        # A longer line might be the header of a tar archive, by its first 100 bytes and its digits.
        longer = completed(b"2026-03-14T23:59:58.412000Z receiver-on-the-bridge-deck $GPGGA,"
                           b"123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*hh\n")
        self.assertGreater(len(longer), 108)
        padded = b"x" * 99 + b" 1234567" * 5 + b" 12345678 " + DEPTH
        for line in DEPTH, longer, padded:
            packer = zlib.compressobj(wbits=31)
            with self.subTest(line), Tool("decode", "-q") as tool:
                for number in range(3):
                    tool.stdin.write(packer.compress(line) + packer.flush(zlib.Z_SYNC_FLUSH))
                    self.assertIn(b'"line":%d,' % (number + 1), tool.line())
        for name in "xz", "zst", "bz2", "lz4":
            with Tool("decode", "-q") as tool:
                for number in range(2):
                    tool.stdin.write(FORMATS[name](DEPTH))
                    self.assertIn(b'"line":%d,' % (number + 1), tool.line())


if __name__ == "__main__":
    unittest.main()
