"""Runs the kalo program as its users do. The variable KALO_TOOL names it."""
import functools
import operator
import os
import pathlib
import re
import select
import signal
import socket
import subprocess
import sys
import threading

sys.path.append(str(pathlib.Path(__file__).parents[1]))
from files import FolderTest, write  # noqa: E402

TOOL = os.path.abspath(os.environ["KALO_TOOL"])
ROOT = pathlib.Path(__file__).parents[2]


def hasTerminals():
    """Whether there are pseudo-terminals; not in every container, even where it has /dev/ptmx."""
    try:
        for descriptor in os.openpty():
            os.close(descriptor)
    except OSError:
        return False
    return True


HAS_TERMINALS = hasTerminals()
IS_SANITIZED = b"__asan_init" in pathlib.Path(TOOL).read_bytes()
# The time zone must not matter. A sanitizer is to give back what was freed, so that what a run
# needs of memory can be measured.
ENVIRONMENT = dict(os.environ, TZ="XXX-14", ASAN_OPTIONS="quarantine_size_mb=1")


class Tool(subprocess.Popen):
    """A run in progress, with pipes where no streams are given; it ends with its block."""

    def __init__(self, *arguments, **streams):
        pipes = dict.fromkeys(("stdin", "stdout", "stderr"), subprocess.PIPE)
        super().__init__([TOOL, *arguments], bufsize=0, env=ENVIRONMENT, **{**pipes, **streams})
        self.pending = b""

    def __exit__(self, *failure):
        self.kill()
        super().__exit__(*failure)

    def line(self, seconds=10):
        """The next line of the output; what there is of it when the time is over or at the end."""
        while b"\n" not in self.pending and select.select([self.stdout], [], [], seconds)[0]:
            if not (block := self.stdout.read(65536)):
                break
            self.pending += block
        line, end, self.pending = self.pending.partition(b"\n")
        return line + end

    def end(self, seconds=60):
        """Waits for the end: the status, the rest of the output, and the messages."""
        out, err = self.communicate(timeout=seconds)
        return self.returncode, self.pending + (out or b""), (err or b"").decode()


def run(arguments, data=b"", chunk=32768, **streams):
    """Status, output and messages of a whole run, whose reads get at most `chunk` bytes each."""
    # This kind of socket keeps the bounds of what is written to it.
    ours, theirs = socket.socketpair(socket.AF_UNIX, socket.SOCK_SEQPACKET)

    def feed():
        with ours:
            for begin in range(0, len(data), chunk):
                try:
                    ours.send(data[begin:begin + chunk])
                except OSError:  # the program does not read any more
                    return

    with Tool(*arguments, **{"stdin": theirs, **streams}) as tool:
        theirs.close()
        feeder = threading.Thread(target=feed)
        feeder.start()
        result = tool.end()
        feeder.join()
    return result


def checksum(text):
    """The digits behind the "*" of a sentence; `text` starts behind its start character."""
    return b"%02X" % functools.reduce(operator.xor, text, 0)


def completed(text):
    """`text` with a checksum for each "*hh": that of what stands between it and the last "$" or "!"
    in front of it, or the beginning."""
    while (star := text.find(b"*hh")) >= 0:
        start = max(text.rfind(b"$", 0, star), text.rfind(b"!", 0, star))
        text = text[:star + 1] + checksum(text[start + 1:star]) + text[star + 3:]
    return text


def unescaped(text):
    """The bytes that a string of the output stands for."""
    return re.sub(rb"\\(\\|x..)", lambda match: b"\\" if match[1] == b"\\" else
                  bytes.fromhex(match[1][1:].decode()), text.encode())


class Test(FolderTest):
    def open(self, name, mode="wb"):
        file = open(name, mode)
        self.addCleanup(file.close)
        return file


def resetSignals(action=signal.SIG_DFL):
    for number in signal.SIGINT, signal.SIGTERM, signal.SIGHUP:
        signal.signal(number, action)
