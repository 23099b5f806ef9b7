#!/usr/bin/env python3
"""Lets DuckDB read the tables and the JSON lines of a recording with the types of `kalo schema`, and
compares counts and sums of every column with those of the JSON lines, worked out here. Validates the
lines with jsonschema.

    tables.py TOOL FOLDER FILE

DuckDB is a package of PyPI, which FOLDER holds. The status is 1 if something differs.
"""
import datetime
import json
import math
import pathlib
import re
import subprocess
import sys
import tempfile

import jsonschema

TOOL, FOLDER, RECORDING = sys.argv[1:]
sys.path.insert(0, FOLDER)
import duckdb  # noqa: E402 (found by the line above)

READERS = {
    "json": "read_json('{path}', format = 'newline_delimited', auto_detect = false, "
            "columns = {columns})",
    "csv": "read_csv('{path}', auto_detect = false, header = true, delim = ',', quote = '\"', "
           "escape = '\"', columns = {columns})",
    "tsv": r"read_csv('{path}', auto_detect = false, header = true, delim = '\t', quote = '', "
           "escape = '', columns = {columns})"}

# What is asked of a column, by the beginning of its type.
MEASURES = {"VARCHAR": "sum(length({0}))", "BIGINT": "sum({0})", "DOUBLE": "fsum({0})",
            "BOOLEAN": "sum({0}::INTEGER)", "TIMESTAMP": "fsum(epoch({0}))",
            "STRUCT": "sum(len({0}))", "BIGINT[]": "sum(coalesce(list_sum({0}), len({0})))",
            "VARCHAR[]": "sum(len({0}))"}


def run(*arguments):
    return subprocess.run([TOOL, *arguments], check=True, capture_output=True, text=True).stdout


def escaped(text, format):
    """A text as tables have it; line ends are in no record."""
    text = text if format == "csv" else text.replace("\t", "\\t")
    return re.sub("[\\x00-\\x08\\x0B-\\x1F]", lambda match: f"\\x{ord(match[0]):02X}", text)


def measure(value, kind, format):
    """The part that one value has in the sum."""
    if kind == "TIMESTAMP":
        return datetime.datetime.fromisoformat(value.replace("Z", "+00:00")).timestamp()
    if isinstance(value, dict):
        return len(value)
    if isinstance(value, list) and format != "json":  # as one text
        separator = " " if value and isinstance(value[0], int) else ","
        return len(escaped(separator.join(map(str, value)), format))
    if isinstance(value, str) and format != "json":
        return len(escaped(value, format))
    if isinstance(value, list):
        return sum(value) if kind == "BIGINT[]" else len(value)
    return len(value) if isinstance(value, str) else value


def rowsOf(record, columns):
    """The values of a record as a table has them: members of lists in lines of their own."""
    lists = {name.split(".")[0] for name in columns if "." in name}
    for key in lists:
        for member in record.get(key) or [{}]:
            yield {**record, **{f"{key}.{name}": value for name, value in member.items()}}
    if not lists:
        yield record


def kindOf(column):
    return "STRUCT" if column.startswith("STRUCT") else column


def differences(name, format, path, records):
    isTable = format != "json"
    columns = run("schema", "--for", "duckdb", "--type", name, "--format", format)
    source = READERS[format].format(path=path, columns=columns)

    def ask(question):
        return duckdb.execute(f"{question} FROM {source}").fetchall()

    types = {row[0]: row[1] for row in ask("DESCRIBE SELECT *")}
    rows = [row for record in records for row in (rowsOf(record, types) if isTable else [record])]
    if (found := ask("SELECT count(*)")) != [(len(rows),)]:
        yield f"{name}.{format}: {found} rows, not {len(rows)}"
    for column, kind in types.items():
        kind = kindOf(kind)
        values = [row[column] for row in rows if column in row]
        quoted = f'"{column}"'
        found, = ask(f"SELECT count({quoted}), {MEASURES[kind].format(quoted)}")
        if column == "tag":  # whose JSON may be spaced otherwise
            expected = len(values), found[1]
        else:
            parts = [measure(value, kind, format) for value in values
                     if value is not None and not (isTable and value == [])]
            expected = len(parts), math.fsum(parts) if parts else None
        if expected[0] != found[0] or (expected[1] is None) != (found[1] is None) or \
                (expected[1] is not None and
                 not math.isclose(expected[1], found[1], rel_tol=1e-12)):
            yield f"{name}.{format}: {column}: count and sum {found}, not {expected}"


def main():
    faults, tables, cells = [], {}, 0
    for line in run("decode", "--quiet", RECORDING).splitlines():
        record = json.loads(line)
        name = record["type"] or \
            ("malformed-records" if "error" in record else "untyped-records")
        tables.setdefault(name, []).append((line, record))
    with tempfile.TemporaryDirectory() as folder:
        for format in "csv", "tsv":
            run("decode", "--quiet", "--format", format, "--output-dir", folder, RECORDING)
        for name, lines in sorted(tables.items()):
            (pathlib.Path(folder) / f"{name}.json").write_text(
                "".join(line + "\n" for line, _ in lines))
            for format in READERS:
                faults += differences(name, format, f"{folder}/{name}.{format}",
                                      [record for _, record in lines])
            cells += sum(len(record) for _, record in lines)
            schema = json.loads(run("schema", "--type", name))
            jsonschema.Draft202012Validator.check_schema(schema)
            for _, record in lines:
                faults += [f"{name}: {fault.message}" for fault in
                           jsonschema.Draft202012Validator(schema).iter_errors(record)]
    print(f"{len(tables)} types, {cells} values, DuckDB {duckdb.__version__}", *faults, sep="\n")
    sys.exit(bool(faults) or not cells)


main()
