"""kalo at home in a shell: the examples of the helps, and colour."""
import os
import pathlib
import re
import select
import shutil
import subprocess
import unittest

from kalo import HAS_TERMINALS, ROOT, TOOL, Test, run, write

PATH = f"{os.path.dirname(TOOL)}:{os.environ['PATH']}"


def printed(*words):
    status, out, err = run(words)
    assert (status, err) == (0, ""), (words, status, err)
    return out.decode()


def helps():
    """The help of each command."""
    names = re.findall(r"^  ([a-z]+) ", printed("help"), re.MULTILINE)
    assert len(names) >= 9, names
    return {name: printed("help", name) for name in names}


def onTerminal(words, **environment):
    """What a command writes to a terminal, standard output and standard error together."""
    ours, theirs = os.openpty()
    everything = {key: value for key, value in os.environ.items() if key != "NO_COLOR"}
    subprocess.run(words, stdin=subprocess.DEVNULL, stdout=theirs, stderr=theirs,
                   env={**everything, "TERM": "xterm", "PATH": PATH, **environment}, check=False)
    os.close(theirs)
    text = b""
    while select.select([ours], [], [], 1)[0]:
        try:
            text += os.read(ours, 65536)
        except OSError:  # how Linux shows the end
            break
    os.close(ours)
    return text.decode()


class Helps(Test):
    def testExamples(self):
        """The examples of a help work in a folder that holds a recording."""
        shutil.copy(ROOT / "examples/recordings/voyage.log", ".")
        for name, text in helps().items():
            examples = re.findall(r"^  (\S.*)\n      (\S.*)", text.partition("\nExamples:\n")[2],
                                  re.MULTILINE)
            self.assertEqual(len(examples), 2, text)
            for command, _ in examples:
                if "| man " in command and not shutil.which("man"):
                    print("man is not installed:", command)
                    continue
                with subprocess.Popen(["bash", "-o", "pipefail", "-c", command], text=True,
                                      stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                      stderr=subprocess.PIPE,
                                      env={**os.environ, "PATH": PATH}) as process:
                    out, err = process.communicate(timeout=30)
                faults = re.findall(r"^(?!kalo: \d+ records?: ).+", err, re.MULTILINE)
                self.assertEqual((process.returncode, faults), (int(name == "check"), []), command)
                written = re.search(r">(\S+)$", command)
                if written:
                    out = pathlib.Path(written[1]).read_text()
                self.assertTrue(out or command.startswith(". <("), command)


@unittest.skipUnless(HAS_TERMINALS, "no pseudo-terminals")
class Colour(Test):
    def testWhere(self):
        """Headings are bold, faults red and notes yellow, in text for people."""
        write("log", b"\n".join([b"$SDDPT,1,2*00", b"$SDDPT,1,2", b"$SDDPT,1,2*54"]))
        for words, begins in (
                ("summary log", ["\x1B[1minput     \x1B[0m ", "\x1B[1mtalker  type "]),
                ("fields GGA", ["\x1B[1mtype       name "]),
                ("check log", [": \x1B[31mfault\x1B[0m: ", ": \x1B[33mnote\x1B[0m: "]),
                ("decode missing", ["\x1B[31mkalo:\x1B[0m missing: No such file"]),
                ("decod", ["\x1B[31mkalo:\x1B[0m no such command: decod"])):
            text = onTerminal([TOOL, *words.split()])
            for begin in begins:
                self.assertIn(begin, text, words)
            plain = re.sub(r"\x1B\[\d*m", "", text).replace("\r\n", "\n")
            self.assertEqual(plain, onTerminal([TOOL, *words.split()], NO_COLOR="1")
                             .replace("\r\n", "\n"), words)

    def testWhen(self):
        write("log", b"$SDDPT,1,2*00\n")
        escape = "\x1B"
        for words, environment, isColoured in (
                ("check log", {}, True), ("check log", {"NO_COLOR": ""}, True),
                ("check log", {"NO_COLOR": "1"}, False), ("check log", {"TERM": "dumb"}, False),
                ("check --color never log", {}, False),
                ("check --color=always log", {"NO_COLOR": "1"}, True),
                ("check --json log", {}, False), ("check --junit --color always log", {}, False),
                ("summary --json --color always log", {}, False),
                ("decode --color always log", {}, False),
                ("decode --format csv -t DPT --color always log", {}, False),
                ("track --color always log", {}, False), ("help", {}, False)):
            self.assertEqual(escape in onTerminal([TOOL, *words.split()], **environment), isColoured,
                             (words, environment))
        for words, isColoured in (("check log", False), ("check --color auto log", False),
                                  ("check --color always log", True), ("fields", False),
                                  ("summary --color always log", True), ("summary log", False)):
            out = run(words.split())[1].decode()
            self.assertNotEqual(out, "")
            self.assertEqual(escape in out, isColoured, words)
        for words, isColoured in (("decode missing", False), ("decode --color=always missing", True),
                                  ("decode --color=always --radian", True)):
            self.assertEqual(escape in run(words.split())[2], isColoured, words)


if __name__ == "__main__":
    unittest.main()
