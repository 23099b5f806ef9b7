"""What is decoded depends on nothing around: not on the time zone, the locale, nor the clock, but for
years of two digits, and numbers under another global C++ locale.

isolation.py PROGRAM TOOL LOG FAKETIME
PROGRAM prints what the library decodes, TOOL is kalo. FAKETIME sets other clocks.
"""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

ZONES = ("XXX-14", "XXX+12:34:56", "Pacific/Kiritimati", "America/St_Johns", "Asia/Kathmandu",
         "Europe/London", "/nowhere", "")
COMMA_LOCALES = ("de_DE.UTF-8", "tr_TR.UTF-8")
CLOCKS = ("1970-01-02 00:00:00", "1999-06-15 12:00:00", "2038-01-19 03:14:08", "2069-12-31 23:59:59",
          "2070-01-01 00:00:00", "2100-03-01 12:00:00")
# The types that have a year of two digits, which the clock completes.
OF_THE_CLOCK = ("RMC",)
ANSWERS = ("decode -q --raw", "encode tss1", "decode -q --format csv -t GGA", "summary --json",
           "check --each", "track")


def commaLocales(folder):
    """Makes those locales, for LOCPATH; none where there is no program for it."""
    if shutil.which("localedef") is None:
        print("SKIPPED: no localedef, and so no runs with a decimal comma", file=sys.stderr)
        return ()
    for name in COMMA_LOCALES:
        subprocess.run(["localedef", "-i", name.split(".")[0], "-f", "UTF-8", f"{folder}/{name}"],
                       check=True)
    return COMMA_LOCALES


def surroundings(faketime, folder):
    """Name, command in front, variables, the decimal point, whether the clock is another."""
    for zone in ZONES:
        yield f"TZ={zone}", [], {"TZ": zone}, ".", False
    yield "LC_ALL=C.UTF-8", [], {"LC_ALL": "C.UTF-8"}, ".", False
    for name in commaLocales(folder):
        yield f"LC_ALL={name}", [], {"LC_ALL": name, "LOCPATH": folder}, ",", False
    for clock in CLOCKS:
        yield clock, [faketime, clock], {"TZ": "UTC"}, ".", True


def digests(command, environment, point):
    """The lines of PROGRAM, by their kinds."""
    run = subprocess.run(command, env=environment, capture_output=True, check=False)
    *lines, last = run.stdout.decode().splitlines()
    assert run.returncode == 0 and last == f"decimal point {point}", (last, run.stderr)
    return dict(line.rsplit(" ", 1) for line in lines)


def isCommaSame(program, environment):
    """Whether another global C++ locale is in effect, but not on texts and whole numbers."""
    plain = digests([program], environment, ".")
    comma = digests([program, "comma"], environment, ".")
    changed = {kind for kind in plain.keys() | comma.keys() if plain.get(kind) != comma.get(kind)}
    return ({"$GNGGA", "$HEHDT", "ATS", "instants"} <= changed and
            not any(kind == "texts" or kind.startswith("whole ") for kind in changed))


def main():
    program, tool, log, faketime = sys.argv[1:]
    failed = 0
    with tempfile.TemporaryDirectory() as folder:
        logs = {False: pathlib.Path(log).read_bytes()}
        logs[True] = b"".join(line for line in logs[False].splitlines(keepends=True)
                              if not any(f"{name},".encode() in line for name in OF_THE_CLOCK))

        def outputs(before, variables, point, isClock):
            environment = {**os.environ, **variables}
            values = digests([*before, program], environment, point)
            yield {kind: value for kind, value in values.items()
                   if not (isClock and kind.endswith(OF_THE_CLOCK))}
            for words in ANSWERS:
                # The encoder reads what the command before it wrote.
                data = answer.stdout if words.startswith("encode") else logs[isClock]
                answer = subprocess.run([*before, tool, *words.split()], env=environment, input=data,
                                        capture_output=True, check=False)
                assert answer.stdout, answer
                yield answer.stdout, answer.returncode

        plain = {"TZ": "UTC", "LC_ALL": "C"}
        expected = {isClock: [*outputs([], plain, ".", isClock)] for isClock in logs}

        def report(isSame, name):
            print("same:" if isSame else "DIFFERENT:", name)
            return 0 if isSame else 1

        failed += report(isCommaSame(program, {**os.environ, **plain}), "global C++ locale")
        for name, before, variables, point, isClock in surroundings(faketime, folder):
            given = [*outputs(before, variables, point, isClock)]
            failed += report(given == expected[isClock], name)
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
