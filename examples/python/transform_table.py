#!/usr/bin/env python3
"""Transforms two columns of a table, whatever else it holds.

    transform_table.py boundary_points.csv new.csv --params town.trp
    transform_table.py stg_points.csv eov_points.csv --national STG_EOV_10e --columns y x
"""

import argparse
import csv
import pathlib
import sys

import kv_tr


def read_record(options):
    """The parameters that the options name."""
    with kv_tr.clsTr() as tr:
        if options.national:
            tr.udtTrPrmByDAT2M1 = kv_tr.enuTR_TYPE["TR_" + options.national]
        elif not pathlib.Path(options.params).is_file():
            sys.exit(f"There is no file {options.params}")
        elif options.params.endswith(".all"):
            if not tr.bLoadPoliTrPrmFromFile(options.params):
                sys.exit(f"{options.params} holds no polynomial")
        elif not tr.bLoadAffinTrPrmFromFile(options.params, options.params.endswith(".prm")):
            sys.exit(1)  # the component has said why
        return tr.udtTrPrm


def main():
    national = [kind.name[3:] for kind in kv_tr.enuTR_TYPE if kind >= kv_tr.TR_STG_HER]
    parser = argparse.ArgumentParser(description="Transforms two columns of a CSV table.")
    parser.add_argument("table")
    parser.add_argument("output")
    source = parser.add_mutually_exclusive_group(required=True)
    source.add_argument("--params", help="parameter file: .trp, .prm or .all")
    source.add_argument("--national", choices=national, metavar="SOURCE_DESTINATION")
    parser.add_argument("--columns", nargs=2, default=["y", "x"], metavar="NAME")
    options = parser.parse_args()

    kv_tr.install_platform(language=2057)
    with open(options.table, newline="", encoding="utf-8-sig") as file:
        table = csv.DictReader(file)
        rows = list(table)
        missing = set(options.columns) - set(table.fieldnames or [])
    if missing:
        sys.exit(f"{options.table} has no column {', '.join(sorted(missing))}")
    first, second = ([float(row[name]) for row in rows] for name in options.columns)
    images = kv_tr.EvalTrPrm(read_record(options), first, second)
    for row, *image in zip(rows, *images):
        row.update(zip(options.columns, (f"{value:.3f}" for value in image)))

    with open(options.output, "w", newline="", encoding="utf-8") as file:
        writer = csv.DictWriter(file, table.fieldnames)
        writer.writeheader()
        writer.writerows(rows)
    print(f"{len(rows)} points transformed to {options.output}")


if __name__ == "__main__":
    main()
