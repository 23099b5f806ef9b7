#!/usr/bin/env python3
"""Compares every value and every null of the columns of all recordings with the JSON lines. Needs no
package but kalo. The status is 1 if something differs."""
import itertools
import sys

import expected
import kalo


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
    print(f"{len(files)} files, {count} values", *itertools.islice(faults, 50), sep="\n")
    sys.exit(bool(faults) or not count)


main()
