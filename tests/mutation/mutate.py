"""Changes the code in one place at a time, and reports which changes no test notices.

mutate.py [--count N] [--seed N] [--tests REGEX] [FILE...]

FILE: sources of the library or the tool; all of both if none is given. N changes are drawn from all
that are possible (all with --count 0). REGEX names the tests that have to notice them, as ctest -R
does; without it, the tests in `tests_of` do. The work is done in a copy, in build/mutate.

A change that does not compile does not count. A test that does not end in time has noticed it.
Survivors that `equivalent.txt` lists, with the reason, are not reported.
"""
import argparse
import pathlib
import random
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
COPY = ROOT / "build/mutate/source"
BUILD = ROOT / "build/mutate/build"
EQUIVALENT = pathlib.Path(__file__).with_name("equivalent.txt")
SECONDS = 300  # for the tests of one change

# What is put in the place of what. Templates have no blanks around "<" and ">".
SWAPS = [(r" == ", " != "), (r" != ", " == "), (r" < ", " <= "), (r" <= ", " < "),
         (r" > ", " >= "), (r" >= ", " > "), (r" && ", " || "), (r" \|\| ", " && "),
         (r" \+ ", " - "), (r" - ", " + "), (r" \* ", " / "), (r" / ", " * "), (r" % ", " + "),
         (r" \+= ", " -= "), (r" -= ", " += "), (r"\btrue\b", "false"), (r"\bfalse\b", "true"),
         (r"(?<=[(\s])!(?=[\w(])", ""), (r"\bstd::min\b", "std::max"), (r"\bstd::max\b", "std::min")]
NUMBER = r"(?<![\w.'])(\d+)(?![\w.'])"
HIDDEN = r'//[^\n]*|^#[^\n]*|"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\''


def tests_of(file):
    """How ctest is called: for quick tests, which notice most changes, and then for the others."""
    others = "fuzz|tool|peer|recording|isolation"
    slow = "x87|package|documents|clock|timezone|threads|loading|tool.growth|tool.stress"
    if file.startswith("kalo/"):
        return [("-E", f"^({slow}|{others})"), ("-R", "^(fuzz|tool.transcripts|peer|recording)")]
    return [("-R", "^(tool.transcripts|fuzz|number|memory)"), ("-R", "^(tool|peer)", "-E", slow)]


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


def run(command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options)


def prepare():
    listed = run(["git", "-C", ROOT, "ls-files", "-z"], check=True).stdout.decode().split("\0")
    for name in filter(None, listed):
        to = COPY / name
        data = (ROOT / name).read_bytes() if (ROOT / name).exists() else None
        if data is not None and (not to.exists() or to.read_bytes() != data):
            to.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(ROOT / name, to)
    run(["cmake", "-G", "Ninja", "-S", COPY, "-B", BUILD, "-DCMAKE_BUILD_TYPE=None",
         "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON"], check=True)
    build(check=True)


def build(check=False):
    return run(["cmake", "--build", BUILD, "-j", "2"], check=check).returncode == 0


def notices(calls):
    for call in calls:
        command = ["ctest", "--test-dir", BUILD, "--stop-on-failure", "--no-tests=error", *call]
        try:
            if run(command, timeout=SECONDS).returncode != 0:
                return True
        except subprocess.TimeoutExpired:
            return True
    return False


def main():
    options = argparse.ArgumentParser()
    options.add_argument("--count", type=int, default=100)
    options.add_argument("--seed", type=int, default=1)
    options.add_argument("--tests")
    options.add_argument("files", nargs="*")
    options = options.parse_args()
    files = options.files or sorted(str(path.relative_to(ROOT)) for folder in ("kalo", "tools")
                                    for path in (ROOT / folder).rglob("*.cpp"))
    prepare()
    wanted = {call for file in files for call in tests_of(file)}
    given = [("-R", options.tests)] if options.tests else None
    if notices(given or sorted(wanted)):
        sys.exit("the tests fail without a change")
    places = [(file, change) for file in files for change in changes((ROOT / file).read_text())]
    random.Random(options.seed).shuffle(places)
    equivalent = EQUIVALENT.read_text() if EQUIVALENT.exists() else ""
    noticed = survived = listed = broken = 0
    for file, (begin, end, new) in places:
        if options.count and noticed + survived + listed == options.count:
            break
        path = COPY / file
        text = path.read_text()
        number = text.count("\n", 0, begin) + 1
        line = text.split("\n")[number - 1].strip()
        change = f"{file}: {line}: {text[begin:end].strip()} -> {new.strip() or 'nothing'}"
        path.write_text(text[:begin] + new + text[end:])
        try:
            if not build():
                broken += 1
            elif notices(given or tests_of(file)):
                noticed += 1
            elif change in equivalent:
                listed += 1
            else:
                survived += 1
                print(f"not noticed: line {number}: {change}", flush=True)
        finally:
            path.write_text(text)
    total = noticed + survived
    print(f"{len(places)} places, {total} changes that compile and are not listed as equivalent, "
          f"{noticed} noticed ({100 * noticed / max(total, 1):.1f} %); {listed} listed, "
          f"{broken} do not compile")


if __name__ == "__main__":
    main()
