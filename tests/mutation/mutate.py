"""Changes the code in one place at a time, and reports which changes no test notices.

mutate.py [--count N] [--seed N] [--jobs N] [--tests REGEX] [--changes REGEX] [FILE...]

FILE: sources of the library or the tool, or folders of them; all of both if none is given. N changes
are drawn from all that are possible (all with --count 0). REGEX names the tests that have to notice
them, as ctest -R does; without it, the tests in `STAGES` do. With --changes, only changes are drawn
whose line in the report REGEX is found in. The work is done in copies, one for each job, in
build/mutate.

A change that does not compile does not count. Tests that take much longer than without it have noticed
it. Survivors that `equivalent.txt` lists, with the reason, are not reported.
"""
import argparse
import collections
import concurrent.futures
import os
import pathlib
import queue
import random
import re
import shutil
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
WORK = ROOT / "build/mutate"
EQUIVALENT = pathlib.Path(__file__).with_name("equivalent.txt")
OTHER_SYSTEMS = {"kalo/util/windowsPortability.cpp"}  # not compiled here

# What is put in the place of what. Templates have no blanks around "<" and ">".
SWAPS = [(r" == ", " != "), (r" != ", " == "), (r" < ", " <= "), (r" <= ", " < "),
         (r" > ", " >= "), (r" >= ", " > "), (r" && ", " || "), (r" \|\| ", " && "),
         (r" \+ ", " - "), (r" - ", " + "), (r" \* ", " / "), (r" / ", " * "), (r" % ", " + "),
         (r" \+= ", " -= "), (r" -= ", " += "), (r"\btrue\b", "false"), (r"\bfalse\b", "true"),
         (r"(?<=[(\s])!(?=[\w(])", ""), (r"\bstd::min\b", "std::max"), (r"\bstd::max\b", "std::min")]
NUMBER = r"(?<![\w.'])(\d+)(?![\w.'])"
HIDDEN = r'//[^\n]*|^#[^\n]*|"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\''


# What is built, and how ctest is called then: first what is quick and notices most changes.
SELDOM = "x87|package|documents|clock|timezone|threads|loading|tool.growth|tool.stress|isolation"
LONG = "pieces|ranges|tool.(stream|jobs|range|encode)"
STAGES = {
    "kalo": [(["kalo", "kalo-tests"], ["-E", f"^(fuzz|tool|peer|recording|number|memory|columns|plain|{LONG}|"
                                             f"{SELDOM})"]),
             (["all"], ["-E", f"^(tool|{LONG}|{SELDOM})"]),
             (["all"], ["-R", "^tool.transcripts"])],
    "tools": [(["kalo-tool"], ["-R", "^tool.transcripts"]),
              (["kalo-tool"], ["-R", "^tool", "-E", f"^(tool.transcripts|{LONG}|{SELDOM})"]),
              (["all"], ["-R", "^(fuzz|number|memory|columns|intervals|presenceTimes|peer|documents)"]),
              (["all"], ["-R", f"^({LONG})"])],
}


def changes(text):
    """(begin, end, new text) of each place that can be changed."""
    plain = re.sub(HIDDEN, lambda found: " " * len(found[0]), text, flags=re.MULTILINE)
    for pattern, new in SWAPS:
        for found in re.finditer(pattern, plain):
            yield found.start(), found.end(), new
    for found in re.finditer(NUMBER, plain):
        yield found.start(), found.end(), str(int(found[1]) + 1)
    for found in re.finditer(r"\bif \(", plain):
        depth, end = 1, found.end()
        while depth > 0:
            depth += {"(": 1, ")": -1}.get(plain[end], 0)
            end += 1
        if ";" not in plain[found.end():end]:
            yield found.end(), end - 1, f"!({text[found.end():end - 1]})"


def run(command, seconds=None):
    """The exit status; that of a failure if the command is not done in time."""
    with subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                          start_new_session=True) as process:
        try:
            return process.wait(seconds)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)  # and the tests that it runs
            return 1


class Copy:
    """A copy of the sources, and what is built from it."""

    def __init__(self, number, stages):
        self.source, self.folder = WORK / f"source{number}", WORK / f"build{number}"
        self.prepare()
        self.seconds = {}
        for stage in stages:
            begin = time.monotonic()
            if self.test(stage, 1800) != 0:
                sys.exit(f"{' '.join(stage)}: the tests fail without a change; see {self.folder}/Testing")
            self.seconds[stage] = 20 + 4 * (time.monotonic() - begin)

    def prepare(self):
        listed = subprocess.run(["git", "-C", ROOT, "ls-files", "-z"], check=True, capture_output=True)
        for name in filter(None, listed.stdout.decode().split("\0")):
            to = self.source / name
            data = (ROOT / name).read_bytes() if (ROOT / name).exists() else None
            if data is not None and (not to.exists() or to.read_bytes() != data):
                to.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(ROOT / name, to)
        if run(["cmake", "-G", "Ninja", "-S", self.source, "-B", self.folder, "-DCMAKE_BUILD_TYPE=None",
                "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON", "-DCMAKE_CXX_FLAGS=-D_GLIBCXX_ASSERTIONS"]) != 0 or \
                not self.build(["all"]):
            sys.exit(f"cannot build in {self.folder}")

    def build(self, targets):
        return run(["cmake", "--build", self.folder, "-j", "2", "--target", *targets]) == 0

    def test(self, arguments, seconds):
        return run(["ctest", "--test-dir", self.folder, "--stop-on-failure", "--no-tests=error",
                    "-j", "2", *arguments], seconds)

    def fate(self, file, change, stages):
        """What becomes of a change: noticed, survived or broken."""
        begin, end, new = change
        path = self.source / file
        text = path.read_text()
        path.write_text(text[:begin] + new + text[end:])
        try:
            for targets, arguments in stages:
                if not self.build(targets):
                    return "broken"
                if self.test(arguments, self.seconds[arguments]) != 0:
                    return "noticed"
            return "survived"
        finally:
            path.write_text(text)


def described(file, change):
    begin, end, new = change
    text = (ROOT / file).read_text()
    lines = [line.strip() for line in text.split("\n")]
    number = text.count("\n", 0, begin)
    first = number
    while first > 0 and "\n".join(lines).count("\n".join(lines[first:number + 1])) > 1:
        first -= 1  # until it is the only place
    line = " ".join(lines[first:number + 1])
    return f"{file}: {line}: {text[begin:end].strip()} -> {new.strip() or 'nothing'}"


def main():
    options = argparse.ArgumentParser()
    options.add_argument("--count", type=int, default=100)
    options.add_argument("--seed", type=int, default=1)
    options.add_argument("--jobs", type=int, default=1)
    options.add_argument("--tests")
    options.add_argument("--changes", default="")
    options.add_argument("files", nargs="*", default=["kalo", "tools"])
    options = options.parse_args()
    files = []
    for name in options.files:
        paths = sorted((ROOT / name).rglob("*.cpp")) if (ROOT / name).is_dir() else [ROOT / name]
        files += [str(path.relative_to(ROOT)) for path in paths]
    stages = {room: [(targets, tuple(arguments)) for targets, arguments in calls]
              for room, calls in STAGES.items() if any(file.startswith(room) for file in files)}
    if options.tests:
        stages = {room: [(["all"], ("-R", options.tests))] for room in stages}
    copies = queue.SimpleQueue()
    for number in range(options.jobs):
        copies.put(Copy(number, {arguments for calls in stages.values() for _, arguments in calls}))
    places = [(file, change) for file in files if file not in OTHER_SYSTEMS
              for change in changes((ROOT / file).read_text())
              if not options.changes or re.search(options.changes, described(file, change))]
    random.Random(options.seed).shuffle(places)
    equivalent = EQUIVALENT.read_text().split("\n")
    possible = {described(file, change) for file, change in places if file in EQUIVALENT.read_text()}
    for line in equivalent:
        if line.split(":")[0] in files and not options.changes and line not in possible:
            print(f"listed, but not found in the code: {line}", flush=True)
    fates = collections.Counter()

    def attempt(place):
        if options.count and fates["noticed"] + fates["survived"] >= options.count:
            return
        file, change = place
        if described(file, change) in equivalent:
            fates["listed"] += 1
            return
        copy = copies.get()
        try:
            fate = copy.fate(file, change, stages[file.split("/")[0]])
        finally:
            copies.put(copy)
        fates[fate] += 1
        if fate == "survived":
            line = (ROOT / file).read_text().count("\n", 0, change[0]) + 1
            print(f"not noticed: line {line}: {described(file, change)}", flush=True)

    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        for done in pool.map(attempt, places):
            pass
    total = fates["noticed"] + fates["survived"]
    print(f"{len(places)} places, {total} changes that compile and are not listed as equivalent, "
          f"{fates['noticed']} noticed ({100 * fates['noticed'] / max(total, 1):.1f} %); "
          f"{fates['listed']} listed, {fates['broken']} do not compile")


if __name__ == "__main__":
    main()
