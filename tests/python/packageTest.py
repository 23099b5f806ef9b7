"""The package as its users call it. Needs no other package; what NumPy and pandas get is tested where
they are installed."""
import bz2
import datetime
import gzip
import importlib
import importlib.util
import lzma
import os
import pathlib
import subprocess
import sys
import threading
import unittest
import unittest.mock

import expected
import kalo

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1]))
from files import FolderTest, tarOf, write, zipOf  # noqa: E402

GGA = b"$GPGGA,120000,5000.000,N,00100.000,W,1,08,0.9,5.5,M,46.9,M,,\r\n"
HDT = b"$GPHDT,90,T\r\n"
UTC = datetime.timezone.utc


def has(package):
    return importlib.util.find_spec(package) is not None


def rowsOf(tables):
    return {name: table.to_pylist() for name, table in tables.items()}


class Test(FolderTest):
    write = staticmethod(write)


class ReadTest(Test):
    def testOptions(self):
        """Each row: the line, the options, the type, the column, and what must be in it."""
        day = datetime.datetime(2026, 3, 14, 12, tzinfo=UTC)
        own = self.write("own.toml", b'[PECHO]\nmeaning = "depth"\nsource = "none"\nvalues = [\n'
                                     b'{name = "soundSpeed", kind = "number", field = 1}]\n')
        stamped = b"03/04/2026 10:00:00 " + HDT
        april, march = (datetime.datetime(2026, month, number, 10, tzinfo=UTC)
                        for month, number in ((4, 3), (3, 4)))
        zda = b"$GPZDA,120000,14,03,2006,00,00\r\n"
        for line, options, kind, column, wanted in (
                (GGA, {}, "GGA", "time", None),
                (GGA, {"date": "2026-03-14"}, "GGA", "time", day),
                (GGA, {"date": day.date()}, "GGA", "time", day),
                (GGA, {}, "GGA", "latitude", 50.0),
                (GGA, {"radians": True}, "GGA", "latitude", 0.8726646259971648),
                (GGA, {}, "GGA", "raw", None),
                (GGA, {"raw": True}, "GGA", "raw", GGA[:-2]),
                (GGA, {"require_checksum": True}, "malformed", "error", "no checksum"),
                (GGA[:-2], {"strict": True}, "malformed", "error", "no line end"),
                (GGA, {"kind": "tss1"}, "malformed", "error", "nothing decodes"),
                (zda, {"not_before": "2020-01-01"}, "ZDA", "timeRule", "rollover"),
                (stamped, {"date_order": "dmy"}, "HDT", "received", april),
                (stamped, {"date_order": "mdy"}, "HDT", "received", march),
                (b"$PECHO,1500\r\n", {"sentences": own}, "PECHO", "soundSpeed", 1500.0),
                (b"$PECHO,1500\r\n", {"sentences": [own]}, "PECHO", "soundSpeed", 1500.0)):
            with self.subTest(line=line, options=options, column=column):
                row, = kalo.read(self.write("a.log", line), **options)[kind].to_pylist()
                self.assertEqual(row[column], wanted)

    def testTodayDatesLiveInput(self):
        decoder = kalo.Decoder(date="today")
        now = datetime.datetime.now(UTC)
        decoder.feed(b"$GPGLL,5000.0,N,00100.0,W,%s,A\r\n" % now.strftime("%H%M%S").encode())
        row, = decoder.take()["GLL"].to_pylist()
        self.assertLess(abs(row["time"] - now), datetime.timedelta(minutes=5))

    def testWrongUse(self):
        log = self.write("a.log", GGA)
        bad = self.write("bad.toml", b"[X\n")
        for arguments, options, message in (
                (("a.log",), {"types": ["GGX"]}, "no such type: GGX"),
                (("a.log",), {"columns": ["latitud"]}, "no such column: latitud"),
                (("a.log",), {"types": "HDT", "columns": "latitude"}, "no such column: latitude"),
                (("a.log",), {"date": "2026-02-30"}, "no such date: 2026-02-30 "
                                                     r"\(expected YYYY-MM-DD\)"),
                (("a.log",), {"date_order": "ymd"}, r"no such order: ymd \(expected dmy, mdy\)"),
                (("a.log",), {"kind": "xml"}, "no such kind: xml"),
                (("a.log",), {"types": []}, "types is empty"),
                (("a.log",), {"columns": []}, "columns is empty"),
                (("a.log",), {"columns": ["line", "line"]}, "column named twice: line"),
                (("a.log",), {"sentences": bad}, "bad.toml")):
            with self.subTest(options=options), self.assertRaisesRegex(ValueError, message):
                kalo.read(*arguments, **options)
        with self.assertRaisesRegex(ValueError, "batch_bytes"):
            kalo.scan(log, batch_bytes=0)
        with self.assertRaisesRegex(ValueError, "no such column: nothing"):
            kalo.read(log)["GGA"].to_numpy(["nothing"])
        with self.assertRaises(TypeError):
            kalo.read(log, nothing=1)
        for path in 5, None, [5]:
            with self.subTest(path), self.assertRaises(TypeError):
                kalo.read(path)
        for chunk in "text", 5, None:
            with self.subTest(chunk), self.assertRaises(TypeError):
                kalo.Decoder().feed(chunk)

    def testFilesThatCannotBeRead(self):
        truncated = gzip.compress(GGA * 1000)[:-20]
        self.write("outer.zip", zipOf({"inner.zip": zipOf({"a.log": GGA})}))
        with self.assertRaisesRegex(OSError, "outer.zip:inner.zip: an archive cannot be read here"):
            kalo.read("outer.zip")
        layers = GGA
        for _ in range(5):
            layers = gzip.compress(layers)
        with self.assertRaisesRegex(OSError, "layers.gz: packed too many times"):
            kalo.read(self.write("layers.gz", layers))
        header = tarOf({"a.log": GGA, "b.log": HDT})
        for name, data in (("missing.log", None), ("cut.gz", truncated),
                           ("cut.tar", header[:1024]),
                           ("damaged.tar", header[:1024] + b"x" * 512 + header[1536:]),
                           ("broken.zip", b"PK\x03\x04" + bytes(100)),
                           ("behind.gz", gzip.compress(GGA) + b"other bytes"),
                           ("broken.bz2", bz2.compress(GGA)[:20] + bytes(20)),
                           ("broken.xz", lzma.compress(GGA)[:20] + bytes(20))):
            if data is not None:
                self.write(name, data)
            with self.subTest(name), self.assertRaisesRegex(OSError, name):
                kalo.read(name)
        with self.assertRaises(IsADirectoryError):
            kalo.read(".")

    def testRowsInFrontOfDamage(self):
        """What scan could read comes before its exception."""
        name = self.write("cut.gz", gzip.compress(b"".join(
            b"$GPHDT,%d,T\r\n" % (i % 360) for i in range(500000)))[:-100])
        rows = 0
        with self.assertRaises(OSError):
            for part in kalo.scan([self.write("a.log", GGA), name]):
                rows += sum(map(len, part.values()))
        self.assertGreater(rows, 400000)

    def testTextThatLooksPacked(self):
        """The first bytes of a compressed file, and then a log."""
        for start in b"\x1f\x8b", b"BZh", b"PK":
            log = kalo.read(self.write("a.log", start + b"\r\n" + HDT))
            with self.subTest(start):
                self.assertEqual(sorted(log), ["HDT", "malformed"])

    def testTimesBeyondPython(self):
        """The columns have them; datetime has no year 0, and none behind 9999."""
        log = kalo.read(self.write("a.log", b"$GPZDA,120000,14,03,0000,00,00\r\n"
                                            b"$GPZDA,235960,31,12,9999,00,00\r\n"))
        self.assertEqual([(row["time"], row["date"]) for row in log["ZDA"].to_pylist()],
                         [(None, None), (None, datetime.date(9999, 12, 31))])

    def testChosenTypesAndColumns(self):
        log = self.write("a.log", GGA + HDT + b"junk\r\n")
        self.assertEqual(sorted(kalo.read(log)), ["GGA", "HDT", "malformed"])
        chosen = kalo.read(log, types=["hdt", "GLL", "malformed"], columns=["heading", "line"])
        self.assertEqual(rowsOf(chosen), {"GLL": [], "HDT": [{"heading": 90.0, "line": 2}],
                                          "malformed": [{"line": 3}]})
        self.assertEqual(rowsOf(kalo.read(log, columns="heading")), {"HDT": [{"heading": 90.0}]})

    def testSchema(self):
        table = kalo.schema("gga", columns=["latitude", "time"])
        self.assertEqual(len(table), 0)
        self.assertEqual(table.columns, [
            kalo.Column("latitude", "number", "deg", "north positive"),
            kalo.Column("time", "instant", "", "UTC instant")])
        self.assertEqual(kalo.schema("RMC", radians=True).columns[-5].unit, "rad")

    def testOrderOfColumns(self):
        """Around the values a fixed order, and the values in the order of kalo fields."""
        front = ["source", "line", "offset", "received", "receivedZone", "time", "timeRule",
                 "prefix", "suffix", "tag", "talker", "checksum"]
        for kind in "GGA", "RMC", "TSS1", "ATS", "SATELLITES", "STR", "VHW", "TXT":
            listed = subprocess.run([expected.TOOL, "fields", kind], check=True, text=True,
                                    capture_output=True).stdout.splitlines()
            values = [line.split()[1] for line in listed[1:]]
            names = [column.name for column in kalo.schema(kind).columns]
            held = [name for name in front if name in names]
            back = [name for name in ("error", "stated", "computed", "raw") if name in names]
            with self.subTest(kind):
                self.assertGreater(len(values), 0)
                self.assertEqual(names, held + values + back)

    def testProgress(self):
        paths = [self.write(f"{i}.log", GGA * (i + 1)) for i in range(3)]
        calls = []
        kalo.read(paths, progress=lambda done, total: calls.append((done, total)))
        self.assertEqual(calls[-1], (6 * len(GGA), 6 * len(GGA)))
        self.assertEqual(calls, sorted(calls))

        packed = self.write("logs.zip", zipOf({"a.log": GGA * 20000, "b.log": HDT}))
        calls = []
        kalo.read(packed, progress=lambda done, total: calls.append((done, total)))
        self.assertEqual(calls[-1], (os.path.getsize(packed),) * 2)
        self.assertEqual(calls, sorted(calls))

    def testProgressThatRaises(self):
        """Its exception comes out as it is, also from the depths of compressed files."""
        for name, data in (("a.log", GGA), ("a.gz", gzip.compress(GGA)),
                           ("a.zip", zipOf({"a.log": GGA}))):
            for kind in KeyboardInterrupt, RuntimeError, EOFError:
                error = kind("stop")

                def stop(done, total):
                    raise error
                with self.subTest(name=name, kind=kind), self.assertRaises(kind) as caught:
                    kalo.read(self.write(name, data), progress=stop)
                self.assertIs(caught.exception, error)


def packers():
    """A function for each method of compression that is there."""
    methods = [gzip.compress, bz2.compress, lzma.compress]
    for name in "backports.zstd", "lz4.frame":
        if has(name.partition(".")[0]):
            methods.append(importlib.import_module(name).compress)
    return methods


class InputTest(Test):
    """Compressed files and archives: read and scan give the records that the tool prints."""

    def check(self, name, data):
        self.write(name, data)
        records = {kind: len(lines) for kind, lines in expected.records(name).items()}
        sources = {kind: [record["source"] for record in lines]
                   for kind, lines in expected.records(name).items()}
        log = rowsOf(kalo.read(name))
        self.assertGreater(len(log), 0)
        self.assertEqual({kind: len(rows) for kind, rows in log.items()}, records)
        self.assertEqual({kind: [row["source"] for row in rows] for kind, rows in log.items()},
                         sources)
        joined = {}
        for part in kalo.scan(name, batch_bytes=1):
            for kind, rows in rowsOf(part).items():
                joined.setdefault(kind, []).extend(rows)
        self.assertEqual(joined, log)
        for kind, lines in expected.records(name).items():
            faults = list(filter(None, expected.differences(
                name, kind, kalo.schema(kind).columns, log[kind], lines)))
            self.assertEqual(faults, [])

    def testCompressedFiles(self):
        data = expected.SHIPPED.read_bytes()
        for pack in packers():
            name = "log." + pack.__module__.partition(".")[0].strip("_")
            for content in (pack(data), pack(data[:999]) + pack(data[999:]),  # in two pieces
                            bz2.compress(pack(data))):
                with self.subTest(name):
                    self.check(name, content)
            with self.subTest(name), self.assertRaisesRegex(OSError, name):
                kalo.read(self.write(name, pack(data)[:-9]))

    def testEmptyFile(self):
        for data in (b"", b"\r\n", zipOf({}), tarOf({"a.log": b""}),
                     *(pack(b"") for pack in packers())):
            self.assertEqual(kalo.read(self.write("a", data)), {})
            self.assertEqual(list(kalo.scan("a")), [])

    def testArchives(self):
        data = expected.SHIPPED.read_bytes()
        members = {"day1.log": data, "more/day2.log.gz": gzip.compress(data), "day3.log": HDT}
        for pack in packers():
            self.check("packed.tar", pack(tarOf(members)))
        self.check("logs.tar", tarOf(members))
        self.check("logs.zip", zipOf(members))

    def testMissingPackage(self):
        with unittest.mock.patch.dict(sys.modules, {"lz4": None, "lz4.frame": None}), \
                self.assertRaisesRegex(OSError, "a.lz4: .* needs the package lz4"):
            kalo.read(self.write("a.lz4", b"\x04\x22\x4d\x18" + bytes(20)))

    def testPipe(self):
        """A pipe gives few bytes at a time, and cannot be read twice."""
        for data in GGA + HDT, gzip.compress(GGA + HDT), zipOf({"a.log": GGA + HDT}):
            os.mkfifo("pipe")

            def write():
                with open("pipe", "wb", buffering=0) as pipe:
                    for i in range(0, len(data), 7):
                        pipe.write(data[i:i + 7])
            thread = threading.Thread(target=write)
            thread.start()
            log = kalo.read("pipe")
            thread.join()
            os.remove("pipe")
            self.assertEqual(sorted(log), ["GGA", "HDT"])

    def testEachInputBeginsAnew(self):
        """A day that one input tells is not that of the next; lines are counted from 1."""
        first = self.write("a.log", b"$GPZDA,120000,14,03,2026,00,00\r\n" + GGA)
        rows = kalo.read([first, self.write("b.log", GGA)])["GGA"].to_pylist()
        self.assertEqual([(row["source"], row["line"], row["time"] is None) for row in rows],
                         [("a.log", 2, False), ("b.log", 1, True)])

    def testNameThatIsNotUtf8(self):
        name = self.write(os.fsdecode(b"a\xff.log"), HDT)
        for path in name, os.fsencode(name), pathlib.Path(name), [name]:
            self.assertEqual(kalo.read(path)["HDT"].to_pylist()[0]["source"], "a\\xFF.log")


class LiveTest(Test):
    def testRowsComeAsTheirLinesDo(self):
        decoder = kalo.Decoder("COM1")
        decoder.feed(HDT[:5])
        self.assertEqual(decoder.take(), {})
        decoder.feed(bytearray(HDT[5:]))
        decoder.feed(memoryview(HDT[:-2]))
        row, = decoder.take()["HDT"].to_pylist()
        self.assertEqual((row["source"], row["line"]), ("COM1", 1))
        decoder.finish()
        row, = decoder.take()["HDT"].to_pylist()
        self.assertEqual(row["line"], 2)
        with self.assertRaisesRegex(ValueError, "no input was begun"):
            decoder.feed(HDT)
        decoder.begin("COM2")
        decoder.feed(HDT)
        self.assertEqual(decoder.take()["HDT"].to_pylist()[0]["source"], "COM2")

    def testTablesOutliveTheirDecoder(self):
        decoder = kalo.Decoder()
        decoder.feed(HDT * 1000)
        table = decoder.take()["HDT"]
        del decoder
        self.assertEqual(sum(row["heading"] for row in table.to_pylist()), 90000)


class ScanTest(Test):
    def testPartsAreTheWhole(self):
        data = expected.SHIPPED.read_bytes()
        path = self.write("a.log", data * 40)
        whole = rowsOf(kalo.read(path))
        parts, joined = 0, {}
        for part in kalo.scan(path, batch_bytes=1):  # a part for each block
            parts += 1
            for name, rows in rowsOf(part).items():
                joined.setdefault(name, []).extend(rows)
        self.assertGreater(parts, 2)
        self.assertEqual(joined, whole)

    def testMemoryIsBounded(self):
        """An archive of 1 GB is read in less than 100 MB."""
        data = expected.SHIPPED.read_bytes()
        data *= (50 << 20) // len(data)
        copies = (1 << 30) // len(data) + 1
        paths = [self.write("a.log", data)] * copies
        program = ("import re, sys, kalo\n"
                   "rows = sum(len(table) for part in kalo.scan(sys.argv[1:])"
                   " for table in part.values())\n"
                   "status = open('/proc/self/status').read()\n"
                   "print(rows, re.search(r'VmHWM:\\s+(\\d+)', status)[1])")
        out = subprocess.run([sys.executable, "-c", program, *paths], check=True, text=True,
                             capture_output=True).stdout
        rows, kilobytes = map(int, out.split())
        self.assertEqual(rows, copies * sum(map(len, kalo.read("a.log").values())))
        self.assertLess(kilobytes, 100 << 10)


class RangeTest(Test):
    def testEachLineBelongsToOneRange(self):
        lines = [b"$SDDPT,%d\r\n" % depth for depth in range(10)]  # of 10 bytes each
        path = self.write("log", b"".join(lines))
        for begin, end, depths in (
                (0, None, range(10)), (0, 1, [0]), (0, 10, [0]), (0, 11, [0, 1]), (1, 10, []),
                (1, 11, [1]), (10, 30, [1, 2]), (81, None, [9]), (81, 999, [9]), (100, None, [])):
            with self.subTest(begin=begin, end=end):
                found = kalo.read(path, range=(begin, end), types="DPT")["DPT"].to_pylist()
                self.assertEqual([row["depth"] for row in found], list(depths))
                self.assertEqual([row["offset"] for row in found], [10 * depth for depth in depths])
                self.assertEqual([row["line"] for row in found],
                                 [depth + 1 if begin == 0 else None for depth in depths])

    def testDays(self):
        """The day of a range comes from the lines in front of it, or from the caller."""
        self.write("dated", b"$GPZDA,115959,14,03,2026,00,00\r\n" + GGA)
        self.write("undated", b"$GPGLL,,,,,115959,V\r\n" + GGA)
        noon = [datetime.datetime(2026, 3, 14, 12, tzinfo=UTC)]
        for path, options, times in (("dated", {}, noon), ("undated", {}, [None]),
                                     ("undated", {"date": "2026-03-14"}, noon),
                                     ("dated", {"date": "2020-01-01"}, noon)):
            with self.subTest(path=path, options=options):
                found = kalo.read(path, range=(1, None), types="GGA", **options)["GGA"]
                self.assertEqual([row["time"] for row in found.to_pylist()], times)

    def testRanges(self):
        plain = self.write("plain", bytes(2500))
        empty = self.write("empty", b"")
        packed = self.write("packed", gzip.compress(GGA * 1000))
        for size in 1024, "1024", "1KiB":
            self.assertEqual(kalo.ranges([plain, empty, packed], size=size), [
                ("plain", 0, 1024), ("plain", 1024, 2048), ("plain", 2048, 2500), ("empty", 0, 0),
                ("packed", 0, None)])
        self.assertEqual(kalo.ranges(pathlib.Path(plain)), [("plain", 0, 2500)])
        self.assertEqual(kalo.read(empty, range=(0, 0)), {})
        self.assertEqual(len(kalo.read(packed, range=(0, None))["GGA"]), 1000)
        for size in 0, -1, "", "1MB", "1.5MiB":
            with self.assertRaises(ValueError):
                kalo.ranges(plain, size=size)

    def testScanAndProgress(self):
        path = self.write("log", GGA * 20000)
        calls = []
        parts = list(kalo.scan(path, range=(len(GGA) * 10, len(GGA) * 19000), types="GGA",
                               batch_bytes=1 << 16, progress=lambda *call: calls.append(call)))
        self.assertGreater(len(parts), 2)
        self.assertEqual(sum(len(part["GGA"]) for part in parts), 18990)
        self.assertEqual(calls[-1], (len(GGA) * 18990, len(GGA) * 18990))

    def testWrongUse(self):
        path = self.write("log", GGA)
        self.write("log.gz", gzip.compress(GGA))
        for paths, range_, reason in (
                ("log", (-1, 5), "not a range: (-1, 5)"), ("log", (5, 4), "not a range: (5, 4)"),
                (["log", "log"], (0, 5), "a range is one of a single file, not of 2"),
                ("log", (1000, None), "log: the range begins after the end of the file, which has "
                 f"{len(GGA)} bytes"),
                ("log.gz", (0, 10), "log.gz: compressed files and archives cannot be read in ranges")):
            with self.subTest(range=range_), self.assertRaises(ValueError) as raised:
                kalo.read(paths, range=range_)
            self.assertEqual(str(raised.exception), reason)
        with self.assertRaises(FileNotFoundError):
            kalo.read("missing", range=(0, 1))
        with self.assertRaises(IsADirectoryError):
            kalo.read(".", range=(0, 1))


    def testFileThatIsCutOffMeanwhile(self):
        path = self.write("log", GGA * 20000)
        parts = kalo.scan(path, range=(10, None), types="GGA", batch_bytes=1)
        next(parts)
        os.truncate(path, 300 << 10)
        with self.assertRaisesRegex(OSError, "log: the file was truncated while it was read"):
            list(parts)


class ThreadTest(Test):
    def testDecodersInThreads(self):
        data = expected.SHIPPED.read_bytes() * 20
        path = self.write("a.log", data)
        wanted = {name: len(table) for name, table in kalo.read(path).items()}
        found = []

        def run():
            found.append({name: len(table) for name, table in kalo.read(path).items()})
        threads = [threading.Thread(target=run) for _ in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(found, [wanted] * 4)

    def testOneDecoderInTwoThreadsIsRefused(self):
        """A second thread gets a ValueError or its turn, but never half a line of the other."""
        decoder = kalo.Decoder(types="HDT")
        data = HDT * 200000
        refused = []

        def run():
            for _ in range(5):
                try:
                    decoder.feed(data)
                except ValueError as error:
                    refused.append(str(error))
        threads = [threading.Thread(target=run) for _ in range(2)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertLessEqual(set(refused), {"the decoder is in use by another thread"})
        self.assertEqual(len(decoder.take()["HDT"]), (10 - len(refused)) * 200000)


    def testCallsOfOtherThreadsWhileOneFeeds(self):
        """Each method gives its result or is refused."""
        decoder = kalo.Decoder(types="HDT")
        calls = [decoder.take, decoder.tables, lambda: decoder.feed(HDT),
                 lambda: decoder._decoder.size(), lambda: decoder.begin("b"), decoder.finish]
        faults = []

        def run(call):
            for _ in range(300):
                try:
                    call()
                except ValueError as error:
                    if "in use by another thread" not in str(error) and \
                            "no input was begun" not in str(error):
                        faults.append(error)
        threads = [threading.Thread(target=run, args=[call]) for call in calls]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(faults, [])
        decoder.begin("c")
        decoder.take()
        decoder.feed(HDT)
        row, = decoder.take()["HDT"].to_pylist()
        self.assertEqual((row["source"], row["line"]), ("c", 1))


class MemoryTest(Test):
    def testOutOfMemory(self):
        """It raises MemoryError; after that the decoder refuses all, and a new one works."""
        program = """
import resource, kalo
line = b"$GPHDT,90,T\\r\\n"
data = line * 100000
decoder = kalo.Decoder()
decoder.feed(line)
kept = decoder.take()["HDT"]
used = int(open("/proc/self/statm").read().split()[0]) * resource.getpagesize()
resource.setrlimit(resource.RLIMIT_AS, (used + (64 << 20), -1))
try:
    while True:
        decoder.feed(data)
except MemoryError:
    pass
for call in lambda: decoder.feed(line), decoder.take, decoder.tables, decoder.finish:
    try:
        call()
    except ValueError as error:
        print(error)
del decoder
again = kalo.Decoder()
again.feed(line)
print(again.take()["HDT"].to_pylist() == kept.to_pylist())
"""
        out = subprocess.run([sys.executable, "-c", program], check=True, text=True,
                             capture_output=True).stdout.splitlines()
        self.assertEqual(out, ["the decoder ran out of memory before; make a new one"] * 4 +
                         ["True"])


@unittest.skipUnless(has("numpy"), "NumPy is not installed")
class NumpyTest(Test):
    def testTypesAndNulls(self):
        import numpy
        log = kalo.read(self.write("a.log", GGA + b"$GPGGA,,,,,,,,,,,,,,\r\n"), date="2026-03-14")
        arrays = log["GGA"].to_numpy()
        self.assertEqual(list(arrays), [column.name for column in log["GGA"].columns])
        self.assertEqual(str(arrays["time"].tolist()),
                         "[datetime.datetime(2026, 3, 14, 12, 0), None]")
        self.assertEqual(arrays["time"].dtype, numpy.dtype("datetime64[us]"))
        self.assertEqual(arrays["latitude"][0], 50)
        self.assertTrue(numpy.isnan(arrays["latitude"][1]))
        self.assertEqual(arrays["quality"].tolist(), [1, None])
        self.assertEqual(arrays["checksum"].tolist(), [False, False])
        self.assertEqual(arrays["timeRule"].tolist(), ["option", None])
        self.assertEqual(list(log["GGA"].to_numpy("latitude")), ["latitude"])

    def testArraysOutliveTheirTable(self):
        array = kalo.read(self.write("a.log", HDT * 1000))["HDT"].to_numpy(["heading"])["heading"]
        self.assertEqual(array.sum(), 90000)
        with self.assertRaises(ValueError):  # others may look at the same memory
            array[0] = 0

    def testEmptyTable(self):
        arrays = kalo.schema("GSV").to_numpy()
        self.assertEqual({len(array) for array in arrays.values()}, {0})


@unittest.skipUnless(has("pandas"), "pandas is not installed")
class PandasTest(Test):
    def testTypesAndNulls(self):
        import pandas
        log = kalo.read(self.write("a.log", GGA + b"$GPGGA,,,,,,,,,,,,,,\r\n"), date="2026-03-14")
        frame = log["GGA"].to_pandas()
        self.assertEqual(str(frame["time"].dtype), "datetime64[us, UTC]")
        self.assertEqual(frame["time"][0], pandas.Timestamp("2026-03-14T12:00:00Z"))
        self.assertTrue(pandas.isna(frame["time"][1]))
        self.assertEqual(str(frame["quality"].dtype), "Int64")
        self.assertEqual(frame["quality"].sum(), 1)
        self.assertEqual(list(log["GGA"].to_pandas(["latitude"]).columns), ["latitude"])
        self.assertEqual(len(kalo.schema("GSV").to_pandas()), 0)


@unittest.skipUnless(has("pyarrow") and has("duckdb"), "pyarrow and DuckDB are not installed")
class ParquetTest(Test):
    def setUp(self):
        super().setUp()
        for module in "duckdb", "pyarrow.dataset":  # they cannot be loaded twice
            importlib.import_module(module)

    def testNamesAndDays(self):
        """Names are taken as they are, and a part may have any number of days."""
        import duckdb
        first = datetime.date(2020, 1, 1)
        for count, hidden in (1100, {}), (3, {"pyarrow": None}):  # pyarrow has a limit of 1024
            days = [first + datetime.timedelta(i) for i in range(count)]
            log = kalo.read(self.write("a.log", b"".join(
                b"$GPZDA,120000,%s,00,00\r\n" % day.strftime("%d,%m,%Y").encode() for day in days)))
            with unittest.mock.patch.dict(sys.modules, hidden):
                kalo.to_parquet(log, f"it's {count}", name="ship's")
            files = list(pathlib.Path(f"it's {count}").rglob("*.parquet"))
            self.assertEqual(len(files), count)
            self.assertTrue(all(file.name.startswith("ship's") for file in files))
            self.assertEqual(duckdb.sql(
                "SELECT count(*), count(DISTINCT day), max(time)::DATE FROM "
                f"read_parquet('it''s {count}/*/*/*.parquet')").fetchall(),
                [(count, count, days[-1])])

    def testNoPartReplacesAnother(self):
        """Rows that are alike, of parts and ranges, all stay; the same part again replaces itself."""
        import duckdb
        path = self.write("a.log", b"$GPGSV,1,1,00\r\n" * 5000)
        for hidden in {}, {"pyarrow": None}:
            for _ in range(2):
                with unittest.mock.patch.dict(sys.modules, hidden):
                    for source, begin, end in kalo.ranges(path, size=15000):
                        for part in kalo.scan(source, range=(begin, end), batch_bytes=1000,
                                              types=["GSV", "SATELLITES"], columns=["talker"]):
                            kalo.to_parquet(part, "out")
                for kind in "GSV", "SATELLITES":
                    count = duckdb.sql(f"SELECT count(*) FROM 'out/type={kind}/*/*.parquet'")
                    self.assertEqual(count.fetchall(), [(5000,)], kind)

    def testOtherRowsAtTheSamePlaceStay(self):
        """Of files of the same name in other folders, and of live input that was begun again."""
        import duckdb
        for folder in "port", "starboard":
            os.makedirs(folder)
            os.chdir(folder)
            kalo.to_parquet(kalo.read(self.write("nav.log", HDT.replace(b"90", folder[:1].encode()))), "../out")
            os.chdir("..")
        for _ in range(2):
            decoder = kalo.Decoder()
            decoder.feed(HDT)
            kalo.to_parquet(decoder.take(), "out")
        self.assertEqual(duckdb.sql("SELECT count(*) FROM 'out/type=HDT/*/*.parquet'").fetchall(), [(4,)])

    def testFolderThatCannotBeWritten(self):
        log = kalo.read(self.write("a.log", HDT))
        for hidden in {}, {"pyarrow": None}:
            pathlib.Path("out/type=HDT").mkdir(parents=True, exist_ok=True)
            pathlib.Path("out/type=HDT/day=__HIVE_DEFAULT_PARTITION__").write_bytes(b"")
            with unittest.mock.patch.dict(sys.modules, hidden), self.assertRaises(OSError):
                kalo.to_parquet(log, "out")


if __name__ == "__main__":
    unittest.main()
