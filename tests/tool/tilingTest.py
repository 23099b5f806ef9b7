"""Nothing is lost and nothing invented: the records of an input tile it, and no sentence that has
its checksum is missing, over recordings and over random lines."""
import itertools
import os
import pathlib
import random
import re
import unittest

import records
from kalo import ROOT, checksum, completed, run, unescaped

START = re.compile(rb"[$!](?=[A-Z][A-Z0-9]{3,},)")
STAMP = re.compile(rb"^\d{4}-\d\d-\d\d.\d\d:\d\d:\d\d(\.5\+01:00|Z)[ ,]?")
SUM = re.compile(rb"\*([0-9A-Fa-f]{1,2})")


def holdsGood(text):
    """Whether a checksum in `text` is right for what stands in front of it."""
    return any(match[1].upper().zfill(2) == checksum(text[1:match.start()])
               for match in SUM.finditer(text))


def fromFirstStart(line):
    """A line from its first sentence on. Start characters in front of it are its prefix; at the
    beginning of the line one is enough, if what may be the address is printable."""
    first = START.search(line)
    isWeak = re.match(rb"[$!][ -)+-~]*?(?:[,*]|$)", line)
    if isWeak and not re.match(rb"[$!]*" + START.pattern, line):
        return line
    return line[first.start():] if first else b""


def lost(decoded):
    """Malformed records that hold a good sentence, and lines without a good record that are one."""
    for _, group in itertools.groupby(decoded, lambda record: record["line"]):
        line = [record for record in group if "raw" in record]
        bad = [record for record in line if "error" in record]
        if any(record.get("error") == "line too long" for record in bad):
            continue
        yield from (record for record in line if "checksum" in record and len(line) > 1)
        for record in bad:
            raw = unescaped(record["raw"])
            starts = [match.start() for match in START.finditer(raw)]
            if any(holdsGood(raw[begin:end]) for begin, end in zip(starts, [*starts[1:], None])):
                yield record
        text = b"".join(unescaped(record["raw"]) for record in line)
        if bad == line and holdsGood(fromFirstStart(STAMP.sub(b"", text, 1))):
            yield text


class Tiling(unittest.TestCase):
    def check(self, data, chunk=32768):
        status, out, err = run(["decode", "--raw", "--quiet"], data, chunk)
        self.assertEqual((status, err), (0, ""))
        decoded = records.read(out)
        self.assertEqual([*records.faults(decoded, data), *lost(decoded)], [])
        return decoded

    def checkFiles(self, folder):
        files = [path for path in folder.rglob("*") if path.is_file() and path.suffix != ".md"]
        self.assertTrue(files, folder)
        for path in files:
            with self.subTest(path):
                self.check(path.read_bytes())


@unittest.skipUnless(os.environ.get("KALO_RECORDINGS"), "KALO_RECORDINGS names no folder")
class Recordings(Tiling):
    def testRecordings(self):
        self.checkFiles(pathlib.Path(os.environ["KALO_RECORDINGS"]))


class Lines(Tiling):
    def testShippedRecordings(self):
        self.checkFiles(ROOT / "examples/recordings")

    def testRandomLines(self):
        draw = random.Random(20140801)  # the same in each run
        for count in range(12):
            data = randomLines(draw, 12000)
            with self.subTest(count):
                decoded = self.check(data)
                self.assertGreater(len(decoded), 2000)
                self.assertEqual(self.check(data, draw.randint(1, 50)), decoded)

    def testCutAnywhere(self):
        """A sentence is not lost to what stands of another record in front of it."""
        for text in (b":0A01C3 -0059U 0228 -0106", b"16 NOV 2026 21:41:01:250 B:12*2F",
                     b"2014-08-01T00:00:00Z :0A01C3 -0059U 0228 -0106", b"STR;M;I;F;D;2;N;W;GBR;50",
                     b"SOURCETABLE 200 OK", b"Server: S", b"$GPGGA,120000.0,4807.038,N*16"):
            decoded = self.check(b"".join(text[:length] + completed(b"$SDDPT,1*hh\n")
                                          for length in range(len(text) + 1)))
            self.assertEqual(sum(record["type"] == "DPT" for record in decoded), len(text) + 1)


FRAGMENTS = rb"""$GPGGA, $GPXYZ, !AIVDM, $ $$ ! , , 1 4807.038,N * *00 *7f *ZZ *5 AB noise \ :
    $GPGGA,120000.0,4807.038,N*16 $GPXYZ,1*51 $GPXYZ,1*50 $GPXYZ,$GPXYZ,1*00""".split() + [
    b"\n", b"\n", b"\r", b"\r\n", b"\r\r\n", b"\n\n", b" ", b"\t", b"\0", b"\xFF", b"\xC3\xA9",
    b"2014-08-01T00:00:00Z ", b"\n2014-08-01 00:00:00.5+01:00,"]


def randomLines(draw, fragments):
    """Fragments of lines, and now and then the checksum of what stands behind a start."""
    text = b""
    for _ in range(fragments):
        if draw.randrange(8):
            text += draw.choice(FRAGMENTS)
            continue
        starts = [match.start() for match in re.finditer(rb"[$!]", text[-200:])] or [0]
        text += b"*" + checksum(text[-200:][draw.choice(starts[-3:]) + 1:])
    return text


if __name__ == "__main__":
    unittest.main()
