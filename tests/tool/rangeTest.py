"""Ranges of a file, as the program prints them: kalo decode --range. The tests in C++ cut more."""
import gzip
import re
import signal
import time
import unittest

import records
from kalo import ROOT, Test, Tool, completed, resetSignals, run, write
from files import tarOf

VOYAGE = (ROOT / "examples/recordings/voyage.log").read_bytes()
DEPTHS = b"".join(completed(b"$SDDPT,%d*hh\n" % depth) for depth in range(4))  # of 12 bytes each


def withoutLines(out):
    return re.sub(rb'"line":\d+', b'"line":null', out)


class Range(Test):
    def testDepths(self):
        write("log", DEPTHS)
        for range, depths in (("0-", [0, 1, 2, 3]), ("0-0", []), ("0-1", [0]), ("0-12", [0]),
                              ("0-13", [0, 1]), ("1-12", []), ("1-13", [1]), ("12-24", [1]),
                              ("13-", [2, 3]), ("37-", []), ("48-", []), ("48-99", []),
                              ("0-1KiB", [0, 1, 2, 3]), ("0KiB-1GiB", [0, 1, 2, 3])):
            status, out, err = run(["decode", "--quiet", "--range", range, "log"])
            self.assertEqual((status, err), (0, ""), range)
            found = records.read(out)
            self.assertEqual([record["depth"] for record in found], depths, range)
            for record in found:
                number = int(record["depth"])
                line = number + 1 if range.startswith("0") else None
                self.assertEqual((record["line"], record["offset"]), (line, 12 * number), range)

    def testJoinedAreTheWhole(self):
        write("log", VOYAGE)
        for options in ([], ["--format", "csv", "--type", "GGA"]):
            whole = run(["decode", "-q", *options, "log"])[1]
            joined = b""
            for begin in range(0, len(VOYAGE), 7777):
                status, out, err = run(["decode", "-q", "--range", f"{begin}-{begin + 7777}",
                                        *options, "log"])
                self.assertEqual((status, err), (0, ""))
                joined += out[out.index(b"\n") + 1:] if options and begin else out
            if options:  # the second column is the line
                whole, joined = (re.sub(rb"(?m)^log,\d*,", b"log,,", out) for out in (whole, joined))
            self.assertEqual(withoutLines(joined), withoutLines(whole))

    def testEndsWhileItLooksForTheDay(self):
        """Without a date, all that is in front of the range is read; a signal and a reader that goes end that."""
        write("log", completed(b"$GPGLL,5012.34,N,00000.24,E,120000,A*hh\n") * 3000000)
        words = ["decode", "-q", "--range", "110MiB-", "log"]
        begin = time.monotonic()
        self.assertEqual(run(words)[0], 0)
        whole = time.monotonic() - begin
        for end, status in ((lambda tool: tool.send_signal(signal.SIGINT), 130),
                            (lambda tool: tool.stdout.close(), 0)):
            begin = time.monotonic()
            with Tool(*words, preexec_fn=resetSignals) as tool:
                time.sleep(whole / 20)
                end(tool)
                self.assertEqual((tool.wait(60), tool.stderr.read()), (status, b""))
            self.assertLess(time.monotonic() - begin, whole / 2)

    def testRefused(self):
        for name, data, reason in (
                ("log.gz", gzip.compress(DEPTHS),
                 "compressed input cannot be read in ranges; unpack it into a file first"),
                ("log.tar", tarOf({"empty": b""}),
                 "an archive cannot be read in ranges; unpack it into a file first"),
                ("short", b"$SDDPT,1\n",
                 "the range begins after the end of the file, which has 9 bytes")):
            write(name, data)
            self.assertEqual(run(["decode", "-q", "--range", "10-20", name]),
                             (1, b"", f"kalo: {name}: {reason}\n"))
        self.assertEqual(run(["decode", "-q", "--range", "10-20", "missing"]),
                         (1, b"", "kalo: missing: No such file or directory\n"))
        with self.open("short", "ab") as out:
            self.assertEqual(run(["decode", "-q", "--range", "0-", "short"], stdout=out)[::2],
                             (1, "kalo: short: the input is also the output; write to another "
                              "file\n"))


if __name__ == "__main__":
    unittest.main()
