#!/usr/bin/env python3
"""Lets pyarrow, polars, DuckDB, NumPy and pandas read the tables of all recordings, and compares every
value and every null with those that kalo gives as Python objects (which equalsJson.py compares with the
JSON lines). Writes the tables as Parquet files, by pyarrow and by DuckDB, and compares what DuckDB finds
in them. The status is 1 if something differs."""
import collections
import itertools
import math
import sys
import tempfile
import unittest.mock

import duckdb
import numpy
import pandas
import polars
import pyarrow

import expected
import kalo


def byPyarrow(table):
    read = pyarrow.table(table)
    read.validate(full=True)
    return [read.column(name).to_pylist() for name in read.column_names]


def byPolars(table):
    return [column.to_list() for column in polars.DataFrame(table).get_columns()]


def byDuckdb(given):
    rows = duckdb.sql("FROM given").fetchall()
    return [list(column) for column in zip(*rows)]


def plain(value):
    """A value of NumPy or pandas as Python has it; None for all that stands for null."""
    if value is None or value is pandas.NA or value is pandas.NaT:
        return None
    if isinstance(value, (float, numpy.floating)) and math.isnan(value):
        return None
    return value.item() if isinstance(value, numpy.generic) else value


def byNumpy(table):
    return [[plain(value) for value in array.tolist()] for array in table.to_numpy().values()]


def byPandas(table):
    frame = table.to_pandas()
    return [[plain(value) for value in frame[name].tolist()] for name in frame]


READERS = {"pyarrow": byPyarrow, "polars": byPolars, "duckdb": byDuckdb, "numpy": byNumpy,
           "pandas": byPandas}
# These have instants without a zone, or dates as instants.
NAIVE = ("numpy", "pandas")


def comparable(column, value, reader):
    if value is None or reader not in NAIVE:
        return value
    if column.form == "instant":
        return value.replace(tzinfo=None)
    if column.form == "date":
        return getattr(value, "date", lambda: value)()
    return value


def differences(path, name, table, counts):
    rows = [list(column) for column in zip(*map(dict.values, table.to_pylist()))]
    for reader, read in READERS.items():
        columns = read(table)
        if len(columns) != len(rows):
            yield f"{path}: {name}: {reader}: {len(columns)} columns, not {len(rows)}"
        for column, found, wanted in zip(table.columns, columns, rows):
            counts[reader] += len(found)
            found, wanted = ([comparable(column, value, reader) for value in values]
                             for values in (found, wanted))
            if found != wanted:
                different = next(((line, *pair) for line, pair in enumerate(
                    itertools.zip_longest(found, wanted)) if pair[0] != pair[1]))
                yield f"{path}: {name}: {reader}: {column.name}: {different}"


def parquetDifferences(logs):
    """Each way to write the files must give the rows, the sums and the days of the tables."""
    wanted = collections.Counter()
    latitudes = []
    for log in logs:
        for name, table in log.items():
            for row in table.to_pylist():
                time = row.get("time")
                wanted[name, time and time.date().isoformat()] += 1
                latitudes += [row["latitude"]] if name == "GGA" and row["latitude"] else []
    for writer in "pyarrow", "duckdb":
        with tempfile.TemporaryDirectory() as folder:
            hidden = {} if writer == "pyarrow" else {"pyarrow": None}
            with unittest.mock.patch.dict(sys.modules, hidden):
                for log in logs + logs[:1]:  # what is written again replaces its files
                    kalo.to_parquet(log, folder)
            files = f"read_parquet('{folder}/*/*/*.parquet', hive_partitioning = true, " \
                "hive_types = {'day': VARCHAR, 'type': VARCHAR}, union_by_name = true)"
            found = {(row[0], row[1]): row[2] for row in duckdb.sql(
                f"SELECT type, day, count(*) FROM {files} GROUP BY ALL").fetchall()}
            (total,), = duckdb.sql(
                f"SELECT fsum(latitude) FROM {files} WHERE type = 'GGA'").fetchall()
            if found != wanted:
                yield f"Parquet by {writer}: {sorted(map(str, found.items() ^ wanted.items()))[:9]}"
            if not math.isclose(total, math.fsum(latitudes), rel_tol=1e-12):
                yield f"Parquet by {writer}: sum {total}, not {math.fsum(latitudes)}"


def main():
    duckdb.sql("SET TimeZone = 'UTC'")
    faults, counts, logs = [], collections.Counter(), []
    for path in expected.recordings():
        log = kalo.read(path)
        for name, table in log.items():
            faults += differences(path, name, table, counts)
        if len(logs) < 12:  # files are slow
            logs.append(log)
    faults += parquetDifferences(logs)
    print(", ".join(f"{name} {count} values" for name, count in counts.items()),
          *faults[:50], sep="\n")
    sys.exit(bool(faults) or not counts)


main()
