#!/usr/bin/env python3
"""Reads recordings by simple means of its own and compares the values with what the tool prints.

    readLogs.py TOOL FOLDER...

Of every file below the folders: the sentences, their instants, positions, headings, turns, depths,
winds, speeds, courses and acoustic positions, and which groups of GSV sentences are complete.
Prints what was compared and every difference; the status is 1 when there is one.
"""
import calendar
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
NUMBER = re.compile(r" *[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?")
TIME = re.compile(r"(\d\d)(\d\d)(\d+(?:\.\d*)?)")
# The knot itself: the decimals that are usual agree within the tolerance. Feet are survey feet.
KNOT, FOOT, KMH = 1852 / 3600, 1200 / 3937, 1 / 3.6
TIMES = {"GGA": 1, "GLL": 5, "RMC": 1, "ZDA": 1, "GST": 1, "GBS": 1, "PZWBGGA": 1, "PZWBGST": 1,
         "PZWBMDE": 1, "PSIMSSB": 1, "PSIMLBP": 1, "PTPSR": 2}
POSITIONS = {"GGA": 2, "GLL": 1, "RMC": 3, "PZWBGGA": 2}
# Type: key, then pairs of a field and what its unit letter is worth; the first that fits counts.
# None: whatever the next field holds.
VALUES = [("HDT", "heading", (1, None)), ("THS", "heading", (1, None)),
          ("PTPSR", "heading", (5, None)), ("ROT", "rateOfTurn", (1, 1 / 60)),
          ("DPT", "depth", (1, None)), ("DBT", "depth", (1, {"f": FOOT}), (3, {"M": 1}),
                                        (5, {"F": 6 * FOOT})),
          ("MWV", "windDirection", (1, None)),
          ("MWV", "windSpeed", (3, {"M": 1, "N": KNOT, "S": 0.44704, "K": KMH})),
          ("MWD", "trueWindDirection", (1, None)), ("MWD", "magneticWindDirection", (3, None)),
          ("MWD", "windSpeed", (5, {"N": KNOT}), (7, {"M": 1})),
          ("VTG", "trueCourseOverGround", (1, None)), ("RMC", "courseOverGround", (8, None)),
          ("VTG", "magneticCourseOverGround", (3, None)), ("RMC", "speedOverGround", (7, KNOT)),
          ("VTG", "speedOverGround", (5, {"N": KNOT}), (7, {"K": KMH})),
          ("PSIMSSB", "rawX", (8, None)), ("PSIMSSB", "rawY", (9, None)),
          ("PSIMSSB", "depth", (10, None)), ("PSIMSSB", "expectedAccuracy", (11, None)),
          ("PSIMLBP", "rawX", (6, None)), ("PSIMLBP", "rawY", (7, None)),
          ("PSIMLBP", "depth", (8, None))]
OFFSETS, UTM, EARTH = "northOffset eastOffset", "utmNorthing utmEasting", "latitude longitude"
ACOUSTIC = {"PSIMSSB": {"PH": "range bearing", "CH": "starboardOffset forwardOffset", "CN": OFFSETS,
                        "CE": "eastOffset northOffset", "UN": UTM, "UE": "utmEasting utmNorthing",
                        "RN": EARTH},
            "PSIMLBP": {"C": OFFSETS, "L": "eastOffset northOffset", "U": UTM,
                        "E": "utmEasting utmNorthing", "R": EARTH}}
TYPES = set(TIMES) | {row[0] for row in VALUES} | {"GSV"}
KEYS = {"time", "latitude", "longitude", "rangeTime", "beaconNumber"} | {row[1] for row in VALUES}
KEYS |= {key for layouts in ACOUSTIC.values() for keys in layouts.values() for key in keys.split()}


def sentences(line):
    """The fields of each sentence in a line."""
    found = []
    for body, digits in SUMMED.findall(line):
        total = 0
        for character in body:
            total ^= ord(character)
        if total == int(digits, 16):
            found.append(body.split(","))
    starts = START.findall(line)
    if not found and len(starts) == 1 and line[-3:-2] != "*":
        found.append(line[START.search(line).end():].split(","))
    return found


def number(fields, index):
    text = fields[index] if index < len(fields) else ""
    return float(text) if NUMBER.fullmatch(text) else None


def coordinate(fields, index, digits, letters):
    text, letter = (fields[index:] + ["", ""])[:2]
    if text[:digits].isdecimal() and NUMBER.fullmatch(text[digits:]) and letter in tuple(letters):
        size = int(text[:digits]) + float(text[digits:]) / 60
        return size if letter == letters[0] else -size
    return None


def values(kind, fields):
    out = {}
    for row, key, *places in VALUES:
        for index, unit in places:
            size, letter = number(fields, index), (fields + [""])[index + 1:index + 2]
            factor = unit.get(letter[0]) if isinstance(unit, dict) and letter else unit or 1
            if row == kind and size is not None and isinstance(factor, (int, float)):
                out.setdefault(key, size * factor)
    if kind in POSITIONS:
        out["latitude"] = coordinate(fields, POSITIONS[kind], 2, "NS")
        out["longitude"] = coordinate(fields, POSITIONS[kind] + 2, 3, "EW")
    if kind in ACOUSTIC:
        layout = "".join(fields[5:7 if kind == "PSIMSSB" else 6])
        keys = ACOUSTIC[kind].get(layout, "").split()
        out.update(zip(keys, (out.get("rawX"), out.get("rawY"))))
    if kind == "PSIMSSB":
        digits = re.fullmatch(r"\D*(\d+)", (fields[2:] + [""])[0])
        out["beaconNumber"] = int(digits[1]) if digits else None
        out["rangeTime"] = number(fields, 13) if fields[12:13] == ["T"] else None
    return {key: value for key, value in out.items() if value is not None}


def seconds(year, month, day, hour=0, minute=0, second=0.0):
    return calendar.timegm((int(year), int(month), int(day), int(hour), int(minute), 0)) + \
        float(second)


def day_of(kind, fields):
    parts = fields[4:1:-1] if kind == "ZDA" else []
    if kind == "RMC" and len(fields) > 9 and re.fullmatch(r"\d{6}", fields[9]):
        text = fields[9]
        parts = [("19" if text[4:] >= "70" else "20") + text[4:], text[2:4], text[:2]]
    if len(parts) < 3 or not all(part.isdecimal() for part in parts):
        return None
    year, month, day = map(int, parts)
    exists = 0 < year < 10000 and 0 < month < 13 and 0 < day <= calendar.monthrange(year, month)[1]
    return seconds(year, month, day) // 86400 if exists else None


class Days:
    """Finds the day of a time of day by the last instant that is known."""

    def __init__(self):
        self.dated, self.last, self.last_stamp = False, None, None

    def instant(self, kind, fields, stamp):
        match = TIME.fullmatch((fields[TIMES[kind]:] + [""])[0]) if kind in TIMES else None
        if not match or int(match[1]) > 23 or int(match[2]) > 59 or float(match[3]) >= 61:
            return None
        time = int(match[1]) * 3600 + int(match[2]) * 60 + float(match[3])
        day = day_of(kind, fields)
        if day is not None and not (kind == "RMC" and fields[2] == "V"):
            self.dated = True
        else:
            if not self.dated and stamp is not None:
                self.last = stamp
            elif not self.dated and day is not None:
                self.last = day * 86400 + 43200
            elif self.last is None:
                return None
            elif stamp is not None and self.last_stamp is not None:
                self.last += stamp - self.last_stamp
            day = math.ceil((self.last - time) / 86400 - 0.5)
        self.last, self.last_stamp = day * 86400 + time, stamp
        return self.last


class Sky:
    """Puts groups of GSV sentences together, by talker and signal."""

    def __init__(self):
        self.groups, self.complete, self.incomplete = {}, 0, 0

    def offer(self, fields):
        """The satellites, when this sentence completes its group."""
        name = fields[0], fields[-1] if len(fields) % 4 == 1 else ""
        size, place, total = (fields[1:4] + [""] * 3)[:3]
        group = self.groups.setdefault(name, {"open": False})
        if place.isdecimal() and int(place) == 1:
            self.incomplete += group["open"]
            group = self.groups[name] = {"head": (size, total), "next": 1, "sats": {}}
        readable = len(fields) % 4 < 2 and all(map(str.isdecimal, (size, place, total)))
        if not readable or group.get("head") != (size, total) or int(place) != group["next"]:
            group["open"] = True  # what remains of a group of which something is lost
            return None
        for at in range(4, len(fields) // 4 * 4, 4):
            elevation, azimuth = number(fields, at + 1), number(fields, at + 2)
            if fields[at].isdecimal() and elevation is not None and azimuth is not None and \
                    0 <= elevation <= 90 and 0 <= azimuth <= 360:
                group["sats"][int(fields[at])] = (elevation, azimuth, number(fields, at + 3))
        group["next"] += 1
        group["open"] = int(place) != int(size) or len(group["sats"]) != int(total)
        self.complete += not group["open"]
        satellites = [(prn, *sat) for prn, sat in sorted(group["sats"].items())]
        return None if group["open"] else satellites


def read(data):
    """What the file says: (line, type, values) of each sentence, and the counts of groups."""
    days, sky, records = Days(), Sky(), []
    for place, line in enumerate(re.split(r"\r*\n|\r", data.decode("latin-1")), 1):
        match = STAMP.match(line)
        stamp = seconds(*match.groups()[:6]) if match else None
        if match and match[7]:
            stamp -= int(match[7] + "1") * (int(match[8]) * 3600 + int(match[9] or 0) * 60)
        for fields in sentences(line[match.end() if match else 0:]):
            kind = fields[0] if fields[0] in TYPES else fields[0][-3:]
            if kind in TYPES:
                found, instant = values(kind, fields), days.instant(kind, fields, stamp)
                records.append((place, kind, found if instant is None else
                                {**found, "time": instant}))
            if kind == "GSV" and (satellites := sky.offer(fields)) is not None:
                records.append((place, "SATELLITES", {"satellites": satellites}))
    return records, (sky.complete, sky.incomplete + sum(g["open"] for g in sky.groups.values()))


def told(tool, name):
    """What the tool says, in the same form."""
    run = subprocess.run([tool, "decode", name], capture_output=True, check=True)
    records = []
    for record in map(json.loads, run.stdout.splitlines()):
        found = {key: record[key] for key in KEYS & set(record)}
        if "time" in found:
            found["time"] = seconds(*re.split("[-T:]", found["time"].rstrip("Z")))
        if record["type"] == "SATELLITES":
            found["satellites"] = [tuple(map(sat.get, ("prn", "elevation", "azimuth", "snr")))
                                   for sat in record["satellites"]]
        if "error" not in record and record["type"] in TYPES | {"SATELLITES"}:
            records.append((record["line"], record["type"], found))
    counts = re.search(rb"(\d+) complete, (\d+) incomplete", run.stderr)
    return records, tuple(map(int, counts.groups()))


def same(key, ours, theirs):
    if ours is None or theirs is None or key == "satellites":
        return ours == theirs
    tolerance = {"time": 1e-3, "latitude": 1e-9, "longitude": 1e-9}
    return abs(ours - theirs) <= tolerance.get(key, 1e-6 * abs(ours))


def compare(tool, name):
    with open(name, "rb") as file:
        ours, our_sets = read(file.read())
    theirs, their_sets = told(tool, name)
    compared, differences = {}, []
    for mine, its in zip(ours, theirs):
        if mine[:2] != its[:2]:
            differences.append(f"line {mine[0]}: {mine[1]}, tool line {its[0]}: {its[1]}")
            break
        for key in sorted(set(mine[2]) | set(its[2])):
            compared[key] = compared.get(key, 0) + 1
            if not same(key, mine[2].get(key), its[2].get(key)):
                differences.append(f"line {mine[0]}: {mine[1]} {key}: {mine[2].get(key)}, "
                                   f"tool {its[2].get(key)}")
    if len(ours) != len(theirs) or our_sets != their_sets:
        differences.append(f"{len(ours)} records, sets complete and incomplete {our_sets}, "
                           f"tool {len(theirs)}, {their_sets}")
    print(f"{name}: {len(ours)} records, sets {our_sets};", compared)
    print("".join(f"    {text}\n" for text in differences), end="")
    return sum(compared.values()), len(differences)


def main():
    outside = os.environ.get("KALO_RECORDINGS")
    if not outside:
        print("SKIPPED: recordings of real devices, KALO_RECORDINGS names no folder")
    folders = sys.argv[2:] + ([outside] if outside else [])
    names = [os.path.join(path, name) for folder in folders
             for path, _, files in sorted(os.walk(folder)) for name in sorted(files)
             if not name.endswith(".jsonl") and not name.startswith("LICENSE")]
    results = [compare(sys.argv[1], name) for name in names]
    compared, differences = (sum(column) for column in zip((0, 0), *results))
    print(f"{len(names)} files, {compared} values compared, {differences} differences")
    return 1 if differences or not compared else 0


if __name__ == "__main__":
    sys.exit(main())
