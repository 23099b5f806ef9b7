"""The words of the command line, the files that they name, and what is said of wrong ones."""
import datetime
import json
import os
import pathlib
import re
import subprocess
import sys
import unittest

import records
from kalo import HAS_TERMINALS, ROOT, Test, completed, run, write

DEPTH = completed(b"$SDDPT,1*hh\n")


class Words(Test):
    def testHelpAndVersion(self):
        for words, start in (
                (["--help", "-h", "help"], "usage: kalo COMMAND [OPTION...] [FILE...]\n"),
                (["help decode", "decode --help", "decode -h", "decode --radian x --help"],
                 "usage: kalo decode [OPTION...] [FILE...]\n"),
                (["help encode", "encode --help"],
                 "usage: kalo encode [OPTION...] tss1 [FILE...]\n"),
                (["help schema", "schema --help"], "usage: kalo schema [OPTION...]\n"),
                (["help time", "time --help"], "usage: kalo time [OPTION...] [INSTANT...]\n"),
                (["--version", "-V"], "kalo ")):
            status, out, err = run(words[0].split())
            self.assertEqual((status, err), (0, ""), words)
            self.assertTrue(out.decode().startswith(start), out)
            for others in words:
                self.assertEqual(run(others.split())[1], out, others)

    def testHelpFillsItsLines(self):
        left = " " * 26  # where the descriptions of options begin
        for verb in ("decode", "summary", "check", "track", "encode", "time", "fields", "schema"):
            lines = run(["help", verb])[1].decode().split("\n")
            for line, following in zip(lines, lines[1:]):
                if following.startswith(left):
                    self.assertLessEqual(len(following), 79, following)
                    if len(line) > len(left) and line[len(left) - 1] == " ":
                        self.assertNotEqual(line[len(left)], " ", line)
                        word = following.split()[0]
                        self.assertGreater(len(line) + 1 + len(word), 79, f"{line} | {word}")

    def testWrongUsage(self):
        leaps = ("4294967295,4294967295,137,7 128,18,137,7 17,128,137,7 -1,18,137,7 17,18,256,7 "
                 "17,18,137,0 17,18,137,8 17,18,137 17,18,137,7,1 17,,137,7 a,18,137,7").split()
        for words, message in (
                ("decod x", "no such command: decod; did you mean decode?"),
                ("help tiem", "help: no such command: tiem; did you mean time?"),
                ("help time decode", "help: unexpected argument: decode\n"),
                ("manual tiem", "manual: no such command: tiem; did you mean time?"),
                ("completion", "completion: missing shell (expected bash, zsh or fish)\n"),
                ("completion fisch",
                 "completion: no such shell: fisch (expected bash, zsh or fish); did you mean fish?"),
                ("--versoin", "no such option: --versoin; did you mean --version?"),
                ("xxyyzz", "no such command: xxyyzz\n"),
                ("x\x1B[31m" + "y" * 300, r"no such command: x\x1B[31m" + "y" * 194 + "..."),
                ("--raw", "no such option: --raw"),
                ("decode --radian", "decode: no such option: --radian; did you mean --radians?"),
                ("summary --max", "summary: no such option: --max; did you mean --max-speed?"),
                ("decode --rad=1", "decode: no such option: --rad; did you mean --radians?"),
                ("decode --type RMC,SATELITES",
                 "decode: --type: no such record type: SATELITES; did you mean SATELLITES?"),
                ("check --ignore silense",
                 "check: --ignore: no such kind of finding: silense; did you mean silence?"),
                ("check --ignore qqqqq", "check: --ignore: no such kind of finding: qqqqq\n"),
                ("track --format gxp", "track: --format: no such format: gxp (expected geojson, gpx "
                 "or kml); did you mean gpx?"),
                ("decode --kind nema", "decode: --kind: no such kind: nema (expected nmea, tss1, "
                 "ats or ntrip); did you mean nmea?"),
                ("decode --date-order dym",
                 "decode: --date-order: no such order: dym (expected dmy or mdy); did you mean"),
                ("decode --color auot", "decode: --color: no such mode: auot (expected auto, always "
                 "or never); did you mean auto?"),
                ("decode --type qqqqq",
                 "decode: --type: no such record type: qqqqq; kalo fields lists them\n"),
                ("decode --type", "decode: --type: missing A,B\n"),
                ("decode -qt", "decode: --type: missing A,B\n"),
                ("decode --date", "decode: --date: missing YYYY-MM-DD|today\n"),
                ("decode --quiet=false", "decode: --quiet: takes no value\n"),
                ("decode --raw=foo", "decode: --raw: takes no value\n"),
                ("decode --epoch=", "decode: --epoch: takes no value\n"),
                ("decode -q=1", "decode: no such option: -=\n"),
                ("encode tss1 --radians=true", "encode: --radians: takes no value\n"),
                ("decode -qx", "decode: no such option: -x\n"),
                ("decode --type=", "decode: --type: no such record type: "),
                ("decode --kind TSS1", "decode: --kind: no such kind: TSS1 (expected nmea, "),
                ("decode --only-valid --only-malformed",
                 "decode: --only-valid and --only-malformed cannot be combined"),
                ("decode --range 5-3 x", "decode: --range: the range ends before it begins: 5-3\n"),
                *((f"decode --range={text} x", f"decode: --range: not a range of bytes: {text} "
                   "(expected BEGIN-END or BEGIN-, such as 64MiB-128MiB)\n")
                  for text in ("", "5", "-5", "5-x", "x-", "5-6-7", "0x5-", "5KB-", "1.5MiB-",
                               "9223372036854775808-", "8589934592GiB-")),
                *((f"decode --jobs={text} x", f"decode: --jobs: not a number of threads: {text} "
                   "(expected 1 to 256, or auto)\n")
                  for text in ("", "0", "257", "-1", "2.5", "two", "99999999999999999999")),
                ("decode --jobs 2 --follow x", "decode: --follow and --jobs cannot be combined\n"),
                ("decode --range 0-5 x y", "decode: --range needs one FILE, not several\n"),
                ("decode --range 0-5 -",
                 "decode: --range: standard input has no ranges; name a file\n"),
                ("decode --range 0-5", "decode: --range: standard input has no ranges; name"),
                ("decode --range 0-5 /dev/null",
                 "decode: --range: /dev/null is not a regular file\n"),
                ("decode --range 0-5 --follow x",
                 "decode: --follow and --range cannot be combined\n"),
                ("decode --date 2014-08-01 --date 2014-08-02", "decode: --date is given more"),
                ("decode --date 2014-02-29",
                 "decode: --date: no such date: 2014-02-29 (expected YYYY-MM-DD)"),
                *((f"decode --date {day}", f"decode: --date: no such date: {day}")
                  for day in ("2014-8-1", "2014-08-01T", "2100-02-29", "2014-04-31", "2014-00-01", "2014-13-01",
                              "2014-01-00", "2014/08-01", "2014-08/01", "201x-08-01", "2014-x8-01", "2014-08-0/")),
                ("decode --date=", "decode: --date: no such date: "),
                ("decode --kind= -q", "decode: --kind: no such kind: "),
                ("fields qqqqq", "fields: no such record type: qqqqq; kalo fields lists them\n"),
                ("fields GAG", "fields: no such record type: GAG; did you mean GGA?"),
                ("encode", "encode: missing format (expected tss1)"),
                ("decode --output-dir=", "decode: --output-dir: missing name of the folder"),
                ("decode --format csv --output x --output-dir y",
                 "decode: --output and --output-dir cannot be combined"),
                ("decode --receive-time /etc/passwd", "decode: --receive-time: /etc/passwd is a file, not live "),
                ("fields --toml", "fields: --toml: missing type"),
                ("fields --toml GGA", "fields: --toml: kalo decodes GGA without a description"),
                ("decode --output", "decode: --output: missing FILE"),
                ("decode --follow -", "decode: --follow: standard input is read until it ends; name a file"),
                ("decode --follow /dev/null", "decode: --follow: /dev/null is not a regular file; pipes and "),
                ("decode --sentences missing", "decode: --sentences: missing: No such file or directory\n"),
                ("decode --sentences .", "decode: --sentences: .: Is a directory\n"),
                ("track --every 5q", "track: --every: no such step: 5q (expected 10s or 50m)"),
                ("track --every 5s --every 6s", "track: --every: two steps with one unit: 6s"),
                ("track --every=", "track: --every: no such step:  (expected 10s or 50m)"),
                *((f"track --tolerance {text}", f"track: --tolerance: not a number above 0: {text}")
                  for text in ("-1", "0", "inf", "nan", "5x")),
                *((f"summary --near {text}", f"summary: --near: no such place: {text} (expected degrees: ")
                  for text in ("50", "91,0", "50,-181", "x,0", "50,y", "50,0,0")),
                ("check --json --junit", "check: --json and --junit cannot be combined"),
                ("check --output=", "check: --output: missing name of the file"),
                ("encode foo", "encode: no such format: foo (expected tss1)"),
                ("encode tss1 --raw", "encode: no such option: --raw"),
                *((f"time --leap={leap} @0",
                   f"time: --leap: not leap-second parameters: {leap} (") for leap in leaps)):
            status, out, err = run(words.split(), DEPTH)
            self.assertEqual((status, out), (2, b""), words)
            self.assertTrue(err.startswith("kalo: " + message), err)
            self.assertRegex(err, r"^.*\nkalo: see kalo (\w+ )?--help\n$")
        self.assertEqual(run([]), (2, b"", run(["help"])[1].decode()))

    def testVersion(self):
        """The first line is the version; the others say what the program was built with."""
        lines = run(["--version"])[1].decode().splitlines()
        version = re.search(r"project\(kalo VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text())[1]
        self.assertEqual(lines[0], f"kalo {version}")
        self.assertEqual([line.split()[0] for line in lines[1:]],
                         ["built", "library", "uses", "report", "unpacks"])
        self.assertRegex(lines[1], r"^built +with (GNU|Clang) \d+\.\d+\.\d+, build type \w+$")
        if "libkalo" in lines[2]:  # shared
            self.assertTrue(lines[2].endswith(f"/libkalo.so.{version}"), lines[2])
        uses = dict(each.split() for each in lines[3].split(maxsplit=1)[1].split(", "))
        self.assertEqual(list(uses), ["fmt", "libarchive", "zlib", "bzip2", "liblzma", "zstd", "lz4",
                                      "nlohmann_json", "toml++"])
        for name, number in uses.items():
            self.assertRegex(number, r"^\d+\.\d+(\.\d+)?$", name)

    def testValues(self):
        """The value of an option stands behind "=", or it is the next argument; it may be empty."""
        data = completed(b"a $SDDPT,1*hh\n$GPGLL,,,,,,A*hh\n$PABCD,1*hh\nb $SDDPT,2*hh\n")
        for words, lines, isQuiet in (
                ("--prefix= -q", [2, 3], True), ("--prefix=a --prefix=", [1, 2, 3], False),
                ("--prefix b", [4], False), ("--prefix=b -q", [4], True),
                ("--talker= -q", [3], True), ("--talker gp,,SD", [1, 2, 4], False),
                ("-tDPT", [1, 4], False), ("-qtDPT", [1, 4], True),
                ("-qt gll,DPT --talker=GP", [2], True)):
            status, out, err = run(["decode", *words.split()], data)
            self.assertEqual((status, [record["line"] for record in records.read(out)], err == ""),
                             (0, lines, isQuiet), words)

    def testFields(self):
        self.assertEqual(run(["fields", "STN", "gsv"])[1].decode().splitlines()[:3], [
            "type       name                     unit     fields    meaning",
            "STN        talkerNumber                      1         of the next sentence",
            "GSV        messageCount                      1         sentences in the group"])
        # The list of values and the recording, which holds all that the library decodes, name the
        # same ones.
        listed, printed = {}, {}
        for line in run(["fields"])[1].decode().splitlines()[1:]:
            listed.setdefault(line[:10].strip(), set()).update(line[11:35].strip().split(", "))
        out = run(["decode"], (ROOT / "examples/recordings/voyage.log").read_bytes())[1]
        for record in records.read(out):
            if record["type"] and "error" not in record:
                values = set(record) - set(records.KEYS) | {"address", "fields"} & set(record)
                printed.setdefault(record["type"], set()).update(values)
        page = (ROOT / "docs/sentences.md").read_text()
        typed = re.findall(r"^\| (\w+) \|.*\| library \|", page, re.MULTILINE)
        self.assertGreaterEqual(len(typed), 30)
        self.assertEqual({name: printed.get(name) for name in typed},
                         {name: listed[name] for name in typed})
        for name in set(printed) - set(typed):
            self.assertLessEqual(printed[name], listed[name], name)

    @unittest.skipUnless(HAS_TERMINALS, "no pseudo-terminals")
    def testTerminals(self):
        ours, theirs = os.openpty()
        for words in ["decode"], ["encode", "tss1"], ["time"]:
            status, out, err = run(words, stdin=theirs)
            self.assertEqual((status, out), (2, b""))
            self.assertTrue(err.startswith(f"usage: kalo {words[0]} [OPTION...] "), err)
        run(["time", "1930:18.5"], stdout=theirs)
        self.assertEqual(os.read(ours, 1000).decode().split(),
                         "2017-01-01T00:00:00.5Z GPS week 1930, 18.5 s Unix 1483228800.5".split())

    def testRecipe(self):
        """The program in the documentation gets the bytes of the input back."""
        code = re.search(r"```python\n(.*?)```", (ROOT / "docs/output.md").read_text(), re.DOTALL)
        data = completed(b"\\x\xFF\xC3\xA9\n$GPGSV,1,1,01,1,45,90,*hh\nx$GPXYZ,\\\n")
        out = run(["decode", "--raw"], data)[1]
        self.assertIn(b"SATELLITES", out)
        self.assertEqual(subprocess.run([sys.executable, "-c", code[1]], input=out,
                                        stdout=subprocess.PIPE, check=True).stdout, data)


class Files(Test):
    def testNames(self):
        """Each file is an input with its own day and groups; the others are done if one fails."""
        first = write(b'a"\\\xFF.log', completed(
            b"\n$GPZDA,120000,14,03,2026,,*hh\n$GPGSV,2,1,02,1,45,90,*hh"))
        write("[a,b]", completed(b"$GPGSV,2,2,02,2,45,90,*hh\n"))
        write("--help", completed(b"$GPGLL,,,,,120000,A*hh\n"))
        status, out, err = run(["decode", "--", first, "no\nsuch", ".", "-", "[a,b]", "--help"],
                               DEPTH)
        self.assertEqual([(record["source"], record["line"], record["type"], record.get("time"))
                          for record in records.read(out)], [
            (r'a"\\\xFF.log', 2, "ZDA", "2026-03-14T12:00:00Z"),
            (r'a"\\\xFF.log', 3, "GSV", None), ("-", 1, "DPT", None), ("[a,b]", 1, "GSV", None),
            ("--help", 1, "GLL", None)])
        self.assertEqual((status, err.splitlines()), (1, [
            r"kalo: no\x0Asuch: No such file or directory", "kalo: .: Is a directory",
            "kalo: 5 records: 5 decoded; 1 blank line; satellite groups: 2 incomplete; "
            "1 record has a time but no date; give --date YYYY-MM-DD"]))
        self.assertEqual(run(["decode", "-q", "-t", "DPT", "--", "--help"]), (0, b"", ""))

    def testLeapDays(self):
        for day in "2000-02-29", "2016-02-29":
            self.assertEqual(run(["decode", "--date", day])[::2], (0, "kalo: 0 records\n"))

    def testTodayIsNear(self):
        """With --date today a time of day is the instant that is nearest to now."""
        for hours in -11, 0, 11:
            wanted = datetime.datetime.now(datetime.timezone.utc) + datetime.timedelta(hours=hours)
            line = b"$GPGLL,5000.0,N,00100.0,W,%s,A" % wanted.strftime("%H%M%S").encode()
            _, out, _ = run(["decode", "--date", "today"], line)
            found = datetime.datetime.fromisoformat(json.loads(out)["time"].replace("Z", "+00:00"))
            self.assertLess(abs(found - wanted), datetime.timedelta(seconds=2), hours)

    def testStandardStreams(self):
        """Messages that cannot be written cost no record; other streams that fail are named."""
        write("ok", DEPTH)
        words, close = ["decode", "ok", "missing", "ok"], os.close
        expected = run(words)[1]
        self.assertEqual(expected.count(b"\n"), 2)
        self.assertEqual(run(words, stderr=None, preexec_fn=lambda: close(2))[:2], (1, expected))
        self.assertEqual(run(words, stderr=self.open("/dev/full"))[:2], (1, expected))
        self.assertEqual(run(["decode", "-q", "ok"], stdout=None, preexec_fn=lambda: close(1)),
                         (1, b"", "kalo: standard output: Bad file descriptor\n"))
        self.assertEqual(run(["decode", "-q", "-", "ok"], preexec_fn=lambda: close(0)),
                         (1, expected[:len(expected) // 2], "kalo: -: Bad file descriptor\n"))

    def testInputThatIsTheOutput(self):
        for words, name in ((["decode", "-q", "log"], "log"), (["encode", "tss1", "log"], "log"),
                            (["decode", "-q"], "-"), (["time"], "-")):
            write("log", DEPTH)
            result = run(words, stdin=self.open("log", "rb"), stdout=self.open("log", "ab"))
            self.assertEqual(result, (1, b"", f"kalo: {name}: the input is also the output; "
                                              "write to another file\n"))
            self.assertEqual(pathlib.Path("log").read_bytes(), DEPTH)


if __name__ == "__main__":
    unittest.main()
