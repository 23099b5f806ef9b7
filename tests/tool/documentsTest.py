"""The examples of the documents print what stands below them.

    documentsTest.py FOLDER [--update]

Runs the first command of each console block behind a line "<!-- printed by the command -->", in the
folder of the project, or behind "<!-- printed by the command, among the recordings -->", in
$KALO_RECORDINGS if that is set. With --update the documents get what is printed.
"""
import os
import pathlib
import re
import subprocess
import sys

BLOCK = re.compile(r"(<!-- printed by the command(, among the recordings)? -->\n```console\n\$ (.*)\n)"
                   r"((?:.*\n)*?)(```\n)")


def printed(command, folder):
    """What a terminal shows."""
    tool = pathlib.Path(os.environ["KALO_TOOL"]).resolve()
    path = f"{tool.parent}:{os.environ['PATH']}"
    return subprocess.run(["sh", "-c", command], cwd=folder, stdout=subprocess.PIPE, text=True,
                          stderr=subprocess.STDOUT, env={**os.environ, "PATH": path}).stdout


def main():
    folder = pathlib.Path(sys.argv[1])
    count = faults = 0
    for page in [folder / "README.md", *sorted(folder.glob("docs/**/*.md"))]:
        def block(match):
            nonlocal count, faults
            begin, isOfRecordings, command, text, end = match.groups()
            place = os.environ.get("KALO_RECORDINGS") if isOfRecordings else folder
            if not place:
                print(f"{page}: $ {command}: not run, because KALO_RECORDINGS is not set")
                return match[0]
            output = printed(command, place)
            count += 1
            if output != text:
                faults += 1
                print(f"{page}: $ {command}\n{output}instead of\n{text}")
            return begin + output + end
        text = page.read_text()
        changed = BLOCK.sub(block, text)
        if "--update" in sys.argv and changed != text:
            page.write_text(changed)
    print(f"{count} examples, {faults} differ")
    sys.exit(0 if "--update" in sys.argv or (count and not faults) else 1)


main()
