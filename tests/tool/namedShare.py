#!/usr/bin/env python3
"""How many sentences of real recordings have names for their values, and which have none.

    namedShare.py TOOL [FILE|FOLDER...]

Reads what is named, or what is below $KALO_RECORDINGS; the status is 77 without either. Counts
sentences with a right checksum but for AIS. Makers' own sentences, whose address starts with P, are
counted apart: many have no public description. The status is 1 if fewer than 97 % of the others
have names for what they say.
"""
import collections
import json
import os
import pathlib
import re
import subprocess
import sys

LEAST = 0.97
PLACE = {"source", "line", "offset", "received", "tag", "prefix", "type", "talker", "time",
         "suffix", "raw"}


def files(names):
    for name in map(pathlib.Path, names):
        yield from sorted(path for path in name.rglob("*") if path.is_file()) if name.is_dir() \
            else [name]


def sentence(record):
    """The fields of a sentence with a right checksum; None for all other records."""
    found = re.findall(r"[$!]([A-Z0-9]{4,},[^$!*]*)\*[0-9A-Fa-f]", record.get("raw", ""))
    isOther = "error" in record or record.get("checksum") is False or record["type"] == "TABLE"
    return None if isOther or not found else found[-1].split(",")


def isNamed(record, fields):
    """Whether what it says has names. One letter, as of a unit, says nothing without its number."""
    isEmpty = all(len(field) < 2 and not field.isdigit() for field in fields[1:])
    return record["type"] is not None and "fields" not in record and \
        (isEmpty or not PLACE.issuperset(record))


def main():
    names = sys.argv[2:] or [os.environ.get("KALO_RECORDINGS")]
    if not names[0]:
        print("KALO_RECORDINGS does not name a folder")
        sys.exit(77)
    named, makers, others = 0, collections.Counter(), collections.Counter()
    for path in files(names):
        out = subprocess.run([sys.argv[1], "decode", "--quiet", "--raw"], stdout=subprocess.PIPE,
                             stdin=path.open("rb"), check=True).stdout
        for record in map(json.loads, out.splitlines()):
            fields = sentence(record)
            if fields is None or re.fullmatch(r"..VD[MO]", fields[0]):
                continue
            if isNamed(record, fields):
                named += 1
            elif fields[0].startswith("P"):
                makers[f"${fields[0]}"] += 1
            else:
                others[fields[0][-3:]] += 1
    total = named + others.total()
    print(f"{total + makers.total()} sentences: {named} with named values, "
          f"{makers.total()} of makers and {others.total()} others without")
    for kind, count in (*makers.most_common(), *others.most_common()):
        print(f"    {kind}: {count}")
    share = named / total if total else 0
    print(f"{share:.2%} without those of makers, {LEAST:.0%} wanted")
    sys.exit(share < LEAST)


main()
