r"""Runs kalo as transcripts say, and compares what it prints. From this folder:

    KALO_TOOL=../../build/release/tools/kalo python3 transcripts.py transcripts/lines.txt

A transcript:

    # A comment
    $ kalo decode --quiet       a command; what follows belongs to it
    < $SDDPT,4.2*hh             a line of its standard input
    > {...,"depth":4.2}         a line of its output
    2> kalo: a message          a line of its standard error
    status 1                    its exit status, if that is not 0

"*hh" is the right checksum of its sentence. In what is printed, "..." stands for any text. In what
is read, \r, \n, \t, \xHH and \\ are what they are in C; a line ends in \n, or in nothing behind \c.
Every input is also read byte by byte, with the same result, and the records of `decode --raw` must
tile it.
"""
import re
import shlex
import sys

import records
from kalo import completed, run


class Case:
    def __init__(self, place, command):
        self.place, self.arguments = place, shlex.split(command)[1:]
        self.input, self.expected, self.status = b"", {">": [], "2>": []}, 0

    def add(self, mark, text):
        if mark == "<":
            line = text.removesuffix("\\c") if text.endswith("\\c") else text + "\\n"
            self.input += completed(line.encode().decode("unicode_escape").encode("latin-1"))
        elif mark == "status":
            self.status = int(text)
        else:
            self.expected[mark].append(completed(text.encode()).decode())

    def run(self):
        """What differs from the transcript."""
        result = run(self.arguments, self.input)
        for lines, printed in zip(self.expected.values(), (result[1], result[2].encode())):
            yield from differences(lines, [line.decode() for line in printed.splitlines()])
        if result[0] != self.status:
            yield f"status {result[0]}, not {self.status}"
        if run(self.arguments, self.input, 1) != result:
            yield "another result when read byte by byte"
        if self.arguments[0] == "decode" and self.status == 0 and "--format" not in self.arguments:
            out = run([*self.arguments, "--raw"], self.input)[1]
            yield from records.faults(records.read(out), self.input,
                                      complete=not re.search("type|only|talker|prefix|since|until",
                                                             " ".join(self.arguments)))


def differences(expected, printed):
    for line, text in zip(expected, printed):
        if not re.fullmatch(".*".join(map(re.escape, line.split("..."))), text, re.DOTALL):
            yield f"expected {line}\n     printed {text}"
    yield from (f"expected {line}\n     printed nothing" for line in expected[len(printed):])
    yield from (f"expected nothing\n     printed {text}" for text in printed[len(expected):])


def read(name):
    cases = []
    with open(name, encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            mark, _, text = line.rstrip("\n").partition(" ")
            if mark == "$":
                cases.append(Case(f"{name}:{number}", text))
            elif mark in ("<", ">", "2>", "status"):
                cases[-1].add(mark, text)
            elif line.strip() and mark != "#":
                sys.exit(f"{name}:{number}: not a line of a transcript")
    return cases


def main():
    failed = 0
    cases = [case for name in sys.argv[1:] for case in read(name)]
    for case in cases:
        try:
            faults = list(case.run())
        except ValueError as error:  # no JSON, or no UTF-8
            faults = [str(error)]
        failed += bool(faults)
        for fault in faults:
            print(f"{case.place}: kalo {shlex.join(case.arguments)}\n    {fault}")
    print(f"{len(cases)} cases, {failed} failed")
    sys.exit(failed > 0 or not cases)


main()
