"""Several threads print what one prints: kalo decode --jobs. The tests in C++ cut smaller pieces."""
import functools
import gzip
import os
import resource
import signal
import time
import unittest

from kalo import IS_SANITIZED, ROOT, Test, Tool, completed, resetSignals, run, write
from files import tarOf

VOYAGE = (ROOT / "examples/recordings/voyage.log").read_bytes()
DEPTH = completed(b"$SDDPT,1*hh\n")
LARGE = VOYAGE * 30  # several pieces


class Jobs(Test):
    def check(self, *words, **streams):
        """The result for one thread, which is that for several."""
        one = run(["decode", *words], **streams)
        for jobs in "2", "3", "auto":
            self.assertEqual(run(["decode", "--jobs", jobs, *words], **streams), one)
        return one

    def start(self, tool, size):
        """So many bytes of the output."""
        out = b""
        while len(out) < size and (block := tool.stdout.read(size - len(out))):
            out += block
        return out

    def testInputs(self):
        write("log", LARGE)
        write("log.gz", gzip.compress(LARGE))
        write("cut.gz", gzip.compress(LARGE)[:-99])
        write("log.tar", tarOf({"a.log": LARGE, "b.log": DEPTH, "c.log.gz": gzip.compress(LARGE)}))
        write("empty", b"")
        write("blank", b"\n\n")
        for words, status in ((["log", "log.gz", "empty", "log.tar", "blank"], 0),
                              (["log", "cut.gz", "missing", ".", "log"], 1)):
            result = self.check(*words)
            self.assertEqual(result[0], status, result[2])
            self.assertGreater(len(result[1]), len(LARGE))
        self.assertEqual(self.check("log", "-", "log", data=VOYAGE)[0], 0)
        for _ in range(2):
            with open("log", "rb") as log:
                whole = run(["decode"], stdin=log)
            with open("log", "rb") as log:
                self.assertEqual(run(["decode", "--jobs", "2"], stdin=log), whole)

    def testLiveInput(self):
        """What comes from a pipe is decoded at once, also behind a file."""
        write("log", LARGE)
        whole = run(["decode", "--quiet", "log"])[1]
        with Tool("decode", "--quiet", "--jobs", "2", "log", "-") as tool:
            self.assertEqual(self.start(tool, len(whole)), whole)
            for number in 1, 2:
                tool.stdin.write(DEPTH)
                self.assertIn(b'"source":"-","line":%d,' % number, tool.line())

    def testReaderGoesAway(self):
        write("log", LARGE)
        with Tool("decode", "--jobs", "2", "log") as tool:
            self.assertIn(b'"line":1,', tool.line())
            tool.stdout.close()
            self.assertEqual((tool.wait(60), tool.stderr.read()), (0, b""))

    def testReaderGoesAwayWhileNothingIsPrinted(self):
        write("log", LARGE)
        words = ["decode", "-q", "--jobs", "2", "--talker", "ZZ", *["log"] * 200]
        begin = time.monotonic()
        self.assertEqual(run(words), (0, b"", ""))
        whole = time.monotonic() - begin
        begin = time.monotonic()
        with Tool(*words) as tool:
            tool.stdout.close()
            self.assertEqual((tool.wait(60), tool.stderr.read()), (0, b""))
        self.assertLess(time.monotonic() - begin, whole / 2)

    def testStopSignal(self):
        """What was decoded is written out: a part of the whole, up to a line end."""
        write("log", LARGE)
        whole = run(["decode", "-q", "log"])[1]
        with Tool("decode", "-q", "--jobs", "2", "log", "log", preexec_fn=resetSignals) as tool:
            start = tool.line()
            tool.send_signal(signal.SIGINT)
            status, out, err = tool.end()
            self.assertEqual((status, err), (130, ""))
            self.assertTrue((whole * 2).startswith(start + out))
            self.assertTrue((start + out).endswith(b"\n"))
        os.mkfifo("fifo")
        with Tool("decode", "-q", "--jobs", "2", "log", "fifo", preexec_fn=resetSignals) as tool:
            self.assertEqual(self.start(tool, len(whole)), whole)
            tool.send_signal(signal.SIGTERM)  # while it waits for somebody who writes
            self.assertEqual(tool.end(), (143, b"", ""))

    def testFullDisk(self):
        write("log", LARGE)
        with open("/dev/full", "wb") as full:
            self.assertEqual(run(["decode", "-q", "--jobs", "2", "log"], stdout=full)[::2],
                             (1, "kalo: standard output: No space left on device\n"))

    @unittest.skipIf(IS_SANITIZED, "a sanitizer needs memory without a limit")
    def testOutOfMemory(self):
        """Also of another thread: what came out before is whole lines."""
        write("log", LARGE)
        whole = run(["decode", "-q", "log"])[1]
        messages = set()
        for size in range(40 << 20, 120 << 20, 4 << 20):
            limit = functools.partial(resource.setrlimit, resource.RLIMIT_AS, (size, size))
            if run(["decode", "-q", "log"], preexec_fn=limit)[0] != 0:  # too little for the program itself
                continue
            status, out, err = run(["decode", "-q", "--jobs", "2", "log"], preexec_fn=limit)
            with self.subTest(size=size):
                self.assertEqual((status, out == whole), (int(err != ""), err == ""))
                self.assertTrue(whole.startswith(out) and out[-1:] in (b"", b"\n"))
            messages.add(err)
        self.assertEqual(messages, {"", "kalo: out of memory\n"})


if __name__ == "__main__":
    unittest.main()
