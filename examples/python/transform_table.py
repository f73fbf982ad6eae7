#!/usr/bin/env python3
"""Transforms two columns of a table, whatever else it holds.

    transform_table.py boundary_points.csv new.csv --params town.trp
    transform_table.py stg_points.csv eov_points.csv --national STG_EOV_10e --columns y x
"""

import argparse
import csv
import os
import pathlib
import sys

import kv_tr


def read_record(options):
    """The parameters that the options name."""
    with kv_tr.clsTr() as tr:
        if options.national:
            tr.udtTrPrmByDAT2M1 = kv_tr.enuTR_TYPE["TR_" + options.national]
            return tr.udtTrPrm
        kind = pathlib.Path(options.params).suffix.lower()
        if kind not in (".trp", ".prm", ".all"):
            sys.exit(f"{options.params}: parameter files end in .trp, .prm or .all")
        if kv_tr.ParametersHaveDecimalCommas(options.params):
            sys.exit(f"{options.params} has decimal commas: replace them by points")
        if kind == ".all":
            loaded = tr.bLoadPoliTrPrmFromFile(options.params)
        else:
            loaded = tr.bLoadAffinTrPrmFromFile(options.params, kind == ".prm")
        if not loaded:
            sys.exit(f"{options.params} holds no parameters that can be read")
        return tr.udtTrPrm


def stop(message):
    """Shows what the component has to tell: whatever that is, the work is not done."""
    sys.exit(message.text)


def read_table(name, columns):
    """The names of all columns, the rows, and the numbers of the two columns."""
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
    return table.fieldnames, rows, list(zip(*points)) or [(), ()]


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
    national = [kind.name[3:] for kind in kv_tr.enuTR_TYPE if kind >= kv_tr.TR_STG_HER]
    parser = argparse.ArgumentParser(description="Transforms two columns of a CSV table.")
    parser.add_argument("table")
    parser.add_argument("output")
    source = parser.add_mutually_exclusive_group(required=True)
    source.add_argument("--params", help="parameter file: .trp, .prm or .all")
    source.add_argument("--national", choices=national, metavar="SOURCE_DESTINATION")
    parser.add_argument("--columns", nargs=2, default=["y", "x"], metavar="NAME")
    options = parser.parse_args()

    kv_tr.install_platform(messages=stop, language=2057)
    columns, rows, (first, second) = read_table(options.table, options.columns)
    images = kv_tr.EvalTrPrm(read_record(options), first, second)
    for row, *image in zip(rows, *images):
        row.update(zip(options.columns, (f"{value:.3f}" for value in image)))
    write_table(options.output, columns, rows)
    print(f"{len(rows)} points transformed to {options.output}")


if __name__ == "__main__":
    try:
        main()
    except (OSError, ValueError, kv_tr.RuntimeError) as error:
        sys.exit(str(error))
