#!/usr/bin/env python3
"""Works out from the records of `kalo decode` what `kalo summary` and `kalo check` say.

    answers.py TOOL FILE|FOLDER...

Reads the files, and those below the folders. The status is 1 if a figure or a finding differs.
"""
import collections
import datetime
import json
import math
import pathlib
import re
import statistics
import subprocess
import sys

POSITIONS = ["GGA", "PZWBGGA", "GNS", "RMC", "GLL", "PTNLGGK", "PUBX00", "RMA", "PSTI030"]
ANYWHERE = {"hdop", "speedOverGround", "heading", "rateOfTurn", "roll", "pitch", "heave", "depth",
            "windSpeed", "speedThroughWater", "waterTemperature", "altitude", "courseOverGround"}
NAMES = {"quality": {"GGA", "PZWBGGA"}, "satCount": {"GGA", "PZWBGGA", "GNS"}}
OTHER = {"trueCourseOverGround": "courseOverGround"}
RANGES = {"altitude": (-200, 9000), "quality": (0, 8), "satCount": (0, 100), "hdop": (0, 100),
          "speedOverGround": (0, 150), "courseOverGround": (0, 360), "heading": (0, 360),
          "rateOfTurn": (-90, 90), "roll": (-90, 90), "pitch": (-90, 90), "heave": (-30, 30),
          "depth": (0, 11000), "windSpeed": (0, 115), "speedThroughWater": (-20, 60),
          "waterTemperature": (-5, 50)}
NO_SENTENCES = {"TSS1", "ATS", "STR", "CAS", "NET", "TABLE", "SATELLITES"}
AS_SENT = {("heading", "PTPSR"), ("depth", "PSIMSSB"), ("depth", "PSIMLBP")}
MAX_SPEED, MAX_GAP, WEEKS = 100, 60, 1024 * 7 * 86400


def run(tool, verb, path, *options):
    result = subprocess.run([tool, verb, *options, path], capture_output=True)
    assert result.returncode in (0, 1), result
    return result.stdout


def seconds(text):
    """Unix seconds of an instant; a second of 60 is the first one of the next minute."""
    whole, fraction = re.fullmatch(r"([^.Z]*)(\.\d+)?Z?", text).groups()
    leap = whole.endswith(":60")
    time = datetime.datetime.fromisoformat(whole[:-2] + "59" if leap else whole)
    return time.replace(tzinfo=datetime.timezone.utc).timestamp() + leap + float(fraction or 0)


def isVoid(record):
    return record.get("validity") == "V" or record.get("fixMode") == "N" or \
        record.get("quality") == 0 or (record["type"] == "PSIMSSB" and record.get("status") == "V")


def distance(a, b):
    a, b = ([math.radians(place[key]) for key in ("latitude", "longitude")] for place in (a, b))
    square = math.sin((b[0] - a[0]) / 2) ** 2 + \
        math.cos(a[0]) * math.cos(b[0]) * math.sin((b[1] - a[1]) / 2) ** 2
    return 2 * 6371008.8 * math.asin(math.sqrt(square))


def systemOf(talker, prn):
    systems = {"GL": "GLONASS", "GA": "Galileo", "GB": "BeiDou", "BD": "BeiDou", "GQ": "QZSS",
               "QZ": "QZSS", "GI": "NavIC"}
    if talker not in ("GP", "GN"):
        return systems.get(talker, talker)
    return ("GPS" if 1 <= prn <= 32 else "SBAS" if 33 <= prn <= 64 or 120 <= prn <= 158 else
            "GLONASS" if 65 <= prn <= 96 else "QZSS" if 193 <= prn <= 202 else talker)


def secondsBetween(time, clock, laterTime, laterClock):
    """By the dates, or else by the times of day."""
    if time is not None and laterTime is not None:
        return laterTime - time
    if clock is None or laterClock is None:
        return None
    return laterClock - clock + (86400 if laterClock - clock < -43200 else 0)


def isWeeksOff(seconds):
    times = round(seconds / WEEKS)
    return times != 0 and abs(seconds - times * WEEKS) <= 86400


class Answers:
    def __init__(self, records):
        self.senders, self.values = {}, collections.defaultdict(list)
        self.fixes, self.findings = [], collections.Counter()
        self.signals = collections.defaultdict(list)
        self.feeds = collections.defaultdict(collections.Counter)
        reference, epoch, self.moments = None, None, []
        dates = {"last": None, "new": None}
        state = collections.defaultdict(lambda: {"last": None, "text": None, "still": 0})
        for record in records:
            own = seconds(record["time"]) if "time" in record else None
            received = record.get("received", "")
            stamp = seconds(received) if re.match(r"\d{4}-\d\d-\d\dT", received) else None
            reference = own if own is not None else reference
            moment = own if own is not None else stamp if stamp is not None else reference
            fault = "error" in record
            kind = "malformed" if fault else record["type"] or record.get("address")
            key = record.get("prefix", ""), record.get("talker", ""), kind
            sender = self.senders.setdefault(key, {"count": 0, "void": 0, "moments": []})
            sender["count"] += 1
            if moment is not None:
                sender["moments"].append(moment)
                self.moments.append(moment)
            if fault:
                self.findings[record["error"].replace(" ", "-")] += 1
                continue
            sender["void"] += isVoid(record)
            if record["type"] not in NO_SENTENCES:
                self.feeds[key[0]][record.get("checksum", True)] += 1
            self.measure(record)
            clock = record.get("timeOfDay")
            clock = clock and sum(float(part) * unit for part, unit in
                                  zip(clock.split(":"), (3600, 60, 1)))
            if own is not None or clock is not None:
                self.checkTime(record, own, clock, state[key], dates)
            if kind in POSITIONS:
                valid = not isVoid(record)
                has = valid and "latitude" in record and "longitude" in record
                saysValid = record.get("validity") == "A" or record.get("quality", 0) > 0
                self.findings["valid-without-position"] += valid and saysValid and not has
                time = own if own is not None or clock is not None else stamp
                if epoch is None:
                    isNext = True
                elif clock is None:
                    isNext = POSITIONS.index(kind) == epoch["rank"]
                elif own is None or epoch["time"] is None:
                    isNext = epoch["clock"] is None or abs(clock - epoch["clock"]) > 0.01
                else:
                    isNext = abs(own - epoch["time"]) > 0.01
                if isNext:
                    epoch = {"clock": clock, "rank": len(POSITIONS), "time": time}
                    self.fixes.append(epoch)
                epoch["time"] = time if epoch["time"] is None else epoch["time"]
                if has and POSITIONS.index(kind) < epoch["rank"]:
                    epoch.update(rank=POSITIONS.index(kind), latitude=record["latitude"],
                                 longitude=record["longitude"])
        self.fixes = [fix for fix in self.fixes if "latitude" in fix]

    def checkWhole(self):
        """What can be said at the end alone."""
        for feed in self.feeds.values():
            self.findings["missing-checksum"] += feed[False] if feed[True] else 0
        self.findings["position-jump"] = sum(isJump for *_, isJump in self.steps())
        for (_, _, kind), sender in self.senders.items():
            moments = sender["moments"]
            if sender["count"] >= 10 and moments and kind not in ("malformed", "SATELLITES"):
                interval = (moments[-1] - moments[0]) / (sender["count"] - 1)
                self.findings["silence"] += \
                    self.moments[-1] - moments[-1] > max(MAX_GAP, 10 * interval)

    def steps(self):
        """The distance from each fix to the next, its seconds, and whether it is a jump."""
        steps = []
        for a, b in zip(self.fixes, self.fixes[1:]):
            step = secondsBetween(a["time"], a["clock"], b["time"], b["clock"])
            way = distance(a, b)
            steps.append((way, step, step is not None and way > MAX_SPEED * max(abs(step), 1)))
        return steps

    def measure(self, record):
        for name, value in record.items():
            name, kind = OTHER.get(name, name), record["type"]
            isMeasured = name in ANYWHERE or kind in NAMES.get(name, ())
            if not isMeasured or (name, kind) in AS_SENT or (isVoid(record) and name != "quality"):
                continue
            self.values[kind, name].append(value)
            least, greatest = RANGES[name]
            if not isVoid(record):
                self.findings["out-of-range"] += not least <= value <= greatest
        if record["type"] == "GSV":
            for satellite in record.get("satellites", ()):
                if "snr" in satellite:
                    system = systemOf(record.get("talker", ""), satellite.get("prn", 0))
                    self.signals[system].append(satellite["snr"])

    def checkTime(self, record, own, clock, state, dates):
        text = re.sub(r"^.*?(?=[$!:])", "", record["raw"], 1)
        if text == state["text"]:
            self.findings["duplicate"] += 1
            return
        state["text"] = text
        step = secondsBetween(*state["last"], own, clock) or 0 if state["last"] else 0
        rule = record.get("timeRule")
        self.findings["week-rollover"] += rule == "rollover"
        if rule == "own" and dates["last"] is not None and isWeeksOff(own - dates["last"]):
            if dates["new"] is None or not 1 <= own - dates["new"] <= 86400:
                self.findings["week-rollover"] += 1
                dates["new"] = own
                return
        if rule == "own":
            dates.update(last=own, new=None)
        if isWeeksOff(step):
            if dates["last"] is not None and abs(own - dates["last"]) <= 86400:
                state["last"] = own, clock
            return
        self.findings["time-backwards"] += step < 0
        self.findings["time-jump"] += step > MAX_GAP
        state["still"] = state["still"] + 1 if step == 0 and state["last"] else 0
        self.findings["time-stands-still"] += state["still"] == 10
        state["last"] = own, clock


def compare(tool, path):
    """What differs for one file."""
    decoded = run(tool, "decode", path, "--quiet", "--raw", "--explain")
    answers = Answers(map(json.loads, decoded.splitlines()))
    summary = json.loads(run(tool, "summary", path, "--json"))

    def differs(what, ours, theirs, tolerance=1e-6):
        same = ours == theirs if isinstance(ours, str) or theirs is None else \
            math.isclose(ours, theirs, rel_tol=tolerance, abs_tol=2e-3)
        return [] if same else [f"{what}: {theirs}, worked out {ours}"]

    faults = differs("bytes", path.stat().st_size, summary["bytes"])
    senders = {(row.get("prefix", ""), row.get("talker", ""), row["type"]): row
               for row in summary["senders"]}
    faults += differs("senders", len(answers.senders), len(senders))
    for key, ours in answers.senders.items():
        theirs = senders[key]
        faults += differs(f"{key} count", ours["count"], theirs["count"])
        faults += differs(f"{key} void", ours["void"], theirs["void"])
        if ours["moments"]:
            gaps = [b - a for a, b in zip(ours["moments"], ours["moments"][1:])]
            first, last = min(ours["moments"]), max(ours["moments"])
            faults += differs(f"{key} first", first, seconds(theirs["first"]))
            faults += differs(f"{key} last", last, seconds(theirs["last"]))
            if last > first:
                faults += differs(f"{key} gap", max([0, *gaps]), theirs["longestGap"])
                faults += differs(f"{key} rate", (ours["count"] - 1) / (last - first),
                                  theirs["rate"])
    values = {(row["type"], row["value"]): row for row in summary["values"]}
    signals = {(row["system"], "snr"): row for row in summary["signals"]}
    for kind, of in ((answers.values, values),
                     ({(system, "snr"): all for system, all in answers.signals.items() if all},
                      signals)):
        faults += [f"{key} is missing" for key in kind.keys() ^ of.keys()]
        for key in kind.keys() & of.keys():
            faults += differs(f"{key} count", len(kind[key]), of[key]["count"])
            faults += differs(f"{key} least", min(kind[key]), of[key]["least"])
            faults += differs(f"{key} greatest", max(kind[key]), of[key]["greatest"])
            faults += differs(f"{key} median", statistics.median(kind[key]),
                              of[key]["median"], 2e-3)
    if answers.fixes:
        track = summary["track"]
        steps = answers.steps()
        faults += differs("fixes", len(answers.fixes), track["fixes"])
        faults += differs("jumps", sum(isJump for *_, isJump in steps), track["jumps"])
        faults += differs("distance", sum(way for way, _, isJump in steps if not isJump),
                          track["distance"])
        timed = [step for step in steps if step[1] is not None and step[1] > 0 and not step[2]]
        duration = sum(seconds for _, seconds, _ in timed)
        faults += differs("duration", duration, track["duration"])
        if duration > 0:
            faults += differs("mean speed", sum(way for way, *_ in timed) / duration,
                              track["meanSpeed"])
        for key, function, side in (("latitude", min, "south"), ("latitude", max, "north"),
                                    ("longitude", min, "west"), ("longitude", max, "east")):
            faults += differs(side, function(fix[key] for fix in answers.fixes), track[side])
    told = collections.Counter()
    for line in run(tool, "check", path, "--json").splitlines():
        finding = json.loads(line)
        told[finding["kind"]] += finding["count"]
    faults += differs("incomplete groups", summary["satelliteGroups"]["incomplete"],
                      told.pop("incomplete-group", 0))
    answers.checkWhole()
    for name in told.keys() | +answers.findings:
        faults += differs(f"findings {name}", answers.findings[name], told[name])
    print(f"{path}: {sum(row['count'] for row in summary['senders'])} records, "
          f"{len(answers.fixes)} fixes, {sum(map(len, answers.values.values()))} values, "
          f"{sum(told.values())} findings; {len(faults)} differences", *faults[:20], sep="\n    ")
    return len(faults)


def main():
    paths = [path for name in map(pathlib.Path, sys.argv[2:])
             for path in (sorted(name.rglob("*")) if name.is_dir() else [name]) if path.is_file()]
    sys.exit(1 if sum(compare(sys.argv[1], path) for path in paths) or not paths else 0)


main()
