"""Measures kalo and other decoders of NMEA 0183 on the same log."""
import argparse
import os
import re
import shutil
import subprocess
import sys

import runs

HELP = """\
Measures kalo decode and other general-purpose decoders on the same log: CPU time, with as similar
an output as each can give, to /dev/null, in turn, the lowest of several runs. Then tries which
types of sentence each of them reads: whether it writes anything for a log of that type alone, and
whether what it writes for the whole log is another without that type. Use an idle machine.

--columns measures the ways from the log into tables of Python instead (bench/columnWays.py), by the
package for Python and around it. They run in an environment below build/peers, without the time
that Python and its packages take to start."""

FOLDER = runs.ROOT / "build/peers"
NPM_PACKAGE = "nmea-simple@3.3.0"
PYTHON_PACKAGES = "numpy pandas polars pyarrow duckdb pynmea2 scikit-build-core".split()

PYTHON = """
import json, sys, pynmea2
for line in sys.stdin:
    try:
        sentence = pynmea2.parse(line)
    except pynmea2.ParseError:
        continue
    values = {field[1]: getattr(sentence, field[1]) for field in sentence.fields}
    for name in ("latitude", "longitude"):
        if hasattr(sentence, name):
            values[name] = getattr(sentence, name)
    print(json.dumps({"type": sentence.sentence_type, **values}, default=str))
"""

NODE = r"""
const nmea = require("nmea-simple");
const lines = require("fs").readFileSync(0, "latin1").split("\r\n");
let out = "";
for (const line of lines) {
    try {
        out += JSON.stringify(nmea.parseNmeaSentence(line)) + "\n";
    } catch (error) {
        // a type that it does not know
    }
    if (out.length > 65536) {
        require("fs").writeSync(1, out);
        out = "";
    }
}
require("fs").writeSync(1, out);
"""

# Name, command; the log comes on standard input.
PEERS = {
    "kalo decode, JSON lines": [runs.BUILD / "tools/kalo", "decode", "--quiet"],
    "gpsdecode, JSON lines": ["gpsdecode"],
    "gpsbabel, track as CSV": "gpsbabel -t -i nmea -f - -o unicsv -F -".split(),
    "python3-nmea2, JSON lines": ["/usr/bin/python3", "-c", PYTHON],
    f"{NPM_PACKAGE}, JSON lines": ["node", "-e", NODE],
}


def install():
    """The npm package, below build; without npm it is left out."""
    os.environ["NODE_PATH"] = str(FOLDER / "node_modules")
    FOLDER.mkdir(exist_ok=True)
    if not shutil.which("npm"):
        print("npm is missing:", PEERS.popitem()[0], "is left out")
    elif not (FOLDER / "node_modules").exists():
        subprocess.run(["npm", "install", "--silent", "--prefix", FOLDER, NPM_PACKAGE], check=True)


def installPython():
    """An interpreter with the package for Python and those that it is compared with."""
    folder = FOLDER / "python"
    interpreter = folder / "bin/python"
    if not interpreter.exists():
        subprocess.run(["python3", "-m", "venv", folder], check=True)
    pip = [interpreter, "-m", "pip", "install", "--quiet"]
    subprocess.run([*pip, *PYTHON_PACKAGES], check=True)
    subprocess.run([*pip, "--no-build-isolation", "--no-deps", "--force-reinstall", runs.ROOT],
                   check=True)
    return interpreter


def measureColumns(path, sentences, rounds):
    program = [installPython(), "-B", runs.ROOT / "bench/columnWays.py"]
    environment = {**os.environ, "KALO_TOOL": str(runs.BUILD / "tools/kalo")}

    def run(*arguments):
        return subprocess.run([*program, *arguments], check=True, text=True, env=environment,
                              capture_output=True).stdout

    best = {}
    for _ in range(rounds):
        for name in run().splitlines():
            seconds, values = run(name, path).split()
            best[name] = min((float(seconds), int(values)), best.get(name, (float("inf"),)))
    first = next(iter(best.values()))[0]
    print(f"{'ns':>9} {'ratio':>7} {'rows':>9}")
    for name, (seconds, rows) in best.items():
        print(f"{seconds * 1e9 / sentences:9.0f} {seconds / first:7.2f} {rows:9}  {name}")


def output(command, log):
    return subprocess.run(command, input=log, check=True, capture_output=True).stdout


def records(text):
    """Lines with a digit in them, which a heading has not."""
    return len(re.findall(rb"^.*?\d", text, re.M))


def printCoverage(log):
    lines = log.splitlines(True)
    types = sorted({line[3:6] for line in lines})
    print("\nRecords for the whole log and for one type alone; + where the whole log gives another "
          "output without it\n" + "".join(f"{name.decode():>7}" for name in [b"all", *types]))
    for name, command in PEERS.items():
        whole = output(command, log)
        cells = [f"{records(whole):>6} "]
        for kind in types:
            alone = output(command, b"".join(line for line in lines if line[3:6] == kind))
            without = output(command, b"".join(line for line in lines if line[3:6] != kind))
            cells.append(f"{records(alone):>6}" + ("+" if without != whole else " "))
        print("".join(cells), "", name, flush=True)
    counts = (sum(line[3:6] == kind for line in lines) for kind in types)
    print(*(f"{count:>6}" for count in (len(lines), *counts)), "  sentences in the log")


def main():
    parser = argparse.ArgumentParser(prog="script/bench-peers", description=HELP,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=5, help="how often all is measured (5)")
    parser.add_argument("--megabytes", type=float, default=16.6, help="size of the log (16.6)")
    parser.add_argument("--columns", action="store_true", help="measure ways into tables of Python")
    options = parser.parse_args()
    path, sentences = runs.makeLogs(int(options.megabytes * 1e6), ["mix"])["mix"]
    best = {}
    print(f"Load average: {os.getloadavg()[0]:.2f}")
    print(f"{sentences} sentences, {path.stat().st_size} bytes")
    if options.columns:
        measureColumns(path, sentences, options.rounds)
        return 0
    install()
    for _ in range(options.rounds):
        for name, command in PEERS.items():
            with path.open() as log:
                seconds = runs.timed(command, stdin=log)[0]
            best[name] = min(seconds, best.get(name, seconds))
    kalo = min(best.values())
    print(f"{'sentences/s':>12} {'ns':>9} {'x kalo':>7} {'bytes out':>11}")
    for name, seconds in best.items():
        written = len(output(PEERS[name], path.read_bytes()))
        print(f"{sentences / seconds:12.0f} {seconds * 1e9 / sentences:9.0f} {seconds / kalo:7.2f} "
              f"{written:11}  {name}", flush=True)
    printCoverage(path.read_bytes()[:300000].rpartition(b"\n")[0] + b"\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
