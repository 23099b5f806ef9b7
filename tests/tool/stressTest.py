"""Inputs that no device sends, and runs that are disturbed. Each command and each form of its output
is given each of them. KALO_STRESS=10 makes ten times as many runs with signals, and lines that are
ten times as long."""
import csv
import io
import itertools
import json
import os
import pathlib
import random
import re
import signal
import time
import unittest
import xml.etree.ElementTree

import records
from kalo import ROOT, Test, Tool, completed, resetSignals, run, unescaped, write

STRESS = int(os.environ.get("KALO_STRESS", "1"))
VOYAGE = (ROOT / "examples/recordings/voyage.log").read_bytes()
POSITION = completed(b"$GPGGA,235959.00,5012.34,N,00110.25,E,2,17,0.80,12.40,M,46.90,M,2.0,0120*hh\r\n")
DATE = completed(b"$GPZDA,235958.41,14,03,2026,,*hh\r\n")

# Texts that mean something to whoever reads the output.
HOSTILE = (b"</script><script>alert(1)</script>", b"<!--", b"]]>", b"&amp;&#0;", b"=cmd|'/C calc'!A0",
           b'",""', b"'\"`$(reboot)", b"\x1b]0;title\x07\x1b[2J", b"\x9b31m", b"\xc2\x9b31m", b"%s%n%d",
           b"\\u0000", b"\\x00", b"\0", b"\xff\xfe", b"\xed\xa0\x80", b"\xf4\x90\x80\x80",
           "\u202e\u2028\ufeff\ufffe".encode(), b"\x7f\x08\x08", b"../../etc/passwd", b"-o/tmp/x")


def hostileLog():
    """Each text as a field, as a talker and prefix, in a tag block, as a name in every kind of
    record, and alone."""
    for text in HOSTILE:
        for line in (b"$GPGGA,235959.00,5012.34,N,00110.25,E,2,17,1,12.40,M,46.90,M,2.0,%s*hh",
                     b"$GPTXT,01,01,02,%s*hh", b"%s $GPHDT,1.5,T*hh", b"\\s:%s*00\\$GPHDT,1,T*hh",
                     b"$P%s,1,2*hh", b"$GPXYZ,%s*hh", b"$PSIMSSB,235959,%s,A,,C,H,M,1,2,3,4,T,,*hh",
                     b"$GPDTM,%s,,0,N,0,E,0,%s*hh", b"14 MAR 2026 23:58:34:106 B:%s X:25.1",
                     b"STR;%s;%s;RTCM;1;2;GPS;N;GBR;50.1;1.2;0;0;%s;none;N;N;9600;",
                     b"SOURCETABLE 200 OK %s", b"%s"):
            yield completed(line.replace(b"%s", text)) + b"\r\n"


INPUTS = {
    "nothing": b"",
    "one NUL": b"\0",
    "NUL bytes": b"\0" * 300000,
    "each byte as a line": b"".join(b"%c\n" % byte for byte in range(256)),
    "each byte in a sentence": b"".join(completed(b"$GPTXT,01,01,02,a%cb*hh\r\n" % byte)
                                        for byte in range(256)),
    "each byte behind a start": b"".join(b"$%c\r\n" % byte for byte in range(256)),
    "a sentence with 1000 fields": completed(b"$GPGGA" + b",1" * 999 + b"*hh\r\n"),
    "1000 stamps in a line": b"2026-03-14T23:59:58Z " * 1000 + b"\n",
    "no line end": POSITION.rstrip(),
    "all line ends": b"\r\r\n\n\r" * 1000 + POSITION + b"\r\r\r",
    "a long line": b"$GPGGA," + b"1" * 10000000 * STRESS + b"\n" + POSITION,
    "numbers too large": completed(b"$GPHDT,1e308,T*hh\r\n$SDDPT,99999999999999999999,nan*hh\r\n"
                                   b"$GPROT,-1e999,A*hh\r\n$GPVTG,inf,T,,M,1e400,N,,K*hh\r\n"),
    "random bytes": random.Random(1).randbytes(200000),
    "half a recording": VOYAGE[:30011],
    "damaged recording": bytes(byte ^ (number % 97 == 0) * (number % 251)
                               for number, byte in enumerate(VOYAGE[:40000])),
    "hostile text": DATE + b"".join(hostileLog()),
}


def jsonText(out, isLines):
    for line in out.splitlines() if isLines else [out]:
        json.loads(line.decode())


def table(out, separator):
    text = out.decode()
    if separator == "\t":
        rows = [line.split("\t") for line in text.split("\n")[:-1]]
    else:
        rows = [*csv.reader(io.StringIO(text, newline=""), strict=True)]
    assert len({len(row) for row in rows}) <= 1, "as many cells in each line"


def plain(out):
    """Nothing that a terminal obeys, and nothing that changes the order of letters."""
    found = re.search("[\0-\x09\x0b-\x1f\x7f-\x9f\u200e\u200f\u2028-\u202e\u2066-\u2069]",
                      out.decode())
    assert found is None, f"{found[0]!r} in the text for people: {out[:found.start()][-80:]}"


def page(out):
    data = re.fullmatch(rb'.*<script type="application/json" id="data">(.*?)</script>.*', out,
                        re.DOTALL)
    assert out.count(b"<script") == PAGE_SCRIPTS, "no further script"
    json.loads(data[1].decode())


def motions(out):
    assert len(out) % 27 == 0 and out[25::27] == b"\r" * (len(out) // 27)


FORMS = {
    "decode -q": lambda out: jsonText(out, True),
    "decode -q --raw --epoch --explain --radians": lambda out: jsonText(out, True),
    "decode -q --format csv -t GGA --raw": lambda out: table(out, ","),
    "decode -q --format tsv -t GGA --raw": lambda out: table(out, "\t"),
    "decode -q --kind tss1": lambda out: jsonText(out, True),
    "decode -q --kind ats": lambda out: jsonText(out, True),
    "decode -q --kind ntrip": lambda out: jsonText(out, True),
    "decode -q --strict": lambda out: jsonText(out, True),
    "summary": plain,
    "summary --json": lambda out: jsonText(out, False),
    "check": plain,
    "check --each": plain,
    "check --each --json": lambda out: jsonText(out, True),
    "check --junit": xml.etree.ElementTree.fromstring,
    "track": lambda out: jsonText(out, False),
    "track --format gpx": xml.etree.ElementTree.fromstring,
    "track --format kml": xml.etree.ElementTree.fromstring,
    "encode tss1": motions,
    "time": plain,
}
PAGE_SCRIPTS = 2
if run(["report", "--help"])[0] == 0:
    FORMS["report"] = page
    PAGE_SCRIPTS = run(["report"])[1].count(b"<script")


class Stress(Test):
    def testInputs(self):
        """Every form of output stays what it is; messages are short lines without control
        characters."""
        for (name, data), (words, check) in itertools.product(INPUTS.items(), FORMS.items()):
            with self.subTest(input=name, command=words):
                status, out, err = run(words.split(), data)
                self.assertIn(status, (0, 1))
                check(out)
                plain(err.encode())
                self.assertLess(max(map(len, err.splitlines()), default=0), 1000)

    def testTiles(self):
        """No byte is lost: records add up to the input."""
        for name, data in INPUTS.items():
            with self.subTest(name):
                out = run(["decode", "-q", "--raw"], data)[1]
                self.assertEqual([*records.faults(records.read(out), data)], [])

    def testHostileTextInTables(self):
        """A table reads back as the values of the JSON lines."""
        write("log", INPUTS["hostile text"])
        for name in "GGA", "PSIMSSB", "ATS", "STR", "DTM":
            lines = records.read(run(["decode", "-q", "-t", name, "log"])[1])
            out = run(["decode", "-q", "-t", name, "--format", "csv", "log"])[1].decode()
            rows = [*csv.DictReader(io.StringIO(out, newline=""), strict=True)]
            self.assertEqual(len(rows), len(lines))
            self.assertGreater(len(rows), 5)
            for row, line in zip(rows, lines):
                # tables write control characters as \xHH, JSON in its own way
                texts = {key: unescaped(value) for key, value in line.items()
                         if isinstance(value, str) and key in row}
                self.assertEqual({key: unescaped(row[key]) for key in texts}, texts)

    def testPlaces(self):
        """What cannot be read is said once, and the other inputs are read."""
        write("log", POSITION)
        os.mkdir("folder")
        rows = [("missing", "No such file or directory"), ("folder", "Is a directory"),
                ("log/x", "Not a directory"), ("x" * 300, "File name too long"),
                ("/proc/self/mem", "Input/output error")]
        os.chmod(write("secret", POSITION), 0)
        rows.append(("secret", "Permission denied"))
        os.chmod(".", 0o755)
        nobody = (lambda: os.setuid(65534)) if os.geteuid() == 0 else None  # root may read all
        os.symlink("loop", "loop")
        rows.append(("loop", "Too many levels of symbolic links"))
        for name, reason in rows:
            for words in "decode -q", "summary", "check", "track", "encode tss1":
                with self.subTest(name=name, words=words):
                    status, out, err = run([*words.split(), name, "log"], preexec_fn=nobody)
                    self.assertEqual(status, 1)
                    self.assertEqual([line for line in err.splitlines() if name[:20] in line],
                                     [f"kalo: {name}: {reason}"] if len(name) < 100 else
                                     [line for line in err.splitlines() if reason in line][:1])
                    self.assertNotEqual((words, out), ("decode -q", b""))

    def testFileThatShrinks(self):
        """What was read before counts; the run ends."""
        for size in 0, 5, 3000000:
            write("log", POSITION * 60000)
            with Tool("decode", "log") as tool:
                self.assertNotEqual(tool.line(), b"")
                os.truncate("log", size)
                status, out, err = tool.end()
            self.assertEqual(status, 0)
            self.assertEqual(out[-2:], b"}\n")
            self.assertTrue(err.startswith(f"kalo: {1 + out.count(b'%c' % 10)} records"), err)

    def testFullOutputs(self):
        """A disk that is full is said once, with status 1, by each command."""
        write("log", VOYAGE)
        for words in FORMS:
            if words in ("encode tss1", "time"):
                continue
            result = run([*words.split(), "log"], stdout=self.open("/dev/full"))
            self.assertEqual((result[0], result[2].count("No space left on device")), (1, 1), (words, result))

    def testSlowWriters(self):
        """Pieces of any size, at any time, give what the whole gives."""
        data = VOYAGE[:6000] + INPUTS["hostile text"][:2000]
        for words in "decode -q --raw", "summary --json", "track":
            whole = run(words.split(), data)
            for seed in range(3):
                chance = random.Random(seed)
                with Tool(*words.split()) as tool:
                    begin = 0
                    while begin < len(data):
                        end = begin + chance.choice((1, 2, 17, 300))
                        tool.stdin.write(data[begin:end])
                        begin = end
                        time.sleep(chance.choice((0, 0, 0, 0.001)))
                    self.assertEqual(tool.end(), whole, words)

    def testSignalsAtRandomMoments(self):
        """What came out is whole lines, and the beginning of the whole output: in a file, and in a pipe."""
        write("log", VOYAGE * 8)
        whole = run(["decode", "-q", "log"])[1]
        begin = time.monotonic()
        run(["decode", "-q", "log"])
        longest = time.monotonic() - begin
        chance = random.Random(STRESS)
        ends = {}
        for number in range(100 * STRESS):
            name = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)[number % 3]
            words = [] if number % 2 else ["-oout"]
            with Tool("decode", "-q", *words, "log", preexec_fn=resetSignals) as tool:
                time.sleep(chance.random() * longest)
                tool.send_signal(name)
                status, out, err = tool.end()
            ends[status] = ends.get(status, 0) + 1
            # before the program can take a signal it is ended by it
            self.assertIn(status, (0, 128 + name, -name))
            isWhole = os.path.exists("out")
            self.assertEqual(isWhole, status == 0 and words != [], (status, err))
            kept = pathlib.Path("out" if isWhole else "out.part")
            out = kept.read_bytes() if kept.exists() else out
            self.assertEqual(out, whole[:len(out)])
            self.assertTrue(status != 0 or out == whole)
            self.assertTrue(status == -name or out[-1:] in (b"", b"\n"), (status, out[-80:]))
            kept.unlink(missing_ok=True)
        self.assertGreater(len(ends), 1, ends)


if __name__ == "__main__":
    unittest.main()
