"""The rooms of the tool include one another one way only, and no two files in a circle."""
import graphlib
import pathlib
import re
import sys

ROOMS = ["terminal", "time", "input", "record", "analysis", "output", "report", "column", "command",
         "main.cpp"]
ROOT = pathlib.Path(sys.argv[1])


def room(path):
    return ROOMS.index(path.split("/")[1])


INCLUDE = re.compile(r'#include "(tools/[^"]*)"')
includes = {path.relative_to(ROOT).as_posix(): INCLUDE.findall(path.read_text())
            for path in ROOT.glob("tools/**/*") if path.suffix in (".h", ".cpp")}
faults = [f"{path} includes {other}, a room above it" for path, others in includes.items()
          for other in others if room(other) > room(path)]
try:
    list(graphlib.TopologicalSorter(includes).static_order())
except graphlib.CycleError as error:
    faults.append("a circle: " + " -> ".join(error.args[1]))
print(f"{len(includes)} files", *faults, sep="\n")
sys.exit(bool(faults) or not includes)
