#!/usr/bin/env python3
"""Compares the values of sentences that the dictionary describes with those of pynmea2.

    dictionaryPeer.py TOOL FILE|FOLDER...

Reads the files, those below the folders and below $KALO_RECORDINGS, and the input lines of
transcripts (.txt with lines that begin with "< "). dictionaryPeer.txt says which values are
compared. The status is 1 for any difference but those in WRONG, and for a row of the tables
that met no sentence; 77 without pynmea2.
"""
import collections
import json
import math
import os
import pathlib
import re
import subprocess
import sys

sys.path.append("/usr/lib/python3/dist-packages")  # that of Debian, whichever Python runs this
try:
    import pynmea2
except ImportError:
    print("pynmea2 is missing; Debian has it as python3-nmea2")
    sys.exit(77)

# What pynmea2 does otherwise, and where it is wrong.
DAY = "takes the month for the day"
TEXT = "passes on a text that is no number"
WRONG = {("PTNLBPQ", "date"): DAY, ("PTNLGGK", "date"): DAY, ("PTNLVHD", "date"): DAY,
         ("TXT", "messageCount"): TEXT, ("TXT", "text"): "drops what stands behind a comma",
         ("WNC", "destinationWaypointId"): "takes the origin for the destination",
         ("WNC", "originWaypointId"): "takes the destination for the origin"}
KNOT, KMH = 1852 / 3600, 1 / 3.6
# By the letter of another field; "" where there is none.
FACTORS = {
    "bar": {"": 1e5}, "east": {"E": 1, "W": -1}, "distance": {"N": 1852, "K": 1000},
    "fathoms": {"": 7200 / 3937}, "feet": {"": 1200 / 3937}, "inchesOfMercury": {"": 3386.389},
    "internationalFeet": {"": 0.3048}, "kilometres": {"": 1000}, "kilometresAnHour": {"": KMH},
    "knots": {"": KNOT}, "latitude": {"N": 1, "S": -1}, "longitude": {"E": 1, "W": -1},
    "microseconds": {"": 1e-6}, "miles": {"": 1852}, "milesRight": {"R": 1852, "L": -1852},
    "minutes": {"": 60}, "nanoseconds": {"": 1e-9}, "right": {"R": 1, "L": -1},
    "speed": {"N": KNOT, "K": KMH}}
MEMBERS = {"PUBX03": ["prn", "status", "azimuth", "elevation", "snr", "lockTime"],
           "XDR": ["type", "value", "unit", "name"]}


def rows():
    table = collections.defaultdict(lambda: collections.defaultdict(list))
    for line in pathlib.Path(__file__).with_suffix(".txt").read_text().splitlines():
        if not line.startswith("#"):
            kind, value, *source = re.split("  +", line)
            table[kind][value].append((source + ["", ""])[:3])
    return table


def converted(kind, sentence, name, conversion, letter):
    """A value of pynmea2 in our units; None where it gives none."""
    text = getattr(sentence, name)
    if text in ("", None):
        return None
    if conversion == "members":
        size = len(MEMBERS[kind])
        return [{key: value for key, value in zip(MEMBERS[kind], text[at:]) if value}
                for at in range(0, len(text), size)]
    if conversion == "height":  # EHT in front
        return float(text[3:]) if text.startswith("EHT") else None
    if conversion == "temperature":
        return float(text) if getattr(sentence, letter) == "C" else (float(text) - 32) / 1.8
    if not conversion:
        return text
    if conversion in ("latitude", "longitude"):
        text = int(float(text) / 100) + float(text) % 100 / 60
    factor = FACTORS[conversion].get(getattr(sentence, letter) if letter else "")
    return factor and float(text) * factor


def values(kind, table, sentence):
    found = {}
    for value, sources in table.items():
        for source in sources:
            got = converted(kind, sentence, *source)
            if got not in (None, []) and value not in found:
                found[value] = got
    return found


def same(ours, theirs):
    if isinstance(ours, list) and isinstance(theirs, list):
        return len(ours) == len(theirs) and all(map(same, ours, theirs))
    if isinstance(ours, dict) and isinstance(theirs, dict):
        return ours.keys() == theirs.keys() and all(same(ours[key], theirs[key]) for key in ours)
    if isinstance(ours, (int, float)):
        try:
            return math.isclose(ours, float(theirs), rel_tol=1e-9, abs_tol=1e-18)
        except (TypeError, ValueError):
            return False
    if re.fullmatch(r"\d\d:\d\d:\d\d\.\d+", str(ours)):  # pynmea2 cuts microseconds off
        return abs(float(ours[6:]) - float(str(theirs)[6:])) < 2e-6 and ours[:6] == str(theirs)[:6]
    return ours == str(theirs)


def inputs(names):
    """What to decode: files, and bytes for the standard input."""
    for name in map(pathlib.Path, names):
        for path in sorted(name.rglob("*")) if name.is_dir() else [name]:
            if path.is_file():
                data = path.read_bytes()
                lines = re.findall(rb"^< (.*)", data, re.MULTILINE) if path.suffix == ".txt" else []
                yield path, b"\n".join(lines).replace(b"*hh", b"") or data


def main():
    table, seen, faults = rows(), collections.Counter(), []
    compared, known = collections.Counter(), collections.Counter()
    names = sys.argv[2:] + [os.environ[key] for key in ("KALO_RECORDINGS",) if os.environ.get(key)]
    for path, data in inputs(names):
        out = subprocess.run([sys.argv[1], "decode", "--quiet", "--raw"], input=data, check=True,
                             stdout=subprocess.PIPE).stdout
        for record in map(json.loads, out.splitlines()):
            kind = record["type"]
            if kind not in table or "error" in record:
                continue
            text = re.findall(r"\$[A-Z][A-Z0-9]{3,},[^*$]*", record["raw"])[-1]
            theirs = values(kind, table[kind], pynmea2.parse(text))
            ours = {key: record[key] for key in table[kind] if key in record}
            seen[kind] += 1
            for key in {**ours, **theirs}:
                compared[kind, key] += 1
                if key not in ours or key not in theirs or not same(ours[key], theirs[key]):
                    fault = f"{kind} {key}: {ours.get(key)}, pynmea2 {theirs.get(key)}: {text}"
                    if (kind, key) in WRONG:
                        known[kind, key] += 1
                    else:
                        faults.append(f"{path}: {fault}")
    for kind, keys in table.items():
        print(f"{kind}: {seen[kind]} sentences, {sum(compared[kind, key] for key in keys)} values")
        faults += [f"{kind} {key} was never met" for key in keys if not compared[kind, key]]
    for (kind, key), reason in WRONG.items():
        print(f"{kind} {key}: pynmea2 {reason}, {known[kind, key]} times")
        faults += [] if known[kind, key] else [f"{kind} {key}: pynmea2 is right"]
    print(f"{sum(compared.values())} values, {len(faults)} differences", *faults[:20], sep="\n    ")
    sys.exit(1 if faults else 0)


main()
