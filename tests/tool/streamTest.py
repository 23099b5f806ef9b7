"""What comes out and when: slow, closed and full outputs, live inputs, signals, large inputs."""
import contextlib
import itertools
import os
import signal
import socket
import subprocess
import threading
import time
import unittest

import records
from kalo import HAS_TERMINALS, Test, Tool, completed, resetSignals, run, write

DEPTH = completed(b"$SDDPT,1*hh\n")
MOTION = (b'{"roll":1,"pitch":2,"heave":3,"horizontalAcceleration":0,"verticalAcceleration":0,'
          b'"status":"U"}\n')
INSTANT = b"1930:18\n"
VERBS = (["decode"], DEPTH), (["encode", "tss1"], MOTION), (["time"], INSTANT)


def feed(pipe, blocks):
    """Writes to a run as long as it reads."""
    with contextlib.suppress(BrokenPipeError, ValueError), pipe:
        for block in blocks:
            pipe.write(block)


class Output(Test):
    def testFull(self):
        write("many", DEPTH * 20000)
        write("motion", MOTION)
        for words in ("--help", "help", "decode -h", "--version", "fields", "time 1:0",
                      "decode -q many", "encode tss1 motion"):
            result = run(words.split(), stdout=self.open("/dev/full"))
            self.assertEqual(result[::2], (
                1, "kalo: standard output: No space left on device\n"), words)

    def testReaderThatLeaves(self):
        """A closed output ends every verb quietly, whatever it waits for or has still to open."""
        for name, count, line in (("depth", 1, DEPTH), ("depths", 99999, DEPTH),
                                  ("endless", 99999, DEPTH), ("motion", 1, MOTION),
                                  ("motions", 99999, MOTION)):
            write(name, line * count)
        os.truncate("endless", 1 << 40)
        os.mkfifo("silent")
        runs = [(words.split(), b"") for words in (
            "--version", "help time", "fields", "decode", "time", "decode depth silent",
            "decode depths missing", "decode endless", "encode tss1 motion silent",
            "encode tss1 motions missing")]
        for words, line in *runs, *VERBS:
            for lines in range(2 if line or len(words) > 2 else 1):
                with self.subTest(words=words, lines=lines), Tool(*words) as tool:
                    feeder = threading.Thread(
                        target=feed, args=(tool.stdin, itertools.repeat(line * 1000)))
                    if line:
                        feeder.start()
                    for _ in range(lines):
                        self.assertNotEqual(tool.line(), b"")
                    tool.stdout.close()
                    self.assertEqual((tool.wait(20), tool.stderr.read()), (0, b""))
                    if line:
                        feeder.join()
        with Tool("decode", "missing", "depths") as tool:  # behind a failure, too
            self.assertNotEqual(tool.line(), b"")
            tool.stdout.close()
            self.assertEqual((tool.wait(20), tool.stderr.read().count(b"\n")), (0, 1))

    def testReaderThatLeavesUnseen(self):
        """Nor does it matter that there is always more to read, and nothing to write."""
        for words in ["decode", "-q", "-t", "GGA"], ["encode", "tss1"], ["time"]:
            with Tool(*words, stdin=self.open("/dev/zero", "rb"),
                      stderr=subprocess.DEVNULL) as tool:
                tool.stdout.close()
                self.assertEqual(tool.wait(20), 0, words)

    def testReaderThatIsSlow(self):
        """An output that takes nothing more at the moment is waited for."""
        reading, writing = os.pipe()
        os.set_blocking(writing, False)
        with Tool("decode", "-q", write("many", DEPTH * 50000), stdout=writing) as tool:
            os.close(writing)
            time.sleep(0.3)
            with open(reading, "rb") as pipe:
                self.assertEqual(pipe.read().count(b"\n"), 50000)
            self.assertEqual(tool.end()[::2], (0, ""))

    def testSizes(self):
        """Output is written in parts, also that of one line, and is linear in the input."""
        line = b"2014-08-01T00:00:00.123456789Z " + DEPTH.strip() * 5900
        for words, data in *((words, line * 20000) for words, line in VERBS), (["decode"], line):
            ours, theirs = socket.socketpair(socket.AF_UNIX, socket.SOCK_SEQPACKET)
            theirs.setsockopt(socket.SOL_SOCKET, socket.SO_SNDBUF, 1 << 20)
            sizes = []
            reader = threading.Thread(target=lambda: sizes.extend(
                iter(lambda: len(ours.recv(1 << 20)), 0)))
            reader.start()
            with ours:
                with theirs:
                    self.assertEqual(run(words, data, stdout=theirs)[0], 0)
                reader.join()
            self.assertGreater(len(sizes), 1, words)
            self.assertLess(max(sizes), 300000, words)
        long = b"2014-08-01T00:00:00." + b"1" * 32000 + b"Z " + b"$SDDPT,1" * 4000
        self.assertLess(len(run(["decode"], long)[1]), 1000000)


class Live(Test):
    def expectDepth(self, tool, depth):
        self.assertIn(f'"depth":{depth}'.encode(), tool.line())

    def testRecordsComeAtOnce(self):
        """Each record comes out before the next goes in."""
        for theirs, ours in [os.pipe()] + ([os.openpty()[::-1]] if HAS_TERMINALS else []):
            with Tool("decode", "-q", "-", stdin=theirs) as tool, open(ours, "wb", 0) as pipe:
                os.close(theirs)
                for depth in 1, 2, 3:
                    pipe.write(completed(b"$SDDPT,%d*hh\n" % depth))
                    self.expectDepth(tool, depth)
                if os.isatty(ours):
                    pipe.write(b"\x04")  # typed at the end
                else:
                    pipe.close()
                self.assertEqual(tool.end(), (0, b"", ""))
        with Tool("decode") as tool:  # a CR ends its line; what follows of the line end is no line
            tool.stdin.write(b"$SDDPT,1\r")
            self.assertIn(b'"line":1,"offset":0,', tool.line())
            tool.stdin.write(b"\r")
            self.assertEqual(tool.line(0.1), b"")
            tool.stdin.write(b"\n$SDDPT,2\r")
            self.assertIn(b'"line":2,"offset":11,', tool.line())
        for words, line in VERBS:
            with Tool(*words) as tool:
                for _ in range(2):
                    tool.stdin.write(line)
                    self.assertNotEqual(tool.line(), b"", words)

    def testNothingIsHeldBack(self):
        """Neither while the next input is waited for, nor while there is always more to read."""
        write("ok", DEPTH)
        write("endless", DEPTH)
        os.truncate("endless", 1 << 40)
        os.mkfifo("silent")
        for words in ["ok", "silent"], ["--only-valid", "endless"]:
            with Tool("decode", *words) as tool:
                self.expectDepth(tool, 1)

    def testPipeThatOthersRead(self):
        """A pipe that does not block may be empty again by the time that it is read."""
        reading, writing = os.pipe()
        os.set_blocking(reading, False)
        with Tool("decode", "-q", stdin=reading) as tool, open(writing, "wb", 0) as pipe:
            for _ in range(5000):
                pipe.write(b"\n")
                with contextlib.suppress(BlockingIOError):
                    os.read(reading, 1)
            pipe.write(DEPTH)
            self.expectDepth(tool, 1)
            pipe.close()
            self.assertEqual(tool.end(), (0, b"", ""))
        os.close(reading)

    def testSignals(self):
        """What was decoded is written out; half a record is none."""
        write("ok", DEPTH)
        os.mkfifo("silent")
        for number in signal.SIGINT, signal.SIGTERM, signal.SIGHUP:
            for words, line in ((["decode", "-", "missing"], DEPTH), (["time"], INSTANT),
                                (["decode", "ok", "silent", "missing"], DEPTH),
                                (["encode", "tss1", "-", "missing"], MOTION)):
                with Tool(*words, preexec_fn=resetSignals) as tool:
                    tool.stdin.write(line + line[:6])
                    self.assertNotEqual(tool.line(), b"")
                    tool.send_signal(number)
                    counts = "kalo: 1 record: 1 decoded\n" if words[0] == "decode" else ""
                    self.assertEqual(tool.end(), (128 + number, b"", counts))
        with Tool("decode", preexec_fn=lambda: resetSignals(signal.SIG_IGN)) as tool:
            for depth in 1, 2:  # ignored from the start, as nohup does
                tool.stdin.write(completed(b"$SDDPT,%d*hh\n" % depth))
                self.expectDepth(tool, depth)
                tool.send_signal(signal.SIGHUP)
            self.assertEqual(tool.end()[0], 0)

    def testSignalsInFullFlight(self):
        """Lines are whole and counted; a second signal ends a run that its reader holds up."""
        write("many", DEPTH * 1000000)
        with Tool("decode", "many", preexec_fn=resetSignals) as tool:
            tool.line()
            tool.send_signal(signal.SIGTERM)
            status, out, err = tool.end()
            self.assertEqual((status, out[-2:]), (143, b"}\n"))
            count = 1 + out.count(b"\n")
            self.assertTrue(err.startswith(f"kalo: {count} records: "), err)
            self.assertLess(count, 1000000)
        with Tool("decode", "many", preexec_fn=resetSignals) as tool:
            for _ in range(2):
                time.sleep(0.3)
                tool.send_signal(signal.SIGTERM)
            self.assertEqual(tool.wait(20), -signal.SIGTERM)


class Bounds(Test):
    def testLongLines(self):
        """A line over 64 KiB becomes malformed records of at most that; the next line is read."""
        stamp, last = b"2014-08-01T00:00:00Z ", (2, 11, None)
        long = "line too long"
        for words, data, expected in (
                ([], b"x" * 65536 + b"\n" + DEPTH, [(1, 65536, "not a known record"), last]),
                ([], b"$SDDPT," + b"1" * 65530 + b"\n" + DEPTH,
                 [(1, 65536, long), (1, 1, long), last]),
                ([], DEPTH[:-1] + b"x" * 70000 + b"\r\r\n" + DEPTH,
                 [(1, 65536, long), (1, 4475, long), last]),
                ([], stamp + b" " * 140000, [(1, 65536, long), (1, 65536, long), (1, 8949, long)]),
                (["--strict"], b"x" * 65537 + b"\r\n" + DEPTH[:-1] + b"\r\n",
                 [(1, 65536, long), (1, 1, long), last])):
            decoded = records.read(run(["decode", "--raw", *words], data)[1])
            self.assertEqual([(record["line"], len(record["raw"]), record.get("error"))
                              for record in decoded], expected)
            self.assertEqual(list(records.faults(decoded, data)), [])
            self.assertEqual({"received" in record for record in decoded}, {data.startswith(stamp)})

    def testWork(self):
        """It is linear in the length of a line: for each byte the same, not one look at the rest."""
        front = b"14 Mar 2026 23:59:58 P:1 "
        for words, head, part in (
                ([], front, b"1 "), ([], front, b"1 Mar 2026 "), (["--kind", "ats"], b"", b"1 "),
                (["--kind", "ats"], b"", b"1 Mar 2026 "), (["--kind", "tss1"], b"", b":"),
                ([], front, b"1 Mar 2026 1:2:3 "), ([], front, b"1 Mar 2026 1:2:3 * ")):
            line = head + part * (65000 // len(part)) + b"\n"
            begin = time.monotonic()
            status, _, err = run(["decode", "-q", *words], line * 60)
            self.assertEqual((status, err), (0, ""))
            self.assertLess(time.monotonic() - begin, 20, (words, part))

    def testMessages(self):
        """One fault is one short line, however large what it is about."""
        for words, bad, message in (
                (["encode", "tss1"], b'{"x":"' + b"y" * 1000000 + b'"}\n', "longer than 64 KiB"),
                (["encode", "tss1"], b"[" * 32000 + b"\n", "not a JSON object"),
                (["encode", "tss1"], b'{"x":' + b"[" * 32000 + b"\n", "nested deeper than "),
                (["encode", "tss1"], b'{"roll":"' + b"z" * 9000 + b'"}\n', "roll is not a number"),
                (["time"], b"z" * 200000 + b"\n", "zzz")):
            good = MOTION if words != ["time"] else INSTANT
            status, out, err = run(words, good + bad + good)
            self.assertEqual((status, out.count(b"\n"), err.count("\n")), (1, 2, 1), message)
            self.assertTrue(err.startswith("kalo: -: line 2: " + message), err[:300])
            self.assertLess(len(err), 500)

    def testGroups(self):
        """Of more than 256 open groups of satellites the one that was silent longest is given up;
        a group holds 256 satellites."""
        def part(number, talkers):
            return [b"$%dGSV,3,%d,03,%d,45,90,\n" % (talker, number, number) for talker in talkers]
        first, silent, *others, last = range(1000, 1257)
        data = [*part(1, [first, silent, *others]), *part(2, [first]), *part(1, [last])]
        for talker in last, *others, first, silent:
            data += part(2, [talker]) + part(3, [talker])
        status, out, err = run(["decode", "--type", "SATELLITES"], b"".join(data))
        self.assertTrue(err.endswith("groups: 256 complete, 2 incomplete\n"), err)
        self.assertNotIn(str(silent), [record["talker"] for record in records.read(out)])
        data = [b"$GPGSV,300,%d,300,%d,45,90,\n" % (prn, prn) for prn in range(1, 301)]
        out = run(["decode", "--type", "SATELLITES"], b"".join(data))[1]
        self.assertEqual([len(record["satellites"]) for record in records.read(out)], [256])

    def testMemory(self):
        """No input moves what a run needs of memory; what counts senders needs it for the first of them."""
        fixes = lambda: (b"p%d $GPGGA,120000,1000,N,02000,E,4,08,0.9,%d,M,46,M,,\n" % (i, i) for i in itertools.count())
        faults = lambda: (b"$GPGGA,%d*00\n" % i for i in itertools.count())
        groups = "decode --type SATELLITES"
        for words, sequence in (
                (groups, (b"$T%dGSV,2,1,04,1,45,90,40\n" % i for i in itertools.count(1000))),
                (groups, (b"$GPGSV,2,1,04,1,45,90,40,%d\n" % i for i in itertools.count())),
                (groups, (b"$GPGSV,9999999,%d,99,%d,45,90,40\n" % (i, i) for i in itertools.count(1))),
                (groups, itertools.repeat(b"$GPGSV,1,1,01,1" * 100)),
                (groups, itertools.repeat(b"\r" * 1000)),
                (groups + " --strict", itertools.repeat(b"\r" * 1000)),
                *((words, sequence()) for words in ("decode --format csv -t GGA", "summary", "check", "track")
                  for sequence in (fixes, faults))):
            needed = []
            with Tool(*words.split(), stdout=subprocess.DEVNULL) as tool:
                for size in 1 << 20, 10 << 20:
                    while size > 0:
                        block = b"".join(itertools.islice(sequence, 1000))
                        tool.stdin.write(block)
                        size -= len(block)
                    with open(f"/proc/{tool.pid}/statm", encoding="ascii") as file:
                        needed.append(int(file.read().split()[1]) * os.sysconf("SC_PAGESIZE"))
                self.assertIn(tool.end()[0], (0, 1))  # 1: faults were found
            self.assertLess(needed[1] - needed[0], 4 << 20, words)


if __name__ == "__main__":
    unittest.main()
