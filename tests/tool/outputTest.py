"""Output to a named file, which gets its name when it is complete; the progress line."""
import json
import os
import pathlib
import re
import resource
import select
import signal
import stat
import subprocess
import time
import unittest

from kalo import HAS_TERMINALS, Test, Tool, completed, resetSignals, run, write

DEPTH = completed(b"$SDDPT,1*hh\n")
POSITION = completed(b"$GPGLL,4807.038,N,01131.000,E,120000,A*hh\n")
MOTION = (b'{"roll":1,"pitch":2,"heave":3,"horizontalAcceleration":0,"verticalAcceleration":0,'
          b'"status":"U"}\n')
KEPT = "kalo: out.part: the incomplete output is kept in this file\n"
SAME = "the input is also the output; write to another file\n"


def files():
    return {name: pathlib.Path(name).read_bytes() for name in os.listdir()
            if stat.S_ISREG(os.stat(name).st_mode)}


class Output(Test):
    def testVerbs(self):
        """The file holds what standard output gets otherwise; findings and refused values are
        no reason to leave it incomplete."""
        write("log", POSITION + b"noise\n")
        write("motion", MOTION + b"[]\n")
        for words, status in (("decode log", 0), ("decode log --format csv -t GLL", 0),
                              ("summary log", 0), ("summary log --json", 0), ("check log", 1),
                              ("check --junit log", 1), ("track log", 0),
                              ("encode tss1 motion", 1)):
            expected = run(words.split())
            self.assertEqual(expected[0], status, words)
            for option in ["-o", "out"], ["--output=out"], ["-oout"]:
                before = write("out", b"old") and files()
                self.assertEqual(run([*words.split(), *option]), (status, b"", expected[2]), words)
                self.assertEqual(files(), {**before, "out": expected[1]}, words)
            self.assertEqual(run([*words.split(), "-o", "-"]), expected, words)

    def testNameComesLast(self):
        """Until the end there is FILE.part, and the old FILE stays as it is."""
        write("out", b"old")
        write("out.part", b"the rest of another run, which was longer" * 9)
        with Tool("decode", "-o", "out") as tool:
            tool.stdin.write(DEPTH)
            while not (part := files()["out.part"]).endswith(b"}\n"):
                self.assertIsNone(tool.poll())
            self.assertEqual(json.loads(part)["depth"], 1)
            self.assertEqual(files(), {"out": b"old", "out.part": part})
            tool.stdin.write(DEPTH)
            self.assertEqual(tool.end(), (0, b"", "kalo: 2 records: 2 decoded\n"))
        self.assertEqual(set(files()), {"out"})
        self.assertEqual(files()["out"].count(b"\n"), 2)

    def testIncomplete(self):
        """After a signal, a failed write or an input that is not read to its end, FILE.part is
        kept, and a message names it."""
        write("log", DEPTH * 4000)
        write("out", b"old")
        size = 1 << 16

        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))

        for number in signal.SIGINT, signal.SIGTERM, signal.SIGHUP:
            with Tool("decode", "-oout", "-", preexec_fn=resetSignals) as tool:
                tool.stdin.write(DEPTH)
                while not files().get("out.part", b"").endswith(b"}\n"):
                    self.assertIsNone(tool.poll())
                tool.send_signal(number)
                self.assertEqual(tool.end(), (128 + number, b"",
                                              KEPT + "kalo: 1 record: 1 decoded\n"))
            self.assertEqual(files()["out"], b"old")
            self.assertEqual(files().pop("out.part").count(b"\n"), 1)
            os.remove("out.part")
        with Tool("decode", "-oout", "log", preexec_fn=limit, restore_signals=False) as tool:
            self.assertEqual(tool.end(), (1, b"", "kalo: out: File too large\n" + KEPT))
        self.assertEqual([len(files()[name]) for name in ("out", "out.part")], [3, size])
        for words in (["decode", "-q"], ["summary"], ["check"], ["track"], ["encode", "tss1"]):
            status, out, err = run([*words, "-oout", "missing"])
            self.assertEqual((status, out, err), (
                1, b"", "kalo: missing: No such file or directory\n" + KEPT), words)
            self.assertEqual(files()["out"], b"old")

    def testNoRegularFile(self):
        """What is no regular file is written itself."""
        write("log", DEPTH)
        os.mkfifo("pipe")
        expected = run(["decode", "-q", "log"])[1]
        self.assertEqual(run(["decode", "-q", "-o", "/dev/null", "log"]), (0, b"", ""))
        self.assertEqual(run(["decode", "-q", "-o", "/dev/stdout", "log"]), (0, expected, ""))
        self.assertEqual(run(["decode", "-o", "/dev/full", "log"]), (
            1, b"", "kalo: /dev/full: No space left on device\n"))
        with Tool("decode", "-q", "-o", "pipe", "log") as tool:
            self.assertEqual(pathlib.Path("pipe").read_bytes(), expected)
            self.assertEqual(tool.end(), (0, b"", ""))
        with Tool("decode", "-q", "-o", "pipe", "log", preexec_fn=resetSignals) as tool:
            tool.send_signal(signal.SIGTERM)
            self.assertIn(tool.end()[0], (143, -signal.SIGTERM))  # nobody reads the pipe
        with open("log", "ab") as log:  # /dev/stdout is what it was, and keeps what it holds
            log.write(b"kept\n")
            log.flush()
            write("in", DEPTH)
            self.assertEqual(run(["decode", "-q", "-o/dev/stdout", "in"], stdout=log)[0], 0)
        self.assertEqual(files(), {"in": DEPTH, "log": DEPTH + b"kept\n" +
                                   expected.replace(b'"log"', b'"in"')})

    def testLink(self):
        """The file that a symbolic link names is replaced, not the link."""
        write("log", DEPTH)
        os.mkdir("folder")
        os.symlink(write("folder/out", b"old"), "link")
        self.assertEqual(run(["decode", "-q", "-o", "link", "log"])[0], 0)
        self.assertTrue(os.path.islink("link"))
        self.assertEqual(os.listdir("folder"), ["out"])
        self.assertIn(b'"depth":1', pathlib.Path("link").read_bytes())
        os.remove("folder/out")  # a link that names nothing yet
        self.assertEqual(run(["decode", "-q", "-o", "link", "log"])[0], 0)
        self.assertTrue(os.path.islink("link"))
        self.assertEqual(os.listdir("folder"), ["out"])

    def testTextOutsideAscii(self):
        """UTF-8 comes out as it is, from the first character of each length to the last, and other bytes as \\xHH."""
        for text in (b"\xC2\x80", b"\xDF\xBF", b"\xE0\xA0\x80", b"\xED\x9F\xBF", b"\xEE\x80\x80", b"\xEF\xBF\xBF",
                     b"\xF0\x90\x80\x80", b"\xF4\x8F\xBF\xBF"):
            _, out, _ = run(["decode", "-q"], b"$GPTXT,01,01,01,%b\r\n" % text)
            self.assertEqual(json.loads(out)["text"], text.decode())
        for text in (b"\x80", b"\xBF", b"\xC1\xBF", b"\xE0\x9F\xBF", b"\xED\xA0\x80", b"\xF0\x8F\xBF\xBF",
                     b"\xF4\x90\x80\x80", b"\xF5\x80\x80\x80", b"\xC2", b"\xE1\x80", b"\xF1\x80\x80"):
            _, out, _ = run(["decode", "-q"], b"$GPTXT,01,01,01,%b\r\n" % text)
            self.assertEqual(json.loads(out)["text"], "".join(f"\\x{byte:02X}" for byte in text))

    def testPermissions(self):
        """A file that only its owner may read stays so."""
        write("log", DEPTH)
        os.chmod(write("out", b"old"), 0o600)
        self.assertEqual(run(["decode", "-q", "-o", "out", "log"])[0], 0)
        self.assertEqual(os.stat("out").st_mode & 0o777, 0o600)
        os.umask(mask := os.umask(0))
        self.assertEqual(run(["decode", "-q", "-o", "new"], DEPTH)[0], 0)
        self.assertEqual(os.stat("new").st_mode & 0o777, 0o666 & ~mask)

    def testPartIsNoFile(self):
        """The message names the file that cannot be written."""
        write("log", DEPTH)
        os.symlink("nowhere", "out.part")
        self.assertEqual(run(["decode", "-q", "-o", "out", "log"]),
                         (1, b"", "kalo: out: out.part: Too many levels of symbolic links\n"))

    def testRefused(self):
        """An input is not overwritten, under either name, and nothing is written."""
        write("log", DEPTH)
        write("out.part", DEPTH)
        os.link("log", "twin")
        os.mkdir("folder")
        before = files()
        for words, message in (
                ("decode -o log log", "log: " + SAME), ("decode -o log missing twin", "log: " + SAME),
                ("encode tss1 -o log log", "log: " + SAME), ("check -o log", "log: " + SAME),
                ("decode -o out out.part", "out: " + SAME),
                ("decode -o folder log", "folder: Is a directory\n"),
                ("track -o missing/out log", "missing/out: No such file or directory\n"),
                ("summary -o log/out log", "log/out: Not a directory\n")):
            result = run(words.split(), stdin=self.open("log", "rb"))
            self.assertEqual(result, (1, b"", "kalo: " + message), words)
            self.assertEqual(files(), before, words)
        for words, message in (
                ("decode --output=", "decode: --output: missing name of the file\n"),
                ("decode -o", "decode: --output: missing FILE\n"),
                ("decode --format csv --output-dir x -o y",
                 "decode: --output and --output-dir cannot be combined\n")):
            status, out, err = run(words.split())
            self.assertEqual((status, out, err.splitlines(True)[0]), (2, b"", "kalo: " + message))


class Terminal:
    """A pseudo-terminal: what was written to it, and what can be seen of that."""

    def __init__(self, test):
        ours, self.theirs = os.openpty()
        self.ours = open(ours, "rb", 0)
        test.addCleanup(self.ours.close)
        test.addCleanup(os.close, self.theirs)
        self.written = ""

    def read(self, seconds=0):
        while select.select([self.ours], [], [], seconds)[0]:
            self.written += self.ours.read(4096).decode()
        return self.written

    def screen(self):
        lines, column = [[]], 0
        for c in self.read():
            if c == "\n":
                lines.append([])
            column = 0 if c in "\r\n" else column + 1
            if c not in "\r\n":
                lines[-1][column - 1:column] = c
        return ["".join(line).rstrip() for line in lines]


@unittest.skipUnless(HAS_TERMINALS, "no pseudo-terminals")
class Progress(Test):
    SIZE = r"(\d+ B|\d+\.\d kB|\d+\.\d MB|\d+\.\d\d GB)"

    def testLine(self):
        """It is overwritten at most five times a second, and erased before messages."""
        write("log", DEPTH)
        write("zeros", DEPTH)
        os.truncate("zeros", 1 << 40)
        terminal = Terminal(self)
        began = time.monotonic()
        with Tool("decode", "--color=never", "--only-valid", "log", "missing", "zeros", stderr=terminal.theirs,
                  stdout=subprocess.DEVNULL, preexec_fn=resetSignals) as tool:
            while len(shown := re.findall("[^\r\n]*read[^\r\n]*", terminal.read(0.05))) < 4:
                self.assertIsNone(tool.poll())
            self.assertGreater(time.monotonic() - began, 0.5 + 3 * 0.2)
            for line in shown[:3]:  # the last one may not be whole
                self.assertRegex(line, f"^{self.SIZE} of 1099.51 GB read, 0 %, {self.SIZE}/s, "
                                       r"\d+ (d|h|min) \d+ (h|min|s) left$")
            tool.send_signal(signal.SIGTERM)
            self.assertEqual(tool.wait(20), 143)
        message, counts, end = terminal.screen()
        self.assertEqual((message, end), ("kalo: missing: No such file or directory", ""))
        self.assertRegex(counts, r"^kalo: \d+ records: 2 decoded, ")

    def testWhere(self):
        """On a terminal only that gets no records; from a pipe without a share."""
        runs = []
        for words, onTerminal, isShown in (
                (["decode"], ["stderr"], True), (["check"], ["stderr"], True),
                (["decode", "-o", "out"], ["stderr", "stdout"], True),
                (["decode"], ["stderr", "stdout"], False), (["decode", "-q"], ["stderr"], False),
                (["track", "--no-progress"], ["stderr"], False), (["summary"], [], False)):
            terminal = Terminal(self)
            streams = dict.fromkeys(onTerminal, terminal.theirs)
            tool = Tool(*words, **{"stderr": subprocess.PIPE, **streams})
            self.addCleanup(tool.__exit__, None, None, None)
            runs.append((words, terminal, isShown, tool))
        until = time.monotonic() + 20
        while time.monotonic() < until and not all(
                "read" in terminal.read() for _, terminal, isShown, _ in runs if isShown):
            time.sleep(0.1)
            for *_, tool in runs:
                tool.stdin.write(DEPTH)
        for words, terminal, isShown, tool in runs:
            tool.stdin.close()
            tool.stdin = None
            status, out, err = tool.end()
            shown = re.findall("[^\r\n]*read[^\r\n]*", terminal.read() + err)
            self.assertEqual((status, bool(shown)), (0, isShown), words)
            for line in shown:
                self.assertRegex(line, f"^{self.SIZE} read, {self.SIZE}/s$", words)
            self.assertEqual([line for line in terminal.screen() if "read" in line], [], words)


if __name__ == "__main__":
    unittest.main()
