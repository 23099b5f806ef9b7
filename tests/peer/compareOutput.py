"""Looks for logs that two builds of kalo decode differently; HELP says how."""
import argparse
import contextlib
import os
import pathlib
import random
import socket
import subprocess
import sys
import threading

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "bench"))
import runs  # noqa: E402

HELP = """\
Builds the commit OLD in build/older and compares its tool with the one in build/release: what kalo
decode writes, its messages and its status. The inputs are logs of randomly damaged lines, read from
files and from pipes that deliver them in random pieces, with random options. At the first
difference the input is shortened and saved in build/compare, and the script ends with 1. The same
seed gives the same inputs. More logs to begin with: a folder of *.log files in the variable
KALO_RECORDINGS."""

FOLDER = runs.ROOT / "build/compare"
TEXTS = rb"""- +1 0 00 -0.0 1e308 nan 0x1F 9007199254740993 5e-324 999999999999999.5 A a M
    12.3456789012345678 235960 246060.99 99999999999999999999999 0.1234567 3984434- 9000.0001
    18000.00000 310226""".split() + [b"", b" 1", b"1 "]
BYTES = rb"""$ ! * , : ; \ " *0 *00 $GP""".split() + [
    b"\0", b"\t", b" ", b"\r", b"\n", b"\r\n", b"\x1b", b"\x7f", b"\x80", b"\xff", b"\xc3\xa9",
    b"\xe2\x82\xac", b""]
FRONTS = [text.encode("latin1") for text in (
    "2026-03-14T23:58:30.123Z ", "2026-03-14 23:58:30,", "1773532710 ", "1773532710.25,",
    "23:58:30.5 ", "14.03.2026 23:58:30 ", "03/14/2026 11:58:30 PM ", "[2026-03-14 23:58:30] ",
    "14 Mar 2026 23:59:58 tty: ", "2026-03-14T23:58:30+02:00 ", "\\s:GP,c:1773532710*5A\\",
    "\\g:1-2-7,s:rx*00\\", "rx1 ", '"', "\xff\0\x80", "$", "$$", "GPS1: ", "\xc3\xa9t\xc3\xa9 ")]
ENDS = [b"\r\n"] * 12 + [
    b"\n", b"\r", b"\r\r\n", b"", b" \t\r\n", b"\n\n", b" rx1\r\n", b'"\r\n', b"\\r\\n\n"]
OPTIONS = """--raw|--radians|--epoch|--date 2026-03-14|--date 2024-02-29|--strict|--quiet|
    --require-checksum|--only-valid|--only-malformed|--talker GP|--prefix rx1|--type rmc,ats|
    --type GGA,GSV,SATELLITES|--kind nmea|--kind tss1|--kind ats|--kind ntrip""".split("|")


def closed(body):
    """A sentence with its checksum, mostly as it is usually written."""
    digits = runs.checksum(body[1:])
    return body + b"*" + random.choice((digits,) * 6 + (digits.lower(), digits[1:], digits + b"0"))


def otherFields(line, lines):
    body, star, _ = line.rpartition(b"*")
    separator = next((byte for byte in (b",", b";", b" ") if byte in line), b"\t")
    parts = (body or line).split(separator)
    for _ in range(random.choice((1, 1, 1, 2, 5))):
        i = random.randrange(len(parts))
        digits = bytes(random.choice(b"0123456789") if 48 <= c <= 57 else c for c in parts[i])
        parts[i:i + 1] = random.choice((
            [digits], [digits], [random.choice(TEXTS)], [random.choice(TEXTS)],
            [parts[i] + random.choice(BYTES)], [random.choice(random.choice(lines).split(b","))],
            [] if len(parts) > 1 else [b""], [parts[i], b""], [b""] * 3))
    text = separator.join(parts)
    return closed(text) if star else text


def otherBytes(line, _):
    begin = random.randrange(len(line) + 1)
    end = begin + random.choice((0, 0, 1, 1, 1, 2, len(line) // 2))
    return line[:begin] + random.choice([*BYTES, random.randbytes(1)]) + line[end:]


def joined(line, lines):
    return line[:random.choice((len(line), random.randrange(len(line) + 1)))] + random.choice(lines)


def inFront(line, _):
    return random.choice(FRONTS) + line


CHANGES = (otherFields, otherFields, otherFields, otherBytes, joined, inFront, inFront)


def makeLog(lines, count):
    """Lines that follow each other, so that groups and times go on, some of them changed."""
    begin = random.randrange(len(lines))
    front = random.choice([b""] * 30 + FRONTS)
    damage = random.choice((0.02, 0.3, 0.8))
    log = []
    for line in (lines[begin:] + lines)[:count]:
        while random.random() < damage:
            line = random.choice(CHANGES)(line, lines)
        log.append(front + line + random.choice(ENDS if random.random() < damage else ENDS[:1]))
    return log


def decode(tool, options, data, cuts):
    """Status, output and messages; the tool reads what lies between two cuts at once, or a file."""
    if not cuts:
        path = FOLDER / "input.log"
        path.write_bytes(data)
        result = subprocess.run([tool, "decode", *options, path], capture_output=True)
        return result.returncode, result.stdout, result.stderr
    ours, theirs = socket.socketpair(socket.AF_UNIX, socket.SOCK_SEQPACKET)

    def feed():
        with contextlib.suppress(OSError), ours:  # the tool may end before it has read all
            for begin, end in zip(cuts, cuts[1:]):
                ours.send(data[begin:end])
    with theirs:
        feeder = threading.Thread(target=feed)
        feeder.start()
        result = subprocess.run([tool, "decode", *options], stdin=theirs, capture_output=True)
    feeder.join()
    return result.returncode, result.stdout, result.stderr


def randomCuts(size):
    longest = random.choice((1, 7, 100, 5000, 60000))
    cuts = [0]
    while cuts[-1] < size:
        cuts.append(min(size, cuts[-1] + random.randint(1, longest)))
    return cuts


def shortened(log, differs):
    """Fewer lines of a log that still make a difference."""
    part = len(log) // 2
    while part > 0:
        shorter = (log[:begin] + log[begin + part:] for begin in range(0, len(log), part))
        fewer = next(filter(differs, shorter), None)
        log, part = (fewer, part) if fewer else (log, part // 2)
    return log


def sources(seed):
    """The lines of the logs to begin with."""
    logs = [(runs.ROOT / "examples/recordings/voyage.log").read_bytes()]
    for more in ("", "--clean", "--mix"):
        command = [runs.BUILD / "examples/kalo-voyage", "--bytes", "300000", "--seed", str(seed)]
        logs.append(subprocess.check_output(command + more.split()))
    folder = os.environ.get("KALO_RECORDINGS")
    logs += (path.read_bytes() for path in pathlib.Path(folder).rglob("*.log")) if folder else ()
    return [log.split(b"\r\n") for log in logs]


def main():
    parser = argparse.ArgumentParser(prog="script/compare-output", description=HELP,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("old", metavar="OLD", help="a commit")
    parser.add_argument("--records", type=int, default=1000000, help="how many at least (1000000)")
    parser.add_argument("--seed", type=int, default=1, help="of the random numbers (1)")
    options = parser.parse_args()
    tools = [build / "tools/kalo" for build in (runs.buildOlder(options.old), runs.BUILD)]
    FOLDER.mkdir(exist_ok=True)
    random.seed(options.seed)
    records = logs = 0
    while records < options.records:
        if logs % 500 == 0:
            lines = sources(options.seed * 1000000 + logs)
            print(f"{records} records of {logs} logs are the same", flush=True)
        log = makeLog(random.choice(lines), random.choice((20, 300, 3000, 10000)))
        choice = " ".join(random.sample(OPTIONS, random.choice((0, 1, 1, 2, 3)))).split()
        cuts = random.random() < 0.25 and len(log) < 10000 and randomCuts(sum(map(len, log)))

        def differs(log, cuts=None):
            old, new = (decode(tool, choice, b"".join(log), cuts) for tool in tools)
            nonlocal records
            records += old[1].count(b"\n")
            return old != new
        if differs(log, cuts):
            path = FOLDER / f"seed{options.seed}-log{logs}.log"
            fromFile = differs(log)
            path.write_bytes(b"".join(shortened(log, differs) if fromFile else log))
            how = [path] if fromFile else [f"<{path}", f"in pieces between {cuts}"]
            print("A difference: kalo decode", *choice, *how)
            return 1
        logs += 1
    print(f"{records} records of {logs} logs are the same")
    return 0


if __name__ == "__main__":
    sys.exit(main())
