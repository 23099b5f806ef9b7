"""The positions of many logs as one Parquet data set, made by Dask.

usage: python dask_lake.py LAKE SIZE FILE...
  LAKE  the folder of the data set: LAKE/type=GGA/day=2026-03-11/...
  SIZE  bytes of a log that a task decodes, such as 64MiB
"""
import sys

import dask.dataframe
import pandas
import pyarrow
from dask.distributed import Client, LocalCluster

import kalo

COLUMNS = ["source", "offset", "time", "latitude", "longitude", "altitude", "quality"]
NO_DAY = "__HIVE_DEFAULT_PARTITION__"  # the folder of records without a time


def frame_of(table):
    frame = pyarrow.table(table).to_pandas(types_mapper=pandas.ArrowDtype)
    return frame.assign(day=frame["time"].dt.strftime("%Y-%m-%d").fillna(NO_DAY))


def positions(piece):
    path, begin, end = piece
    return frame_of(kalo.read(path, range=(begin, end), types=["GGA"], columns=COLUMNS)["GGA"])


def main(lake, size, paths):
    # Two workers of this machine; Client("scheduler:8786") uses those of a cluster.
    with LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None) as cluster, Client(cluster):
        meta = frame_of(kalo.schema("GGA", columns=COLUMNS))
        frame = dask.dataframe.from_map(positions, kalo.ranges(paths, size=size), meta=meta)
        frame.to_parquet(f"{lake}/type=GGA", partition_on=["day"], write_index=False)


if __name__ == "__main__":  # the workers import this file
    main(sys.argv[1], sys.argv[2], sys.argv[3:])
