"""kalo at home in a shell: manual pages, completions, the examples of the helps, colour."""
import fcntl
import os
import pathlib
import pty
import re
import select
import shutil
import struct
import subprocess
import termios
import unittest

from kalo import HAS_TERMINALS, ROOT, TOOL, Test, completed, run, write

OPTION = re.compile(r"^  (?:-\w, |    )(--[a-z-]+)", re.MULTILINE)
PATH = f"{os.path.dirname(TOOL)}:{os.environ['PATH']}"


def printed(*words):
    status, out, err = run(words)
    assert (status, err) == (0, ""), (words, status, err)
    return out.decode()


def helps():
    """The help of each command."""
    names = re.findall(r"^  ([a-z]+) ", printed("help"), re.MULTILINE)
    assert len(names) >= 11, names
    return {name: printed("help", name) for name in names}


def needs(program):
    return unittest.skipUnless(shutil.which(program), f"{program} is not installed")


def onTerminal(words, columns=0, **environment):
    """What a command writes to a terminal, standard output and standard error together."""
    ours, theirs = os.openpty()
    fcntl.ioctl(ours, termios.TIOCSWINSZ, struct.pack("HHHH", 50, columns, 0, 0))
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


class Shell:
    """A shell that somebody types into."""
    PROMPT = "ready>"
    MARK = "@@"

    def __init__(self, words):
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.environ.update(PATH=PATH, TERM="dumb", HISTFILE="", PS1=self.PROMPT, INPUTRC="/dev/null")
            os.execvp(words[0], words)
        fcntl.ioctl(self.terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 50, 500, 0, 0))

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        os.close(self.terminal)  # hangs up
        os.waitpid(self.process, 0)

    def until(self, pattern):
        shown = ""
        while not re.search(pattern, shown, re.DOTALL):
            if not select.select([self.terminal], [], [], 10)[0]:
                raise AssertionError(f"no {pattern!r} in {shown!r}")
            shown += os.read(self.terminal, 65536).decode()
        return shown

    def run(self, command):
        os.write(self.terminal, f"{command}; echo do''ne\n".encode())
        self.until(f"done\r\n.*{self.PROMPT}")  # from here on the shell reads keys, not lines

    def completed(self, line):
        """What a tab makes of a line."""
        os.write(self.terminal, f"{line}\t{self.MARK}".encode())
        shown = self.until(self.MARK)
        os.write(self.terminal, b"\x15")  # deletes the line
        shown = re.sub(r"[\x07\r]|\x1B\[\??[\d;]*[a-zA-Z]", "", shown[shown.rindex("kalo "):])
        while "\b" in shown:
            shown = re.sub("[^\b]\b", "", shown, count=1)
        return shown.removesuffix(self.MARK)


# What is typed before a tab, and the line after it.
COMPLETED = (
    ("kalo dec", "kalo decode"),
    ("kalo --vers", "kalo --version"),
    ("kalo decode --form", "kalo decode --format"),
    ("kalo decode --format ts", "kalo decode --format tsv"),
    ("kalo decode --format=ts", "kalo decode --format=tsv"),
    ("kalo track --format=gp", "kalo track --format=gpx"),
    ("kalo decode -q --type GGA,ZD", "kalo decode -q --type GGA,ZDA"),
    ("kalo decode --type=GGA,ZD", "kalo decode --type=GGA,ZDA"),
    ("kalo check --ignore silence,dupl", "kalo check --ignore silence,duplicate"),
    ("kalo decode --sentences ow", "kalo decode --sentences own.toml"),
    ("kalo decode --output-dir fo", "kalo decode --output-dir folder/"),
    ("kalo decode --strict voy", "kalo decode --strict voyage.log"),
    ("kalo encode ts", "kalo encode tss1"),
    ("kalo encode tss1 voy", "kalo encode tss1 voyage.log"),
    ("kalo fields GGA ZD", "kalo fields GGA ZDA"),
    ("kalo fields PZWBM", "kalo fields PZWBMDE"),
    ("kalo manual sum", "kalo manual summary"),
    ("kalo completion fi", "kalo completion fish"),
    ("kalo summary --near voy", "kalo summary --near voy"),
    ("kalo time voy", "kalo time voy"))


class Completions(Test):
    def setUp(self):
        super().setUp()
        os.mkdir("folder")
        for name in "voyage.log", "own.toml", "form":
            write(name, b"")

    def script(self, shell):
        write(shell, printed("completion", shell).encode())
        return shell

    def testOptions(self):
        """The options of every command are those in its help."""
        zsh, fish = printed("completion", "zsh"), printed("completion", "fish")
        self.script("bash")
        for name, text in helps().items():
            options = set(OPTION.findall(text))
            self.assertLessEqual({"--color", "--help"}, options)
            command = (f". ./bash; COMP_WORDS=(kalo {name} -) COMP_CWORD=2; _kalo; "
                       'echo "${COMPREPLY[@]}"')
            offered = subprocess.run(["bash", "--norc", "-c", command], check=True, text=True,
                                     stdout=subprocess.PIPE).stdout
            self.assertEqual(set(offered.split()), options, name)
            block = re.search(rf"^    {name}\)$(.*?);;$", zsh, re.MULTILINE | re.DOTALL)[1]
            self.assertEqual(set(re.findall(r"(--[a-z-]+)=?\[", block)), options, name)
            lines = re.findall(rf"^complete .*'__kalo_command {name}' -l (\S+)", fish, re.MULTILINE)
            self.assertEqual({"--" + line for line in lines}, options, name)

    def check(self, completed):
        for line, expected in COMPLETED:
            # Some shells already add what separates it from the next word.
            self.assertEqual(completed(line).rstrip(" =,"), expected, line)

    @unittest.skipUnless(HAS_TERMINALS, "no pseudo-terminals")
    def testBash(self):
        with Shell(["bash", "--norc", "--noprofile", "-i"]) as shell:
            shell.run(f". ./{self.script('bash')}")
            self.check(shell.completed)

    @needs("zsh")
    @unittest.skipUnless(HAS_TERMINALS, "no pseudo-terminals")
    def testZsh(self):
        with Shell(["zsh", "-f", "-i"]) as shell:
            shell.run(f"autoload -U compinit; compinit -D -u; . ./{self.script('zsh')}")
            self.check(shell.completed)

    @needs("fish")
    def testFish(self):
        script = self.script("fish")

        def completed(line):
            offered = subprocess.run(
                ["fish", "--no-config", "-c", f"source {script}; complete -C '{line}'"], check=True,
                text=True, stdout=subprocess.PIPE,
                env={**os.environ, "HOME": os.getcwd()}).stdout.splitlines()
            words = {offer.split("\t")[0] for offer in offered}
            return line.rpartition(" ")[0] + " " + words.pop() if len(words) == 1 else line
        self.check(completed)


class Pages(Test):
    def testManualPages(self):
        pages = {"kalo": printed("manual")}
        commands = helps()
        for name, text in commands.items():
            page = pages["kalo-" + name] = printed("manual", name)
            options = re.search(r"\.SH OPTIONS\n(.*?)\.SH", page.replace("\\-", "-"), re.DOTALL)[1]
            self.assertEqual(re.findall(r"^(?:\S+, )?\\fB(--[a-z-]+)\\fP", options, re.MULTILINE),
                             OPTION.findall(text), name)
            self.assertIn(rf"\fB{name}\fP", pages["kalo"])
            self.assertIn(rf".BR kalo\-{name} (1)", pages["kalo"])
        lints = [words for words in (["mandoc", "-Tlint"], ["groff", "-man", "-ww", "-z"])
                 if shutil.which(words[0])]
        if not lints:
            self.skipTest("neither mandoc nor groff is installed")
        for name, page in pages.items():
            self.assertEqual(re.findall(r"^\.SH (.*)", page, re.MULTILINE), [
                "NAME", "SYNOPSIS", "DESCRIPTION", *["COMMANDS"][:name == "kalo"], "OPTIONS",
                "EXAMPLES", "EXIT STATUS", "ENVIRONMENT", "SEE ALSO"], name)
            for words in lints:
                lint = subprocess.run(words, input=page, stdout=subprocess.PIPE, check=False,
                                      stderr=subprocess.STDOUT, text=True)
                self.assertEqual((lint.stdout, lint.returncode), ("", 0), f"{words[0]} {name}.1")

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
                written = re.search(r"(?:>|--output )(\S+)$", command)
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

    def testTablesFillTheTerminal(self):
        """Long texts are cut as far as the terminal needs."""
        write("log", completed(b"from the bridge, port side $GPZDA,120000,14,03,2026,,*hh\n") * 2)

        def table(columns):
            return onTerminal([TOOL, "summary", "log"], columns, NO_COLOR="1").split("\r\n\r\n")[1]

        def width(columns):
            return max(len(line) for line in table(columns).split("\r\n"))
        self.assertIn("from the bridge, port side", table(0))
        self.assertEqual(table(width(0)), table(0))
        for less in 1, 5, 10:
            self.assertEqual(width(width(0) - less), width(0) - less)
        self.assertIn("count", table(width(0)))
        self.assertLessEqual(width(40), 40)

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
