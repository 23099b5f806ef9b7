"""Ways from a log into tables of Python, for script/bench-peers.

usage: columnWays.py            prints their names
       columnWays.py NAME LOG   takes the way; prints the CPU seconds, of children too, and the rows
"""
import collections
import io
import os
import resource
import subprocess
import sys
import tempfile

import duckdb
import kalo
import numpy
import pandas
import polars
import pyarrow
import pynmea2


def json(path):
    """The lines that the tool prints."""
    return subprocess.run([os.environ["KALO_TOOL"], "decode", "--quiet", path], check=True,
                          capture_output=True).stdout


def byPynmea2(path):
    """Every field of every sentence, a list a field."""
    tables = collections.defaultdict(lambda: collections.defaultdict(list))
    rows = 0
    with open(path) as log:
        for line in log:
            try:
                sentence = pynmea2.parse(line, check=True)
            except pynmea2.ParseError:
                continue
            table = tables[sentence.sentence_type]
            for field in sentence.fields:
                table[field[1]].append(getattr(sentence, field[1]))
            for name in "latitude", "longitude":
                if hasattr(sentence, name):
                    table[name].append(getattr(sentence, name))
            rows += 1
    for table in tables.values():
        for name, values in table.items():
            table[name] = numpy.array(values, dtype=object)
    return rows


def inDuckdb(given):
    connection = duckdb.connect()
    connection.execute("CREATE TABLE copied AS FROM given")
    return connection


def jsonByDuckdb(path):
    with tempfile.NamedTemporaryFile() as file:
        file.write(json(path))
        file.flush()
        connection = duckdb.connect()
        connection.execute(f"CREATE TABLE records AS FROM read_json('{file.name}', "
                           "format = 'newline_delimited')")
        return connection.execute("SELECT count(*) FROM records").fetchone()[0]


def each(convert):
    """The package, and what is made of each of its tables."""
    def way(path):
        log = kalo.read(path)
        kept = [convert(table) for table in log.values()]
        return sum(map(len, log.values())) if kept else 0
    return way


def parquet(path):
    log = kalo.read(path)
    with tempfile.TemporaryDirectory() as folder:
        for name, given in log.items():
            duckdb.sql(f"COPY (FROM given) TO '{folder}/{name}.parquet'")
    return sum(map(len, log.values()))


WAYS = {
    "kalo.read, Arrow tables (pyarrow)": each(pyarrow.table),
    "kalo.read, NumPy arrays": each(lambda table: table.to_numpy()),
    "kalo.read, polars": each(polars.DataFrame),
    "kalo.read, pandas": each(lambda table: table.to_pandas()),
    "kalo.read, tables in DuckDB": each(inDuckdb),
    "kalo.read, Parquet by DuckDB": parquet,
    "kalo decode, JSON lines in memory": lambda path: json(path).count(b"\n"),
    "kalo decode, JSON read by DuckDB": jsonByDuckdb,
    "kalo decode, JSON read by polars":
        lambda path: len(polars.read_ndjson(json(path), infer_schema_length=None)),
    "kalo decode, JSON read by pandas":
        lambda path: len(pandas.read_json(io.BytesIO(json(path)), lines=True)),
    "pynmea2, every field into lists": byPynmea2,
}


def seconds():
    """CPU time of this process and of those that it has waited for."""
    return sum(sum(resource.getrusage(who)[:2])
               for who in (resource.RUSAGE_SELF, resource.RUSAGE_CHILDREN))


def main():
    if len(sys.argv) == 1:
        print(*WAYS, sep="\n")
        return
    before = seconds()
    rows = WAYS[sys.argv[1]](sys.argv[2])
    print(seconds() - before, rows)


main()
