#!/usr/bin/env python3
"""Fits a transformation to control points in a CSV file.

    fit_from_csv.py control_points.csv --type helmert --limit 0.05 --log log.txt --save town.trp

The columns are id, y1, x1 (old system) and y2, x2 (new system), in metres. While the greatest
residual is above the limit, its point is left out and the fit repeated, as long as more points
remain than the type needs.
"""

import argparse
import csv
import math
import sys

import kv_tr

COLUMNS = ("id", "y1", "x1", "y2", "x2")
TYPES = {
    "helmert": kv_tr.TR_HELMERT,
    "affine": kv_tr.TR_AFFIN,
    "helmert3": kv_tr.TR_HELMERT_3,
    "affine5": kv_tr.TR_AFFIN_5,
    "bilinear": kv_tr.TR_BILINEAR,
    "poly1": kv_tr.TR_POLI_1,
    "poly2": kv_tr.TR_POLI_2,
    "poly3": kv_tr.TR_POLI_3,
    "poly4": kv_tr.TR_POLI_4,
    "poly5": kv_tr.TR_POLI_5,
}


def stop(message):
    """Shows what the component has to tell: whatever that is, the work is not done."""
    sys.exit(message.text)


def read_points(name):
    if kv_tr.PointsMayHaveDecimalCommas(name):
        sys.exit(f"{name} is no table with commas between its columns and points in its numbers")
    with open(name, newline="", encoding="utf-8-sig") as file:
        table = csv.DictReader(file)
        missing = [column for column in COLUMNS if column not in (table.fieldnames or [])]
        if missing:
            sys.exit(f"{name} has no column {', '.join(missing)}")
        points = []
        for row in table:
            try:
                if None in row:
                    raise ValueError("more fields than columns; numbers have a decimal point")
                points.append((row["id"], *(float(row[column] or "") for column in COLUMNS[1:])))
            except ValueError as error:
                sys.exit(f"{name}, line {table.line_num}: {error}")
    return points


def residual(pair):
    return math.hypot(pair.dXerr, pair.dYerr)


def fit(engine, limit):
    """Fits, and leaves out the worst point for as long as it is above the limit."""
    engine.DoCalcTr()
    while limit is not None:
        pairs = engine.GetAllXYs()
        used = [index for index, pair in enumerate(pairs) if not pair.bNotUsed]
        worst = max(used, key=lambda index: residual(pairs[index]))
        if residual(pairs[worst]) <= limit:
            break
        kind = engine.eTrType
        needed = len(used) == 2  # the last two points cannot be left out
        if not needed:
            engine.ExcludeByIx(worst, False)
            needed = engine.eTrType != kind  # which was lowered, because too few are left for it
            if needed:
                engine.ExcludeByIx(worst, False)
                engine.eTrType = kind
        if needed:
            print(f"{pairs[worst].sId} is above the limit but needed", file=sys.stderr)
            break
        engine.DoCalcTr()


def report(engine):
    print(f"{'point':>12} {'dY':>8} {'dX':>8} {'length':>8}")
    for pair in engine.GetAllXYs():
        note = "  left out" if pair.bNotUsed else ""
        print(f"{pair.sId:>12} {pair.dXerr:8.3f} {pair.dYerr:8.3f} {residual(pair):8.3f}{note}")
    print(f"rms {engine.dRmsErr:.3f} m with {engine.lFullCnt - engine.lNotUsedCnt} points")


def check_extension(engine, name):
    """The extension names the format, which has to suit the type."""
    suitable = (".all",) if engine.bTypeIsPolinom() else (".trp", ".prm")
    if not name.lower().endswith(suitable):
        sys.exit(f"{name}: polynomials go to .all, other types to .trp or .prm")


def save_parameters(tr, name):
    if tr.bTypeIsPolinom():
        saved = tr.bSavePoliTrPrm(name)
    else:
        saved = tr.bSaveAffinTrPrm(name, name.lower().endswith(".prm"))
    if not saved:
        sys.exit(f"The parameters could not be saved to {name}")


def main():
    parser = argparse.ArgumentParser(description="Fits a transformation to control points.")
    parser.add_argument("points", help="CSV file with the columns id, y1, x1, y2, x2")
    parser.add_argument("--type", choices=TYPES, default="helmert")
    parser.add_argument("--limit", type=float, help="greatest residual allowed, metres")
    parser.add_argument("--log", help="write the transformation log to this file")
    parser.add_argument("--save", help="write the parameters to this file (.trp, .prm or .all)")
    options = parser.parse_args()

    kv_tr.install_platform(messages=stop, language=2057)
    with kv_tr.clsTr() as tr:
        engine = tr.oCalcTr
        engine.AddXY4Tr(read_points(options.points), False)
        engine.eTrType = TYPES[options.type]
        if not engine.bXYCntIsValid4TrType(engine.eTrType):
            sys.exit(kv_tr.GetMlString(97))
        if options.save:
            check_extension(engine, options.save)
        fit(engine, options.limit)
        report(engine)
        tr.udtTrPrm = engine.udtTrPrm
        if options.save:
            save_parameters(tr, options.save)
        if options.log:
            engine.SaveLog(options.log)


if __name__ == "__main__":
    try:
        main()
    except (OSError, ValueError, kv_tr.RuntimeError) as error:
        sys.exit(str(error))
