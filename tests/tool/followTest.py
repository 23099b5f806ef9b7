"""Files that grow, are rotated, truncated or missing for a while: kalo decode --follow."""
import gzip
import json
import os
import pathlib
import signal
import time
import unittest

from kalo import Test, Tool, completed, resetSignals, run, write

# What may be said of the file.
MISSING = "kalo: log: No such file or directory; it is waited for\n"
REPLACED = "kalo: log: another file has its name now, and is read from its start\n"
TRUNCATED = "kalo: log: truncated; it is read from its start again\n"
POLL = 0.05


def depth(number):
    return completed(b"$SDDPT,%d*hh\n" % number)


def append(name, data):
    with open(name, "ab", 0) as file:
        file.write(data)


class Follow(Test):
    def follow(self, *words, **streams):
        tool = Tool("decode", *words, preexec_fn=resetSignals, **streams)
        self.addCleanup(tool.__exit__, None, None, None)
        return tool

    def expect(self, tool, *records):
        """The next records, as the numbers of their lines, their offsets and depths."""
        for record in records:
            text = tool.line()
            self.assertTrue(text, f"no more records, and not {record}")
            found = json.loads(text)
            self.assertEqual((found["line"], found["offset"], found.get("depth")), record)

    def expectMessages(self, tool, messages):
        """The next messages, and nothing else."""
        os.set_blocking(tool.stderr.fileno(), False)
        found, until = b"", time.monotonic() + 10
        while found.count(b"\n") < messages.count("\n") and time.monotonic() < until:
            time.sleep(0.01)
            found += tool.stderr.read() or b""
        os.set_blocking(tool.stderr.fileno(), True)
        self.assertEqual(found.decode(), messages)

    def testLatency(self):
        """A record that is appended comes out within 200 ms, and into a file, too. One measurement
        may be late on a busy machine."""
        write("first", depth(1))
        write("log", depth(2))
        out = pathlib.Path("out")
        tool, other = self.follow("--follow", "first", "log"), self.follow("--follow", "log", "-oout")
        self.expect(tool, (1, 0, 1), (1, 0, 2))
        times = []
        for number in range(3, 13):
            time.sleep(POLL * number / 13)  # at any point between two looks at the file
            begin = time.monotonic()
            append("log", depth(number))
            self.assertIn(b'"depth":%d}' % number, tool.line())
            times.append(time.monotonic() - begin)
        self.assertLess(sorted(times)[-2], 0.2)
        time.sleep(0.2)
        self.assertEqual(out.read_bytes().count(b"\n"), 11)  # FILE from the start, not FILE.part
        for each in tool, other:
            each.send_signal(signal.SIGTERM)
        self.assertEqual(tool.end(), (143, b"", "kalo: 12 records: 12 decoded\n"))
        self.assertEqual(other.end(), (143, b"", "kalo: 11 records: 11 decoded\n"))
        self.assertEqual(sorted(os.listdir()), ["first", "log", "out"])

    def testPieces(self):
        """A line waits for its rest, over many looks at the file."""
        line = depth(1)
        write("log", line[:3])
        tool = self.follow("--follow", "log")
        for piece in line[3:8], line[8:-1]:
            self.assertEqual(tool.line(3 * POLL), b"")
            append("log", piece)
        self.assertEqual(tool.line(3 * POLL), b"")
        append("log", b"\r\n" + depth(2) + line[:-1])
        self.expect(tool, (1, 0, 1), (2, len(line) + 1, 2))
        tool.send_signal(signal.SIGINT)
        self.assertEqual(tool.end(), (130, b"", "kalo: 2 records: 2 decoded\n"))

    def testWhatHappensToFiles(self):
        """Rotation and truncation begin a new input, and end the last line of the one before."""
        line = len(depth(1))
        tool = self.follow("--follow", "log")
        self.expectMessages(tool, MISSING)
        write("log", depth(1))
        self.expect(tool, (1, 0, 1))
        # Renamed, while the other program goes on to write, and not there for a while.
        os.rename("log", "log.1")
        self.expectMessages(tool, MISSING)
        append("log.1", depth(2) + depth(3)[:-1])
        self.expect(tool, (2, line, 2))
        write("log.new", depth(4) + depth(5))
        os.rename("log.new", "log")
        self.expect(tool, (3, 2 * line, 3), (1, 0, 4), (2, line, 5))
        self.expectMessages(tool, REPLACED)
        # Truncated, in the middle of a line.
        append("log", depth(6)[:-1])
        time.sleep(3 * POLL)
        os.truncate("log", 0)
        self.expectMessages(tool, TRUNCATED)
        self.expect(tool, (3, 2 * line, 6))
        append("log", depth(7))
        self.expect(tool, (1, 0, 7))
        # Written anew in one step.
        write("log", b"\n" + depth(8)[:-4])
        self.expectMessages(tool, TRUNCATED)
        # Replaced at once, in the middle of a line.
        write("log.new", depth(9))
        os.rename("log.new", "log")
        self.expect(tool, (2, 1, 8), (1, 0, 9))
        self.expectMessages(tool, REPLACED)
        # Another kind of file is not read.
        os.remove("log")
        os.mkdir("log")
        self.expectMessages(tool, "kalo: log: not a regular file; it is waited for\n")
        os.rmdir("log")
        self.expectMessages(tool, MISSING)
        write("log", depth(10))
        self.expect(tool, (1, 0, 10))
        self.expectMessages(tool, REPLACED)
        tool.send_signal(signal.SIGHUP)
        self.assertEqual(tool.end(), (
            129, b"", "kalo: 10 records: 10 decoded; 1 blank line\n"))

    def testDays(self):
        """The day is known from the file before; the days of another FILE do not count."""
        time0, time1 = (completed(b"$GPGLL,,,,,%s,A*hh\n" % clock) for clock in (b"235959", b"000001"))
        write("other", completed(b"$GPZDA,120000,01,01,2020,,*hh\n"))
        write("log", time1 + completed(b"$GPZDA,235959,14,03,2026,,*hh\n"))
        tool = self.follow("-q", "--follow", "other", "log")
        times = [json.loads(tool.line()).get("time") for _ in range(3)]
        os.rename("log", "log.1")
        write("log", time0 + time1)
        times += [json.loads(tool.line())["time"] for _ in range(2)]
        self.assertEqual(times, ["2020-01-01T12:00:00Z", None, "2026-03-14T23:59:59Z",
                                 "2026-03-14T23:59:59Z", "2026-03-15T00:00:01Z"])

    def testReaderThatLeaves(self):
        """Nothing need be appended for a closed output to be seen."""
        write("log", depth(1))
        tool = self.follow("--follow", "log")
        self.expect(tool, (1, 0, 1))
        tool.stdout.close()
        self.assertEqual((tool.wait(5), tool.stderr.read()), (0, b""))

    def testRefused(self):
        os.mkfifo("pipe")
        write("packed", gzip.compress(depth(1)))
        write("log", depth(1))
        later = "is read until it ends; name a file\n"
        for words, status, message in (
                ("--follow", 2, "decode: --follow: standard input " + later),
                ("--follow log -", 2, "decode: --follow: standard input " + later),
                ("--follow pipe", 2, "decode: --follow: pipe is not a regular file; "),
                ("--follow .", 2, "decode: --follow: . is not a regular file; "),
                ("--follow packed", 1, "packed: compressed input cannot be followed; "),
                ("--follow log -o log", 1, "log: the input is also the output; ")):
            result = run(["decode", *words.split()])
            self.assertEqual(result[:2], (status, b""), words)
            self.assertTrue(result[2].startswith("kalo: " + message), result[2])
        status, _, err = run(["decode", "--follow", "log"], stdout=self.open("log", "ab"))
        self.assertEqual((status, err.count("the input is also the output")), (1, 1))
        self.assertEqual(pathlib.Path("log").read_bytes(), depth(1))


if __name__ == "__main__":
    unittest.main()
