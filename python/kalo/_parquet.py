"""Tables as Parquet files."""
from __future__ import annotations

import hashlib
import os
from typing import Any, Mapping, Optional

from ._inputs import Path
from ._table import Table


def to_parquet(part: Mapping[str, Table], out: Path, *, name: Optional[str] = None) -> None:
    """Writes tables to a folder of Parquet files: ``OUT/type=GGA/day=2026-03-11/NAME.parquet``.

    The day is that of the column time, in UTC; rows without a time go to
    ``day=__HIVE_DEFAULT_PARTITION__``. pyarrow writes them, or duckdb where there is no pyarrow.

    Without ``name`` a file is named by the rows that it holds, so that the same part written again
    replaces its files. With ``name``, a part replaces those that were written under this name.
    """
    for kind, table in part.items():
        if len(table) > 0:
            folder = os.path.join(os.fspath(out), f"type={kind}")
            os.makedirs(folder, exist_ok=True)
            _write(table, folder, name or _nameOf(table))


def _nameOf(table: Table) -> str:
    """A name that other rows do not have: of other values, at other places, of another live input."""
    rows = [table._origin, [(batch.place, batch.digest()) for batch in table._batches]]
    return "part-" + hashlib.sha256(repr(rows).encode()).hexdigest()[:16]


def _write(table: Table, folder: str, name: str) -> None:
    try:
        import pyarrow
    except ImportError:
        _writeByDuckdb(table, folder, name)
    else:
        _writeByPyarrow(pyarrow.table(table), folder, name)


def _writeByPyarrow(table: Any, folder: str, name: str) -> None:
    import pyarrow
    import pyarrow.compute
    import pyarrow.dataset

    if "time" in table.column_names:
        day = pyarrow.compute.strftime(table["time"], format="%Y-%m-%d")
    else:
        day = pyarrow.nulls(len(table), pyarrow.string())
    pyarrow.dataset.write_dataset(
        table.append_column("day", day), folder, format="parquet",
        partitioning=pyarrow.dataset.partitioning(
            pyarrow.schema([("day", pyarrow.string())]), flavor="hive"),
        basename_template=name + "-{i}.parquet", existing_data_behavior="overwrite_or_ignore",
        max_partitions=len(table))  # of a log with damaged dates each row may have its own day


def _writeByDuckdb(table: Table, folder: str, name: str) -> None:
    import duckdb

    hasTime = any(column.name == "time" for column in table.columns)
    day = "strftime(time AT TIME ZONE 'UTC', '%Y-%m-%d')" if hasTime else "NULL::VARCHAR"
    connection = duckdb.connect()
    try:
        connection.register("part", table)
        connection.execute(
            f"COPY (SELECT *, {day} AS day FROM part) TO {_quoted(folder)} (FORMAT parquet, "
            f"PARTITION_BY (day), FILENAME_PATTERN {_quoted(name + '-{i}')}, OVERWRITE_OR_IGNORE)")
    except duckdb.IOException as error:
        raise OSError(f"{folder}: {error}") from error
    finally:
        connection.close()


def _quoted(text: str) -> str:
    """A text as SQL has it."""
    return "'" + text.replace("'", "''") + "'"
