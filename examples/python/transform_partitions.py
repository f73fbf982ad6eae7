#!/usr/bin/env python3
"""Transforms two columns of a table in many files with Dask, in several processes.

    transform_partitions.py 'points/*.csv' new --params town.json --workers 8
    transform_partitions.py points.parquet new --national STG_EOV_10e --columns y x

Each process gets the pickled transformation and maps partitions of its own; every number has the
same bits as in one process. The output is a new folder with a file a partition. All columns but
the two are kept as they are; rows without coordinates stay without.
"""

import argparse
import glob
import os
import shutil
import sys

import dask
import dask.dataframe
import numpy as np
import pandas
from transformations import add_options, chosen, images_of, run


def transformed_table(frame, transformation, columns):
    """A pandas table whose two columns hold the images."""
    points = frame[columns].to_numpy(float)
    there = ~np.isnan(points).all(axis=1)
    points[there] = images_of(transformation, points[there])
    return frame.assign(**dict(zip(columns, points.T)))


def read_tables(pattern, columns, blocksize):
    """Tables as partitions. Of CSV only the two columns are numbers, so that 007 stays 007."""
    names = sorted(glob.glob(pattern)) or [pattern]
    if names[0].lower().endswith((".parquet", ".pq")):
        frame = dask.dataframe.read_parquet(names, engine="pyarrow")
        missing = set(columns) - set(frame.columns)
    else:
        header = pandas.read_csv(names[0], nrows=0).columns
        missing = set(columns) - set(header)
        frame = None if missing else dask.dataframe.read_csv(
            names,
            blocksize=blocksize,
            dtype={name: float if name in columns else str for name in header},
            keep_default_na=False,
            na_values={name: [""] for name in columns},
            float_precision="round_trip",
        )
    if missing:
        raise ValueError(f"{names[0]} has no column {', '.join(sorted(missing))}")
    return frame


def write_tables(frame, folder, parquet):
    """The folder appears when all partitions are in it."""
    unfinished = folder + ".part"
    os.mkdir(unfinished)
    try:
        if parquet:
            frame.to_parquet(unfinished, engine="pyarrow", write_index=False)
        else:
            frame.to_csv(os.path.join(unfinished, "part-*.csv"), index=False)
        os.rename(unfinished, folder)
    except BaseException:
        shutil.rmtree(unfinished)
        raise


def main():
    parser = argparse.ArgumentParser(description="Transforms two columns of a table in many files.")
    parser.add_argument("tables", help="a file, or a pattern between quotes: .csv or .parquet")
    parser.add_argument("output", help="a new folder")
    add_options(parser)
    parser.add_argument("--columns", nargs=2, default=["y", "x"], metavar="NAME")
    parser.add_argument("--workers", type=int, default=os.cpu_count())
    parser.add_argument("--blocksize", default="64MB", help="of a partition of CSV")
    options = parser.parse_args()

    if os.path.exists(options.output):
        sys.exit(f"{options.output} exists")
    with dask.config.set(scheduler="processes", num_workers=options.workers):
        frame = read_tables(options.tables, options.columns, options.blocksize)
        images = frame.map_partitions(
            transformed_table, chosen(options), options.columns, meta=frame._meta
        )
        write_tables(images, options.output, options.tables.lower().endswith((".parquet", ".pq")))
    print(f"{images.npartitions} partitions transformed to {options.output}")


if __name__ == "__main__":
    run(main)
