#!/usr/bin/env python3
"""Compares what the tool prints for generated voyages with the values that the generator encoded.

    voyageValues.py GENERATOR TOOL

The generator writes the values of each record that it leaves undamaged, with the record's offset.
The tool's record at that offset must have the same keys and, within the resolution of the text, the
same values. The status is 1 if anything differs or fewer records were compared than expected.
"""
import json
import os
import subprocess
import sys
import tempfile

# Options of the generator, and how many records have to be compared.
RUNS = [("--seed 1", 1100), ("--seed 2 --start 1999-12-31T23:59:10", 1100),
        ("--seed 3 --start 2028-02-28T23:59:40", 1100), ("--seed 4 --bytes 120000", 2300),
        ("--clean --seed 5", 1200), ("--mix --seed 6 --start 2031-12-31T23:57:00", 1000)]
CLEAN = "--clean", "--mix"  # without damage: the generator must know each record of the tool
# Keys that say where the record is.
PLACE = {"source", "line", "offset"}
# Types that the generator need not know, and why.
UNKNOWN = {None: "an unknown sentence",
           "ALM": "hexadecimal digits, printed as sent",
           "SATELLITES": "no offset; put together from GSV, whose satellites are compared",
           "TABLE": "header lines are TABLE only behind an undamaged first line"}


def flat(record):
    """The record without lists, as the generator writes it: KEY.PLACE, KEY.MEMBER.PLACE."""
    out = {}
    for key, value in record.items():
        for place, item in enumerate(value if isinstance(value, list) else ()):
            members = {f"{key}.{name}": member for name, member in item.items()} \
                if isinstance(item, dict) else {key: item}
            out.update((f"{name}.{place}", member) for name, member in members.items())
        if not isinstance(value, list):
            out[key] = value
    return out


def same(expected, value):
    if isinstance(expected, list):  # a number and its resolution
        return type(value) in (int, float) and \
            abs(value - expected[0]) <= expected[1] * (1 + 1e-6)
    return type(value) is type(expected) and value == expected


def differences(expected, record):
    if record is None:
        return ["no record"]
    its = flat({key: value for key, value in record.items() if key not in PLACE})
    return [f"{key}: {its.get(key, 'nothing')} instead of {expected.get(key, 'nothing')}"
            for key in {**expected, **its}
            if key not in expected or key not in its or not same(expected[key], its[key])]


def compare(generator, tool, options, fewest):
    """Prints the faults of one voyage and returns how many there are."""
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "values")
        log = subprocess.run([generator, *options.split(), "--values", path],
                             stdout=subprocess.PIPE, check=True).stdout
        with open(path, encoding="ascii") as file:
            known = {record.pop("offset"): record for record in map(json.loads, file)}
    output = subprocess.run([tool, "decode", "--quiet", "-"], input=log, stdout=subprocess.PIPE,
                            check=True).stdout
    told = {record["offset"]: record for record in map(json.loads, output.splitlines())
            if "offset" in record}
    faults = [f"{record['type']} at {offset}: {fault}" for offset, record in known.items()
              for fault in differences(record, told.get(offset))]
    if options.startswith(CLEAN):
        faults += [f"{record['type']} at {offset}: not known to the generator"
                   for offset, record in told.items()
                   if offset not in known and record["type"] not in UNKNOWN]
    if len(known) < fewest:
        faults.append(f"{len(known)} records compared, {fewest} expected")
    values = sum(map(len, known.values()))
    print(f"{options}: {len(known)} records, {values} values compared, {len(faults)} differences",
          *faults[:5], sep="\n    ")
    return len(faults)


if __name__ == "__main__":
    sys.exit(1 if sum(compare(*sys.argv[1:], *run) for run in RUNS) else 0)
