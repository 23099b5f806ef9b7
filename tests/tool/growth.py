"""Twice the input takes at most 2.2 times as long, whatever the input is made of.

growth.py            checks the shapes that took longest for their size in a search
growth.py SECONDS    searches: parts are put together at random and repeated, in lines of any length
"""
import random
import resource
import subprocess
import sys
import tempfile
import time

import kalo

MOST = 2.2
LONG = 32000
# What something begins or ends with, in some format that the tool reads.
PARTS = (b"$", b"!", b"\\", b"*", b"*hh", b"*4", b",", b";", b":", b" ", b"\t", b"\r", b"\n", b"\0", b"\xff",
         b'"', b"'", b"<", b"[", b"]", b"{", b"(", b"->", b"|", b"1", b"1.", b"e9", b"-", b"GP", b"x", b"\\r",
         b"$GPGGA,", b"$GPGGA,1*hh", b"$SDDPT,1,", b"$GPGSV,9,", b"$GPGSV,9,1,99,1,45,90,40\n",
         b"$GPGSV,1,1,1,1,1,1,1*hh\n", b"14 Mar 2026 ", b"23:59:58", b"P:1 ", b"2026-03-14T23:59:58Z ",
         b"1773532798 ", b"\\s:a*7B\\", b"\\g:1-2-3*", b":1A0280 -0085F-0286 -0135", b"STR;", b"CAS;a;",
         b"SOURCETABLE 200 OK\n", b"HTTP/1.1 200\n", b"Name: value\n", b"ENDSOURCETABLE\n", b"$PSIMSSB,",
         b"0001:", b"COM1: ", b"[GPS1] ", b"123;", b"{\"roll\":", b"03/04/2026 ")
COMMANDS = (["decode", "-q"], ["decode", "-q", "--strict"], ["decode", "-q", "--kind", "tss1"],
            ["decode", "-q", "--kind", "ats"], ["decode", "-q", "--kind", "ntrip"],
            ["decode", "-q", "--format", "csv", "-t", "GGA"], ["summary"], ["check"],
            ["check", "--each"], ["check", "--junit"], ["track"], ["track", "--format", "gpx"],
            ["track", "--format", "kml"], ["report"], ["encode", "tss1"], ["time"])
SLOWEST = ((["decode", "-q"], (b"", b":", LONG)),
           (["decode", "-q", "--format", "csv", "-t", "GGA"], (b"", b":", LONG)),
           (["check"], (b"", b":1", LONG)), (["summary"], (b"", b":$", LONG)),
           (["check", "--each"], (b"|\\s:a*7B\\14 Mar 2026 $GPGGA,", b"\n\\x", LONG)),
           (["time"], (b"", b"x\n", LONG)))


def seconds(words, data):
    """Of the processor, for a whole run."""
    with tempfile.TemporaryFile() as file:
        file.write(data)
        file.seek(0)
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        status = subprocess.run([kalo.TOOL, *words], stdin=file, stdout=subprocess.DEVNULL,
                                stderr=subprocess.DEVNULL, timeout=100, check=False).returncode
        if status not in (0, 1):
            sys.exit(f"{' '.join(words)}: status {status}")
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def text(shape, size, factor=1):
    """A head and a part in lines of a length, or in one line if that is 0. With `factor` the input
    is longer, and so are the lines if they are long: a line is not read further than 64 KiB."""
    head, part, length = kalo.completed(shape[0]), kalo.completed(shape[1]), shape[2]
    size *= factor
    if length == 0:
        return head + part * (size // len(part))
    length *= factor if length == LONG else 1
    line = head + part * (max(length - len(head), 1) // len(part) + 1) + b"\r\n"
    return line * (size // len(line) + 1)


def growth(words, shape, size):
    """How much longer twice the size takes, without what every run takes; of several, the least."""
    constant = min(seconds(words, b"") for _ in range(3))
    ratios = []
    for _ in range(5):
        one = seconds(words, text(shape, size)) - constant
        two = seconds(words, text(shape, size, 2)) - constant
        ratios.append(two / max(one, 0.001))
        if ratios[-1] <= MOST:
            break
    return min(ratios)


def check(words, shape):
    """The size is such that a run takes long enough to be measured."""
    size, least = 500000, 0.1
    while (taken := seconds(words, text(shape, size))) < least and size < 100000000:
        size *= 4
    ratio = growth(words, shape, size)
    verdict = "TOO SLOW" if ratio > MOST else "ok"
    print(f"{verdict}: {' '.join(words)}: {shape}: {1e9 * taken / size:.0f} ns a byte, "
          f"twice the {size} bytes take {ratio:.2f} times as long", flush=True)
    return ratio <= MOST


def randomShape(chance):
    def some(most):
        return b"".join(chance.choices(PARTS, k=chance.randint(1, most)))
    return (some(4) if chance.random() < 0.5 else b"", some(4),
            chance.choice((0, 0, 80, 1000, LONG, LONG, LONG)))


def search(duration):
    """Shapes that take long for a small size are those to look at."""
    chance = random.Random(duration)
    end = time.monotonic() + duration
    size, slow, tried, worst = 200000, [], 0, {}
    constants = {tuple(words): min(seconds(words, b"") for _ in range(3)) for words in COMMANDS}
    while time.monotonic() < end:
        words, shape = chance.choice(COMMANDS), randomShape(chance)
        one = seconds(words, text(shape, size)) - constants[tuple(words)]
        tried += 1
        worst[tuple(words)] = max(worst.get(tuple(words), (0, None)), (one, shape))
        if one > 0.01:
            two = seconds(words, text(shape, size, 2)) - constants[tuple(words)]
            if two > MOST * one:
                slow.append((words, shape))
    print(f"{tried} shapes tried")
    for words, (_, shape) in sorted(worst.items()):
        slow.append((list(words), shape))
    return slow


def main():
    shapes = search(int(sys.argv[1])) if len(sys.argv) > 1 else SLOWEST
    bad = [shape for words, shape in shapes if not check(words, shape)]
    sys.exit(1 if bad or not shapes else 0)


if __name__ == "__main__":
    main()
