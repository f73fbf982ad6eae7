#!/usr/bin/env python3
"""Transforms two columns of a table, whatever else it holds.

    transform_table.py boundary_points.csv new.csv --params town.trp
    transform_table.py stg_points.csv eov_points.csv --national STG_EOV_10e --columns y x
"""

import argparse
import csv
import os
import sys

from transformations import add_options, chosen, images_of, run


def read_table(name, columns):
    """The names of all columns, the rows, and the points that the two columns hold."""
    with open(name, newline="", encoding="utf-8-sig") as file:
        table = csv.DictReader(file)
        missing = set(columns) - set(table.fieldnames or [])
        if missing:
            sys.exit(f"{name} has no column {', '.join(sorted(missing))}")
        rows, points = [], []
        for row in table:
            try:
                if None in row:
                    raise ValueError("more fields than columns; numbers have a decimal point")
                points.append([float(row[column] or "") for column in columns])
            except ValueError as error:
                sys.exit(f"{name}, line {table.line_num}: {error}")
            rows.append(row)
    return table.fieldnames, rows, points


def write_table(name, columns, rows):
    """Under another name first, so that the file is whole or as it was before."""
    unfinished = name + ".part"
    file = open(unfinished, "x", newline="", encoding="utf-8")  # replaces no file of that name
    try:
        with file:
            writer = csv.DictWriter(file, columns)
            writer.writeheader()
            writer.writerows(rows)
        os.replace(unfinished, name)
    except OSError:
        os.remove(unfinished)
        raise


def main():
    parser = argparse.ArgumentParser(description="Transforms two columns of a CSV table.")
    parser.add_argument("table")
    parser.add_argument("output")
    add_options(parser)
    parser.add_argument("--columns", nargs=2, default=["y", "x"], metavar="NAME")
    options = parser.parse_args()

    columns, rows, points = read_table(options.table, options.columns)
    images = images_of(chosen(options), points) if points else []
    for row, image in zip(rows, images):
        row.update(zip(options.columns, (f"{value:.3f}" for value in image)))
    write_table(options.output, columns, rows)
    print(f"{len(rows)} points transformed to {options.output}")


if __name__ == "__main__":
    run(main)
