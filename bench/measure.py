"""Measures the library and the tool in rounds, and prints the best figure of each row."""
import argparse
import json
import os
import subprocess
import tempfile

import runs

HELP = """\
Measures the library, the tool and columns on generated logs. Prints a table, and writes the same figures to
build/bench/bench.json.

ns is CPU time in nanoseconds: for a sentence in the rows of the library, for a line of the log in
those of the tool and in those of columns, which are what the package for Python reads. R is the same as a multiple of a reference pass over the same lines, which finds
commas and line ends and the exclusive-or of all bytes. All rows are measured in turn, several
times, and the lowest time of each is shown. Compare figures of different runs by R only, and use an
idle machine.

--compare OLD measures another build in the same rounds and shows its times and the ratios new/old.
OLD is a build folder, or a commit, which is built in build/older from the sources in git. The
library of each build is measured by the benchmark of that build; where a build has no such row,
there is no ratio. The tools of both builds read the same logs. A benchmark may read more values of
a type than an older one did; then the ratio is too high."""

# The rows of the library that are measured on each log, as patterns for Google Benchmark.
LIBRARY = {"mix": "^all/|^numbers/", "voyage": "-^all/|^log/|^numbers/",
           "empty fields": "^all/[er]", "malformed numbers": "^all/[er]"}


def libraryRows(build, log, pattern, seconds):
    """Nanoseconds and allocations for a sentence, by the name of the pass."""
    program = build / "bench/kalo-bench"
    usage = subprocess.run([program], capture_output=True, text=True).stderr
    more = ["true", "/dev/null"] if "TOOL" in usage else []  # older ones also run a tool
    with tempfile.NamedTemporaryFile(dir=runs.FOLDER) as output:
        subprocess.run([program, log, *more, "--benchmark_filter=" + pattern,
                        f"--benchmark_min_time={seconds}", "--benchmark_out=" + output.name],
                       check=True, capture_output=True)
        text = output.read()
    return {run["name"].removesuffix("/real_time"):
            (run["cpu_time"] * 1e6 / run["sentences"], run["allocations"] / run["sentences"])
            for run in (json.loads(text)["benchmarks"] if text else ())}


def toolRows(build, logs):
    """CPU seconds for each row of the tool, by log and row."""
    command = [build / "tools/kalo", "decode", "--quiet"]
    for log, (path, _) in logs.items():
        yield log, log, runs.timed([*command, path])[0]
    mix = logs["mix"][0]
    with subprocess.Popen(["cat", mix], stdout=subprocess.PIPE) as source:
        yield "mix", "mix, from a pipe", runs.timed(command, stdin=source.stdout)[0]
    cpu, wall = runs.timed([*command, mix], ["cat"])
    yield "mix", "mix, into a pipe", cpu
    yield "mix", "mix, into a pipe, wall time", wall


def measure(build, logs, options):
    """One round: a dictionary for each row of a build."""
    for log, pattern in LIBRARY.items():
        for name, (ns, allocations) in libraryRows(build, logs[log][0], pattern,
                                                   options.seconds).items():
            group, name = name.split("/", 1)
            kind = log if group == "all" else group
            yield {"part": "library", "of": kind, "row": name, "ns": ns, "allocations": allocations}
    for log in "mix", "voyage":
        for ns, allocations in libraryRows(build, logs[log][0], "^log/columns",
                                           options.seconds).values():
            yield {"part": "columns", "of": log, "row": log, "ns": ns, "allocations": allocations}
    for log, row, seconds in toolRows(build, logs):
        yield {"part": "tool", "of": log, "row": row, "ns": seconds * 1e9 / logs[log][1]}


def references(build, logs):
    for log, (path, _) in logs.items():
        yield {"part": "tool", "of": log, "row": "reference",
               "ns": libraryRows(build, path, "^log/reference", 0.02)["log/reference"][0]}


def best(rows, found):
    for row in rows:
        key = row["part"], row["of"], row["row"]
        if key not in found or row["ns"] < found[key]["ns"]:
            found[key] = row


COLUMNS = (("ns", 1), ("R", 2), ("MB/s", 0), ("allocations", 2), ("old ns", 1), ("ratio", 3))


def printTable(rows, columns):
    print(" ".join(f"{name:>11}" for name, _ in columns))
    for row in rows:
        name = row["row"] if row["of"] in row["row"] else f"{row['of']}: {row['row']}"
        print(*(f"{row[column]:11.{digits}f}" if column in row else " " * 11
                for column, digits in columns), f" {row['part']}, {name}")


def parseOptions():
    parser = argparse.ArgumentParser(prog="script/bench", description=HELP,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--compare", metavar="OLD", help="a build folder, or a commit")
    parser.add_argument("--rounds", type=int, default=7, help="how often all is measured (7)")
    parser.add_argument("--megabytes", type=float, default=16.6, help="size of a log (16.6)")
    parser.add_argument("--seconds", type=float, default=0.05,
                        help="at least for each row of the library in a round (0.05)")
    return parser.parse_args()


def main():
    options = parseOptions()
    builds = [runs.BUILD]
    if options.compare:
        folder = runs.ROOT / options.compare
        builds.append(folder if folder.is_dir() else runs.buildOlder(options.compare))
    logs = runs.makeLogs(int(options.megabytes * 1e6))
    found = [{} for _ in builds]
    print(f"Load average: {os.getloadavg()[0]:.2f}")
    for turn in range(options.rounds):
        best(references(runs.BUILD, logs), found[0])
        for i in range(len(builds)) if turn % 2 else reversed(range(len(builds))):
            best(measure(builds[i], logs, options), found[i])

    for (part, of, name), row in found[0].items():
        whole = "tool" if part == "columns" else part  # these measure whole logs
        reference = found[0].get((whole, of, "reference")) or found[0]["library", "mix", "reference"]
        row["R"] = row["ns"] / reference["ns"]
        if part in ("tool", "columns"):
            path, lines = logs[of]
            row["MB/s"] = path.stat().st_size / lines / row["ns"] * 1e3
        if options.compare and (part, of, name) in found[1]:
            row["old ns"] = found[1][part, of, name]["ns"]
            row["ratio"] = row["ns"] / row["old ns"]
    printTable(found[0].values(), COLUMNS if options.compare else COLUMNS[:4])
    (runs.FOLDER / "bench.json").write_text(json.dumps(list(found[0].values()), indent=1) + "\n")


if __name__ == "__main__":
    main()
