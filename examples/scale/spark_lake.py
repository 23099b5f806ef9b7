"""The positions of many logs as one Parquet data set, made by Spark.

usage: python spark_lake.py LAKE SIZE FILE...
  LAKE  the folder of the data set: LAKE/type=GGA/day=2026-03-11/...
  SIZE  bytes of a log that a task decodes, such as 64MiB
"""
import os
import sys

import pyarrow
from pyspark.sql import SparkSession, functions
from pyspark.sql.pandas.types import from_arrow_schema

import kalo

COLUMNS = ["source", "offset", "time", "latitude", "longitude", "altitude", "quality"]


def positions(batches):
    for batch in batches:
        for piece in batch.to_pylist():
            log = kalo.read(piece["path"], range=(piece["begin"], piece["end"]), types=["GGA"], columns=COLUMNS)
            yield from pyarrow.table(log["GGA"]).to_batches()


def main(lake, size, paths):
    # Two cores of this machine; spark-submit to a cluster needs no master.
    os.environ.setdefault("PYSPARK_PYTHON", sys.executable)
    spark = (SparkSession.builder.master("local[2]").appName("positions")
             .config("spark.sql.session.timeZone", "UTC")
             .config("spark.sql.parquet.outputTimestampType", "TIMESTAMP_MICROS")
             .config("spark.ui.showConsoleProgress", "false").getOrCreate())
    ranges = kalo.ranges(paths, size=size)
    pieces = spark.createDataFrame(ranges, "path string, begin long, end long").repartition(len(ranges))
    schema = from_arrow_schema(pyarrow.table(kalo.schema("GGA", columns=COLUMNS)).schema)
    frame = pieces.mapInArrow(positions, schema)
    day = functions.date_format("time", "yyyy-MM-dd")
    frame.withColumn("day", day).write.partitionBy("day").parquet(f"{lake}/type=GGA")
    spark.stop()


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2], sys.argv[3:])
