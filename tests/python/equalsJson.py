#!/usr/bin/env python3
"""Compares every value and every null of the columns of all recordings with the JSON lines. Needs no
package but kalo. Then joins the columns of seven ranges of each recording: they must be those of
the whole. The status is 1 if something differs."""
import collections
import itertools
import os
import sys

import expected
import kalo


def withoutLines(tables):
    return {name: [{key: value for key, value in row.items() if key != "line"} for row in rows]
            for name, rows in tables.items()}


def joined(path):
    tables = collections.defaultdict(list)
    for source, begin, end in kalo.ranges(path, size=os.path.getsize(path) // 7 + 1):
        for name, table in kalo.read(source, range=(begin, end)).items():
            tables[name] += table.to_pylist()
    return tables


def main():
    count, faults, files = 0, [], expected.recordings()
    for path in files:
        records = expected.records(path)
        log = kalo.read(path)
        if log.keys() != records.keys():
            faults.append(f"{path}: the tables {sorted(log.keys() ^ records.keys())}")
        for name, table in log.items():
            for fault in expected.differences(path, name, table.columns, table.to_pylist(),
                                              records.get(name, [])):
                count += 1
                faults += [fault] if fault else []
        whole = {name: table.to_pylist() for name, table in log.items()}
        if withoutLines(joined(path)) != withoutLines(whole):
            faults.append(f"{path}: joined ranges are not the whole")
    print(f"{len(files)} files, {count} values", *itertools.islice(faults, 50), sep="\n")
    sys.exit(bool(faults) or not count)


main()
