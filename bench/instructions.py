"""Counts instructions and allocations for a sentence, and compares them with the stored figures."""
import argparse
import json
import os
import platform
import re
import subprocess
import sys

import runs

HELP = """\
Counts, by valgrind, how many instructions the library needs for a sentence and the tool for a line
of a generated log, and how many allocations the tool makes for a line. Ends with 1 if a figure is
more than 5 % above the one in bench/instructions.json. The figures belong to one compiler, its
flags, and the libraries that are linked; where any of these is another, nothing can be said, and
the script says so and ends with 0."""

STORED = runs.ROOT / "bench/instructions.json"
GROWTH = 1.05
LIBRARY = ("framing, object re-used", "framing, fresh object", "every value, view on the stack",
           "every value, through create")
TOOL = "mix", "damaged voyage", "stamps in front", "wrong checksums"
INSTRUCTIONS = ("--tool=callgrind", "--callgrind-out-file=/dev/null"), r"Collected : (\d+)"
ALLOCATIONS = ("--tool=memcheck", "--leak-check=no"), r"total heap usage: ([\d,]+) allocs"


def count(what, *command):
    options, pattern = what
    result = subprocess.run(["valgrind", *options, *command], check=True, text=True,
                            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    return int(re.search(pattern, result.stderr)[1].replace(",", ""))


def identity():
    """What the figures depend on, apart from the sources."""
    cache = dict(re.findall(r"^(\w+):\w+=(.*)$", (runs.BUILD / "CMakeCache.txt").read_text(), re.M))
    compiler = cache["CMAKE_CXX_COMPILER"]
    macros = subprocess.check_output([compiler, *"-std=c++17 -dM -E -x c++ -".split()], text=True,
                                     input="#include <fmt/core.h>\n#include <string>\n")
    macros = dict(re.findall(r"^#define (\w+) (.*)$", macros, re.M))
    version = subprocess.check_output([compiler, "--version"], text=True).splitlines()[0]
    return {"compiler": version,
            "flags": f"{cache['CMAKE_CXX_FLAGS']} {cache['CMAKE_CXX_FLAGS_RELEASE']}",
            "libstdc++": macros["__GLIBCXX__"], "fmt": macros["FMT_VERSION"],
            "libc": os.confstr("CS_GNU_LIBC_VERSION"),
            # The C library has functions of its own for this.
            "processor": platform.machine() + (
                " with AVX2" if " avx2 " in open("/proc/cpuinfo").read() else "")}


def measure():
    """Figures by row. Differences of two runs, so that the start of the program does not count."""
    short, long = (runs.makeLogs(size, TOOL) for size in (300000, 600000))
    mix, lines = short["mix"]
    for name in LIBRARY:
        once, thrice = (count(INSTRUCTIONS, runs.BUILD / "bench/kalo-bench", mix, "--run",
                              "all/" + name, times) for times in "13")
        yield "library: " + name, (thrice - once) / 2 / lines
    for what, unit in ((INSTRUCTIONS, ""), (ALLOCATIONS, ", allocations")):
        for log in TOOL:
            one, two = (count(what, runs.BUILD / "tools/kalo", "decode", path[log][0])
                        for path in (short, long))
            yield f"tool: {log}{unit}", (two - one) / (long[log][1] - short[log][1])


def main():
    parser = argparse.ArgumentParser(prog="script/instructions", description=HELP,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--update", action="store_true", help="store the figures of today")
    options = parser.parse_args()
    stored = json.loads(STORED.read_text())
    found = identity()
    if found != stored["of"] and not options.update:
        print("script/instructions: NOT CHECKED, the stored figures are of another build:")
        for key in found:
            if found[key] != stored["of"].get(key):
                print(f"  {key}: {found[key]}\n      stored: {stored['of'].get(key)}")
        return 0
    figures = {name: round(figure, 3) for name, figure in measure()}
    if options.update:
        STORED.write_text(json.dumps({"of": found, "figures": figures}, indent=1) + "\n")
        return 0
    grown = 0
    print(f"{'now':>10} {'stored':>10}")
    for name, figure in figures.items():
        before = stored["figures"].get(name, 0)
        isMore = figure > before * GROWTH + 0.01  # allocations are 0 for most lines
        grown += isMore
        print(f"{figure:10.2f} {before:10.2f}  {name}{'  MORE' if isMore else ''}")
    if grown:
        print(f"script/instructions: {grown} figures have grown by more than 5 %. If this is worth "
              "it: script/instructions --update", file=sys.stderr)
    return min(grown, 1)


if __name__ == "__main__":
    sys.exit(main())
