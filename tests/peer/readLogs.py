#!/usr/bin/env python3
"""Reads recordings by simple means of its own and compares the values with what the tool prints.

    readLogs.py TOOL FOLDER...

Of every file below the folders: the sentences, their instants, positions, headings, depths, winds
and speeds, and which groups of GSV sentences end. The status is 1 for any difference. Logs in folders
named "layouts" are left out: this reads stamps of one shape only.
"""
import calendar
import itertools
import json
import math
import os
import re
import subprocess
import sys

STAMP = re.compile(r"(\d{4})-(0[1-9]|1[0-2])-([0-3]\d)[Tt ](\d\d):(\d\d):(\d\d(?:\.\d+)?)"
                   r"(?:[Zz]|([+-])(\d\d):?(\d\d)?)?[ \t,]")
SUMMED = re.compile(r"[$!]([^$!*]+)\*([0-9A-Fa-f]{2})")
START = re.compile(r"[$!](?=[A-Z][A-Z0-9]{3,},)")
TIME = re.compile(r"(\d\d)(\d\d)(\d\d(?:\.\d*)?)")
NUMBER = re.compile(r" *[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?")
KNOT, FOOT, KMH = 1852 / 3600, 1200 / 3937, 1 / 3.6  # the knot itself; survey feet
TIMES = {"GGA": 1, "GLL": 5, "RMC": 1, "ZDA": 1}
POSITIONS = {"GGA": 2, "GLL": 1, "RMC": 3}
# Type, key, field, the letter behind it and what that is worth; the first that fits counts.
VALUES = [("HDT", "heading", 1, "", 1), ("THS", "heading", 1, "", 1), ("DPT", "depth", 1, "", 1),
          ("DBT", "depth", 1, "f", FOOT), ("DBT", "depth", 3, "M", 1),
          ("DBT", "depth", 5, "F", 6 * FOOT), ("MWV", "windDirection", 1, "", 1),
          ("MWV", "windSpeed", 3, "M", 1), ("MWV", "windSpeed", 3, "N", KNOT),
          ("MWV", "windSpeed", 3, "K", KMH), ("MWV", "windSpeed", 3, "S", 0.44704),
          ("MWD", "windSpeed", 5, "N", KNOT), ("MWD", "windSpeed", 7, "M", 1),
          ("VTG", "speedOverGround", 5, "N", KNOT), ("VTG", "speedOverGround", 7, "K", KMH),
          ("RMC", "speedOverGround", 7, "", KNOT), ("GGA", "quality", 6, "", 1),
          ("GGA", "altitude", 9, "M", 1)]
TYPES = set(TIMES) | {row[0] for row in VALUES} | {"GSV"}
KEYS = {"time", "latitude", "longitude"} | {row[1] for row in VALUES}


def sentences(line):
    """The fields of each sentence in a line, the text in front of the first behind them."""
    found = []
    for match in SUMMED.finditer(line):
        total = 0
        for character in match[1]:
            total ^= ord(character)
        if total == int(match[2], 16):
            found.append((match[1], "" if found else line[:match.start()]))
    starts = START.findall(line)
    if not found and len(starts) == 1 and "*" not in line:
        start = START.search(line)
        found.append((line[start.end():], line[:start.start()]))
    return [body.split(",") + [""] * 19 + [prefix] for body, prefix in found]


def values(kind, fields):
    out = {}
    for row, key, index, unit, factor in VALUES:
        if row == kind and NUMBER.fullmatch(fields[index]) and unit in ("", fields[index + 1]):
            out.setdefault(key, float(fields[index]) * factor)
    for key, shift, digits, letters, most in (("latitude", 0, 2, "NS", 90),
                                              ("longitude", 2, 3, "EW", 180)):
        text, letter = fields[POSITIONS.get(kind, 17) + shift:][:2]
        if re.fullmatch(r"\d{%d}(\.\d*)?" % (digits + 2), text) and letter and letter in letters:
            minutes = float(text[digits:])
            size = int(text[:digits]) + minutes / 60
            if minutes < 60 and size <= most:
                out[key] = size if letter == letters[0] else -size
    return out


def seconds(year, month, day, hour=0, minute=0, second=0.0):
    whole = calendar.timegm((*map(int, (year, month, day, hour, minute)), 0))
    return whole + float(second)


def day_of(kind, fields):
    parts = fields[4:1:-1] if kind == "ZDA" else []
    if kind == "RMC" and re.fullmatch(r"\d{6}", fields[9]):
        day, month, year = re.findall("..", fields[9])
        parts = [("19" if year >= "70" else "20") + year, month, day]
    if not parts or not all(map(str.isdecimal, parts)):
        return None
    year, month, day = map(int, parts)
    exists = 0 < year < 10000 and 0 < month < 13 and 0 < day <= calendar.monthrange(year, month)[1]
    return seconds(year, month, day) if exists else None


class Days:
    """Finds the day of a time of day by the last instant that is known."""
    dated = last = last_stamp = None

    @staticmethod
    def nearest_day(instant, time):
        return math.ceil((instant - time) / 86400 - 0.5) * 86400

    def instant(self, kind, fields, stamp):
        match = TIME.fullmatch(fields[TIMES[kind]]) if kind in TIMES else None
        day = day_of(kind, fields)
        void = kind == "RMC" and fields[2] == "V"
        if not match or int(match[1]) > 23 or int(match[2]) > 59 or float(match[3]) >= 61:
            if day is not None and not void and (self.last or -1) // 86400 * 86400 != day:
                self.last, self.last_stamp = day + 43200, stamp
            self.dated = self.dated or (day is not None and not void)
            return None
        time = int(match[1]) * 3600 + int(match[2]) * 60 + float(match[3])
        if day is not None and not void:
            self.dated = True
        else:
            if not self.dated and stamp is not None:
                self.last = stamp
            elif self.last is None and day is not None:
                self.last = day + 43200
            elif self.last is None:
                return None
            elif stamp is not None and self.last_stamp is not None:
                moved = self.last + stamp - self.last_stamp
                if abs(self.nearest_day(moved, time) + time - moved) <= 3600:
                    self.last = moved
            day = self.nearest_day(self.last, time)
        self.last, self.last_stamp = day + time, stamp
        return self.last


def completed(fields, groups):
    """The satellites of the group that this GSV sentence ends; what is out of turn is lost."""
    count = len(fields) - 20
    sender, signal = (fields[0], fields[-1]), fields[count - 1] if count % 4 == 1 else ""
    head, place = (fields[1], fields[3]), fields[2]
    if place == "1":
        groups[sender, signal] = []
    for name in {(sender, signal): 0, (sender, ""): 0}:  # some name the signal last
        group = groups.get(name, [])
        if count % 4 < 2 and place == str(len(group) + 1) and (not group or group[0][0] == head):
            break
    else:
        return None
    if place == fields[1]:
        groups.pop(name, None)
    group.append((head, [fields[at] for at in range(4, count // 4 * 4, 4)
                         if fields[at] and 0 <= float(fields[at + 1] or -1) <= 90
                         and 0 <= float(fields[at + 2] or -1) <= 360]))
    prns = sorted({int(prn) for _, sats in group for prn in sats})
    return prns if place == fields[1] else None


def read(data):
    """What the file says: [line, type, values] of each sentence, and the groups that end."""
    days, groups, records = Days(), {}, []
    for place, line in enumerate(re.split(r"\r*\n|\r", data.decode("latin-1")), 1):
        match = STAMP.match(line)
        stamp = seconds(*match.groups()[:6]) if match else None
        if match and match[7]:
            stamp -= int(match[7] + "1") * (int(match[8]) * 3600 + int(match[9] or 0) * 60)
        for fields in sentences(line[match.end() if match else 0:]):
            kind, found = fields[0][-3:], {}
            if kind not in TYPES or fields[0].startswith("PZWB"):
                continue
            found = values(kind, fields)
            if (instant := days.instant(kind, fields, stamp)) is not None:
                found["time"] = instant
            records.append((place, kind, found))
            if kind == "GSV" and (prns := completed(fields, groups)) is not None:
                records.append((place, "SATELLITES", {"prns": prns}))
    return records


def told(tool, name):
    """What the tool says, in the same form."""
    records = []
    run = subprocess.run([tool, "decode", "--quiet", name], capture_output=True, check=True)
    for record in map(json.loads, run.stdout.splitlines()):
        found = {key: record[key] for key in KEYS & set(record)}
        if "time" in found:
            found["time"] = seconds(*re.split("[-T:]", found["time"].rstrip("Z")))
        if record["type"] == "SATELLITES":
            found["prns"] = [satellite["prn"] for satellite in record["satellites"]]
        if "error" not in record and record["type"] in TYPES | {"SATELLITES"}:
            records.append((record["line"], record["type"], found))
    return records


def same(mine, its):
    if not mine or not its or mine[:2] != its[:2] or mine[2].keys() != its[2].keys():
        return False
    near = {"time": 1e-12, "latitude": 1e-12, "longitude": 1e-12}
    return all(value == its[2][key] if key == "prns" else
               math.isclose(value, its[2][key], rel_tol=near.get(key, 1e-6))
               for key, value in mine[2].items())


def compare(tool, name):
    with open(name, "rb") as file:
        ours, theirs = read(file.read()), told(tool, name)
    different = [pair for pair in itertools.zip_longest(ours, theirs) if not same(*pair)]
    print(f"{name}: {len(ours)} records", *different[:3], sep="\n    ")
    return sum(len(record[2]) for record in ours), len(different)


def main():
    outside = os.environ.get("KALO_RECORDINGS")
    if not outside:
        print("SKIPPED: recordings of real devices, KALO_RECORDINGS names no folder")
    results = [compare(sys.argv[1], os.path.join(path, name))
               for folder in sys.argv[2:] + ([outside] if outside else [])
               for path, _, files in os.walk(folder) for name in files
               if name[-6:] != ".jsonl" and os.path.basename(path) != "layouts"]
    compared, differences = map(sum, zip((0, 0), *results))
    print(f"{len(results)} files, {compared} values compared, {differences} differences")
    return 1 if differences or not compared else 0


if __name__ == "__main__":
    sys.exit(main())
