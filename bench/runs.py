"""What the scripts that measure and compare share: builds, logs, and the time of a run."""
import functools
import operator
import os
import pathlib
import re
import subprocess
import time

ROOT = pathlib.Path(__file__).parents[1]
BUILD = ROOT / "build/release"
FOLDER = ROOT / "build/bench"


def buildOlder(commit):
    """The build folder of another commit, below build/older; its sources are taken from git."""
    name = subprocess.check_output(["git", "rev-parse", "--short=10", commit + "^{commit}"],
                                   cwd=ROOT, text=True).strip()
    source = ROOT / "build/older" / name
    if not (source / "CMakeLists.txt").exists():
        source.mkdir(parents=True, exist_ok=True)
        archive = subprocess.check_output(["git", "archive", name], cwd=ROOT)
        subprocess.run(["tar", "-x"], cwd=source, input=archive, check=True)
    for command in ("--preset release -DKALO_BUILD_TESTS=OFF -DKALO_BUILD_BENCHMARKS=ON",
                    "--build --preset release --target kalo-bench kalo-tool"):
        subprocess.run(["cmake", *command.split()], cwd=source, check=True,
                       stdout=subprocess.DEVNULL)
    return source / "build/release"


def checksum(text):
    return b"%02X" % functools.reduce(operator.xor, text, 0)


def changedFields(pattern, text):
    """Sentences with other fields, and the checksum of what they have become."""
    def change(line):
        body = line[1:line.rindex(b"*")]
        address, comma, fields = body.partition(b",")
        body = address + comma + re.sub(pattern, text, fields)
        return b"$" + body + b"*" + checksum(body) + b"\r\n"
    return change


def wrongChecksum(line):
    return line[:-3] + (b"1" if line[-3:-2] == b"0" else b"0") + b"\r\n"


# Name of the log: the log it is made from, and what becomes of each line; None leaves it out.
VARIANTS = {
    "LF line ends": ("mix", lambda line: line[:-2] + b"\n"),
    "stamps in front": ("mix", lambda line: b"2026-03-14T23:58:30.000Z " + line),
    "tag blocks in front": ("mix", lambda line: b"\\s:GP,c:1773532710*5A\\" + line),
    "noise in front": ("mix", lambda line: b"rx1 \xff\0 " + line),
    "wrong checksums": ("mix", wrongChecksum),
    "empty fields": ("mix", changedFields(rb"[^,]+", b"")),
    "malformed numbers": ("mix", changedFields(rb"\d(?=,|$)", rb"\g<0>-")),
    "TSS1": ("voyage", lambda line: line if line[:1] == b":" else None),
    "ATS": ("voyage", lambda line: line if line[:1].isdigit() else None),
    "sourcetable": ("voyage", lambda line: line if line[3:4] == b";" else None),
}


def makeLogs(size, names=None):
    """Writes logs, all or those named; returns path and number of lines by name. The same size
    gives the same bytes."""
    folder = FOLDER / str(size)
    folder.mkdir(parents=True, exist_ok=True)
    texts = {}
    for name, options in (("mix", "--mix"), ("voyage", "--clean"), ("damaged voyage", "")):
        command = [BUILD / "examples/kalo-voyage", "--bytes", str(size), *options.split()]
        texts[name] = subprocess.check_output(command)
    for name, (base, change) in VARIANTS.items():
        some = [changed for line in texts[base][:size // 3].splitlines(True)[:-1]
                if (changed := change(line)) is not None]
        texts[name] = b"".join(some) * (1 if base == "mix" else max(1, 100000 // len(some)))
    logs = {}
    for name in names or texts:
        path = folder / (name.replace(" ", "-") + ".log")
        path.write_bytes(texts[name])
        logs[name] = path, texts[name].count(b"\n")
    return logs


def timed(command, reader=None, **streams):
    """CPU time of a run and wall time until its reader, if there is one, has read its output."""
    begin = time.monotonic()
    streams = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, **streams}
    if reader:
        streams["stdout"] = subprocess.PIPE
    process = subprocess.Popen(command, **streams)
    if reader:
        second = subprocess.Popen(reader, stdin=process.stdout, stdout=subprocess.DEVNULL)
        process.stdout.close()
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0 or (reader and second.wait() != 0):
        raise SystemExit(f"{command}: ended with {process.returncode}")
    return usage.ru_utime + usage.ru_stime, time.monotonic() - begin
