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
import os
import sys

import kv_tr

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


def read_points(name):
    with open(name, newline="", encoding="utf-8-sig") as file:
        return [
            (row["id"], *(float(row[column]) for column in ("y1", "x1", "y2", "x2")))
            for row in csv.DictReader(file)
        ]


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
        engine.ExcludeByIx(worst, False)
        spared = engine.lNotUsedCnt > len(pairs) - len(used)
        if not spared or engine.eTrType != kind:  # the last two points stay, and so does the type
            if spared:
                engine.ExcludeByIx(worst, False)
            engine.eTrType = kind
            print(f"{pairs[worst].sId} is above the limit but needed", file=sys.stderr)
            break
        engine.DoCalcTr()


def report(engine):
    print(f"{'point':>12} {'dY':>8} {'dX':>8} {'length':>8}")
    for pair in engine.GetAllXYs():
        note = "  left out" if pair.bNotUsed else ""
        print(f"{pair.sId:>12} {pair.dXerr:8.3f} {pair.dYerr:8.3f} {residual(pair):8.3f}{note}")
    print(f"rms {engine.dRmsErr:.3f} m with {engine.lFullCnt - engine.lNotUsedCnt} points")


def save_parameters(tr, name):
    """Saves in the format that the extension names; it has to suit the type."""
    extension = os.path.splitext(name)[1].lower()
    if extension not in ((".all",) if tr.bTypeIsPolinom() else (".trp", ".prm")):
        sys.exit(f"{name}: polynomials go to .all, other types to .trp or .prm")
    if tr.bTypeIsPolinom():
        tr.bSavePoliTrPrm(name)
    else:
        tr.bSaveAffinTrPrm(name, extension == ".prm")
    if not os.path.isfile(name):
        sys.exit(1)  # the component has said why


def main():
    parser = argparse.ArgumentParser(description="Fits a transformation to control points.")
    parser.add_argument("points", help="CSV file with the columns id, y1, x1, y2, x2")
    parser.add_argument("--type", choices=TYPES, default="helmert")
    parser.add_argument("--limit", type=float, help="greatest residual allowed, metres")
    parser.add_argument("--log", help="write the transformation log to this file")
    parser.add_argument("--save", help="write the parameters to this file (.trp, .prm or .all)")
    options = parser.parse_args()

    kv_tr.install_platform(language=2057)
    with kv_tr.clsTr() as tr:
        engine = tr.oCalcTr
        engine.AddXY4Tr(read_points(options.points), False)
        engine.eTrType = TYPES[options.type]
        if not engine.bXYCntIsValid4TrType(engine.eTrType):
            sys.exit(kv_tr.GetMlString(97))
        fit(engine, options.limit)
        report(engine)
        if options.log:
            engine.SaveLog(options.log)
        tr.udtTrPrm = engine.udtTrPrm
        if options.save:
            save_parameters(tr, options.save)


if __name__ == "__main__":
    main()
