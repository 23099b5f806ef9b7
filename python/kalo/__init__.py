"""Logs of navigation and survey sensors as columns: NMEA 0183 sentences, TSS1 motion records, ATS
tracking records and NTRIP sourcetables.

    import kalo
    log = kalo.read("2026-03-11.log")       # a dict of tables by type of record
    log["GGA"].to_numpy()["latitude"]       # degrees, north positive
    log["GGA"].to_pandas()

Tables need no other package. pyarrow, polars, duckdb and pandas read them without a copy, through
the Arrow interface: ``pyarrow.table(log["GGA"])``, ``polars.DataFrame(log["GGA"])``.

Times are UTC, angles degrees (or radians with ``radians=True``), all other values SI units unless
the unit of the column says otherwise. A value that was not sent or does not decode is null. Bad
input never raises. Files that cannot be read raise OSError, wrong arguments ValueError.
"""
from ._decoder import Decoder, read, scan, schema
from ._inputs import ranges
from ._kalo import version as __version__
from ._parquet import to_parquet
from ._table import Column, Table

__all__ = ["Column", "Decoder", "Table", "ranges", "read", "scan", "schema", "to_parquet", "__version__"]
