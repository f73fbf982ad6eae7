#!/usr/bin/env python3
"""Transforms points by PROJ too, with the exported pipeline, and shows the greatest difference.

    compare_with_proj.py boundary_points.csv --params town.json

The exit code is 1 when the difference is above --limit.
"""

import argparse
import sys

import numpy as np
import pyproj
from transform_table import read_table
from transformations import add_options, chosen, images_of, pipeline_of, run


def images_by_proj(pipeline, points):
    """What PROJ makes of points of shape (n, 2)."""
    transformer = pyproj.Transformer.from_pipeline(pipeline)
    return np.column_stack(transformer.transform(*np.array(points).T, errcheck=True))


def main():
    parser = argparse.ArgumentParser(description="Compares the exported pipeline with ours.")
    parser.add_argument("table")
    add_options(parser)
    parser.add_argument("--columns", nargs=2, default=["y", "x"], metavar="NAME")
    parser.add_argument("--limit", type=float, default=1e-9, help="metres")
    options = parser.parse_args()

    transformation = chosen(options)
    points = read_table(options.table, options.columns)[2]
    if not points:
        sys.exit(f"{options.table} has no points")
    pipeline = pipeline_of(transformation)
    images = images_by_proj(pipeline, points)
    difference = abs(images - images_of(transformation, points)).max()
    print(pipeline)
    print(f"{len(points)} points, greatest difference {difference:.1e} m")
    if not difference <= options.limit:
        sys.exit(f"above the limit of {options.limit:g} m")


if __name__ == "__main__":
    run(main)
