"""What is decoded depends on nothing around: not on the time zone, the locale, nor the clock, but for
years of two digits.

isolation.py PROGRAM TOOL LOG FAKETIME
PROGRAM prints what the library decodes, TOOL is kalo. FAKETIME sets other clocks.
"""
import os
import pathlib
import subprocess
import sys
import tempfile

ZONES = ("XXX-14", "XXX+12:34:56", "Pacific/Kiritimati", "America/St_Johns", "Asia/Kathmandu",
         "Europe/London", "/nowhere", "")
LOCALES = ("de_DE.UTF-8", "tr_TR.UTF-8", "C.UTF-8")
CLOCKS = ("1970-01-02 00:00:00", "1999-06-15 12:00:00", "2038-01-19 03:14:08", "2069-12-31 23:59:59",
          "2070-01-01 00:00:00", "2100-03-01 12:00:00")
# The types that have a year of two digits, which the clock completes.
OF_THE_CLOCK = ("RMC",)
ANSWERS = ("decode -q --raw", "decode -q --format csv -t GGA", "summary --json", "check --each", "track")


def withLocales(folder):
    """The locales that can be made here, for LOCPATH."""
    made = {name: subprocess.run(["localedef", "-i", name.split(".")[0], "-f", "UTF-8",
                                  f"{folder}/{name}"], capture_output=True).returncode == 0
            for name in LOCALES if name != "C.UTF-8"}
    print("locales that cannot be made here:", [name for name, isMade in made.items() if not isMade])
    return {"LOCPATH": folder} if all(made.values()) else {}


def surroundings(faketime, folder):
    """Name, command in front, variables, the decimal point, whether the clock is another."""
    for zone in ZONES:
        yield f"TZ={zone}", [], {"TZ": zone}, ".", False
    paths = withLocales(folder)
    for name in LOCALES:
        point = "," if paths and name != "C.UTF-8" else "."
        yield f"LC_ALL={name}", [], {"LC_ALL": name, **paths}, point, False
    for clock in CLOCKS:
        yield clock, [faketime, clock], {"TZ": "UTC"}, ".", True


def main():
    program, tool, log, faketime = sys.argv[1:]
    failed = 0
    with tempfile.TemporaryDirectory() as folder:
        data = pathlib.Path(log).read_bytes()
        data = b"".join(line for line in data.splitlines(keepends=True) if b"RMC," not in line)

        def outputs(before, variables, point, isClock):
            environment = {**os.environ, **variables}
            run = subprocess.run([*before, program], env=environment, capture_output=True,
                                 check=False)
            *lines, last = run.stdout.decode().splitlines()
            assert run.returncode == 0 and last == f"decimal point {point}", (last, run.stderr)
            yield [line for line in lines if not line.split()[0].endswith(OF_THE_CLOCK)]
            if not isClock:
                yield [line for line in lines if line.split()[0].endswith(OF_THE_CLOCK)]
            for words in ANSWERS:
                answer = subprocess.run([*before, tool, *words.split()], env=environment, input=data,
                                        capture_output=True, check=False)
                assert answer.stdout, answer
                yield answer.stdout, answer.returncode

        expected = [*outputs([], {"TZ": "UTC", "LC_ALL": "C"}, ".", False)]
        for name, before, variables, point, isClock in surroundings(faketime, folder):
            wanted = [*expected[:1], *expected[2:]] if isClock else expected
            isSame = [*outputs(before, variables, point, isClock)] == wanted
            print("same:" if isSame else "DIFFERENT:", name)
            failed += not isSame
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
